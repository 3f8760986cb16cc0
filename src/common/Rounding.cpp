#include <array>
#include <charconv>
#include <cmath>

#include "common/DecimalPowers.h"
#include "common/Numbers.h"

namespace marisonde {

namespace {

/// The decimal exponent e of a finite value other than 0: 10^e <= |value| < 10^(e+1).
int DecimalExponent(double value) {
    const double size = std::fabs(value);
    int exponent = static_cast<int>(std::floor(std::log10(size)));
    // The logarithm may lie on the wrong side of a whole number by its last bit.
    if (size >= std::pow(10.0, exponent + 1)) ++exponent;
    if (size < std::pow(10.0, exponent)) --exponent;
    return exponent;
}

/// For values so small or large that their scale is no exact power of ten: rounds in the decimal text
/// instead.
double RoundInText(double value, int digits) {
    std::array<char, 400> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value,
                                            std::chars_format::scientific, digits - 1);
    if (error != std::errc{}) return value;
    return Val({text.data(), static_cast<std::size_t>(end - text.data())});
}

template <typename Int>
Int ToInteger(double value) {
    if (std::isnan(value)) return 0;
    const double rounded = RoundHalfEven(value);
    if (rounded <= static_cast<double>(std::numeric_limits<Int>::min()))
        return std::numeric_limits<Int>::min();
    if (rounded >= static_cast<double>(std::numeric_limits<Int>::max()))
        return std::numeric_limits<Int>::max();
    return static_cast<Int>(rounded);
}

}  // namespace

double RoundHalfEven(double value) {
    // nearbyint without the call: from 2^52 on every double is whole, below it adding 2^52 leaves no room for
    // a fraction, and the addition itself rounds halves to even.
    constexpr double kWhole = 4503599627370496.0;
    const double size = std::fabs(value);
    return size < kWhole ? std::copysign(size + kWhole - kWhole, value) : value;
}

double RoundDecimals(double value, int decimals) {
    const auto power = static_cast<std::size_t>(std::abs(decimals));
    const double scale = power < detail::kExactPowers.size() ? detail::kExactPowers[power]
                                                             : std::pow(10.0, static_cast<double>(power));
    const double scaled = decimals >= 0 ? value * scale : value / scale;
    if (!std::isfinite(scaled) || !std::isfinite(scale)) return value;
    return decimals >= 0 ? RoundHalfEven(scaled) / scale : RoundHalfEven(scaled) * scale;
}

double RoundSignificant(double value, int digits) {
    if (value == 0 || !std::isfinite(value) || digits < 1) return value;
    const int decimals = digits - 1 - DecimalExponent(value);
    return std::abs(decimals) <= detail::kLastExactPower ? RoundDecimals(value, decimals)
                                                         : RoundInText(value, digits);
}

std::int16_t ToInt16(double value) {
    return ToInteger<std::int16_t>(value);
}

std::int32_t ToInt32(double value) {
    return ToInteger<std::int32_t>(value);
}

}  // namespace marisonde
