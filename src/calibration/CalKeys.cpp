// Reading calibration text: one table of keys for the files of every model and for what instruments send.
#include <algorithm>
#include <optional>

#include "calibration/CalLine.h"
#include "calibration/CalibrationDataClass.h"
#include "calibration/ChannelRange.h"
#include "calibration/Sentinel.h"
#include "common/ConversionUtils.h"
#include "common/Numbers.h"

namespace marisonde {

namespace {

/// Where a value goes: the object, the section at hand and the index that the key ends in, less the row's
/// first.
struct Target {
    CalibrationDataClass& cal;
    const CalSection& section;
    int index;
    [[nodiscard]] std::size_t at() const { return static_cast<std::size_t>(index); }
};

using Store = void (*)(const Target&, std::string_view value);

void Read(std::string& field, std::string_view value) {
    field = value;
}
void Read(double& field, std::string_view value) {
    field = Val(value);
}
void Read(float& field, std::string_view value) {
    field = Single(Val(value));
}
void Read(std::int16_t& field, std::string_view value) {
    field = ToInt16(Val(value));
}
void Read(std::int32_t& field, std::string_view value) {
    field = ToInt32(Val(value));
}

template <auto Field>
void OfObject(const Target& target, std::string_view value) {
    Read(target.cal.*Field, value);
}
template <auto Field>
void OfChannel(const Target& target, std::string_view value) {
    Read(target.cal.EditChannel(target.section.channel).*Field, value);
}
template <auto Field>
void OfChannelAt(const Target& target, std::string_view value) {
    Read((target.cal.EditChannel(target.section.channel).*Field)[target.at()], value);
}
template <auto Field>
void OfAttenuation(const Target& target, std::string_view value) {
    Read(target.cal.EditAttenuation(target.section.channel).*Field, value);
}
template <auto Field>
void OfAttenuationAt(const Target& target, std::string_view value) {
    Read((target.cal.EditAttenuation(target.section.channel).*Field)[target.at()], value);
}
/// Writes with rules: `Write` takes the channel, the index where there is one, and the number.
template <auto Write>
void ByRule(const Target& target, std::string_view value) {
    (target.cal.*Write)(target.section.channel, Val(value));
}
template <auto Write>
void ByRuleAt(const Target& target, std::string_view value) {
    (target.cal.*Write)(target.section.channel, target.index, Val(value));
}

void StoreDeviceType(const Target& target, std::string_view value) {
    target.cal.InstType = InstTypeFromName(value);
}

struct SerialMark {
    std::string_view text;
    InstTypeCode type;
};
/// Looked for anywhere in the serial number; the last that is there decides.
constexpr std::array kSerialMarks{
    SerialMark{"CV", InstTypeCode::Corvane6}, SerialMark{"V4", InstTypeCode::Corvane4},
    SerialMark{"V2", InstTypeCode::Corvane2}, SerialMark{"LT", InstTypeCode::LTidal},
    SerialMark{"NT", InstTypeCode::NTidal},   SerialMark{"N2", InstTypeCode::Delph2},
    SerialMark{"D2", InstTypeCode::Delph2},   SerialMark{"D4", InstTypeCode::Delph4},
    SerialMark{"D6", InstTypeCode::Delph6},
};

void StoreSerial(const Target& target, std::string_view value) {
    target.cal.Serial = value;
    for (const auto& [text, type] : kSerialMarks) {
        if (value.find(text) != std::string_view::npos) target.cal.InstType = type;
    }
}

template <auto Field>
void DateOfObject(const Target& target, std::string_view value) {
    constexpr double kYear100 = -657434;
    constexpr double kYear10000 = 2958466;
    const double date = ParseInstrumentDate(value, target.cal.InstType);
    target.cal.*Field = date >= kYear100 && date < kYear10000 ? date : 0;
}

void StoreName(const Target& target, std::string_view value) {
    ChannelPlain& channel = target.cal.EditChannel(target.section.channel);
    channel.name = value;
    channel.lambda = ToInt16(FirstNumber(value));
}

void StoreLambda(const Target& target, std::string_view value) {
    if (!target.section.attenuation) {
        Read(target.cal.EditChannel(target.section.channel).lambda, value);
        return;
    }
    std::int16_t& lambda = target.cal.EditAttenuation(target.section.channel).KLambda;
    Read(lambda, value);
    target.cal.EditChannel(1).lambda = lambda;
    target.cal.EditChannel(2).lambda = lambda;
}

void StoreDeltaLambda(const Target& target, std::string_view value) {
    const int ch = target.section.channel;
    Read(target.section.attenuation ? target.cal.EditAttenuation(ch).KDeltaLambda
                                    : target.cal.EditChannel(ch).bDeltaLambda,
         value);
}

void StoreMu(const Target& target, std::string_view value) {
    target.cal.SetMu(target.section.channel, Val(value));
}

void StoreSigma(const Target& target, std::string_view value) {
    target.cal.SetSigma(target.section.channel, target.index, Val(value));
}

void StoreCalTemp(const Target& target, std::string_view value) {
    const std::string_view section = target.section.name;
    if (section == "Attenuation") target.cal.SetKCalTemp(0, Single(Val(value)));
    if (section == "Scattering" || section == "General") Read(target.cal.CalTemp, value);
}

void StoreKTempCoeff(const Target& target, std::string_view value) {
    target.cal.SetKTempCoeff(target.section.channel, target.index, Single(Val(value)));
}

void StoreKTPW(const Target& target, std::string_view value) {
    target.cal.SetKTPW(target.section.channel, Single(Val(value)));
}

using Cal = CalibrationDataClass;

/// `key` alone, or `key` followed by one digit from `first` to `last`; the digit plus `shift` is the index.
struct KeyRule {
    std::string_view key;
    Store store;
    bool ofChannel = true;  ///< lost when the section names no channel of ours
    int first = 0, last = -1;
    int shift = 0;
};
constexpr std::array kKeys{
    KeyRule{"Label", OfObject<&Cal::Label>, false},
    KeyRule{"DeviceType", StoreDeviceType, false},
    KeyRule{"Serial", StoreSerial, false},
    KeyRule{"Config", OfObject<&Cal::Config>, false},
    KeyRule{"MaxDepth", OfObject<&Cal::MaxDepth>, false},
    KeyRule{"DepthCal", OfObject<&Cal::DepthCal>, false},
    KeyRule{"DepthOff", OfObject<&Cal::DepthOff>, false},
    KeyRule{"CalTime", DateOfObject<&Cal::CalTime>, false},
    KeyRule{"ModificationTime", DateOfObject<&Cal::ModificationTime>, false},
    KeyRule{"CalTemp", StoreCalTemp, false},
    KeyRule{"kp1", OfObject<&Cal::kp1>, false},
    KeyRule{"kp2", OfObject<&Cal::kp2>, false},
    KeyRule{"P0", OfObject<&Cal::P0>, false},
    KeyRule{"TP0", OfObject<&Cal::TP0>, false},
    KeyRule{"kD1", OfObject<&Cal::kD1>, false},
    KeyRule{"kD2", OfObject<&Cal::kD2>, false},
    KeyRule{"Name", StoreName},
    KeyRule{"Lambda", StoreLambda},
    KeyRule{"DeltaLambda", StoreDeltaLambda},
    KeyRule{"Gain", ByRuleAt<&Cal::SetGain>, true, 1, 5},
    KeyRule{"Mu", StoreMu},
    KeyRule{"MuRho", OfChannel<&ChannelPlain::MuRho>},
    KeyRule{"Sigma", StoreSigma, true, 1, 3, -1},
    KeyRule{"SigmaExp", ByRule<&Cal::SetSigmaExp>},
    KeyRule{"ROutOff", ByRule<&Cal::SetROutOff>},
    KeyRule{"RNominal", ByRule<&Cal::SetRNominal>},
    KeyRule{"ChiBb", OfChannel<&ChannelPlain::beta2bb>},
    KeyRule{"Beta2Bb", OfChannel<&ChannelPlain::beta2bb>},
    KeyRule{"Bb2c", OfChannel<&ChannelPlain::bb2c>},
    KeyRule{"TempCoeff", OfChannel<&ChannelPlain::bTempCoeff>},
    KeyRule{"TempCoeff", StoreKTempCoeff, true, 0, 5},
    KeyRule{"Offset", OfChannelAt<&ChannelPlain::DarkOffset>, true, 1, 5},
    KeyRule{"NomOffset", OfChannelAt<&ChannelPlain::NomOffset>, true, 1, 5},
    KeyRule{"FlOffset", OfChannelAt<&ChannelPlain::FlOffset>, true, 1, 5},
    KeyRule{"TrNought", OfAttenuation<&AttenuationPlain::TrNought>},
    KeyRule{"TrPure", OfAttenuation<&AttenuationPlain::TrPure>},
    KeyRule{"TrAir", OfAttenuation<&AttenuationPlain::TrAir>},
    KeyRule{"Path", OfAttenuation<&AttenuationPlain::KPath>},
    KeyRule{"aPure", OfAttenuation<&AttenuationPlain::aPure>},
    KeyRule{"BetaPure", OfAttenuation<&AttenuationPlain::betaPure>},
    KeyRule{"Chi", OfAttenuationAt<&AttenuationPlain::KChi>, true, 0, 3},
    KeyRule{"KDepthCoeff", OfAttenuationAt<&AttenuationPlain::KDepthCoeff>, true, 0, 1},
    KeyRule{"KDepthThreshold", OfAttenuationAt<&AttenuationPlain::KDepthThresh>},
    KeyRule{"L", OfAttenuation<&AttenuationPlain::KL>},
    KeyRule{"S0", OfAttenuation<&AttenuationPlain::KS0>},
    KeyRule{"R0", OfAttenuation<&AttenuationPlain::KR0>},
    KeyRule{"kT", ByRuleAt<&Cal::SetKkT>, true, 0, 5},
    KeyRule{"P", ByRuleAt<&Cal::SetKP>, true, 1, 2},
    KeyRule{"kTauPX", OfAttenuation<&AttenuationPlain::KkTauPX>},
    KeyRule{"kTauP", ByRuleAt<&Cal::SetKkTauP>, true, 0, 5},
    KeyRule{"Tau0", OfAttenuation<&AttenuationPlain::KTau0>},
    KeyRule{"TPW", StoreKTPW},
};

bool HasIndex(const KeyRule& rule) {
    return rule.last >= rule.first;
}

/// The index that `key` names in the row; nullopt when the key is another.
std::optional<int> MatchKey(const KeyRule& rule, std::string_view key) {
    if (!HasIndex(rule)) return key == rule.key ? std::optional<int>(0) : std::nullopt;
    if (key.size() != rule.key.size() + 1 || !key.starts_with(rule.key)) return std::nullopt;
    const int digit = key.back() - '0';
    if (digit < rule.first || digit > rule.last) return std::nullopt;
    return digit + rule.shift;
}

bool Contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// Last `count` characters as a number.
int TailNumber(std::string_view text, std::size_t count) {
    return ToInt16(Val(text.substr(text.size() - std::min(count, text.size()))));
}

/// Which channel the section names. A name that says nothing keeps the channel before it.
void UpdateChannel(CalSection& section) {
    if (Contains(section.name, "Channel")) {
        section.channel = TailNumber(section.name, 1) - 1;
        section.attenuation = false;
    } else if (Contains(section.name, "Scattering")) {
        section.channel = 0;
        section.attenuation = false;
    } else if (Contains(section.name, "Attenuation")) {
        section.channel = std::max(TailNumber(section.name, 2) - 1, 0);
        section.attenuation = true;
    }
}

std::string_view ValueText(std::string_view rest) {
    for (std::size_t i = 0; i < rest.size(); ++i) {
        const bool isControl = static_cast<unsigned char>(rest[i]) < ' ';
        if (isControl || rest[i] == ',' || rest.substr(i).starts_with("//")) return Trim(rest.substr(0, i));
    }
    return Trim(rest);
}

}  // namespace

CalLine SplitCalLine(std::string_view line, std::string& section) {
    const std::size_t open = line.find('[');
    if (open != std::string_view::npos) {
        const std::size_t close = line.find(']');
        const bool closed = close != std::string_view::npos && close > open;
        section = closed ? line.substr(open + 1, close - open - 1) : std::string_view();
        return {};
    }
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) return {};
    return {line.substr(0, equals), ValueText(line.substr(equals + 1))};
}

void CalibrationDataClass::ParseLineIntoCalClass(std::string_view line, CalSection& section) {
    const auto [key, value] = SplitCalLine(line, section.name);
    if (section.name == "Comment" && !line.starts_with('[')) {
        Comment += line;
        return;
    }
    UpdateChannel(section);
    const bool channelExists = IsChannel(section.channel);
    for (const KeyRule& rule : kKeys) {
        const auto index = MatchKey(rule, key);
        if (!index) continue;
        if (channelExists || !rule.ofChannel) rule.store({*this, section, *index}, value);
        return;
    }
}

}  // namespace marisonde
