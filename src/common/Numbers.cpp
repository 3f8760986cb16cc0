#include "common/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fmt/format.h>

namespace marisonde {

namespace {

constexpr int kPlainDigitsFloat = 7;
constexpr int kPlainDigitsDouble = 15;
constexpr std::string_view kSentinelText = "1E+308";

/// Digits are copied in blocks of constant size, which the compiler turns into a move or two where a copy of
/// just the digits would be a call; 17 digits fit. Texts have room for the surplus.
constexpr std::size_t kBlock = 24;

/// Digits and scale of a number: 0.d1 d2 d3 ... x 10^point.
struct Digits {
    char text[2 * kBlock];
    int count;
    int point;
};

template <typename Float>
Digits ShortestDigits(Float size) {
    const auto decimal = fmt::detail::dragonbox::to_decimal(size);
    Digits digits;
    const char* end = std::to_chars(digits.text, digits.text + sizeof digits.text, decimal.significand).ptr;
    digits.count = static_cast<int>(end - digits.text);
    digits.point = digits.count + decimal.exponent;
    return digits;
}

char* Copy(char* out, const char* text, int count) {
    std::memcpy(out, text, kBlock);
    return out + count;
}

char* Zeros(char* out, int count) {
    std::memset(out, '0', kBlock);
    return out + count;
}

char* WriteWholeAndFraction(char* out, const Digits& digits) {
    char* end = Copy(out, digits.text, digits.count);
    if (digits.count <= digits.point) return Zeros(end, digits.point - digits.count);
    Copy(out + digits.point + 1, digits.text + digits.point, 0);
    out[digits.point] = '.';
    return end + 1;
}

char* WriteFractionOnly(char* out, const Digits& digits) {
    Zeros(out, 0);
    out[1] = '.';
    return Copy(out + 2 - digits.point, digits.text, digits.count);
}

char* WriteExponentForm(char* out, const Digits& digits) {
    *out++ = digits.text[0];
    if (digits.count > 1) {
        *out++ = '.';
        out = Copy(out, digits.text + 1, digits.count - 1);
    }
    const int exponent = digits.point - 1;
    *out++ = 'E';
    *out++ = exponent < 0 ? '-' : '+';
    const int size = exponent < 0 ? -exponent : exponent;
    if (size >= 100) *out++ = static_cast<char>('0' + size / 100);
    *out++ = static_cast<char>('0' + size / 10 % 10);
    *out++ = static_cast<char>('0' + size % 10);
    return out;
}

template <typename Float>
char* WriteShortest(char* out, Float value, int plainDigits) {
    if (value == 0) {
        *out = '0';
        return out + 1;
    }
    if (!std::isfinite(value)) return std::copy(kSentinelText.begin(), kSentinelText.end(), out);
    if (value < 0) *out++ = '-';
    const Digits digits = ShortestDigits(std::fabs(value));
    if (digits.point > 0 && digits.point <= plainDigits) return WriteWholeAndFraction(out, digits);
    const bool fewDecimals = digits.point == 0 || digits.count - digits.point <= plainDigits;
    if (digits.point <= 0 && fewDecimals) return WriteFractionOnly(out, digits);
    return WriteExponentForm(out, digits);
}

template <typename Float>
void Append(std::string& out, Float value) {
    char text[kMaxNumberText];
    const char* end = WriteNumber(text, value);
    out.append(text, static_cast<std::size_t>(end - text));
}

/// Cuts digit text to `keep` digits, halves to the even digit; a carry out of the first digit lengthens the
/// text.
void RoundDigitText(std::string& digits, std::size_t keep) {
    const bool odd = keep > 0 && (digits[keep - 1] - '0') % 2 != 0;
    const int half = digits.compare(keep, std::string::npos, "5");
    digits.resize(keep);
    if (half < 0 || (half == 0 && !odd)) return;
    std::size_t i = keep;
    while (i > 0 && digits[i - 1] == '9') digits[--i] = '0';
    if (i == 0)
        digits.insert(digits.begin(), '1');
    else
        ++digits[i - 1];
}

}  // namespace

char* WriteNumber(char* out, double value) {
    return WriteShortest(out, value, kPlainDigitsDouble);
}

char* WriteNumber(char* out, float value) {
    return WriteShortest(out, value, kPlainDigitsFloat);
}

void AppendNumber(std::string& out, double value) {
    Append(out, value);
}

void AppendNumber(std::string& out, float value) {
    Append(out, value);
}

std::string NumberText(double value) {
    std::string text;
    Append(text, value);
    return text;
}

std::string NumberText(float value) {
    std::string text;
    Append(text, value);
    return text;
}

std::string FixedText(double value, int decimals) {
    if (!std::isfinite(value)) return std::string(kSentinelText);
    const int places = std::clamp(decimals, 0, 100);
    const Digits shortest = ShortestDigits(std::fabs(value));
    std::string digits(shortest.text, static_cast<std::size_t>(shortest.count));
    const int keep = shortest.point + places;
    if (keep < 0)
        digits.clear();
    else if (keep < shortest.count)
        RoundDigitText(digits, static_cast<std::size_t>(keep));
    else
        digits.append(static_cast<std::size_t>(keep - shortest.count), '0');
    // Now the digits are the value in units of its last place.
    const bool nothing = digits.find_first_not_of('0') == std::string::npos;
    const auto width = static_cast<std::size_t>(places) + 1;
    if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
    if (places > 0) digits.insert(digits.size() - static_cast<std::size_t>(places), 1, '.');
    if (value < 0 && !nothing) digits.insert(digits.begin(), '-');
    return digits;
}

std::string ScientificText(double value, int decimals) {
    if (!std::isfinite(value)) return std::string(kSentinelText);
    const auto length = static_cast<std::size_t>(std::clamp(decimals, 0, 100)) + 1;
    Digits shortest = value == 0 ? Digits{"0", 1, 1} : ShortestDigits(std::fabs(value));
    std::string digits(shortest.text, static_cast<std::size_t>(shortest.count));
    if (digits.size() > length) RoundDigitText(digits, length);
    if (digits.size() > length) {  // 9.99 has become 10.0
        digits.pop_back();
        ++shortest.point;
    }
    digits.resize(length, '0');
    if (length > 1) digits.insert(1, ".");
    const int exponent = shortest.point - 1;
    const std::string size = std::to_string(std::abs(exponent));
    digits += exponent < 0 ? "E-" : "E+";
    if (size.size() < 2) digits += '0';
    return (value < 0 ? "-" : "") + digits + size;
}

}  // namespace marisonde
