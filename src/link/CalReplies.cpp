#include <algorithm>
#include <array>
#include <string>

#include "common/ConversionUtils.h"
#include "common/Numbers.h"
#include "link/ReplyParsers.h"
#include "link/ReplyText.h"

namespace marisonde {

namespace {

// --- global values ------------------------------------------------------------------------------------

/// What a GCF line may set: the window too, since firmware and id belong to it.
struct GcfTarget {
    DataWindowState& state;
    CalibrationDataClass& cal;
};

struct GcfRule {
    std::string_view word;  ///< lower case
    void (*take)(GcfTarget& target, std::string_view line, std::string_view behind);
};

void TakeCalTime(GcfTarget& target, std::string_view /*line*/, std::string_view behind) {
    const bool written = std::count(behind.begin(), behind.end(), '/') >= 2;
    if (written) {
        if (const auto date = WrittenDate(behind)) target.cal.CalTime = *date;
    } else if (!NumericTail(behind).empty()) {
        target.cal.CalTime = ParseInstrumentDate(behind, target.cal.InstType);
    }
}

// Order matters: the first word that a line holds decides.
constexpr std::array kGcfRules{
    GcfRule{"maximum depth:", [](GcfTarget& t, std::string_view line,
                                 std::string_view) { t.cal.MaxDepth = static_cast<float>(TailValue(line)); }},
    GcfRule{"s/n: ", [](GcfTarget& t, std::string_view, std::string_view behind) { t.cal.Serial = behind; }},
    GcfRule{"config:",
            [](GcfTarget& t, std::string_view, std::string_view behind) { t.cal.Config = behind; }},
    GcfRule{"cal time:", TakeCalTime},
    GcfRule{"firmware", [](GcfTarget& t, std::string_view line,
                           std::string_view) { t.state.FirmwareVersion = NumberText(FirstNumber(line)); }},
    GcfRule{"cal temp", [](GcfTarget& t, std::string_view line,
                           std::string_view) { t.cal.CalTemp = static_cast<float>(FirstNumber(line)); }},
    GcfRule{"model:", [](GcfTarget& t, std::string_view line,
                         std::string_view) { t.cal.InstType = InstTypeFromName(ModelFromReply(line)); }},
    GcfRule{"depth offset:",
            [](GcfTarget& t, std::string_view line, std::string_view) {
                t.cal.DepthOff = static_cast<float>(FirstNumber(line));
            }},
    GcfRule{"depth coefficient",
            [](GcfTarget& t, std::string_view line, std::string_view) {
                t.cal.DepthCal = static_cast<float>(FirstNumber(line));
            }},
    GcfRule{"id:",
            [](GcfTarget& t, std::string_view, std::string_view behind) {
                t.cal.Label = behind;
                t.state.InstId = behind;
            }},
};

// --- channel values -----------------------------------------------------------------------------------

struct ChannelRule {
    std::string_view word;
    void (*take)(CalibrationDataClass& cal, int ch, double value);
};

// Order matters: "muRho" is taken by "mu", as every unit in use is read.
constexpr std::array kChannelRules{
    ChannelRule{"mu", [](CalibrationDataClass& cal, int ch, double v) { cal.SetMu(ch, v); }},
    ChannelRule{"Rnom", [](CalibrationDataClass& cal, int ch, double v) { cal.SetRNominal(ch, v); }},
    ChannelRule{"Roo", [](CalibrationDataClass& cal, int ch, double v) { cal.SetROutOff(ch, v); }},
    ChannelRule{"kbb", [](CalibrationDataClass& cal, int ch, double v) { cal.EditChannel(ch).beta2bb = v; }},
    ChannelRule{"kc", [](CalibrationDataClass& cal, int ch, double v) { cal.EditChannel(ch).bb2c = v; }},
    ChannelRule{"kSigmaExp", [](CalibrationDataClass& cal, int ch, double v) { cal.SetSigmaExp(ch, v); }},
    ChannelRule{"muRho", [](CalibrationDataClass& cal, int ch, double v) { cal.EditChannel(ch).MuRho = v; }},
    ChannelRule{"kSigma0", [](CalibrationDataClass& cal, int ch, double v) { cal.SetSigma(ch, 0, v); }},
    ChannelRule{"kSigma1", [](CalibrationDataClass& cal, int ch, double v) { cal.SetSigma(ch, 1, v); }},
    ChannelRule{"kSigma2", [](CalibrationDataClass& cal, int ch, double v) { cal.SetSigma(ch, 2, v); }},
    ChannelRule{"Kt",
                [](CalibrationDataClass& cal, int ch, double v) { cal.EditChannel(ch).bTempCoeff = v; }},
};

// deltaLambda and the virtual-channel numbers have whole values, read from the first digit of the line.
constexpr std::array kFactoryRules{
    ChannelRule{"deltaLambda", [](CalibrationDataClass& cal, int ch,
                                  double v) { cal.EditChannel(ch).bDeltaLambda = ToInt16(v); }},
    ChannelRule{"ChEx", [](CalibrationDataClass& cal, int ch, double v) { cal.SetChEx(ch, ToInt16(v)); }},
    ChannelRule{"ChRep", [](CalibrationDataClass& cal, int ch, double v) { cal.SetChRep(ch, ToInt16(v)); }},
};

constexpr bool InArrays(int channel) {
    return channel >= 0 && channel < kChannelSlots;
}

/// "' G3: gain: dark: nominal: fluorescence"; fields that are not there keep their values.
void TakeGainRow(std::string_view line, std::size_t colon, int channel, CalibrationDataClass& cal) {
    const int step = FirstInteger(line.substr(0, colon));
    if (step < 1 || step > 5) return;
    const auto index = static_cast<std::size_t>(step);
    std::string_view rest = line.substr(colon + 1);
    ChannelPlain& plain = cal.EditChannel(channel);
    const std::array<GainOffsets*, 3> offsets{&plain.DarkOffset, &plain.NomOffset, &plain.FlOffset};
    for (int field = 0; field < 4; ++field) {
        const std::size_t end = rest.find(':');
        const double value = Val(rest.substr(0, end));
        if (field == 0) {
            cal.SetGain(channel, step, value);
        } else {
            (*offsets[static_cast<std::size_t>(field - 1)])[index] = ToInt16(value);
        }
        if (end == std::string_view::npos) return;
        rest.remove_prefix(end + 1);
    }
}

/// "'Channel 3 (bb488)": the number behind the first blank, the name in parentheses.
void BeginChannel(std::string_view line, DataWindowState& state, CalibrationDataClass& cal) {
    const std::size_t blank = line.find(' ', line.find("Channel"));
    state.ReplyChannel = blank == std::string_view::npos ? -1 : ToInt16(Val(line.substr(blank + 1))) - 1;
    const std::size_t open = line.find('(');
    const std::size_t close = line.rfind(')');
    if (!InArrays(state.ReplyChannel) || open == std::string_view::npos || close == std::string_view::npos ||
        close < open)
        return;
    // Through the reader of calibration text, which also takes the wavelength out of the name.
    CalSection section{"Channel " + std::to_string(state.ReplyChannel + 1), state.ReplyChannel, false};
    cal.ParseLineIntoCalClass("Name=" + std::string(line.substr(open + 1, close - open - 1)), section);
}

void TakeFactoryValue(std::string_view line, int channel, CalibrationDataClass& cal) {
    const auto* const rule = std::find_if(kFactoryRules.begin(), kFactoryRules.end(),
                                          [&](const ChannelRule& row) { return Holds(line, row.word); });
    if (rule != kFactoryRules.end()) rule->take(cal, channel, FirstNumber(line));
}

template <class TakeValue>
void WalkChannelReply(InstrumentLink& window, CalibrationDataClass& cal, TakeValue takeValue) {
    DataWindowState& state = window.State;
    for (const std::string& line : ReplyLines(state)) {
        if (Holds(line, "Channel")) {
            BeginChannel(line, state, cal);
        } else if (InArrays(state.ReplyChannel)) {
            takeValue(line, state.ReplyChannel, cal);
        }
    }
}

}  // namespace

void ParseGcfReply(InstrumentLink& window, CalibrationDataClass& cal) {
    GcfTarget target{window.State, cal};
    for (const std::string& line : ReplyLines(window.State)) {
        const std::string lower = LowerCase(line);
        const auto* const rule = std::find_if(kGcfRules.begin(), kGcfRules.end(),
                                              [&](const GcfRule& row) { return Holds(lower, row.word); });
        if (rule == kGcfRules.end()) continue;
        const std::string_view behind =
            std::string_view(line).substr(lower.find(rule->word) + rule->word.size());
        rule->take(target, line, Trim(behind));
    }
}

void ParseChannelValue(std::string_view line, int channel, CalibrationDataClass& cal) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || !InArrays(channel)) return;
    if (Holds(line, "' G")) return TakeGainRow(line, colon, channel, cal);
    const auto* const rule = std::find_if(kChannelRules.begin(), kChannelRules.end(),
                                          [&](const ChannelRule& row) { return Holds(line, row.word); });
    if (rule != kChannelRules.end()) rule->take(cal, channel, Val(line.substr(colon + 1)));
}

void ParseCclReply(InstrumentLink& window, CalibrationDataClass& cal) {
    WalkChannelReply(window, cal, ParseChannelValue);
}

void ParseCcfReply(InstrumentLink& window, CalibrationDataClass& cal) {
    WalkChannelReply(window, cal, TakeFactoryValue);
}

}  // namespace marisonde
