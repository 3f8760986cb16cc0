#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "common/Numbers.h"

namespace marisonde::detail {

/// A field of hexadecimal digits; the position counts from 1 at the "*".
struct HexField {
    int position;
    int width;
};

/// The same field of each channel slot, `step` characters from one slot to the next.
struct SlotField {
    int position;
    int width;
    int step;
};

/// Marks a character that is no digit; outside the 16 bits of a group of digits, so that it survives joining
/// them.
inline constexpr std::uint32_t kNoDigit = 0x10000;

/// The value of each character as a digit of the last, the second last, third and fourth last place of a
/// group: the value of a group is then its entries joined, without a shift or a test per digit.
inline constexpr auto kDigitsByPlace = [] {
    std::array<std::array<std::uint32_t, 256>, 4> tables{};
    for (std::size_t place = 0; place < 4; ++place) {
        for (std::size_t c = 0; c < 256; ++c) {
            const std::uint32_t digit = kHexDigits[c];
            tables[place][c] = digit == 0xFF ? kNoDigit : digit << 4 * place;
        }
    }
    return tables;
}();

/// A line that may be read up to character `Length`. A shorter one is continued with characters that are no
/// digits, so that fields beyond its end read 0.
template <std::size_t Length>
class HexLine {
  public:
    explicit HexLine(std::string_view line) : text_(line.data()) {
        if (line.size() >= Length) return;
        std::copy(line.begin(), line.end(), padded_.begin());
        std::fill(padded_.begin() + static_cast<std::ptrdiff_t>(line.size()), padded_.end(), '\0');
        text_ = padded_.data();
    }
    HexLine(const HexLine&) = delete;
    HexLine& operator=(const HexLine&) = delete;

    template <HexField Field>
    [[nodiscard]] std::uint32_t Value() const {
        static_assert(Field.position > 0 && Field.position + Field.width - 1 <= static_cast<int>(Length));
        return ValueAt<Field.width>(Field.position - 1);
    }

    template <SlotField Field>
    [[nodiscard]] std::uint32_t Value(std::size_t slot) const {
        return ValueAt<Field.width>(Field.position - 1 + static_cast<int>(slot) * Field.step);
    }

  private:
    template <int Width>
    [[nodiscard]] static std::uint32_t Group(const char* digits) {
        std::uint32_t value = 0;
        for (int i = 0; i < Width; ++i)
            value |= kDigitsByPlace[static_cast<std::size_t>(Width - 1 - i)]
                                   [static_cast<unsigned char>(digits[i])];
        return value;
    }

    template <int Width>
    [[nodiscard]] std::uint32_t ValueAt(int offset) const {
        const char* field = text_ + offset;
        constexpr int kLow = std::min(Width, 4);
        const std::uint32_t high = Group<Width - kLow>(field);
        const std::uint32_t low = Group<kLow>(field + Width - kLow);
        // Only where some character is no digit do the leading digits have to be found one by one.
        if ((high | low) >= kNoDigit) return HexVal({field, static_cast<std::size_t>(Width)});
        return high << 16 | low;
    }

    const char* text_;
    std::array<char, Length> padded_;
};

/// Held in 16 bits signed; what does not fit reads 0.
inline std::int16_t Fit16(std::uint32_t value) {
    return value <= 0x7FFF ? static_cast<std::int16_t>(value) : std::int16_t{0};
}

}  // namespace marisonde::detail
