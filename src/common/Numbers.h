#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

/// The one number reader and the one number writer of the program. Neither knows the locale.
namespace marisonde {

/// A value that failed: every result that arithmetic could not give. Written as 1E+308 in files.
inline constexpr double kSentinel = 1e308;
/// The sentinel once it is held as a 32-bit value, which has no room for it; files show 1E+308 all the same.
inline constexpr float kSentinelF = std::numeric_limits<float>::infinity();

/// Leading number of the text: leading blanks and tabs are skipped, sign, digits, point, exponent e or E;
/// stops at the first character that does not fit, also at an inner blank. "&H" reads hexadecimal, unsigned.
/// No number, and a number beyond the range of a double, give 0.
double Val(std::string_view text);

/// A leading number and the first character behind it (`first` of the call when there is no number).
struct LeadingNumber {
    double value;
    const char* end;
};
/// The rule of Val over [first, last), for callers that go on behind the number.
LeadingNumber ReadNumber(const char* first, const char* last);

/// Strict: the whole text (trimmed) must be one number, within the range of a double, otherwise none.
std::optional<double> StrictNumber(std::string_view text);
/// The same, with 0 for a text that is no number.
double SafeVal(std::string_view text);

namespace detail {
/// Value of each hexadecimal digit, 0xFF for every other character.
inline constexpr auto kHexDigits = [] {
    std::array<std::uint8_t, 256> table{};
    table.fill(0xFF);
    for (unsigned i = 0; i < 10; ++i) table['0' + i] = static_cast<std::uint8_t>(i);
    for (unsigned i = 0; i < 6; ++i) table['A' + i] = table['a' + i] = static_cast<std::uint8_t>(10 + i);
    return table;
}();
}  // namespace detail

/// Value of one hexadecimal digit, 0xFF for any other character.
inline std::uint8_t HexDigit(char c) {
    return detail::kHexDigits[static_cast<unsigned char>(c)];
}

/// Leading hexadecimal digits of the field, unsigned; a bad first character gives 0. At most 8 digits.
inline std::uint32_t HexVal(std::string_view field) {
    std::uint32_t value = 0;
    for (const char c : field.substr(0, 8)) {
        const std::uint8_t digit = HexDigit(c);
        if (digit == 0xFF) break;
        value = value << 4 | digit;
    }
    return value;
}

/// Halves go to the even neighbour.
double RoundHalfEven(double value);
/// Scales by 10^decimals, rounds half to even, scales back. Not-finite values, and those that the scaling
/// would carry out of range, come back unchanged.
double RoundDecimals(double value, int decimals);
/// Plain rounding to that many significant digits, halves to even. 0 and not-finite values unchanged.
double RoundSignificant(double value, int digits);
/// Nearest integer, halves to even, held within the type's range; not-a-number gives 0.
std::int16_t ToInt16(double value);
std::int32_t ToInt32(double value);

/// Room that WriteNumber needs. The text itself, which has no end mark, has at most 24 characters.
inline constexpr std::size_t kMaxNumberText = 48;
/// Writes the shortest general text that reads back to the same value (float: at most 9 digits, double: 17),
/// and returns the end; `out` has room for kMaxNumberText. With m = 7 for a float and 15 for a double, the
/// plain form is used while the whole part has at most m digits and, for values below 0.1, at most m decimals
/// are needed; otherwise the exponent form with an upper-case E and at least two exponent digits,
/// "1.234568E-03". A value that is not finite is written as 1E+308, a negative zero as 0.
char* WriteNumber(char* out, double value);
char* WriteNumber(char* out, float value);
void AppendNumber(std::string& out, double value);
void AppendNumber(std::string& out, float value);
/// The same as a new text.
std::string NumberText(double value);
std::string NumberText(float value);
/// Fixed decimals (0 to 100), e.g. FixedText(3.14159, 2) is "3.14"; halves to even on the shortest decimal
/// text of the value. What is not finite is 1E+308; what rounds to nothing has no sign.
std::string FixedText(double value, int decimals);
/// One digit, that many decimals (0 to 100) and an exponent of at least two digits: ScientificText(0.00021,
/// 2) is "2.10E-04". Rounded as FixedText.
std::string ScientificText(double value, int decimals);

}  // namespace marisonde
