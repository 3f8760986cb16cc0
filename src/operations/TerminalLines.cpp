#include "operations/TerminalLines.h"

#include <array>

#include "calibration/Sentinel.h"
#include "common/DateText.h"
#include "common/DepthUnits.h"
#include "common/Numbers.h"

namespace marisonde {

namespace {

constexpr std::size_t kTimeWidth = 19;
constexpr std::size_t kCountWidth = 6;
constexpr std::size_t kGainWidth = 2;
constexpr std::size_t kValueWidth = 11;
constexpr std::size_t kNamedWidth = 20;  ///< a value with its name
constexpr int kGainBits = 7;

std::string ValueText(double value, int decimals) {
    return IsValue(value) ? FixedText(value, decimals) : "---";
}

double DepthShown(const CalibratedSample& sample, const TerminalView& view) {
    return ShownDepth(sample.Depth, view.metres);
}

/// Lines of normalised signals hold one count for each channel, verbose lines signal and reference.
bool IsNormalised(LineKind kind) {
    return kind == LineKind::CorvaneHex || kind == LineKind::CorvaneHexHundredths;
}

void AppendCounts(std::string& line, LineKind kind, const RawSample& raw, std::size_t channels) {
    const bool normalised = IsNormalised(kind);
    for (std::size_t ch = 0; ch < channels; ++ch) {
        line += PadRight(std::to_string(normalised ? raw.Snorm[ch] : raw.Sig[ch]), kCountWidth);
        if (!normalised) line += PadRight(std::to_string(raw.Ref[ch]), kCountWidth);
    }
}

std::string CorvaneLine(LineKind kind, InstTypeCode model, const RawSample& raw,
                        const CalibratedSample& sample, const TerminalView& view) {
    const auto channels = static_cast<std::size_t>(ChannelSlots(model));
    std::string line = PadRight(DateText(sample.Time), kTimeWidth);
    AppendCounts(line, kind, raw, channels);
    for (std::size_t ch = 0; ch < channels; ++ch)
        line += PadRight(std::to_string(raw.Gain[ch] & kGainBits), kGainWidth);
    for (std::size_t ch = 0; ch < channels; ++ch) {
        const double bb = view.sigmaCorrected ? sample.bb[ch] : sample.bbUncorr[ch];
        line += PadRight(sample.Valid[ch] ? ValueText(bb, 5) : "No Data", kValueWidth);
    }
    line += PadRight(ValueText(DepthShown(sample, view), 2), kValueWidth);
    return line + ValueText(sample.Temp, 2);
}

std::string CorvaneGroups(LineKind kind, InstTypeCode model, const TerminalView& view) {
    const auto channels = static_cast<std::size_t>(ChannelSlots(model));
    const auto backscatter = static_cast<std::size_t>(ChannelsShown(model));
    std::string line(kTimeWidth, ' ');
    line += IsNormalised(kind) ? PadRight("Counts", channels * kCountWidth)
                               : PadRight("Signal and reference", 2 * channels * kCountWidth);
    line += PadRight("Gains", channels * kGainWidth);
    line += PadRight(view.sigmaCorrected ? "Sigma-corrected, 1/m" : "Not corrected, 1/m",
                     backscatter * kValueWidth);
    return line + "Fluorescence";
}

std::string CorvaneColumns(LineKind kind, InstTypeCode model, const CalibrationDataClass& cal,
                           const TerminalView& view) {
    const int channels = ChannelSlots(model);
    std::string line = PadRight("Date and time", kTimeWidth);
    for (int ch = 1; ch <= channels; ++ch) {
        const std::string number = std::to_string(ch);
        line += PadRight(IsNormalised(kind) ? number : "S" + number, kCountWidth);
        if (!IsNormalised(kind)) line += PadRight("R" + number, kCountWidth);
    }
    for (int ch = 1; ch <= channels; ++ch) line += PadRight(std::to_string(ch), kGainWidth);
    for (int ch = 0; ch < channels; ++ch)
        line += PadRight(cal.ChannelName(ch).substr(0, kValueWidth - 1), kValueWidth);
    line += PadRight(view.metres ? "Depth, m" : "Depth, ft", kValueWidth);
    return line + "Temp, C";
}

std::string TidalLine(InstTypeCode model, const CalibratedSample& sample, const TerminalView& view) {
    struct Named {
        std::string_view name;
        double value;
        int decimals;
    };
    const bool corrected = view.sigmaCorrected;
    const std::array values{
        Named{"a = ", sample.a, 5},
        Named{"bb = ", corrected ? sample.bb[0] : sample.bbUncorr[0], 5},
        Named{"Beta140 = ", corrected ? sample.beta[0] : sample.betaUncorr[0], 7},
        Named{"Depth = ", DepthShown(sample, view), 2},
        Named{"K = ", sample.K, 5},
        Named{"TrT = ", sample.TransNorm, 1},
    };
    std::string line;
    for (const Named& named : values) {
        // Absorption is measured by the l-Tidal alone.
        if (named.name == "a = " && model != InstTypeCode::LTidal) continue;
        line += PadRight(std::string(named.name) + ValueText(named.value, named.decimals), kNamedWidth);
    }
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

}  // namespace

std::string PadRight(std::string_view text, std::size_t width) {
    std::string padded(text);
    if (padded.size() < width) padded.resize(width, ' ');
    return padded;
}

std::string TerminalLine(LineKind kind, InstTypeCode model, const RawSample& raw,
                         const CalibratedSample& sample, const TerminalView& view) {
    if (IsCorvaneFamily(model)) return CorvaneLine(kind, model, raw, sample, view);
    if (IsTidalFamily(model)) return TidalLine(model, sample, view);
    return "";
}

std::string TerminalHeadings(LineKind kind, InstTypeCode model, const CalibrationDataClass& cal,
                             const TerminalView& view) {
    if (!IsCorvaneFamily(model)) return "";
    return CorvaneGroups(kind, model, view) + "\n" + CorvaneColumns(kind, model, cal, view);
}

}  // namespace marisonde
