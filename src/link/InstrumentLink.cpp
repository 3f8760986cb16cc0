#include "link/InstrumentLink.h"

#include <algorithm>
#include <utility>

namespace marisonde {

InstrumentLink::InstrumentLink(int index, const Clock& clock, std::unique_ptr<SerialLine> line)
    : index_(index), clock_(clock), line_(std::move(line)) {}

InstIdentity InstrumentLink::Identity() const {
    return {State.InstType, State.InstConfig, State.FirmwareVersion,
            State.InstState == InstStateCode::Sleeping};
}

LineError InstrumentLink::OpenPort(int port, int baud) {
    if (line_->IsOpen()) line_->Close();
    LineError error = line_->Open(port, baud);
    if (error) return error;
    line_->DropInput();
    // What still waits may be another instrument's: this one's calibration would turn it into wrong values.
    State.InputText.Clear();
    DataLineQueue.Clear();
    return error;
}

void InstrumentLink::ClosePort() {
    if (line_->IsOpen()) line_->Close();
    State.Connected = false;
    State.PortNumber = 0;
    State.InstState = InstStateCode::NoConnection;
    State.PrevInstState = InstStateCode::Unknown;
    // Meant for the instrument that was here, not for the next one on this line.
    PendingOutput.clear();
    State.CurrentCommand.clear();
    if (OnStatus) OnStatus();
}

void InstrumentLink::SendPending() {
    if (PendingOutput.empty()) return;
    const auto chunk = static_cast<std::size_t>(OutputChunkSize(Identity()));
    const std::size_t count = std::min(chunk, PendingOutput.size());
    line_->Write(std::string_view(PendingOutput).substr(0, count));
    PendingOutput.erase(0, count);
    if (!PendingOutput.empty()) return;
    State.CommandTime = clock_.Steady();
    State.CommandDate = clock_.Now();
}

}  // namespace marisonde
