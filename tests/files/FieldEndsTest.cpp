#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "common/TextBlock.h"
#include "files/FieldEnds.h"

namespace marisonde {
namespace {

std::vector<std::size_t> CommasOf(std::string_view line) {
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < line.size(); ++i)
        if (line[i] == ',') places.push_back(i);
    return places;
}

void ExpectTheCommas(const FieldEnds& ends, std::size_t remembered, std::string_view line) {
    const std::vector<std::size_t> commas = CommasOf(line);
    ASSERT_EQ(ends.Count(), commas.size()) << line;
    for (std::size_t i = 0; i < std::min(remembered, commas.size()); ++i)
        ASSERT_EQ(ends.At(i), commas[i]) << line;
}

/// Lines of any length, thin and thick of commas, with more commas right behind them in memory.
TEST(FieldEndsTest, FindsTheCommasOfTheLineAlone) {
    std::mt19937 random(4);
    for (int run = 0; run < 20000; ++run) {
        const auto one = 1 + random() % 16;
        std::string memory(random() % 400 + 128, '1');
        for (char& c : memory)
            if (random() % one == 0) c = ',';
        const std::string_view line = std::string_view(memory).substr(0, memory.size() - random() % 128);
        const std::size_t places = run % 2 == 0 ? FieldEnds::kMostPlaces : run % 12;
        for (const std::size_t readable : {line.size(), memory.size()}) {
            FieldEnds ends(places);
            ends.Mark(line, readable);
            ExpectTheCommas(ends, places, line);
            EXPECT_EQ(ends.Readable(), readable);
        }
    }
}

TEST(FieldEndsTest, RemembersNoMoreThanItCan) {
    FieldEnds ends(1000);
    const std::string line(64 * 1024, ',');
    ends.Mark(line, line.size());
    ExpectTheCommas(ends, FieldEnds::kMostPlaces, line);
}

TEST(FieldEndsTest, ForgetsTheLineBefore) {
    FieldEnds ends;
    ends.Mark("1,2,3", 5);
    ends.Mark("12,3", 4);
    ExpectTheCommas(ends, 1, "12,3");
    ends.Mark("", 0);
    EXPECT_EQ(ends.Count(), 0U);
}

}  // namespace
}  // namespace marisonde
