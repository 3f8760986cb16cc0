#pragma once

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "common/Clock.h"
#include "link/Ports.h"
#include "link/SimulatedLine.h"

namespace marisonde {

/// Ports in this process with a simulated instrument on each. As with real ones, one line at a time can have
/// a port open, and an instrument goes on with what it does while nobody listens. Each cable is part of its
/// instrument: model and serial stand where a real port has those of its adapter.
class SimulatedPorts final : public Ports {
  public:
    explicit SimulatedPorts(const Clock& clock) : clock_(clock) {}

    /// Puts an instrument on the lowest free number, which is returned.
    int Add(std::unique_ptr<simulator::Instrument> instrument);
    /// The instrument on a port; null when there is none.
    [[nodiscard]] simulator::Instrument* InstrumentAt(int port);

    [[nodiscard]] std::vector<PortEntry> Present() override;
    [[nodiscard]] std::optional<PortEntry> Known(int number) override;
    [[nodiscard]] std::unique_ptr<SerialLine> MakeLine() override;

  private:
    friend class SimulatedPortLine;
    struct Place {
        PortEntry entry;
        std::unique_ptr<SimulatedLine> cable;
    };
    const Clock& clock_;
    std::map<int, Place> places_;
};

}  // namespace marisonde
