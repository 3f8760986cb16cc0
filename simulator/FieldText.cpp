#include "simulator/FieldText.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>

namespace marisonde::simulator {

namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";

void AppendMasked(std::string& out, std::uint64_t value, int digits) {
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) out += kDigits[(value >> shift) & 0xFU];
}

template <class... Args>
std::string Converted(Args... args) {
    std::array<char, 64> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), args...).ptr;
    std::string text(buffer.data(), end);
    std::replace(text.begin(), text.end(), 'e', 'E');
    return text;
}

template <class T>
std::string Shortest(T value) {
    const bool plain = value == 0 || (std::abs(value) >= T{1e-4F} && std::abs(value) < T{1e9F});
    return plain ? Converted(value, std::chars_format::fixed) : Converted(value);
}

}  // namespace

void AppendHex(std::string& out, std::int64_t value, int digits) {
    const std::int64_t largest = (std::int64_t{1} << (4 * digits)) - 1;
    AppendMasked(out, static_cast<std::uint64_t>(std::clamp<std::int64_t>(value, 0, largest)), digits);
}

void AppendSignedHex(std::string& out, std::int64_t value, int digits) {
    const std::int64_t half = std::int64_t{1} << (4 * digits - 1);
    AppendMasked(out, static_cast<std::uint64_t>(std::clamp(value, -half, half - 1)), digits);
}

void AppendChecksum(std::string& out, std::size_t lineStart, ChecksumStyle style) {
    unsigned sum = 0;
    for (std::size_t i = lineStart + (style == ChecksumStyle::WithStar ? 0 : 1); i < out.size(); ++i)
        sum += static_cast<unsigned char>(out[i]);
    AppendMasked(out, sum % 256, 2);
}

void AppendInteger(std::string& out, std::int64_t value) {
    out += Converted(value);
}

void AppendCsv(std::string& out, std::int64_t value) {
    out += ',';
    AppendInteger(out, value);
}

void AppendFixed(std::string& out, double value, int decimals) {
    out += Converted(value, std::chars_format::fixed, decimals);
}

std::string SixDigits(double value) {
    return Converted(value, std::chars_format::general, 6);
}
std::string AllDigits(double value) {
    return Shortest(value);
}
std::string AllDigits(float value) {
    return Shortest(value);
}

std::string UpperCase(std::string_view text) {
    std::string upper(text);
    for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return upper;
}

std::string_view Trimmed(std::string_view text) {
    const auto begin = text.find_first_not_of(' ');
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

std::vector<std::string_view> SplitAtCommas(std::string_view text) {
    std::vector<std::string_view> pieces;
    while (!text.empty()) {
        const auto comma = std::min(text.find(','), text.size());
        pieces.push_back(Trimmed(text.substr(0, comma)));
        text.remove_prefix(std::min(comma + 1, text.size()));
    }
    return pieces;
}

std::optional<double> NumberFrom(std::string_view text) {
    text = Trimmed(text);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

}  // namespace marisonde::simulator
