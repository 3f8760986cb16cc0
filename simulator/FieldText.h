#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/Options.h"

namespace marisonde::simulator {

/// Appends `digits` upper-case hexadecimal digits. A value that does not fit, like a full counter, gives the
/// largest or smallest that does; negative values need `AppendSignedHex`.
void AppendHex(std::string& out, std::int64_t value, int digits);
/// Two's complement in `digits` hexadecimal digits; clamped to what fits.
void AppendSignedHex(std::string& out, std::int64_t value, int digits);
/// Appends the sum modulo 256 of what `out` holds from `lineStart` (the "*") on, as two hexadecimal digits.
void AppendChecksum(std::string& out, std::size_t lineStart, ChecksumStyle style);
void AppendInteger(std::string& out, std::int64_t value);
/// The same behind a comma.
void AppendCsv(std::string& out, std::int64_t value);
/// With exactly `decimals` digits behind the point.
void AppendFixed(std::string& out, double value, int decimals);
/// Shortest text of at most six significant digits, exponent with an upper-case E.
std::string SixDigits(double value);
/// Shortest text that reads back to the same value.
std::string AllDigits(double value);
std::string AllDigits(float value);

std::string UpperCase(std::string_view text);
/// Without blanks at both ends.
std::string_view Trimmed(std::string_view text);
/// The trimmed pieces between commas; none of an empty text.
std::vector<std::string_view> SplitAtCommas(std::string_view text);
/// A whole text that is one decimal number, blanks around it allowed.
std::optional<double> NumberFrom(std::string_view text);

}  // namespace marisonde::simulator
