#include "decode/LineKind.h"

#include <algorithm>
#include <array>
#include <utility>

#include "common/ConversionUtils.h"
#include "common/Numbers.h"

namespace marisonde {

namespace {

using enum LineKind;

constexpr std::array<std::pair<char, LineKind>, 7> kHexKinds{{
    {'D', CorvaneHex},
    {'T', CorvaneHexHundredths},
    {'H', CorvaneHousekeeping},
    {'A', LTidalHex},
    {'C', NTidalHex},
    {'I', TidalExtraHex},
    {'V', CorvaneVerboseHex},
}};

constexpr std::array<std::pair<int, LineKind>, 11> kDecimalKinds{{
    {5, TidalShort},
    {6, TidalTimed},
    {13, TidalTimed},
    {11, TidalFull},
    {12, TidalFull},
    {53, CorvaneVerbose},
    {15, DelphFull},
    {19, Commas19},
    {21, Commas21},
    {8, Delph},
    {16, Commas16},
}};

constexpr int kTimedVerboseCommas = 54;

template <typename Key, std::size_t Rows>
LineKind KindOf(const std::array<std::pair<Key, LineKind>, Rows>& table, Key key) {
    for (const auto& [rowKey, kind] : table)
        if (rowKey == key) return kind;
    return Other;
}

}  // namespace

bool LineChecksumOk(std::string_view line) {
    if (line.size() < 2) return false;
    const std::uint32_t expected = HexVal(line.substr(line.size() - 2));
    std::uint8_t sum = 0;
    for (std::size_t i = 1; i + 2 < line.size(); ++i)
        sum = static_cast<std::uint8_t>(sum + static_cast<unsigned char>(line[i]));
    if (expected == sum) return true;
    // Some firmware counts the "*" in and some leaves it out; both are in the field.
    sum = static_cast<std::uint8_t>(sum + static_cast<unsigned char>(line[0]));
    return expected == sum;
}

int CommaCount(std::string_view line) {
    return static_cast<int>(std::count(line.begin(), line.end(), ','));
}

LineKind ClassifyLine(std::string_view line) {
    if (!line.empty() && line.front() == '*')
        return LineChecksumOk(line) ? KindOf(kHexKinds, line[1]) : Other;
    const int commas = CommaCount(line);
    if (commas == kTimedVerboseCommas) return CorvaneVerboseTimed;
    return HasNumberChars(line) ? KindOf(kDecimalKinds, commas) : Other;
}

}  // namespace marisonde
