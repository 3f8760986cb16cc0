#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "common/DecimalPowers.h"
#include "common/DigitWords.h"

/// Numbers of the shapes that fill the lines of files. Where a number begins and ends is known, so that no
/// digit has to wait for the one before; and no branch asks for its length, which differs from number to
/// number, so that a processor guesses it wrong each time. What has another shape is left to ReadNumber, and
/// what both read is the same value.
///
/// `first` is the first character of a number and `last` the comma behind its last one. kReadBefore
/// characters before `first` and kReadBehind from `last` on are readable.
namespace marisonde {

inline constexpr std::ptrdiff_t kReadBefore = 4;
inline constexpr std::ptrdiff_t kReadBehind = 16;

namespace detail {

/// The powers of ten, and from kNegative on the same with a sign.
inline constexpr std::size_t kNegative = 32;
inline constexpr auto kSignedPowers = [] {
    std::array<double, 2 * kNegative> powers{};
    for (std::size_t i = 0; i < kExactPowers.size(); ++i) {
        powers[i] = kExactPowers[i];
        powers[kNegative + i] = -kExactPowers[i];
    }
    return powers;
}();

inline double AsDouble(std::uint64_t whole) {
    return static_cast<double>(static_cast<std::int64_t>(whole));
}
/// How many characters stand before the first point; 8 when there is none.
inline unsigned BeforePoint(std::uint64_t chars) {
    const std::uint64_t zeros = chars ^ kEachByte * '.';
    const std::uint64_t points = (zeros - kEachByte) & ~zeros & kEachByte * 0x80;
    return points == 0 ? 8 : static_cast<unsigned>(std::countr_zero(points)) / 8;
}

}  // namespace detail

/// A number as a whole mantissa and the power of ten, with the sign, by which it is to be divided: both are
/// exact, so that the quotient is rounded but once.
struct Quotient {
    double mantissa;
    double power;
};

/// "1.234568E-03", "-0.25": one digit, a point, 1 to 8 decimals, and no exponent or E-00 to E-09. Returns
/// whether it was such a number; `number` may hold anything when not.
inline bool ReadScientific(const char* first, const char* last, Quotient& number) {
    using namespace detail;
    constexpr std::uint64_t kExponent = 'E' | '-' << 8 | '0' << 16;
    const unsigned negative = *first == '-';
    const char* const p = first + negative;
    const auto tail = EightChars(last - 4) & 0xFFFFFFFF;
    const unsigned hasExponent = (tail & 0xFFFFFF) == kExponent;
    const unsigned exponent = (static_cast<unsigned>(tail >> 24) - '0') & (0U - hasExponent);
    const unsigned decimals = static_cast<unsigned>(last - p) - 2 - 4 * hasExponent;
    const unsigned whole = static_cast<unsigned>(EightChars(p) & 0xFFFF) - ('0' | '.' << 8);
    if (whole > 9 || decimals - 1 > 7 || exponent > 9) return false;
    const std::uint64_t digits = DigitsOf(EightChars(p + 2), decimals);
    if (NoDigits(digits) != 0) return false;
    number.mantissa = AsDouble(whole * kWholePowers[decimals] + Join(digits));
    number.power = kSignedPowers[decimals + exponent + kNegative * negative];
    return true;
}

/// "171.37": 1 to 7 digits, a point, and 1 to 8 decimals.
inline bool ReadPlain(const char* first, const char* last, double& number) {
    using namespace detail;
    const unsigned negative = *first == '-';
    const char* const p = first + negative;
    const unsigned wholes = BeforePoint(EightChars(p));
    const char* const fraction = p + wholes + 1;
    const std::ptrdiff_t decimals = last - fraction;
    if (wholes < 1 || wholes > 7 || decimals < 1 || decimals > 8) return false;
    const auto count = static_cast<unsigned>(decimals);
    const std::uint64_t whole = DigitsOf(EightChars(p), wholes);
    const std::uint64_t digits = DigitsOf(EightChars(fraction), count);
    if ((NoDigits(whole) | NoDigits(digits)) != 0) return false;
    number = AsDouble(Join(whole) * kWholePowers[count] + Join(digits)) /
             kSignedPowers[count + kNegative * negative];
    return true;
}

/// "45244.925937500003": 1 to 7 digits, a point, and 9 to 15 decimals, as a date has them. Whole part and
/// fraction are added. The fraction is rounded before the sum is; where that could matter, because the sum
/// lies about halfway between two doubles, the number is not read.
inline bool ReadLong(const char* first, const char* last, double& number) {
    using namespace detail;
    const unsigned wholes = BeforePoint(EightChars(first));
    const char* const fraction = first + wholes + 1;
    const std::ptrdiff_t decimals = last - fraction;
    if (wholes < 1 || wholes > 7 || decimals < 9 || decimals > 15) return false;
    const auto more = static_cast<unsigned>(decimals) - 8;
    const std::uint64_t digits = DigitsOf(EightChars(first), wholes);
    const std::uint64_t upper = EightChars(fraction) ^ kEachByte * '0';
    const std::uint64_t lower = DigitsOf(EightChars(fraction + 8), more);
    if ((NoDigits(digits) | NoDigits(upper) | NoDigits(lower)) != 0) return false;
    const double whole = AsDouble(Join(digits));
    const double part = AsDouble(Join(upper) * kWholePowers[more] + Join(lower)) / kExactPowers[8 + more];
    number = whole + part;
    const auto bits = std::bit_cast<std::uint64_t>(number);
    // Below a power of two the doubles stand closer than above it.
    constexpr std::uint64_t kFraction = (std::uint64_t{1} << 52) - 1;
    const double half = (std::bit_cast<double>(bits + 1) - number) / 2;
    const double off = std::abs(part - (number - whole));
    constexpr double kRounding = 0x1p-53;
    return (bits & kFraction) != 0 && std::abs(off - half) > kRounding;
}

}  // namespace marisonde
