#include "link/ReplyDamage.h"

#include <algorithm>
#include <array>

#include "common/ConversionUtils.h"

namespace marisonde {

namespace {

constexpr std::string_view kDigits = "0123456789";

/// Keys whose values are free text, which may begin with a digit.
bool HasTextValue(std::string_view key) {
    constexpr std::array<std::string_view, 5> kTextKeys{"Label", "Serial", "Config", "Name", "DeviceType"};
    return std::find(kTextKeys.begin(), kTextKeys.end(), key) != kTextKeys.end();
}

bool IsKeyCharacter(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == ' ' || c == '_';
}

bool KeyLineLooksDamaged(std::string_view line) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) return !Trim(line).starts_with("//");
    const std::string_view key = line.substr(0, equals);
    if (!std::all_of(key.begin(), key.end(), IsKeyCharacter)) return true;
    return !HasTextValue(key) && NumberLooksDamaged(line.substr(equals + 1));
}

bool ChannelLineLooksDamaged(std::string_view line) {
    std::size_t colon = line.find(':');
    while (colon != std::string_view::npos) {
        line.remove_prefix(colon + 1);
        if (NumberLooksDamaged(line)) return true;
        colon = line.find(':');
    }
    return false;
}

}  // namespace

bool LooksDamaged(std::string_view line) {
    const std::size_t key = std::min(line.find_first_of("=:"), line.size());
    for (std::size_t i = 0; i < line.size(); ++i) {
        const auto c = static_cast<unsigned char>(line[i]);
        const bool control = (c < ' ' && c != '\t') || c == 0x7F;
        // Labels and comments may be in any language; the words before the mark are not.
        if (control || (c >= 0x80 && i < key)) return true;
    }
    return false;
}

bool NumberLooksDamaged(std::string_view text) {
    text = Trim(text);
    const std::size_t sign = std::min(text.find_first_not_of("+-."), text.size());
    if (sign == text.size() || kDigits.find(text[sign]) == std::string_view::npos)
        return sign > 0 && sign < text.size();
    const std::size_t end = std::min({text.find_first_of(" \t,:("), text.find("//"), text.size()});
    return text.substr(0, end).find_first_not_of("0123456789+-.eE/") != std::string_view::npos;
}

bool CalTextLooksDamaged(std::span<const std::string> lines) {
    bool begun = false;
    bool comment = false;
    for (const std::string& line : lines) {
        if (LooksDamaged(line)) return true;
        if (line.starts_with("[")) {
            if (line.find(']') == std::string::npos) return true;
            begun = true;
            comment = line.starts_with("[Comment]");
        } else if (begun && !comment && KeyLineLooksDamaged(line)) {
            return true;
        }
    }
    return false;
}

bool ReplyLooksDamaged(std::span<const std::string> lines) {
    return std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
        return LooksDamaged(line) || (line.starts_with("' ") && ChannelLineLooksDamaged(line));
    });
}

}  // namespace marisonde
