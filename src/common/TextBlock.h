#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "common/DigitWords.h"

#if defined(__SSE2__) || defined(_M_X64)
#define MARISONDE_HAS_SSE2
#include <emmintrin.h>
#endif

/// Long texts are searched 64 bytes at a time: a byte at a time, most of the time of a load would go by here.
namespace marisonde {

namespace detail {

/// For any processor, eight bytes of a word beside each other.
class WordBlock {
  public:
    explicit WordBlock(const char* first) {
        for (std::size_t i = 0; i < words_.size(); ++i) words_[i] = EightChars(first + 8 * i);
    }
    [[nodiscard]] std::uint64_t Equal(char wanted) const {
        std::uint64_t mask = 0;
        for (std::size_t i = 0; i < words_.size(); ++i) mask |= EqualIn(words_[i], wanted) << (8 * i);
        return mask;
    }
    [[nodiscard]] std::uint64_t EqualEither(char one, char other) const { return Equal(one) | Equal(other); }

  private:
    static std::uint64_t EqualIn(std::uint64_t word, char wanted) {
        constexpr std::uint64_t kLow = kEachByte * 0x7F;
        const std::uint64_t zeros = word ^ kEachByte * static_cast<unsigned char>(wanted);
        const std::uint64_t equal = ~(((zeros & kLow) + kLow) | zeros | kLow);  // 0x80 where it is
        return (equal >> 7) * 0x0102040810204080 >> 56;
    }
    std::array<std::uint64_t, 8> words_;
};

#ifdef MARISONDE_HAS_SSE2
class VectorBlock {
  public:
    explicit VectorBlock(const char* first)
        : quarters_{Quarter(first), Quarter(first + 16), Quarter(first + 32), Quarter(first + 48)} {}
    [[nodiscard]] std::uint64_t Equal(char wanted) const {
        const __m128i all = _mm_set1_epi8(wanted);
        return Mask([=](__m128i quarter) { return _mm_cmpeq_epi8(quarter, all); });
    }
    [[nodiscard]] std::uint64_t EqualEither(char one, char other) const {
        const __m128i ones = _mm_set1_epi8(one);
        const __m128i others = _mm_set1_epi8(other);
        return Mask([=](__m128i quarter) {
            return _mm_or_si128(_mm_cmpeq_epi8(quarter, ones), _mm_cmpeq_epi8(quarter, others));
        });
    }

  private:
    static __m128i Quarter(const char* first) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(first));
    }
    template <class Test>
    std::uint64_t Mask(Test test) const {
        std::uint64_t mask = 0;
        for (int i = 0; i < 4; ++i)
            mask |= std::uint64_t{static_cast<unsigned>(_mm_movemask_epi8(test(quarters_[i])))} << (16 * i);
        return mask;
    }
    __m128i quarters_[4];
};
#endif

}  // namespace detail

inline constexpr std::size_t kTextBlock = 64;

/// The kTextBlock bytes from a place on, all of which are readable. Equal gives one bit for each of them, the
/// lowest for the first, set where the byte is the wanted one.
#ifdef MARISONDE_HAS_SSE2
using TextBlock = detail::VectorBlock;
#else
using TextBlock = detail::WordBlock;
#endif

}  // namespace marisonde
