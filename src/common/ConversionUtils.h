#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/InstTypes.h"

/// Small pure routines that read numbers and dates out of instrument text and pack values for the instrument.
/// Positions count from 1 in the comments; a digit is '0' to '9' and nothing else.
namespace marisonde {

std::string NumberTextTrimmed(std::string_view text);
std::string SingleText(float value);
std::string DoubleText(double value);
constexpr bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsDigitChar(std::string_view text);
/// A digit gives true at once; "-", "+", "." are stepped over; anything else, or the end, gives false.
bool HasNumberChars(std::string_view text);
/// True unless some character of the trimmed text is other than a digit, "+", "-", "e", "E", ".". Empty:
/// true.
bool IsNumericText(std::string_view text);
/// From the first digit on, with a "." right before it, and a "-" right before that. No digit: empty.
std::string_view NumericTail(std::string_view text);
double FirstNumber(std::string_view text);
double LastNumber(std::string_view text);
std::int16_t FirstInteger(std::string_view text);
/// Between the last "(" and the last ")"; "Depth (m)" gives "m".
std::string TextInBrackets(std::string_view text);
/// Rounds the decimals of the mantissa made by repeated division or multiplication by 10 (not the same number
/// of significant digits on both sides of 1).
double RoundToDigits(double value, int digits);

std::string PadWithNul(std::string_view text, std::size_t length);
std::string AddNul(std::string_view text);
std::string CutAtNul(std::string_view text);
std::string_view Trim(std::string_view text);  ///< blanks only, both ends
std::string LowerCase(std::string_view text);  ///< A to Z only
std::string UpperCase(std::string_view text);  ///< a to z only
bool EqualIgnoringCase(std::string_view a, std::string_view b);
/// Whether `words`, given in lower case, stand anywhere in the text. Copies nothing.
bool HoldsIgnoringCase(std::string_view text, std::string_view words);

/// Clamps to -128..127 (also in the caller's variable); negative values come back + 256.
std::uint8_t SignedToByte(std::int16_t& value);
std::int32_t WordToLong(std::int16_t value);

// --- dates: days since 30 December 1899 -------------------------------------------------------------
inline constexpr double kDay1970 = 25569;
inline constexpr double kDay1980 = 29221;
inline constexpr double kDaysPerSecond = 1.1574074074074073e-5;

/// Civil date of a day count, proleptic Gregorian; fractions are rounded to the nearest second.
struct CivilDate {
    int year = 1899;
    int month = 12;
    int day = 30;
    int hour = 0;
    int minute = 0;
    int second = 0;
};
/// Month and day may overflow (month 13 is January of the next year), as in the written dates of instruments.
double DateFromCivil(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);
CivilDate CivilFromDate(double date);
double SecondsToDate(double seconds, int year);
std::int32_t DateToSeconds(double date, int year);
/// A year as instruments write it: below 70 of this century, below 199 counted from 1900, others as they
/// stand.
int FullYear(int year);
/// A written date "MM/DD/YY hh:mm:ss", or seconds since 1970 (Corvane family) or 1980 (all others). Bad parts
/// give 0.
double ParseInstrumentDate(std::string_view text, InstTypeCode type);

// --- 16-bit words of 4 bits of decimal exponent and 12 bits of mantissa, as instruments store them -----
std::int16_t EncodeScaled(double value);
float DecodeScaled(std::int16_t word);

}  // namespace marisonde
