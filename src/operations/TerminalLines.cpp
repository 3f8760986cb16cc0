#include "operations/TerminalLines.h"

#include <array>
#include <cmath>

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
    return std::isfinite(value) && std::fabs(value) < kSentinel ? FixedText(value, decimals) : "---";
}

double DepthShown(const CalibratedSample& sample, const TerminalView& view) {
    return view.metres ? sample.Depth : FeetFromMeters(sample.Depth);
}

/// Lines of normalised signals hold one count for each channel, verbose lines signal and reference.
void AppendCounts(std::string& line, LineKind kind, const RawSample& raw, std::size_t channels) {
    const bool normalised = kind == LineKind::CorvaneHex || kind == LineKind::CorvaneHexHundredths;
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

}  // namespace marisonde
