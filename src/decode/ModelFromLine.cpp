#include <array>
#include <utility>

#include "decode/Decoders.h"
#include "decode/RecordDecoders.h"

namespace marisonde {

namespace {

using enum LineKind;
using enum InstTypeCode;

constexpr std::array<std::pair<LineKind, InstTypeCode>, 7> kModelsByKind{{
    {LTidalHex, LTidal},
    {NTidalHex, NTidal},
    {TidalExtraHex, XTidal},
    {TidalShort, XTidal},
    {TidalFull, XTidal},
    {DelphFull, Fathom2},
    {LineKind::Delph, Fathom2},
}};

/// A run of "0" characters that tells something; the position counts from 1.
struct ZeroRun {
    int position;
    int count;
};

struct GainRuns {
    ZeroRun noTelling;     ///< the gains do not tell: the counts have to
    ZeroRun twoChannels;   ///< no gain beyond the slots of a two-channel model
    ZeroRun fourChannels;  ///< no gain beyond four channels
};

constexpr GainRuns kSampleGains{{45, 6}, {46, 5}, {47, 4}};
// Not where the gain digits of this form begin, two further on; it is by these places that raw files are told
// apart.
constexpr GainRuns kHundredthsGains{{14, 8}, {48, 3}, {49, 2}};

bool ZerosAt(std::string_view line, ZeroRun run) {
    constexpr std::string_view kZeros = "00000000";
    const auto start = static_cast<std::size_t>(run.position - 1);
    const auto length = static_cast<std::size_t>(run.count);
    return start < line.size() && line.substr(start, length) == kZeros.substr(0, length);
}

InstTypeCode ModelOfLastSlot(int slot) {
    if (slot == 2) return Corvane2;
    if (slot == 3) return Corvane4;
    return slot == 5 || slot == 6 || slot == 7 ? Corvane6 : Unknown;
}

/// The last of the first `slots` slots that is not 0; -1 when all are.
template <typename Values>
int LastNonzero(const Values& values, int slots) {
    int slot = slots - 1;
    while (slot >= 0 && values[static_cast<std::size_t>(slot)] == 0) --slot;
    return slot;
}

InstTypeCode ModelFromSample(std::string_view line, LineKind kind, const GainRuns& gains) {
    if (ZerosAt(line, gains.noTelling)) {
        // With no gain to go by, the slots that carry counts decide.
        RawSample sample;
        ParseRawLine(line, kind, Unknown, sample);
        return ModelOfLastSlot(LastNonzero(sample.Snorm, 6));
    }
    if (ZerosAt(line, gains.twoChannels)) return Corvane2;
    return ZerosAt(line, gains.fourChannels) ? Corvane4 : Corvane6;
}

InstTypeCode ModelFromVerbose(std::string_view line, LineKind kind) {
    RawSample sample;
    ParseRawLine(line, kind, Unknown, sample);
    return ModelOfLastSlot(LastNonzero(sample.Gain, 8));
}

}  // namespace

InstTypeCode InstTypeFromLine(std::string_view line) {
    const LineKind kind = ClassifyLine(line);
    switch (kind) {
        case CorvaneHex:
            return ModelFromSample(line, kind, kSampleGains);
        case CorvaneHexHundredths:
            return ModelFromSample(line, kind, kHundredthsGains);
        case CorvaneVerboseHex:
        case CorvaneVerbose:
        case CorvaneVerboseTimed:
            return ModelFromVerbose(line, kind);
        default:
            break;
    }
    for (const auto& [rowKind, model] : kModelsByKind)
        if (rowKind == kind) return model;
    return Unknown;
}

}  // namespace marisonde
