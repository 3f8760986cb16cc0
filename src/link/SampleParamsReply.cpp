#include <algorithm>
#include <array>

#include "common/ConversionUtils.h"
#include "common/Numbers.h"
#include "link/ReplyParsers.h"
#include "link/ReplyText.h"

namespace marisonde {

namespace {

/// When a line of this kind is the last one that the model sends.
enum class Ends { Never, DelphOrTidal, WithoutShutter, Always, Done };

struct ParamRule {
    std::string_view word;  ///< lower case
    void (*take)(SampleParams& params, std::string_view lowerLine, double value);
    Ends ends = Ends::Never;
};

void TakeRate(SampleParams& params, std::string_view /*line*/, double value) {
    params.SamplePeriod = value == 0 ? 1.0F : static_cast<float>(1 / value);
}

void TakeBurstLength(SampleParams& params, std::string_view /*line*/, double value) {
    params.BurstLength = ToInt32(value);
}

using Text = std::string_view;

// Order matters: the first word that a line holds decides.
constexpr std::array kParamRules{
    ParamRule{"period:", [](SampleParams& p, Text, double v) { p.SamplePeriod = static_cast<float>(v); }},
    ParamRule{"rate:", TakeRate},
    ParamRule{"delay:", [](SampleParams& p, Text, double v) { p.StartDelay = ToInt32(v); }},
    ParamRule{"memory full", [](SampleParams& p, Text, double v) { p.SleepOnFull = v != 0; }},
    ParamRule{" power", [](SampleParams& p, Text, double v) { p.PowerFlag = v != 0; }},
    ParamRule{"warmup time", [](SampleParams& p, Text, double v) { p.WarmupTime = ToInt32(v); }},
    ParamRule{"burst length", TakeBurstLength},
    ParamRule{"burst duration", TakeBurstLength},
    ParamRule{" cycle", [](SampleParams& p, Text, double v) { p.BurstCycle = static_cast<float>(v); },
              Ends::DelphOrTidal},
    ParamRule{"total", [](SampleParams& p, Text, double v) { p.TotalDuration = static_cast<float>(v); },
              Ends::WithoutShutter},
    ParamRule{" mode", [](SampleParams& p, Text line, double) { p.BurstMode = Holds(line, "on"); }},
    ParamRule{" direction",
              [](SampleParams& p, Text line, double) { p.ShutterDirection = !Holds(line, "ccw"); },
              Ends::Always},
    ParamRule{" enabled", [](SampleParams& p, Text line, double) { p.ShutterEnabled = Holds(line, "1"); }},
    ParamRule{"shutter state", [](SampleParams&, Text, double) {}, Ends::Done},
    ParamRule{"close time",
              [](SampleParams& p, Text, double v) { p.ShutterCloseTime = static_cast<float>(v); }},
    ParamRule{"omatic open", [](SampleParams& p, Text, double v) { p.ShutterAutoOpen = v != 0; }},
    ParamRule{"format", [](SampleParams& p, Text line, double) { p.DataFormatHex = Holds(line, "hex"); }},
};

bool EndsReply(Ends ends, const InstIdentity& inst) {
    switch (ends) {
        case Ends::Never:
            return false;
        case Ends::DelphOrTidal:
            return IsDelphFamily(inst.type) || IsTidalFamily(inst.type);
        case Ends::WithoutShutter:
            return !HasShutter(inst);
        case Ends::Always:
        case Ends::Done:
            return true;
    }
    return false;
}

}  // namespace

void ParseSampleParams(InstrumentLink& window) {
    DataWindowState& state = window.State;
    state.Params.ShutterEnabled = true;
    for (const std::string& line : ReplyLines(state)) {
        const std::string lower = LowerCase(line);
        const auto* const rule = std::find_if(kParamRules.begin(), kParamRules.end(),
                                              [&](const ParamRule& row) { return Holds(lower, row.word); });
        if (rule == kParamRules.end()) continue;
        rule->take(state.Params, lower, TailValue(lower));
        if (!EndsReply(rule->ends, window.Identity())) continue;
        state.ParamsReplyDone = true;
        // The state of the shutter may be told in the middle; more lines can follow it.
        if (rule->ends != Ends::Done) state.CurrentCommand.clear();
    }
}

}  // namespace marisonde
