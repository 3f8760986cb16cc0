#include <cmath>
#include <gtest/gtest.h>

#include "graphs/Chart2D.h"

namespace marisonde {
namespace {

class ChartGroupTest : public testing::Test {
  protected:
    void SetUp() override {
        group.SetNumSeries(2);
        for (int i = 1; i <= 10; ++i) {
            group.SetX(i, i);
            group.SetY(1, i, 100 + i);
            group.SetY(2, i, 200 + i);
        }
    }
    Chart2D chart;
    ChartGroup& group = chart.ChartGroups(1);
};

TEST_F(ChartGroupTest, NewChartHasBothGroupsWithRoomForAThousandPoints) {
    const Chart2D fresh;
    for (const int number : {1, 2}) {
        EXPECT_EQ(fresh.ChartGroups(number).NumSeries(), 0);
        EXPECT_EQ(fresh.ChartGroups(number).NumPoints(), 1000);
        EXPECT_EQ(fresh.ChartGroups(number).LastPoint(), 1);
    }
    EXPECT_FALSE(fresh.Axes(AxisName::Y2).Visible());
    EXPECT_EQ(fresh.Axes(AxisName::X).Max(), 100);
    EXPECT_EQ(fresh.Axes(AxisName::Y).Max(), 0.01);
    EXPECT_EQ(fresh.Axes(AxisName::Y2).Max(), 0.1);
}

TEST_F(ChartGroupTest, PlacesNeverWrittenHoldNoNumber) {
    EXPECT_TRUE(std::isnan(group.Y(1, 11)));
    EXPECT_TRUE(std::isnan(group.X(1000)));
    group.SetNumSeries(3);
    EXPECT_TRUE(std::isnan(group.Y(3, 1)));
    EXPECT_EQ(group.Y(2, 1), 201);
}

TEST_F(ChartGroupTest, AccessOutsideTheArraysDoesNothing) {
    group.SetX(0, 7);
    group.SetX(1001, 7);
    group.SetY(3, 1, 7);
    group.SetY(0, 1, 7);
    group.SetDisplay(9, SeriesDisplay::Drawn);
    EXPECT_TRUE(std::isnan(group.X(0)));
    EXPECT_TRUE(std::isnan(group.X(1001)));
    EXPECT_TRUE(std::isnan(group.Y(3, 1)));
    EXPECT_EQ(group.Display(9), SeriesDisplay::Kept);
    EXPECT_TRUE(group.YData(0).empty());
}

TEST_F(ChartGroupTest, LengthZeroDiscardsThePoints) {
    group.SetNumPoints(0);
    group.SetNumPoints(1000);
    EXPECT_TRUE(std::isnan(group.X(1)));
    EXPECT_TRUE(std::isnan(group.Y(2, 10)));
    EXPECT_EQ(group.NumSeries(), 2);
}

TEST_F(ChartGroupTest, GrowthKeepsPointsAndMovesLastPoint) {
    group.SetLastPoint(10);
    group.SetNumPoints(2000);
    EXPECT_EQ(group.LastPoint(), 2000);
    EXPECT_EQ(group.X(10), 10);
    EXPECT_EQ(group.Y(2, 10), 210);
}

TEST_F(ChartGroupTest, MovePointsMovesAllSeriesAndKeepsWhatItLeaves) {
    group.MovePoints(8, 1, 3);  // 3..10 to the front
    for (int i = 1; i <= 8; ++i) {
        EXPECT_EQ(group.X(i), i + 2);
        EXPECT_EQ(group.Y(1, i), 102 + i);
        EXPECT_EQ(group.Y(2, i), 202 + i);
    }
    EXPECT_EQ(group.X(9), 9);
    EXPECT_EQ(group.NumPoints(), 1000);
    group.MovePoints(3, 5, 1);  // and toward the end, overlapping
    EXPECT_EQ(group.X(5), 3);
    EXPECT_EQ(group.X(7), 5);
}

TEST_F(ChartGroupTest, MoveBeyondTheArraysMovesNothing) {
    group.MovePoints(999, 1, 3);
    EXPECT_EQ(group.X(1), 1);
    group.MovePoints(1, 0, 3);
    EXPECT_EQ(group.X(1), 1);
}

TEST_F(ChartGroupTest, FastAddShowsTheNextPointsAndNoMoreThanThereAre) {
    group.SetLastPoint(0);
    group.FastAdd(4);
    EXPECT_EQ(group.LastPoint(), 4);
    group.FastAdd(5000);
    EXPECT_EQ(group.LastPoint(), 1000);
    group.FastAdd(-3);
    EXPECT_EQ(group.LastPoint(), 1000);
}

TEST_F(ChartGroupTest, LastPointStaysWithinTheArrays) {
    group.SetLastPoint(-5);
    EXPECT_EQ(group.LastPoint(), 0);
    group.SetLastPoint(1001);
    EXPECT_EQ(group.LastPoint(), 1000);
}

TEST_F(ChartGroupTest, AppendingIsNoChangeOfWhatIsDrawn) {
    group.SetLastPoint(5);
    const auto before = chart.PointsRevision();
    group.SetY(1, 6, 1);
    group.SetX(6, 1);
    group.FastAdd(1);
    EXPECT_EQ(chart.PointsRevision(), before);
    group.SetY(1, 6, 2);
    EXPECT_GT(chart.PointsRevision(), before);
}

TEST_F(ChartGroupTest, BatchHoldsTheNoticeBackUntilItsEnd) {
    int notices = 0;
    chart.OnChange = [&] { ++notices; };
    chart.SetIsBatched(true);
    group.SetLastPoint(3);
    group.FastAdd(2);
    chart.Axes(AxisName::X).SetMax(7);
    EXPECT_EQ(notices, 0);
    chart.SetIsBatched(false);
    EXPECT_EQ(notices, 1);
    chart.SetIsBatched(false);
    EXPECT_EQ(notices, 1);
    group.FastAdd(1);
    EXPECT_EQ(notices, 2);
}

TEST_F(ChartGroupTest, MemoryOfAHundredThousandPointsOfElevenSeriesAndTwoCoordinates) {
    // 11 series + X + the other coordinate = 13 arrays of 100000 numbers of 8 bytes = 10.4 MB, and room to
    // grow.
    Chart2D full;
    ChartGroup& g = full.ChartGroups(1);
    g.SetNumSeries(12);
    for (int length = 2000; length <= 100000; length += 1000) g.Lengthen(length - g.NumPoints());
    EXPECT_EQ(g.NumPoints(), 100000);
    EXPECT_GE(g.CapacityBytes(), 13U * 100000U * 8U);
    EXPECT_LE(g.CapacityBytes(), 12U * 1000U * 1000U);
}

TEST_F(ChartGroupTest, ReservedRoomIsSeenOnlyInThatPointsStayWhereTheyAre) {
    Chart2D empty;
    ChartGroup& g = empty.ChartGroups(1);
    g.SetNumSeries(2);
    g.SetNumPoints(1000);
    g.SetX(1000, 4);
    g.SetY(2, 1000, 5);
    g.SetLastPoint(7);
    const auto revision = empty.PointsRevision();
    g.Reserve(20000);
    EXPECT_EQ(g.NumPoints(), 1000);
    EXPECT_EQ(g.LastPoint(), 7);
    EXPECT_EQ(empty.PointsRevision(), revision);
    const double* const x = g.XData().data();
    const double* const y = g.YData(2).data();
    const auto bytes = g.CapacityBytes();
    EXPECT_EQ(bytes, 3U * 20000U * sizeof(double));
    for (int length = 2000; length <= 20000; length += 1000) g.Lengthen(1000);
    EXPECT_EQ(g.NumPoints(), 20000);
    EXPECT_EQ(g.XData().data(), x);
    EXPECT_EQ(g.YData(2).data(), y);
    EXPECT_EQ(g.CapacityBytes(), bytes);
    EXPECT_EQ(g.X(1000), 4);
    EXPECT_EQ(g.Y(2, 1000), 5);
    EXPECT_TRUE(std::isnan(g.Y(1, 20000)));
    g.Reserve(-1);  // and less than there is: nothing to do
    EXPECT_EQ(g.CapacityBytes(), bytes);
}

}  // namespace
}  // namespace marisonde
