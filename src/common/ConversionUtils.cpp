#include "common/ConversionUtils.h"

#include <algorithm>
#include <cmath>

#include "common/DecimalPowers.h"
#include "common/Numbers.h"

namespace marisonde {

namespace {

constexpr std::string_view kDigits = "0123456789";
constexpr int kMantissaBits = 12;
constexpr std::int32_t kMantissaMask = 0x0FFF;
constexpr int kRoundingSteps = 50;

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

char Upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}

std::string WithEach(std::string_view text, char (*change)(char)) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(), change);
    return out;
}

double RoundLarge(double value, int digits) {
    for (int i = 1; i <= kRoundingSteps; ++i) {
        value /= 10;
        if (std::fabs(value) < 1) return RoundDecimals(value, digits) * std::pow(10.0, i);
    }
    return RoundDecimals(value, digits) * std::pow(10.0, kRoundingSteps);
}

double RoundSmall(double value, int digits) {
    for (int i = 1; i <= kRoundingSteps; ++i) {
        value *= 10;
        if (std::fabs(value) > 0.1) return RoundDecimals(value, digits) / std::pow(10.0, i);
    }
    return RoundDecimals(value, digits) / std::pow(10.0, kRoundingSteps);
}

}  // namespace

std::string NumberTextTrimmed(std::string_view text) {
    return NumberText(SafeVal(text));
}

std::string SingleText(float value) {
    return NumberText(value);
}

std::string DoubleText(double value) {
    return NumberText(value);
}

bool IsDigitChar(std::string_view text) {
    return !text.empty() && IsDigit(text.front());
}

bool HasNumberChars(std::string_view text) {
    const std::size_t decides = text.find_first_not_of("-+.");
    return decides != std::string_view::npos && IsDigit(text[decides]);
}

bool IsNumericText(std::string_view text) {
    return Trim(text).find_first_not_of("0123456789+-eE.") == std::string_view::npos;
}

std::string_view NumericTail(std::string_view text) {
    std::size_t start = text.find_first_of(kDigits);
    if (start == std::string_view::npos) return {};
    if (start > 0 && text[start - 1] == '.') --start;
    if (start > 0 && text[start - 1] == '-') --start;
    return text.substr(start);
}

double FirstNumber(std::string_view text) {
    // The tail never begins with a blank, and the reader stops at an inner one.
    return Val(NumericTail(text));
}

double LastNumber(std::string_view text) {
    const std::size_t blank = text.find_last_of(' ');
    const bool wholeText = blank == std::string_view::npos || blank == 0 || blank + 1 == text.size();
    return Val(wholeText ? text : text.substr(blank + 1));
}

std::int16_t FirstInteger(std::string_view text) {
    const std::size_t start = text.find_first_of(kDigits);
    return start == std::string_view::npos ? std::int16_t{0} : ToInt16(Val(text.substr(start)));
}

std::string TextInBrackets(std::string_view text) {
    const std::size_t open = text.rfind('(');
    const std::size_t close = text.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open + 2) return {};
    return std::string(text.substr(open + 1, close - open - 1));
}

double RoundToDigits(double value, int digits) {
    if (value == 0) return 0;
    return std::fabs(value) >= 1 ? RoundLarge(value, digits) : RoundSmall(value, digits);
}

std::string PadWithNul(std::string_view text, std::size_t length) {
    std::string out(text);
    if (out.size() < length) out.resize(length, '\0');
    return out;
}

std::string AddNul(std::string_view text) {
    return PadWithNul(text, text.size() + 1);
}

std::string CutAtNul(std::string_view text) {
    return std::string(text.substr(0, text.find('\0')));
}

std::string_view Trim(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string LowerCase(std::string_view text) {
    return WithEach(text, Lower);
}

std::string UpperCase(std::string_view text) {
    return WithEach(text, Upper);
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return Lower(x) == Lower(y); });
}

bool HoldsIgnoringCase(std::string_view text, std::string_view words) {
    return std::search(text.begin(), text.end(), words.begin(), words.end(),
                       [](char c, char word) { return Lower(c) == word; }) != text.end();
}

std::uint8_t SignedToByte(std::int16_t& value) {
    value = std::clamp<std::int16_t>(value, -128, 127);
    return static_cast<std::uint8_t>(value < 0 ? value + 256 : value);
}

std::int32_t WordToLong(std::int16_t value) {
    return value < 0 ? value + 65536 : value;
}

std::int16_t EncodeScaled(double value) {
    int exponent = 0;
    while (RoundHalfEven(value) > kMantissaMask && exponent >= -2) {
        value /= 10;
        --exponent;
    }
    while (value <= 409.5 && exponent < 12) {
        value *= 10;
        ++exponent;
    }
    const std::int32_t word = (exponent + 3) << kMantissaBits | (ToInt32(value) & kMantissaMask);
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(word));
}

float DecodeScaled(std::int16_t word) {
    const std::int32_t bits = WordToLong(word);
    const int power = 3 - (bits >> kMantissaBits);
    const double mantissa = bits & kMantissaMask;
    const double scale = detail::kExactPowers[static_cast<std::size_t>(std::abs(power))];
    return static_cast<float>(power >= 0 ? mantissa * scale : mantissa / scale);
}

}  // namespace marisonde
