#include <algorithm>
#include <array>

#include "simulator/Corvane.h"
#include "simulator/Dates.h"
#include "simulator/FieldText.h"

namespace marisonde::simulator {

namespace {

using Kind = SettingRow::Kind;
constexpr double kLongest = 65535;           // s
constexpr double kShortestShared = 0.3;      // s, while a receiver measures fluorescence too
constexpr double kShutterSwitchFrom = 1.81;  // firmware
constexpr int kSharing = 2;

// In the order of the values of LOG.
constexpr std::array kLog{
    SettingRow{"Period", &SampleSettings::period, 0.1, kLongest},
    SettingRow{"Start delay", &SampleSettings::startDelay, 0, kLongest},
    SettingRow{"Sleep on memory full", &SampleSettings::sleepOnFull, 0, 1},
    SettingRow{"Start on power", &SampleSettings::startOnPower, 0, 1},
    SettingRow{"Burst mode", &SampleSettings::burst, 0, 1, Kind::OnOff},
    SettingRow{"Warmup time", &SampleSettings::warmup, 0, kLongest},
    SettingRow{"Burst length", &SampleSettings::burstLength, 1, kLongest},
    SettingRow{"Burst cycle", &SampleSettings::burstCycle, 1, kLongest},
    SettingRow{"Total duration", &SampleSettings::total, 0, 1e7},
};

// In the order of the values of SHUTTER.
constexpr std::array kShutter{
    SettingRow{"Shutter enabled", &SampleSettings::shutterEnabled, 0, 1},
    SettingRow{"Automatic open", &SampleSettings::shutterAuto, 0, 1},
    SettingRow{"Shutter close time", &SampleSettings::shutterTime, 0.1, 60},
    SettingRow{"Shutter direction", &SampleSettings::clockwise, 0, 1, Kind::Direction},
};

/// Older firmware has no switch for its shutter.
std::span<const SettingRow> ShutterRows(double firmware) {
    const std::span<const SettingRow> rows(kShutter);
    return firmware >= kShutterSwitchFrom ? rows : rows.subspan(1);
}

}  // namespace

std::span<const Instrument::Command> Corvane::FamilyCommands() const {
    static const std::array commands{
        Row("SENDCAL", &Corvane::SendCalFile),
        Row("MAKEINI", &Corvane::MakeIniFile),
        Row("GCF", &Corvane::Gcf),
        Row("CCL", &Corvane::Ccl),
        Row("COF", &Corvane::Cof),
        Row("CCF", &Corvane::Ccf),
        Row("STORECCL", &Corvane::StoreChannels),
        Row("STOREGCF", &Corvane::StoreGlobal),
        Row("LOG", &Corvane::Log),
        Row("STORELOG", &Corvane::StoreLog),
        Row("SHUTTER", &Corvane::Shutter),
        Row("FL", &Corvane::Fl, true),
        Row("STOREFL", &Corvane::StoreFl),
        Row("GAIN", &Corvane::Gain),
        Row("AGAIN", &Corvane::AutomaticGain),
        Row("MODE", &Corvane::Mode),
        Row("AM", &Corvane::Averaging),
        Row("C", &Corvane::RawSample),
        Row("X", &Corvane::Clear),
    };
    return commands;
}

void Corvane::SendCalFile(std::string_view argument) {
    GivesFile() ? SendCal(argument) : ReplyUnknown();
}

void Corvane::MakeIniFile(std::string_view argument) {
    GivesFile() ? MakeIni(argument) : ReplyUnknown();
}

std::string Corvane::GlobalListing() const {
    const ModelInfo info = CalInfo();
    const auto line = [](std::string_view name, std::string_view value) {
        return std::string(name) + ": " + std::string(value) + "\r\n";
    };
    return line("Model", info.code) + line("S/N", info.serial) + line("Config", Config()) +
           line("ID", kLabel) + line("Firmware", Settings().firmware) +
           line("Maximum depth", AllDigits(cal_.maxDepthM)) +
           line("Depth coefficient", AllDigits(told_.cal.depthCal)) +
           line("Depth offset", AllDigits(told_.cal.depthOff)) +
           line("Cal temp", AllDigits(told_.cal.calTemp)) + line("Cal Time", DateText(told_.calTime));
}

bool Corvane::SetGlobal(std::span<const std::string_view> texts) {
    // "*" and four values that only the factory sets come first.
    constexpr std::size_t kFirst = 5;
    const std::array<double*, 3> places{&told_.cal.calTemp, &told_.cal.depthOff, &told_.cal.depthCal};
    if (texts.size() > kFirst + places.size() || texts[0] != "*") return false;
    std::array<std::optional<double>, 3> numbers;
    for (std::size_t i = kFirst; i < texts.size(); ++i) {
        if (texts[i].empty()) continue;
        numbers[i - kFirst] = NumberFrom(texts[i]);
        if (!numbers[i - kFirst]) return false;
    }
    for (std::size_t i = 0; i < places.size(); ++i) *places[i] = numbers[i].value_or(*places[i]);
    // The calibration is dated by the clock, which hosts put to its date for the moment.
    told_.calTime = ClockTime();
    return true;
}

void Corvane::Gcf(std::string_view argument) {
    if (!GivesChannels()) return ReplyUnknown();
    const auto texts = SplitAtCommas(argument);
    if (!texts.empty() && !SetGlobal(texts)) return ReplyRefused();
    ReplyText(GlobalListing());
}

std::optional<std::size_t> Corvane::ChannelIn(std::span<const std::string_view> texts) const {
    const double number = texts.empty() ? 0 : NumberFrom(texts[0]).value_or(0);
    for (std::size_t i = 0; i < told_.cal.channels.size(); ++i)
        if (number == static_cast<double>(i + 1)) return i;
    return std::nullopt;
}

void Corvane::Ccl(std::string_view argument) {
    if (!GivesChannels()) return ReplyUnknown();
    const auto texts = SplitAtCommas(argument);
    const auto index = ChannelIn(texts);
    if (!index || !SetChannel(told_.cal.channels[*index], std::span(texts).subspan(1))) return ReplyRefused();
    ReplyText(ChannelListing(told_.cal, *index));
}

void Corvane::Cof(std::string_view argument) {
    if (!GivesChannels()) return ReplyUnknown();
    const auto texts = SplitAtCommas(argument);
    const auto index = ChannelIn(texts);
    if (!index || !SetOffsets(told_.cal.channels[*index], std::span(texts).subspan(1))) return ReplyRefused();
    ReplyText(ChannelListing(told_.cal, *index));
}

void Corvane::Ccf(std::string_view argument) {
    if (!GivesChannels()) return ReplyUnknown();
    const auto index = ChannelIn(SplitAtCommas(argument));
    if (!index) return ReplyRefused();
    ReplyText(FactoryListing(told_.cal, *index));
}

void Corvane::StoreChannels(std::string_view /*argument*/) {
    StoreLater("channel data", [this] {
        stored_.cal.channels = told_.cal.channels;
        RewriteCalFile();
    });
}

void Corvane::StoreGlobal(std::string_view /*argument*/) {
    StoreLater("global data", [this] {
        auto channels = std::move(stored_.cal.channels);
        stored_ = told_;
        stored_.cal.channels = std::move(channels);
        RewriteCalFile();
    });
}

void Corvane::Log(std::string_view argument) {
    const bool shares =
        std::find(fluorescence_.begin(), fluorescence_.end(), kSharing) != fluorescence_.end();
    const bool sets = !Trimmed(argument).empty();
    const auto allowed = [&](const SampleSettings& s) {
        return !sets || !shares || s.period >= kShortestShared;
    };
    if (!SetOrReply(kLog, argument, allowed) || !HasShutter()) return;
    ReplySettings(ShutterRows(Firmware()));
}

void Corvane::StoreLog(std::string_view /*argument*/) {
    StoreLater("parameters", [this] { StoreSettings(); });
}

void Corvane::Shutter(std::string_view argument) {
    HasShutter() ? void(SetOrReply(ShutterRows(Firmware()), argument)) : ReplyUnknown();
}

bool Corvane::SetFl(std::string_view argument) {
    const auto texts = SplitAtCommas(argument);
    const double state = NumberFrom(texts.back()).value_or(-1);
    if (texts.size() > 2 || (state != 0 && state != 1 && state != kSharing)) return false;
    if (state == kSharing && Sampler().period < kShortestShared) return false;
    // "fl510" and "510" name a channel; without a name all are meant.
    const auto digits = texts.size() == 2 ? texts[0].find_first_of("0123456789") : std::string_view::npos;
    const double lambda =
        digits == std::string_view::npos ? 0 : NumberFrom(texts[0].substr(digits)).value_or(-1);
    bool known = false;
    std::size_t place = 0;
    for (const CorvaneChannel& channel : cal_.channels) {
        if (channel.lit < 0) continue;
        if (lambda == 0 || lambda == channel.lambdaNm) {
            fluorescence_[place] = static_cast<int>(state);
            known = true;
        }
        ++place;
    }
    return known;
}

void Corvane::Fl(std::string_view argument) {
    if (fluorescence_.empty()) return ReplyUnknown();
    if (!Trimmed(argument).empty() && !SetFl(argument)) return ReplyRefused();
    for (const int state : fluorescence_) Reply("FL status: " + std::to_string(state));
}

void Corvane::StoreFl(std::string_view /*argument*/) {
    StoreLater("parameters", [this] { storedFluorescence_ = fluorescence_; });
}

}  // namespace marisonde::simulator
