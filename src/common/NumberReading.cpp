#include <charconv>
#include <system_error>

#include "common/ConversionUtils.h"
#include "common/DecimalPowers.h"
#include "common/Numbers.h"

namespace marisonde {

namespace {

constexpr int kMaxExactDigits = 18;  // fits 64 bits without a test per digit
constexpr std::uint64_t kMaxExactMantissa = std::uint64_t{1} << 53;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

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

/// Short numbers, nearly all that instruments send: a whole mantissa and one exact division round only once.
LeadingNumber ReadDecimal(const char* start, const char* last) {
    std::uint64_t mantissa = 0;
    const char* p = start;
    for (; p != last && IsDigit(*p); ++p) mantissa = mantissa * 10 + static_cast<std::uint64_t>(*p - '0');
    auto digits = p - start;
    std::ptrdiff_t decimals = 0;
    if (p != last && *p == '.') {
        const char* fraction = ++p;
        for (; p != last && IsDigit(*p); ++p) mantissa = mantissa * 10 + static_cast<std::uint64_t>(*p - '0');
        decimals = p - fraction;
        digits += decimals;
    }
    if (digits == 0) return {0, nullptr};
    const bool exponent = p != last && (*p == 'e' || *p == 'E');
    if (exponent || digits > kMaxExactDigits || mantissa > kMaxExactMantissa)
        return ReadLongDecimal(start, last);
    const auto whole = static_cast<double>(mantissa);
    return {decimals == 0 ? whole : whole / detail::kExactPowers[static_cast<std::size_t>(decimals)], p};
}

}  // namespace

LeadingNumber ReadNumber(const char* first, const char* last) {
    const char* p = first;
    while (p != last && (*p == ' ' || *p == '\t')) ++p;
    if (last - p >= 2 && p[0] == '&' && (p[1] == 'H' || p[1] == 'h')) return ReadHex(p + 2, last);
    const bool negative = p != last && *p == '-';
    if (p != last && (*p == '-' || *p == '+')) ++p;
    const LeadingNumber number = ReadDecimal(p, last);
    if (!number.end) return {0, first};
    return {negative ? -number.value : number.value, number.end};
}

double Val(std::string_view text) {
    return ReadNumber(text.data(), text.data() + text.size()).value;
}

std::optional<double> StrictNumber(std::string_view text) {
    const std::string_view trimmed = Trim(text);
    const char* last = trimmed.data() + trimmed.size();
    const auto [value, end] = ReadNumber(trimmed.data(), last);
    if (trimmed.empty() || end != last) return std::nullopt;
    return value;
}

double SafeVal(std::string_view text) {
    return StrictNumber(text).value_or(0);
}

}  // namespace marisonde
