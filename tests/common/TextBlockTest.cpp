#include <gtest/gtest.h>
#include <random>
#include <string>

#include "common/TextBlock.h"

namespace marisonde {
namespace {

std::uint64_t OneByOne(const std::string& text, char one, char other) {
    std::uint64_t mask = 0;
    for (std::size_t i = 0; i < kTextBlock; ++i)
        if (text[i] == one || text[i] == other) mask |= std::uint64_t{1} << i;
    return mask;
}

/// Every processor must find the same: the way that this one does not take is tested beside the other.
template <class Block>
class TextBlockTest : public testing::Test {};

#ifdef MARISONDE_HAS_SSE2
using Blocks = testing::Types<detail::WordBlock, detail::VectorBlock>;
#else
using Blocks = testing::Types<detail::WordBlock>;
#endif
TYPED_TEST_SUITE(TextBlockTest, Blocks);

TYPED_TEST(TextBlockTest, FindsEachCharacterInEachPlace) {
    for (std::size_t place = 0; place < kTextBlock; ++place) {
        for (int c = 0; c < 256; ++c) {
            const char wanted = static_cast<char>(c);
            std::string text(kTextBlock, static_cast<char>(c ^ 1));
            text[place] = wanted;
            ASSERT_EQ(TypeParam(text.data()).Equal(wanted), std::uint64_t{1} << place) << place << ' ' << c;
        }
    }
}

TYPED_TEST(TextBlockTest, NeighboursDoNotDisturbEachOther) {
    std::mt19937 random(3);
    for (int run = 0; run < 20000; ++run) {
        const int spread = 1 + run % 256;
        std::string text(kTextBlock + 1, '\0');
        for (char& c : text) c = static_cast<char>(',' - 2 + static_cast<int>(random() % spread));
        const std::string from = text.substr(1);
        const TypeParam block(text.data() + 1);
        ASSERT_EQ(block.Equal(','), OneByOne(from, ',', ',')) << run;
        ASSERT_EQ(block.EqualEither(',', '-'), OneByOne(from, ',', '-')) << run;
    }
}

}  // namespace
}  // namespace marisonde
