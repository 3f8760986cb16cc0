#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "graphs/Chart2D.h"
#include "graphs/SeriesRaster.h"

namespace marisonde {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

class SeriesRasterTest : public testing::Test {
  protected:
    void SetUp() override { group.SetNumSeries(1); }
    void Points(std::initializer_list<std::pair<double, double>> points) {
        int i = 0;
        for (const auto& [x, y] : points) {
            group.SetX(++i, x);
            group.SetY(1, i, y);
        }
        group.SetLastPoint(i);
    }
    /// The picture of values 0..8 by 0..5 at one pixel each, Y upward, as lines of text from the top.
    std::vector<std::string> Picture(int lineWidth = 1) {
        raster.Reset(8, 5, lineWidth);
        raster.Draw(group, 1, group.LastPoint(), PixelScale(0, 8, 8, false), PixelScale(0, 5, 5, true), 1);
        std::vector<std::string> lines(5, std::string(8, '.'));
        for (int x = 0; x < 8; ++x)
            for (int y = 0; y < 5; ++y)
                if (const int rank = raster.Column(x)[static_cast<std::size_t>(y)]; rank > 0)
                    lines[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] =
                        static_cast<char>('0' + rank);
        return lines;
    }
    Chart2D chart;
    ChartGroup& group = chart.ChartGroups(1);
    SeriesRaster raster;
};

using Lines = std::vector<std::string>;

TEST_F(SeriesRasterTest, LimitsFallIntoTheOutermostPixels) {
    const PixelScale scale(0, 8, 8, false);
    EXPECT_EQ(scale.At(0), 0);
    EXPECT_EQ(scale.At(0.99), 0);
    EXPECT_EQ(scale.At(1), 0);  // the trifle that keeps the upper limit inside shows here too
    EXPECT_EQ(scale.At(1.001), 1);
    EXPECT_EQ(scale.At(8), 7);
    EXPECT_EQ(scale.At(-0.01), -1);
    EXPECT_EQ(scale.At(kInf), 1 << 20);
    EXPECT_EQ(PixelScale(0, 8, 8, true).At(0.5), 7);
}

TEST_F(SeriesRasterTest, FlatLineHasOnePixelInEachColumn) {
    Points({{0.5, 0.5}, {7.5, 4.5}});
    // Row of column c: round(c * 4 / 7), halves up: 0 1 1 2 2 3 3 4.
    EXPECT_EQ(Picture(), (Lines{".......1", ".....11.", "...11...", ".11.....", "1......."}));
}

TEST_F(SeriesRasterTest, SteepLineSplitsItsRowsBetweenTheColumns) {
    Points({{2.5, 0.5}, {3.5, 4.5}});
    // Height 4 over one column: the first ceil(4 / 2) = 2 rows belong to the first column.
    EXPECT_EQ(Picture(), (Lines{"...1....", "...1....", "...1....", "..1.....", "..1....."}));
}

TEST_F(SeriesRasterTest, PointsOfOneColumnCoverItsExtent) {
    Points({{4.2, 1.5}, {4.4, 3.5}, {4.6, 2.5}});
    EXPECT_EQ(Picture(), (Lines{"........", "....1...", "....1...", "....1...", "........"}));
}

TEST_F(SeriesRasterTest, NoNumberLeavesAGap) {
    Points({{0.5, 0.5}, {2.5, 0.5}, {3.5, kNaN}, {5.5, 0.5}, {6.5, 0.5}, {kNaN, 0.5}, {7.5, 0.5}});
    EXPECT_EQ(Picture().back(), "111..111");
    // Within one column too: 0.5 | gap | 3.5 do not join.
    Points({{4.1, 0.5}, {4.2, kNaN}, {4.3, 3.5}});
    EXPECT_EQ(Picture(), (Lines{"........", "....1...", "........", "........", "....1..."}));
}

TEST_F(SeriesRasterTest, FailedValuesRunOutOfThePicture) {
    Points({{1.5, 0.5}, {2.5, 1e308}, {3.5, 0.5}, {4.5, kInf}, {5.5, -kInf}});
    const Lines lines = Picture();
    EXPECT_EQ(lines[0], ".1.11...");
    // The last line falls from far above to as far below: its first column ends where the picture does.
    EXPECT_EQ(lines[4], ".1.1.1..");
}

TEST_F(SeriesRasterTest, HigherRankStaysOnTopWhateverIsDrawnLater) {
    group.SetNumSeries(2);
    Points({{0.5, 2.5}, {7.5, 2.5}});
    group.SetY(2, 1, 2.5);
    group.SetY(2, 2, 2.5);
    EXPECT_EQ(Picture()[2], "22222222");
    raster.Draw(group, 1, 2, PixelScale(0, 8, 8, false), PixelScale(0, 5, 5, true), 0);
    EXPECT_EQ(raster.Column(3)[2], 2);
}

TEST_F(SeriesRasterTest, KeptSeriesIsNotDrawn) {
    Points({{0.5, 2.5}, {7.5, 2.5}});
    group.SetDisplay(1, SeriesDisplay::Kept);
    EXPECT_EQ(Picture(), Lines(5, "........"));
}

TEST_F(SeriesRasterTest, WideLineGrowsToAllSides) {
    Points({{3.5, 2.5}});
    EXPECT_EQ(Picture(3), (Lines{"........", "..111...", "..111...", "..111...", "........"}));
}

/// Draws every segment by its own call, the plainest way there is.
std::vector<std::uint8_t> Plainly(const ChartGroup& group, int last, const PixelScale& x,
                                  const PixelScale& y) {
    SeriesRaster raster;
    raster.Reset(60, 40, 1);
    for (int i = 1; i <= last; ++i) raster.Draw(group, std::max(i - 1, 1), i, x, y, 1);
    std::vector<std::uint8_t> all;
    for (int c = 0; c < 60; ++c) all.insert(all.end(), raster.Column(c).begin(), raster.Column(c).end());
    return all;
}

TEST_F(SeriesRasterTest, ManyPointsAtOnceGiveTheSamePixelsAsSegmentBySegment) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> any(0, 1);
    group.SetNumSeries(3);
    const int count = 6000;
    group.SetNumPoints(count);
    const PixelScale x(0, 1, 60, false);
    const PixelScale y(0, 1, 40, true);
    for (int round = 0; round < 6; ++round) {
        double place = 0;
        for (int i = 1; i <= count; ++i) {
            place =
                round % 2 == 0 ? i / 5000.0 : place + 0.05 * (any(random) - 0.5);  // in time, and to and fro
            group.SetX(i, any(random) < 0.01 ? kNaN : place);
            for (int s = 1; s <= 3; ++s) {
                const double chance = any(random);
                group.SetY(s, i,
                           chance < 0.02   ? kNaN
                           : chance < 0.03 ? 1e308
                           : chance < 0.04 ? -kInf
                                           : 0.3 * s + 0.3 * any(random));
            }
        }
        raster.Reset(60, 40, 1);
        raster.Draw(group, 1, count, x, y, 1);
        std::vector<std::uint8_t> all;
        for (int c = 0; c < 60; ++c) all.insert(all.end(), raster.Column(c).begin(), raster.Column(c).end());
        ASSERT_EQ(all, Plainly(group, count, x, y)) << "round " << round;
    }
}

TEST_F(SeriesRasterTest, TouchedBoxHoldsAllThatChanged) {
    Points({{1.5, 1.5}, {4.5, 3.5}});
    raster.Reset(8, 5, 1);
    const PixelBox box = raster.Draw(group, 1, 2, PixelScale(0, 8, 8, false), PixelScale(0, 5, 5, true), 1);
    EXPECT_EQ(box.x0, 1);
    EXPECT_EQ(box.x1, 4);
    EXPECT_EQ(box.y0, 1);
    EXPECT_EQ(box.y1, 3);
    EXPECT_TRUE(raster.Draw(group, 3, 2, PixelScale(0, 8, 8, false), PixelScale(0, 5, 5, true), 1).Empty());
}

}  // namespace
}  // namespace marisonde
