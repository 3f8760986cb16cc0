#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "common/Clock.h"
#include "link/SerialLine.h"
#include "simulator/Instrument.h"

namespace marisonde {

/// A port with a simulated instrument on its cable, in this process and on the program's clock. The
/// instrument has power from the beginning, whether or not the port is open. At another rate than its own
/// nothing is understood on either side.
class SimulatedLine final : public SerialLine {
  public:
    /// `clock` must outlive the line; `instrument` is never null.
    SimulatedLine(std::unique_ptr<simulator::Instrument> instrument, const Clock& clock);

    /// Every port number leads to the instrument. NotFound once the instrument has vanished.
    LineError Open(int port, int baud) override;
    void Close() override;
    [[nodiscard]] bool IsOpen() const override { return open_; }
    void SetRate(int baud) override;
    void ReadAll(std::string& out) override;
    void Write(std::string_view bytes) override;
    [[nodiscard]] std::size_t BytesToWrite() const override { return 0; }
    [[nodiscard]] std::size_t BytesToRead() const override;
    void DropInput() override;
    void SetBreak(bool on) override;
    [[nodiscard]] LineError LastError() const override { return error_; }

    [[nodiscard]] simulator::Instrument& Instrument() { return *instrument_; }

  private:
    [[nodiscard]] Millis SincePowerOn() const { return clock_.Steady() - powerOn_; }
    /// Lets the instrument live up to now, and takes what has come through the cable.
    void CatchUp() const;

    std::unique_ptr<simulator::Instrument> instrument_;
    const Clock& clock_;
    Millis powerOn_;
    int baud_ = 0;
    bool open_ = false;
    mutable std::string arrived_;  ///< counting what has arrived means looking at the cable
    LineError error_;
};

}  // namespace marisonde
