#include "decode/Decoders.h"

#include <array>

#include "common/ConversionUtils.h"
#include "common/Numbers.h"
#include "decode/RecordDecoders.h"

namespace marisonde {

namespace detail {

std::string_view BehindFirstComma(std::string_view line) {
    const std::size_t comma = line.find(',');
    return comma == std::string_view::npos ? std::string_view{} : line.substr(comma + 1);
}

}  // namespace detail

namespace {

using enum LineKind;

void DecodeTidalTimed(std::string_view line, RawSample& sample) {
    sample.ElapsedHundredths = Val(line) * 100;
    detail::DecodeTidalDecimal(detail::BehindFirstComma(line), sample);
}

void DecodeCorvaneTimed(std::string_view line, RawSample& sample) {
    // These lines may begin with words, the number stands somewhere behind them.
    sample.ElapsedHundredths = FirstNumber(line) * 100;
    detail::DecodeCorvaneVerboseDecimal(detail::BehindFirstComma(line), sample);
}

struct RecordDecoder {
    LineKind kind = Other;
    void (*decode)(std::string_view, RawSample&) = nullptr;
    bool makesSample = false;
};

/// What becomes of each kind; kinds without a row have no decoder.
constexpr RecordDecoder kRows[] = {
    {CorvaneHex, detail::DecodeCorvaneSample, true},
    {CorvaneHexHundredths, detail::DecodeCorvaneHundredths, true},
    {CorvaneVerboseHex, detail::DecodeCorvaneVerbose, true},
    {CorvaneVerbose, detail::DecodeCorvaneVerboseDecimal, true},
    {CorvaneVerboseTimed, DecodeCorvaneTimed, true},
    {Delph, detail::DecodeDelph, true},
    {DelphFull, detail::DecodeDelphFull, true},
    {LTidalHex, detail::DecodeLTidal, true},
    {NTidalHex, detail::DecodeNTidal, true},
    {TidalExtraHex, detail::DecodeTidalExtra, false},  // adds to the sample before, makes none of its own
    {TidalTimed, DecodeTidalTimed, true},
    {TidalShort, detail::DecodeTidalDecimal, true},
    {TidalFull, detail::DecodeTidalDecimal, true},
};

constexpr std::size_t kKinds = 19;

/// The rows above at the numbers of their kinds.
constexpr auto kDecoders = [] {
    std::array<RecordDecoder, kKinds> byKind{};
    for (const RecordDecoder& row : kRows) byKind[static_cast<std::size_t>(row.kind)] = row;
    return byKind;
}();

}  // namespace

bool ParseRawLine(std::string_view line, InstTypeCode instType, RawSample& sample) {
    return ParseRawLine(line, ClassifyLine(line), instType, sample);
}

bool ParseRawLine(std::string_view line, LineKind kind, InstTypeCode instType, RawSample& sample) {
    const auto number = static_cast<std::size_t>(kind);
    if (number >= kDecoders.size()) return false;
    if (const RecordDecoder& row = kDecoders[number]; row.decode) {
        row.decode(line, sample);
        return row.makesSample;
    }
    if (kind != Other || !IsTidalFamily(instType) || !HasNumberChars(line)) return false;
    detail::DecodeTidalDecimal(line, sample);
    return true;
}

bool DecodeCorvaneHex(std::string_view line, RawSample& sample) {
    const LineKind kind = ClassifyLine(line);
    const bool mine = kind == CorvaneHex || kind == CorvaneHexHundredths || kind == CorvaneVerboseHex ||
                      kind == CorvaneVerbose;
    return mine && ParseRawLine(line, kind, InstTypeCode::Unknown, sample);
}

}  // namespace marisonde
