// Writing calibration text: the layouts of the three families as tables of lines.
#include <array>
#include <cstdint>
#include <type_traits>

#include "calibration/CalibrationDataClass.h"
#include "common/ConversionUtils.h"
#include "common/DateText.h"
#include "common/Numbers.h"
#include "common/Version.h"

namespace marisonde {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kGeneralHeading = "[General]          //Saved by Marisonde ";
constexpr std::string_view kOldSigmaNote = "\t//not used by v2.7 and later";
constexpr int kDigits = 6;

/// What a line of a layout is made from.
struct Source {
    const CalibrationDataClass& cal;
    bool salt;
    int ch = 0;
    int index = 0;
    [[nodiscard]] const ChannelCal& channel() const { return cal.Channel(ch); }
    [[nodiscard]] const AttenuationCal& attenuation() const { return cal.Attenuation(ch); }
    [[nodiscard]] std::size_t at() const { return static_cast<std::size_t>(index); }
};

using Append = void (*)(std::string&, const Source&);

/// A line "key=value"; with `last` at or above `first`, one line for each digit behind the key, and the digit
/// plus `shift` is the index.
struct Line {
    std::string_view key;
    Append append;
    bool (*wanted)(const Source&) = nullptr;
    int first = 0, last = -1;
    int shift = 0;
};

enum class Digits { All, Six };

template <Digits digits, class T>
void AppendValue(std::string& out, const T& value) {
    if constexpr (std::is_same_v<T, std::string>) {
        out += value;
    } else if constexpr (std::is_integral_v<T>) {
        out += std::to_string(value);
    } else if constexpr (digits == Digits::Six) {
        AppendNumber(out, static_cast<T>(RoundSignificant(static_cast<double>(value), kDigits)));
    } else {
        AppendNumber(out, value);
    }
}

template <auto Field, Digits digits = Digits::Six>
void Object(std::string& out, const Source& from) {
    AppendValue<digits>(out, from.cal.*Field);
}
template <auto Field>
void Channel(std::string& out, const Source& from) {
    AppendValue<Digits::Six>(out, from.channel().*Field);
}
template <auto Field>
void ChannelAt(std::string& out, const Source& from) {
    AppendValue<Digits::Six>(out, (from.channel().*Field)[from.at()]);
}
template <auto Field>
void Attenuation(std::string& out, const Source& from) {
    AppendValue<Digits::All>(out, from.attenuation().*Field);
}
template <auto Field>
void AttenuationAt(std::string& out, const Source& from) {
    AppendValue<Digits::All>(out, (from.attenuation().*Field)[from.at()]);
}

void BreakPoint(std::string& out, const Source& from) {
    AppendNumber(out, from.attenuation().KP(from.index));
}
void OldSigma(std::string& out, const Source& from) {
    AppendValue<Digits::Six>(out, from.cal.OldSigmaK1(from.ch, from.salt));
    out += kOldSigmaNote;
}
void Model(std::string& out, const Source& from) {
    out += InstTypeName(from.cal.InstType);
}

/// "MM/DD/YY hh:mm:ss"; the day of the older layouts has no leading zero.
void AppendDate(std::string& out, double date, bool paddedDay) {
    constexpr std::size_t kDayPlace = 3;
    std::string text = DateText(date);
    if (!paddedDay && text[kDayPlace] == '0') text.erase(kDayPlace, 1);
    out += text;
}

/// Seconds since the family's epoch, then the same time in words.
void AppendCalTime(std::string& out, double date, double epoch, bool paddedDay) {
    constexpr double kSecondsPerDay = 86400;
    out += std::to_string(static_cast<std::int64_t>(RoundHalfEven((date - epoch) * kSecondsPerDay)));
    out += " (";
    AppendDate(out, date, paddedDay);
    out += ')';
}

void CalTime1970(std::string& out, const Source& from) {
    AppendCalTime(out, from.cal.CalTime, kDay1970, false);
}
void CalTime1980(std::string& out, const Source& from) {
    AppendCalTime(out, from.cal.CalTime, kDay1980, true);
}
void ModificationTime(std::string& out, const Source& from) {
    AppendDate(out, from.cal.ModificationTime, true);
}

bool HasMaxDepth(const Source& from) {
    return from.cal.MaxDepth != 0;
}
bool HasCalTime(const Source& from) {
    return from.cal.CalTime != 0;
}
bool HasModificationTime(const Source& from) {
    return from.cal.ModificationTime != 0;
}
bool HasOffsets(const Source& from) {
    return from.cal.HasOffsets();
}
bool HasFluorescenceOffsets(const Source& from) {
    return from.cal.InstType == InstTypeCode::Corvane6 && from.cal.HasOffsets();
}

using Cal = CalibrationDataClass;

constexpr Line kDeviceType{"DeviceType", Model};
constexpr Line kSerial{"Serial", Object<&Cal::Serial>};
constexpr Line kLabel{"Label", Object<&Cal::Label>};
constexpr Line kConfig{"Config", Object<&Cal::Config>};
constexpr Line kMaxDepth{"MaxDepth", Object<&Cal::MaxDepth>};
constexpr Line kMaxDepthIfAny{"MaxDepth", Object<&Cal::MaxDepth>, HasMaxDepth};
constexpr Line kModificationTime{"ModificationTime", ModificationTime, HasModificationTime};
constexpr Line kDepthCal{"DepthCal", Object<&Cal::DepthCal>};
constexpr Line kDepthOff{"DepthOff", Object<&Cal::DepthOff>};
constexpr Line kCalTemp{"CalTemp", Object<&Cal::CalTemp>};
constexpr Line kGains{"Gain", ChannelAt<&ChannelCal::gain>, nullptr, 1, 5};
constexpr Line kMu{"Mu", Channel<&ChannelCal::Mu>};
constexpr Line kOldSigma{"Sigma1", OldSigma};
constexpr Line kSigmas{"Sigma", ChannelAt<&ChannelCal::Sigma>, nullptr, 2, 3, -1};
constexpr Line kSigmaExp{"SigmaExp", Channel<&ChannelCal::SigmaExp>};
constexpr Line kMuRho{"MuRho", Channel<&ChannelCal::MuRho>};
constexpr Line kTempCoeff{"TempCoeff", Channel<&ChannelCal::bTempCoeff>};
constexpr Line kName{"Name", Channel<&ChannelCal::name>};

constexpr std::array kCorvaneGeneral{
    kDeviceType,       kSerial,        kLabel,
    kConfig,           kMaxDepthIfAny, Line{"CalTime", CalTime1970, HasCalTime},
    kModificationTime, kDepthCal,      kDepthOff,
    kCalTemp};
constexpr std::array kCorvaneChannel{
    kName,
    kGains,
    kMu,
    kOldSigma,
    kSigmas,
    kSigmaExp,
    Line{"RNominal", Channel<&ChannelCal::RNominal>},
    Line{"Beta2Bb", Channel<&ChannelCal::beta2bb>},
    kMuRho,
    kTempCoeff,
    Line{"Offset", ChannelAt<&ChannelCal::DarkOffset>, HasOffsets, 1, 5},
    Line{"NomOffset", ChannelAt<&ChannelCal::NomOffset>, HasOffsets, 1, 5},
    Line{"FlOffset", ChannelAt<&ChannelCal::FlOffset>, HasFluorescenceOffsets, 1, 5},
};

constexpr std::array kDelphGeneral{kDeviceType, kSerial,   kLabel,
                                   kConfig,     kMaxDepth, Line{"CalTime", CalTime1970, HasCalTime}};
constexpr std::array kDelphDepth{
    Line{"kp1", Object<&Cal::kp1, Digits::All>}, Line{"kp2", Object<&Cal::kp2, Digits::All>},
    Line{"P0", Object<&Cal::P0, Digits::All>},   Line{"TP0", Object<&Cal::TP0, Digits::All>},
    Line{"kD1", Object<&Cal::kD1, Digits::All>}, Line{"kD2", Object<&Cal::kD2, Digits::All>},
};
constexpr std::array kDelphAttenuation{
    kName,
    Line{"Lambda", Attenuation<&AttenuationCal::KLambda>},
    Line{"DeltaLambda", Attenuation<&AttenuationCal::KDeltaLambda>},
    Line{"L", Attenuation<&AttenuationCal::KL>},
    Line{"S0", Attenuation<&AttenuationCal::KS0>},
    Line{"R0", Attenuation<&AttenuationCal::KR0>},
    Line{"kT", AttenuationAt<&AttenuationCal::KkT>, nullptr, 0, 5},
    Line{"P", BreakPoint, nullptr, 1, 2},
    Line{"kTauPX", Attenuation<&AttenuationCal::KkTauPX>},
    Line{"kTauP", AttenuationAt<&AttenuationCal::KkTauP>, nullptr, 0, 5},
    Line{"Tau0", Attenuation<&AttenuationCal::KTau0>},
    Line{"TPW", Attenuation<&AttenuationCal::KTPW>},
};

constexpr std::array kTidalGeneral{
    kDeviceType,       kSerial,   kLabel,   kConfig, kMaxDepthIfAny, Line{"CalTime", CalTime1980, HasCalTime},
    kModificationTime, kDepthCal, kDepthOff};
constexpr std::array kTidalScattering{
    Line{"Lambda", Channel<&ChannelCal::lambda>},
    Line{"DeltaLambda", Channel<&ChannelCal::bDeltaLambda>},
    kGains,
    Line{"Offset", ChannelAt<&ChannelCal::DarkOffset>, nullptr, 1, 5},
    kMu,
    kOldSigma,
    kSigmas,
    kSigmaExp,
    Line{"ChiBb", Channel<&ChannelCal::beta2bb>},
    kTempCoeff,
    kCalTemp,
    kMuRho,
};
constexpr std::array kTidalAttenuation{
    Line{"Lambda", Attenuation<&AttenuationCal::KLambda>},
    Line{"DeltaLambda", Attenuation<&AttenuationCal::KDeltaLambda>},
    Line{"TrNought", Attenuation<&AttenuationCal::TrNought>},
    Line{"TrPure", Attenuation<&AttenuationCal::TrPure>},
    Line{"TrAir", Attenuation<&AttenuationCal::TrAir>},
    Line{"CalTemp", Attenuation<&AttenuationCal::KCalTemp>},
    Line{"Path", Attenuation<&AttenuationCal::KPath>},
    Line{"Chi", AttenuationAt<&AttenuationCal::KChi>, nullptr, 0, 3},
    Line{"BetaPure", Attenuation<&AttenuationCal::betaPure>},
    Line{"TempCoeff", AttenuationAt<&AttenuationCal::KTempCoeff>, nullptr, 0, 5},
    Line{"KDepthCoeff", AttenuationAt<&AttenuationCal::KDepthCoeff>, nullptr, 0, 0},
    Line{"KDepthThreshold", AttenuationAt<&AttenuationCal::KDepthThresh>},
    Line{"KDepthCoeff", AttenuationAt<&AttenuationCal::KDepthCoeff>, nullptr, 1, 1},
};

void AppendLine(std::string& out, std::string_view key, Append append, const Source& from) {
    out += key;
    out += '=';
    append(out, from);
    out += kLineEnd;
}

template <std::size_t n>
void AppendLines(std::string& out, const std::array<Line, n>& lines, Source from) {
    for (const Line& line : lines) {
        if (line.wanted != nullptr && !line.wanted(from)) continue;
        from.index = 0;
        if (line.last < line.first) AppendLine(out, line.key, line.append, from);
        for (int digit = line.first; digit <= line.last; ++digit) {
            from.index = digit + line.shift;
            AppendLine(out, std::string(line.key) + std::to_string(digit), line.append, from);
        }
    }
}

void AppendHeading(std::string& out, std::string_view heading) {
    out.append(heading).append(kLineEnd);
}
void AppendGeneralHeading(std::string& out) {
    out.append(kGeneralHeading).append(kVersion).append(kLineEnd);
}
void AppendBlank(std::string& out) {
    out += kLineEnd;
}

void AppendComment(std::string& out, const CalibrationDataClass& cal) {
    if (cal.Comment.empty()) return;
    AppendHeading(out, "[Comment]");
    AppendHeading(out, cal.Comment);
}

void AppendCorvane(std::string& out, Source from) {
    AppendComment(out, from.cal);
    AppendGeneralHeading(out);
    AppendLines(out, kCorvaneGeneral, from);
    for (from.ch = 0; from.ch < from.cal.ChannelCount(); ++from.ch) {
        AppendBlank(out);
        AppendHeading(out, "[Channel " + std::to_string(from.ch + 1) + "]");
        AppendLines(out, kCorvaneChannel, from);
    }
}

void AppendDelph(std::string& out, Source from) {
    constexpr int kWrittenChannels = 2;
    AppendGeneralHeading(out);
    AppendLines(out, kDelphGeneral, from);
    AppendBlank(out);
    AppendHeading(out, "[Depth]");
    AppendLines(out, kDelphDepth, from);
    AppendBlank(out);
    for (from.ch = 0; from.ch < kWrittenChannels; ++from.ch) {
        AppendHeading(out, "[Attenuation " + std::to_string(from.ch + 1) + "]");
        AppendLines(out, kDelphAttenuation, from);
        AppendBlank(out);
    }
}

void AppendTidal(std::string& out, const Source& from) {
    AppendComment(out, from.cal);
    AppendGeneralHeading(out);
    AppendLines(out, kTidalGeneral, from);
    AppendBlank(out);
    AppendHeading(out, "[Scattering]");
    AppendLines(out, kTidalScattering, from);
    AppendBlank(out);
    AppendHeading(out, "[Attenuation]");
    AppendLines(out, kTidalAttenuation, from);
}

}  // namespace

std::string CalibrationDataClass::CalText(const PureWaterParams& water) const {
    std::string out;
    const Source from{*this, water.MorelSalt()};
    if (IsCorvaneFamily(InstType)) AppendCorvane(out, from);
    if (IsDelphFamily(InstType)) AppendDelph(out, from);
    if (IsTidalFamily(InstType)) AppendTidal(out, from);
    AppendHeading(out, "[End]");
    return out;
}

}  // namespace marisonde
