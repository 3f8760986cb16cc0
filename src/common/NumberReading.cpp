#include <array>
#include <bit>
#include <charconv>
#include <system_error>

#include "common/ConversionUtils.h"
#include "common/DecimalPowers.h"
#include "common/DigitWords.h"
#include "common/Numbers.h"

namespace marisonde {

namespace {

constexpr int kMaxExactDigits = 18;  // fits 64 bits without a test per digit
constexpr std::uint64_t kMaxExactMantissa = std::uint64_t{1} << 53;

LeadingNumber ReadHex(const char* digits, const char* last) {
    const char* end = digits;
    while (end != last && end - digits < 8 && HexDigit(*end) != 0xFF) ++end;
    const auto length = static_cast<std::size_t>(end - digits);
    return {static_cast<double>(HexVal({digits, length})), end};
}

/// Any unsigned decimal number; `start` is at a digit or a point, so the words inf and nan cannot pass.
LeadingNumber ReadLongDecimal(const char* start, const char* last) {
    double value = 0;
    const auto [end, error] = std::from_chars(start, last, value);
    return {error == std::errc{} ? value : 0.0, end};
}

/// Digits read so far as one whole number. More than kMaxExactDigits of them overflow it, which their count
/// tells.
struct DigitRun {
    std::uint64_t value = 0;
    std::ptrdiff_t count = 0;
};

/// The digits at the start of 8 characters, without a branch for each: numbers in a line have any length, and
/// a processor guesses it wrong each time. Returns how many they are, 0 to 8.
inline int TakeDigitsOf8(const char* p, DigitRun& digits) {
    const std::uint64_t chars = detail::EightChars(p);
    const std::uint64_t others = detail::NoDigits(chars ^ detail::kEachByte * '0');
    const int count = others == 0 ? 8 : std::countr_zero(others) / 8;
    if (count == 0) return 0;
    digits.value = digits.value * detail::kWholePowers[static_cast<std::size_t>(count)] +
                   detail::Join(detail::DigitsOf(chars, static_cast<unsigned>(count)));
    digits.count += count;
    return count;
}

inline const char* TakeEachDigit(const char* p, const char* last, DigitRun& digits) {
    const char* const first = p;
    for (; p != last && IsDigit(*p); ++p)
        digits.value = digits.value * 10 + static_cast<std::uint64_t>(*p - '0');
    digits.count += p - first;
    return p;
}

/// For runs that are mostly longer than a few digits.
inline const char* TakeDigits(const char* p, const char* last, DigitRun& digits) {
    while (last - p >= 8) {
        const int count = TakeDigitsOf8(p, digits);
        p += count;
        if (count < 8) return p;
    }
    return TakeEachDigit(p, last, digits);
}

/// The exponent behind "E", and the end behind it; the end is `p` itself when no exponent stands there.
struct Exponent {
    std::int64_t value;
    const char* end;
};
Exponent ReadExponent(const char* p, const char* last) {
    const char* at = p + 1;
    const bool negative = at != last && *at == '-';
    if (at != last && (*at == '-' || *at == '+')) ++at;
    std::int64_t value = 0;
    const char* const first = at;
    for (; at != last && IsDigit(*at); ++at)
        if (value < 100000) value = value * 10 + (*at - '0');
    if (at == first) return {0, p};
    return {negative ? -value : value, at};
}

/// Short numbers, nearly all that instruments and files hold: a whole mantissa and one exact power of ten
/// round only once.
LeadingNumber ReadDecimal(const char* start, const char* last) {
    DigitRun digits;
    const char* p = TakeEachDigit(start, last, digits);
    std::int64_t scale = 0;
    if (p != last && *p == '.') {
        const auto whole = digits.count;
        p = TakeDigits(p + 1, last, digits);
        scale = whole - digits.count;
    }
    if (digits.count == 0) return {0, nullptr};
    if (p != last && (*p == 'e' || *p == 'E')) {
        const Exponent exponent = ReadExponent(p, last);
        scale += exponent.value;
        p = exponent.end;
    }
    const std::int64_t size = scale < 0 ? -scale : scale;
    if (digits.count > kMaxExactDigits || digits.value > kMaxExactMantissa || size > detail::kLastExactPower)
        return ReadLongDecimal(start, last);
    const auto mantissa = static_cast<double>(digits.value);
    const double power = detail::kExactPowers[static_cast<std::size_t>(size)];
    return {scale < 0 ? mantissa / power : mantissa * power, p};
}

/// A sign, like the number of digits, is nothing that a processor could guess.
double WithSign(double size, bool negative) {
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(size) | std::uint64_t{negative} << 63);
}

/// A number beyond the range of a double comes as 0 too.
bool SaysZero(std::string_view number) {
    return number.substr(0, number.find_first_of("eE")).find_first_of("123456789") == std::string_view::npos;
}

}  // namespace

LeadingNumber ReadNumber(const char* first, const char* last) {
    const char* p = first;
    while (p != last && (*p == ' ' || *p == '\t')) ++p;
    if (last - p >= 2 && p[0] == '&' && (p[1] == 'H' || p[1] == 'h')) return ReadHex(p + 2, last);
    const bool negative = p != last && *p == '-';
    const bool plus = p != last && *p == '+';
    p += int{negative} + int{plus};
    const LeadingNumber number = ReadDecimal(p, last);
    if (!number.end) return {0, first};
    return {WithSign(number.value, negative), number.end};
}

double Val(std::string_view text) {
    return ReadNumber(text.data(), text.data() + text.size()).value;
}

std::optional<double> StrictNumber(std::string_view text) {
    const std::string_view trimmed = Trim(text);
    const char* last = trimmed.data() + trimmed.size();
    const auto [value, end] = ReadNumber(trimmed.data(), last);
    if (trimmed.empty() || end != last || (value == 0 && !SaysZero(trimmed))) return std::nullopt;
    return value;
}

double SafeVal(std::string_view text) {
    return StrictNumber(text).value_or(0);
}

}  // namespace marisonde
