#include "link/SimulatedLine.h"

#include <utility>

namespace marisonde {

SimulatedLine::SimulatedLine(std::unique_ptr<simulator::Instrument> instrument, const Clock& clock)
    : instrument_(std::move(instrument)), clock_(clock), powerOn_(clock.Steady()) {}

LineError SimulatedLine::Open(int /*port*/, int baud) {
    Close();
    error_ = {};
    CatchUp();
    if (instrument_->Vanished(SincePowerOn()))
        return error_ = {LineError::Kind::NotFound, "The simulated instrument has vanished"};
    open_ = true;
    baud_ = baud;
    return {};
}

void SimulatedLine::Close() {
    CatchUp();
    open_ = false;
    arrived_.clear();
}

void SimulatedLine::SetRate(int baud) {
    CatchUp();
    baud_ = baud;
}

void SimulatedLine::ReadAll(std::string& out) {
    CatchUp();
    if (open_) out += std::exchange(arrived_, {});
    if (!open_ || !instrument_->Vanished(SincePowerOn())) return;
    error_ = {LineError::Kind::Gone, "The simulated instrument has vanished"};
    open_ = false;
}

void SimulatedLine::Write(std::string_view bytes) {
    CatchUp();
    if (open_ && baud_ == instrument_->BaudRate()) instrument_->Receive(bytes, SincePowerOn());
}

void SimulatedLine::SetBreak(bool on) {
    CatchUp();
    if (open_) instrument_->Break(on, SincePowerOn());
}

std::size_t SimulatedLine::BytesToRead() const {
    CatchUp();
    return arrived_.size();
}

void SimulatedLine::DropInput() {
    CatchUp();
    arrived_.clear();
}

void SimulatedLine::CatchUp() const {
    const Millis now = SincePowerOn();
    instrument_->RunUntil(now);
    const std::string bytes = instrument_->TakeOutput(now);
    if (open_ && baud_ == instrument_->SentRate()) arrived_ += bytes;
}

}  // namespace marisonde
