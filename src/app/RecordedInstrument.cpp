#include "app/RecordedInstrument.h"

#include <utility>

namespace marisonde {

namespace {

/// An instrument is identified within seconds; more than this cannot wait for it.
constexpr std::size_t kMostHeld = 1U << 20U;
/// An hour and a half at the highest rate: another's data wait no longer than the user looks at a stored
/// file.
constexpr std::size_t kMostOfOthers = 64U << 20U;

bool Differ(const std::string& a, const std::string& b) {
    return !a.empty() && !b.empty() && a != b;
}

}  // namespace

void RecordedInstrument::Opened(const DataWindowState& state) {
    model_ = state.InstModelName;
    serial_ = state.InstSerial;
    held_.clear();
    others_.clear();
}

std::string RecordedInstrument::Name() const {
    return serial_.empty() ? model_ : model_ + " " + serial_;
}

std::string RecordedInstrument::TakeOthers() {
    return std::exchange(others_, {});
}

RecordedInstrument::Sender RecordedInstrument::SenderIn(const DataWindowState& state) const {
    if (model_.empty()) return Sender::Same;
    if (!state.Connected || state.ConnectStage == kConnecting) return Sender::Unsure;
    const bool other = Differ(model_, state.InstModelName) || Differ(serial_, state.InstSerial);
    return other ? Sender::Other : Sender::Same;
}

std::string_view RecordedInstrument::Pass(std::string_view chunk, const DataWindowState& state) {
    switch (SenderIn(state)) {
        case Sender::Other:
            if (others_.size() < kMostOfOthers) others_.append(held_).append(chunk);
            held_.clear();
            return {};
        case Sender::Unsure:
            others_.clear();
            Hold(chunk, state);
            return {};
        case Sender::Same:
            break;
    }
    if (held_.empty()) return chunk;
    passed_ = std::exchange(held_, {}).append(chunk);
    return passed_;
}

void RecordedInstrument::Hold(std::string_view chunk, const DataWindowState& state) {
    if (heldPort_ != state.PortNumber || heldRate_ != state.BaudRate) held_.clear();
    heldPort_ = state.PortNumber;
    heldRate_ = state.BaudRate;
    if (held_.size() + chunk.size() <= kMostHeld) held_ += chunk;
}

}  // namespace marisonde
