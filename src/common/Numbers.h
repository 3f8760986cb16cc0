#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

/// The one number reader and the one number writer of the program. Neither knows the locale.
namespace marisonde {

/// A value that failed: every result that arithmetic could not give. Written as 1E+308 in files.
inline constexpr double kSentinel = 1e308;
/// The sentinel once it is held as a 32-bit value, which has no room for it; files show 1E+308 all the same.
inline constexpr float kSentinelF = std::numeric_limits<float>::infinity();

/// Leading number of the text: leading blanks are skipped, sign, digits, point, exponent e or E; stops at the
/// first character that does not fit, also at an inner blank. "&H" reads hexadecimal. No number gives 0.
double Val(std::string_view text);
/// Strict: the whole text (trimmed) must be one number, otherwise 0.
double SafeVal(std::string_view text);
/// Leading hexadecimal digits of the field, unsigned; a bad first character gives 0. At most 8 digits.
std::uint32_t HexVal(std::string_view field);

/// Halves go to the even neighbour.
double RoundHalfEven(double value);
/// Scales by 10^decimals, rounds half to even, scales back. Not-finite values come back unchanged.
double RoundDecimals(double value, int decimals);
/// Plain rounding to that many significant digits, halves to even. 0 and not-finite values unchanged.
double RoundSignificant(double value, int digits);
/// Nearest integer, halves to even, held within the type's range; not-a-number gives 0.
std::int16_t ToInt16(double value);
std::int32_t ToInt32(double value);

/// Longest text of one number, without an end mark.
inline constexpr std::size_t kMaxNumberText = 32;
/// Writes the shortest general text that reads back to the same value (float: at most 9 digits, double: 17), and
/// returns the end; `out` has room for kMaxNumberText. With m = 7 for a float and 15 for a double, the plain form is
/// used while the whole part has at most m digits and, for values below 0.1, at most m decimals are needed;
/// otherwise the exponent form with an upper-case E and at least two exponent digits, "1.234568E-03". A value that
/// is not finite is written as 1E+308.
char* WriteNumber(char* out, double value);
char* WriteNumber(char* out, float value);
void AppendNumber(std::string& out, double value);
void AppendNumber(std::string& out, float value);
/// The same as a new text.
std::string NumberText(double value);
std::string NumberText(float value);
/// Fixed decimals, e.g. FixedText(3.14159, 2) is "3.14"; halves to even on the decimal value.
std::string FixedText(double value, int decimals);

}  // namespace marisonde
