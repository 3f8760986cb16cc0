#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "common/TextBlock.h"

namespace marisonde {

/// Where the values of a comma-separated line end: at its commas.
class FieldEnds {
  public:
    static constexpr std::size_t kMostPlaces = 40;

    /// The first `places` commas of a line are remembered with their place, the others only counted.
    explicit FieldEnds(std::size_t places = kMostPlaces) : wanted_(std::min(places, kMostPlaces)) {}

    /// Commas of the line.
    [[nodiscard]] std::size_t Count() const { return count_; }
    /// Place in the line of comma `i`, one of those that are remembered.
    [[nodiscard]] std::size_t At(std::size_t i) const { return places_[i]; }
    /// So many characters from the first of the line on may be read: all of the line, and what lies behind it
    /// in memory.
    [[nodiscard]] std::size_t Readable() const { return readable_; }

    /// Finds the commas of a line; `readable` is at least its length. Of a line, 64 KiB count.
    void Mark(std::string_view line, std::size_t readable);

    /// Begins a line whose commas are given by Add.
    void Clear(std::size_t readable) {
        count_ = 0;
        readable_ = readable;
    }
    /// Adds the commas among kTextBlock characters, a bit for each; the first has the place `base`.
    void Add(std::uint64_t commas, std::size_t base) {
        if (count_ < wanted_) Remember(commas, base);
        count_ += BitsOf(commas);
    }

  private:
    /// As many places as there are usually are written without asking for their number: it differs from block
    /// to block, and a processor guesses it wrong each time.
    void Remember(std::uint64_t commas, std::size_t base) {
        constexpr int kUsual = 6;
        std::uint16_t* to = places_.data() + count_;
        for (int i = 0; i < kUsual; ++i) commas = RememberFirst(commas, base, *to++);
        while (commas != 0) commas = RememberFirst(commas, base, *to++);
    }
    /// Returns the others.
    static std::uint64_t RememberFirst(std::uint64_t commas, std::size_t base, std::uint16_t& to) {
        constexpr std::uint64_t kLast = std::uint64_t{1} << (kTextBlock - 1);
        to = static_cast<std::uint16_t>(base + static_cast<unsigned>(std::countr_zero(commas | kLast)));
        return commas & (commas - 1);
    }

    /// Not every processor that the program may meet has an instruction for it, and a table takes longer.
    static std::size_t BitsOf(std::uint64_t bits) {
        bits -= bits >> 1 & 0x5555555555555555;
        bits = (bits & 0x3333333333333333) + (bits >> 2 & 0x3333333333333333);
        bits = (bits + (bits >> 4)) & 0x0F0F0F0F0F0F0F0F;
        return static_cast<std::size_t>(bits * 0x0101010101010101 >> 56);
    }

    std::size_t wanted_;
    std::size_t count_ = 0;
    std::size_t readable_ = 0;
    std::array<std::uint16_t, kMostPlaces + kTextBlock> places_;
};

}  // namespace marisonde
