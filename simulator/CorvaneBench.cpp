// What the factory's bench asks of a Corvane: gains that stay put, single samples with all their counts.
#include <array>

#include "simulator/Corvane.h"
#include "simulator/FieldText.h"

namespace marisonde::simulator {

namespace {

constexpr int kSteps = 5;
constexpr int kHighestMode = 3;

/// "2,5": a channel number, 0 for all, and a value of `lowest` to `highest`.
struct ForChannel {
    int channel, value;
};
std::optional<ForChannel> ReadForChannel(std::string_view argument, std::size_t channels, int lowest,
                                         int highest) {
    const auto texts = SplitAtCommas(argument);
    if (texts.size() != 2) return std::nullopt;
    const double channel = NumberFrom(texts[0]).value_or(-1);
    const double value = NumberFrom(texts[1]).value_or(lowest - 1);
    const auto fits = [](double number, int least, int most) {
        return number >= least && number <= most && number == static_cast<int>(number);
    };
    if (!fits(channel, 0, static_cast<int>(channels)) || !fits(value, lowest, highest)) return std::nullopt;
    return ForChannel{static_cast<int>(channel), static_cast<int>(value)};
}

std::string SettingText(std::string_view what, const ForChannel& set, std::string_view value) {
    std::string line(what);
    if (set.channel != 0) line.append(" of channel ").append(std::to_string(set.channel));
    return line.append(": ").append(value);
}

/// The channels meant: one by its number, or all.
template <class Channels>
auto Meant(Channels& all, int channel) {
    const auto from = static_cast<std::size_t>(channel == 0 ? 0 : channel - 1);
    return std::span(all).subspan(from, channel == 0 ? all.size() : 1);
}

}  // namespace

void Corvane::LoadStoredCal() {
    told_ = stored_;
    fluorescence_ = storedFluorescence_;
    for (AutoGain& gain : gains_) gain.Release();
}

void Corvane::Gain(std::string_view argument) {
    const auto set = ReadForChannel(argument, cal_.channels.size(), 1, kSteps);
    if (!set) return ReplyRefused();
    for (AutoGain& gain : Meant(gains_, set->channel)) gain.Hold(set->value);
    Reply(SettingText("Gain", *set, std::to_string(set->value)));
}

void Corvane::AutomaticGain(std::string_view argument) {
    const auto set = ReadForChannel(argument, cal_.channels.size(), 0, 1);
    if (!set) return ReplyRefused();
    for (AutoGain& gain : Meant(gains_, set->channel)) set->value != 0 ? gain.Release() : gain.HoldPresent();
    Reply(SettingText("Automatic gain", *set, set->value != 0 ? "on" : "off"));
}

void Corvane::Mode(std::string_view argument) {
    const auto set = ReadForChannel(argument, cal_.channels.size(), 0, kHighestMode);
    if (!set) return ReplyRefused();
    Reply(SettingText("Mode", *set, std::to_string(set->value)));
}

void Corvane::Averaging(std::string_view argument) {
    const double on = NumberFrom(argument).value_or(-1);
    if (on != 0 && on != 1) return ReplyRefused();
    Reply(on != 0 ? "Averaging: on" : "Averaging: off");
}

void Corvane::RawSample(std::string_view /*argument*/) {
    ReplyRaw();
}

void Corvane::Clear(std::string_view /*argument*/) {
    Reply("Cleared");
}

}  // namespace marisonde::simulator
