#include "link/Ports.h"

#include "link/RealSerialLine.h"

namespace marisonde {

std::vector<PortEntry> ComputerPorts::Present() {
    table_.Refresh();
    return table_.Present();
}

std::unique_ptr<SerialLine> ComputerPorts::MakeLine() {
    return std::make_unique<RealSerialLine>(table_);
}

bool PortAvailable(Ports& ports, int port) {
    constexpr int kAnyRate = 9600;
    const std::unique_ptr<SerialLine> spare = ports.MakeLine();
    const LineError error = spare->Open(port, kAnyRate);
    spare->Close();
    return !error || error.kind == LineError::Kind::Busy || error.kind == LineError::Kind::Denied;
}

}  // namespace marisonde
