#include "link/SimulatedPorts.h"

#include <utility>

namespace marisonde {

/// Opens whichever simulated port is asked for.
class SimulatedPortLine final : public SerialLine {
  public:
    explicit SimulatedPortLine(SimulatedPorts& ports) : ports_(ports) {}
    ~SimulatedPortLine() override { CloseCable(); }

    LineError Open(int port, int baud) override {
        CloseCable();
        const auto place = ports_.places_.find(port);
        if (place == ports_.places_.end())
            return error_ = {LineError::Kind::NotFound, "There is no port " + std::to_string(port)};
        SimulatedLine& cable = *place->second.cable;
        if (cable.IsOpen()) return error_ = {LineError::Kind::Busy, "The port is open already"};
        error_ = cable.Open(port, baud);
        if (!error_) cable_ = &cable;
        return error_;
    }
    void Close() override { CloseCable(); }
    [[nodiscard]] bool IsOpen() const override { return cable_ && cable_->IsOpen(); }
    void SetRate(int baud) override {
        if (cable_) cable_->SetRate(baud);
    }
    void ReadAll(std::string& out) override {
        if (cable_) cable_->ReadAll(out);
    }
    void Write(std::string_view bytes) override {
        if (cable_) cable_->Write(bytes);
    }
    [[nodiscard]] std::size_t BytesToWrite() const override { return cable_ ? cable_->BytesToWrite() : 0; }
    [[nodiscard]] std::size_t BytesToRead() const override { return cable_ ? cable_->BytesToRead() : 0; }
    void DropInput() override {
        if (cable_) cable_->DropInput();
    }
    void SetBreak(bool on) override {
        if (cable_) cable_->SetBreak(on);
    }
    [[nodiscard]] LineError LastError() const override { return cable_ ? cable_->LastError() : error_; }

  private:
    void CloseCable() {
        if (cable_) cable_->Close();
        cable_ = nullptr;
        error_ = {};
    }

    SimulatedPorts& ports_;
    SimulatedLine* cable_ = nullptr;  ///< while this line has the port
    LineError error_;
};

int SimulatedPorts::Add(std::unique_ptr<simulator::Instrument> instrument) {
    int port = 1;
    while (places_.contains(port)) ++port;
    const simulator::ModelInfo& info = instrument->Info();
    PortEntry entry{port, "simulated", "Simulated " + std::string(info.name), std::string(info.serial)};
    places_.emplace(port,
                    Place{std::move(entry), std::make_unique<SimulatedLine>(std::move(instrument), clock_)});
    return port;
}

simulator::Instrument* SimulatedPorts::InstrumentAt(int port) {
    const auto place = places_.find(port);
    return place == places_.end() ? nullptr : &place->second.cable->Instrument();
}

std::vector<PortEntry> SimulatedPorts::Present() {
    std::vector<PortEntry> present;
    for (const auto& [number, place] : places_) {
        if (!place.cable->IsOpen() && place.cable->LastError().kind == LineError::Kind::Gone) continue;
        present.push_back(place.entry);
    }
    return present;
}

std::optional<PortEntry> SimulatedPorts::Known(int number) {
    const auto place = places_.find(number);
    return place == places_.end() ? std::nullopt : std::optional(place->second.entry);
}

std::unique_ptr<SerialLine> SimulatedPorts::MakeLine() {
    return std::make_unique<SimulatedPortLine>(*this);
}

}  // namespace marisonde
