#include <cmath>
#include <tuple>

#include "PlotFixture.h"

namespace marisonde {
namespace {

class ExpandChartTest : public PlotTest {
  protected:
    void Fill(int points, int series2 = 0) {
        primary.SetNumSeries(1);
        secondary.SetNumSeries(series2);
        for (ChartGroup* group : {&primary, &secondary}) {
            group->SetNumPoints(points);
            for (int i = 1; i <= points; ++i) group->SetX(i, i);
            group->SetLastPoint(points);
        }
    }
};

TEST_F(ExpandChartTest, AtTheLimitTheOldestFifthGoes) {
    Fill(1000, 2);
    int index = 1001;
    ExpandChart(chart, index, 1000);
    EXPECT_EQ(index, 801);
    for (const ChartGroup* group : {&primary, &secondary}) {
        EXPECT_EQ(group->LastPoint(), 800);
        EXPECT_EQ(group->NumPoints(), 1000);
        EXPECT_EQ(group->X(1), 201);
        EXPECT_EQ(group->X(800), 1000);
        EXPECT_EQ(group->X(801), 801);  // what the move left behind stays
    }
    EXPECT_TRUE(chart.IsBatched());
}

TEST_F(ExpandChartTest, BelowTheLimitTheArraysGrow) {
    Fill(1000, 2);
    secondary.SetLastPoint(7);
    primary.SetLastPoint(990);
    int index = 1001;
    ExpandChart(chart, index, 50000);
    EXPECT_EQ(index, 1001);
    EXPECT_EQ(primary.NumPoints(), 2000);
    EXPECT_EQ(primary.LastPoint(), 990);
    EXPECT_EQ(secondary.NumPoints(), 2000);
    EXPECT_EQ(secondary.LastPoint(), 990);  // the value of the primary group
    EXPECT_TRUE(chart.IsBatched());
}

TEST_F(ExpandChartTest, GrowingLeavesThePictureAsItIs) {
    Fill(1000, 2);
    int index = 1001;
    const auto before = chart.PointsRevision();
    ExpandChart(chart, index, 50000);
    EXPECT_EQ(chart.PointsRevision(), before);
    EXPECT_EQ(primary.X(1000), 1000);
    EXPECT_TRUE(std::isnan(primary.X(1001)));
    ExpandChart(chart, index = 2001, 2000);  // what drops points is another picture
    EXPECT_NE(chart.PointsRevision(), before);
}

TEST_F(ExpandChartTest, UnusedSecondaryGroupIsLeftAlone) {
    Fill(1000);
    int index = 1001;
    ExpandChart(chart, index, 50000);
    EXPECT_EQ(secondary.NumPoints(), 1000);
    index = 2001;
    ExpandChart(chart, index, 2000);
    EXPECT_EQ(secondary.X(1), 1);
}

TEST_F(ExpandChartTest, ExpectedPointsFindTheirRoomUpToTheLimit) {
    plot.SetupChartForInstrument(InstTypeCode::LTidal);
    plot.MaxGraphPoints = 1500;
    plot.ExpectPoints(90000);
    // X and three series in each group; the arrays stop at 2000 points.
    EXPECT_EQ(primary.CapacityBytes(), 4U * 2000U * sizeof(double));
    EXPECT_EQ(secondary.CapacityBytes(), 4U * 2000U * sizeof(double));
    EXPECT_EQ(primary.NumPoints(), 1000);
    const double* const x = primary.XData().data();
    PlotMany(2000);
    EXPECT_EQ(primary.NumPoints(), 2000);
    EXPECT_EQ(secondary.LastPoint(), 2000);
    EXPECT_EQ(primary.XData().data(), x);
    EXPECT_EQ(primary.X(2000), (SampleAt(1999).Time - kStart) / 0.0006944444444444445);
}

TEST_F(ExpandChartTest, RoomIsMadeInWholeSteps) {
    plot.SetupChartForInstrument(InstTypeCode::Delph2);
    const auto unused = secondary.CapacityBytes();
    plot.ExpectPoints(4001);
    const auto arrays = static_cast<std::size_t>(primary.NumSeries()) + 1;
    EXPECT_EQ(primary.CapacityBytes(), arrays * 5000U * sizeof(double));
    plot.ExpectPoints(-1);
    EXPECT_EQ(primary.CapacityBytes(), arrays * 5000U * sizeof(double));
    EXPECT_EQ(secondary.CapacityBytes(), unused);
}

TEST_F(ExpandChartTest, PreferenceOutsideItsRangeIsHeldToIt) {
    Fill(1000);
    int index = 1001;
    ExpandChart(chart, index, 5);  // counts as 1000
    EXPECT_EQ(index, 801);
}

TEST_F(ExpandChartTest, ArraysStopAtFiftyThousandPoints) {
    plot.SetupChartForInstrument(InstTypeCode::Delph2);
    PlotMany(50000);
    EXPECT_EQ(primary.NumPoints(), 50000);
    EXPECT_EQ(primary.LastPoint(), 50000);
    PlotMany(1);
    EXPECT_EQ(primary.NumPoints(), 50000);
    EXPECT_EQ(plot.PlotIndex(), 40002);  // 10000 points dropped, one added
    EXPECT_EQ(primary.LastPoint(), 40001);
}

TEST_F(ExpandChartTest, LimitBetweenTheStepsIsOvershot) {
    plot.SetupChartForInstrument(InstTypeCode::Delph2);
    plot.MaxGraphPoints = 1500;
    PlotMany(2000);
    EXPECT_EQ(primary.NumPoints(), 2000);
    PlotMany(1);
    EXPECT_EQ(primary.NumPoints(), 2000);
    EXPECT_EQ(plot.PlotIndex(), 1602);  // a fifth of 2000 is 400
}

TEST_F(ExpandChartTest, ThousandAndFirstPointMovesEightHundredToTheFront) {
    plot.SetupChartForInstrument(InstTypeCode::Delph2);
    plot.MaxGraphPoints = 1000;
    PlotMany(1000);
    EXPECT_EQ(plot.PlotIndex(), 1001);
    EXPECT_EQ(plot.BeginTick(1), 1);
    EXPECT_EQ(plot.PlotIndex(), 801);
    EXPECT_EQ(primary.LastPoint(), 800);
    EXPECT_NEAR(primary.X(1), 200, 1e-6);  // minutes of the 201st point
}

}  // namespace
}  // namespace marisonde
