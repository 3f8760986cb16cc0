#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// Eight characters of a number side by side in one word, the first in the lowest byte: what is done to one
/// is done to all.
namespace marisonde::detail {

inline constexpr std::uint64_t kEachByte = 0x0101010101010101;

/// The 8 characters from `p` on, the first in the lowest byte.
inline std::uint64_t EightChars(const char* p) {
    std::array<unsigned char, 8> chars;
    std::memcpy(chars.data(), p, chars.size());
    if constexpr (std::endian::native == std::endian::little) return std::bit_cast<std::uint64_t>(chars);
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < chars.size(); ++i) word |= std::uint64_t{chars[i]} << (8 * i);
    return word;
}

/// The first `count` (1 to 8) of 8 characters as digits of a number of 8 digits: zeros stand in front.
inline std::uint64_t DigitsOf(std::uint64_t chars, unsigned count) {
    return (chars ^ kEachByte * '0') << ((64 - 8 * count) & 63);
}
/// 0 when all 8 are digits; otherwise the lowest bit that is set stands in the first that is none.
inline std::uint64_t NoDigits(std::uint64_t digits) {
    return ((digits + kEachByte * 0x76) | digits) & kEachByte * 0x80;
}
/// The number of 8 digits. Neighbours are joined: digits to pairs, pairs to fours, fours to all.
inline std::uint64_t Join(std::uint64_t digits) {
    constexpr std::uint64_t kPairs = 0x000000FF000000FF;
    const std::uint64_t pairs = digits * 10 + (digits >> 8);
    return ((pairs & kPairs) * 0x000F424000000064 + (pairs >> 16 & kPairs) * 0x0000271000000001) >> 32;
}

}  // namespace marisonde::detail
