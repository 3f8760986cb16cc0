#include <cmath>
#include <limits>

#include "PlotFixture.h"

namespace marisonde {
namespace {

/// New charts have X 0 to 100 (spacing 10), Y 0 to 0.01 (0.001) and Y2 0 to 0.1 (0.01).
class AxisFollowTest : public PlotTest {
  protected:
    void SetUp() override { plot.SetupChartForInstrument(InstTypeCode::NTidal); }
    static RawSample Usable() {
        RawSample raw;
        raw.Gain[0] = 1;
        return raw;
    }
    void PlotBb(double bb) {
        CalibratedSample sample = SampleAt(0);
        sample.bb[0] = bb;
        Plot(sample, Usable());
    }
    void PlotBeam(float k) {
        CalibratedSample sample = SampleAt(0);
        sample.Valid[0] = true;
        sample.k[0] = k;
        Plot(sample);
    }
};

TEST_F(AxisFollowTest, TimeMax) {
    Plot(SampleAt(0));
    Plot(SampleAt(99));
    EXPECT_EQ(X().Max(), 100);
    Plot(SampleAt(100.5));
    EXPECT_EQ(X().Max(), 110);
    plot.AutoTimeMax = false;
    Plot(SampleAt(500));
    EXPECT_EQ(X().Max(), 110);
}

TEST_F(AxisFollowTest, LimitThatIsReachedMovesOn) {
    // 40000 + 256/1440... : a date whose distance from the start is the whole 2.5 days of 3600 minutes.
    X().SetMax(3600);
    Plot(SampleAt(0));
    CalibratedSample sample = SampleAt(0);
    sample.Time = kStart + 2.5;  // 2.5 / 0.0006944444444444445 = 3600 (0.0006944444444444445 is 1/1440)
    Plot(sample);
    EXPECT_EQ(X().Max(), 4000);  // spacing 500: (Int(7.2) + 1) * 500
}

TEST_F(AxisFollowTest, TimeMin) {
    Plot(SampleAt(0));
    plot.VsTimeMenuVisible = false;
    Plot(SampleAt(-5));
    EXPECT_EQ(X().Min(), 0);
    plot.VsTimeMenuVisible = true;
    plot.AutoTimeMin = false;
    Plot(SampleAt(-5));
    EXPECT_EQ(X().Min(), 0);
    plot.AutoTimeMin = true;
    Plot(SampleAt(-5));
    EXPECT_EQ(X().Min(), -10);
}

TEST_F(AxisFollowTest, DepthMaxAndMin) {
    plot.VsDepthCommand();
    Plot(SampleAt(0, 100));
    EXPECT_EQ(X().Max(), 110);  // reached counts as passed
    Plot(SampleAt(1, -3));
    EXPECT_EQ(X().Min(), -20);  // range 110: spacing 20
    plot.AutoDepthMax = plot.AutoDepthMin = false;
    Plot(SampleAt(2, 900));
    Plot(SampleAt(3, -900));
    EXPECT_EQ(X().Max(), 110);
    EXPECT_EQ(X().Min(), -20);
    EXPECT_EQ(plot.CurrentDepthMax, 110);
    EXPECT_EQ(plot.CurrentDepthMin, -20);
    EXPECT_EQ(plot.CurrentTimeMax, 100);
}

TEST_F(AxisFollowTest, DistanceMovesTheMaximumOnly) {
    plot.SetPlotTypes(6, 0, 16);
    plot.PlotDistance = -5;
    Plot(SampleAt(0));
    EXPECT_EQ(X().Min(), 0);
    plot.PlotDistance = 100;
    Plot(SampleAt(1));
    EXPECT_EQ(X().Max(), 110);
}

TEST_F(AxisFollowTest, DataMaxAndMin) {
    PlotBb(0.0123);
    EXPECT_EQ(Y().Max(), 13 * 0.001);
    PlotBb(-0.003);
    EXPECT_EQ(Y().Min(), -2 * 0.002);  // range 0.013: spacing 0.002, Int(-1.5) = -2
    plot.AutoDataMax = plot.AutoDataMin = false;
    PlotBb(5);
    PlotBb(-5);
    EXPECT_EQ(Y().Max(), 13 * 0.001);
    EXPECT_EQ(Y().Min(), -2 * 0.002);
}

TEST_F(AxisFollowTest, Data2MaxAndMin) {
    PlotBeam(0.25F);
    EXPECT_EQ(Y2().Max(), 26 * 0.01);
    PlotBeam(-0.25F);
    EXPECT_EQ(Y2().Min(), -5 * 0.05);  // range 0.26: spacing 0.05, -0.25 / 0.05 = -5
    plot.AutoDataMax2 = plot.AutoDataMin2 = false;
    PlotBeam(7);
    PlotBeam(-7);
    EXPECT_EQ(Y2().Max(), 26 * 0.01);
    EXPECT_EQ(Y2().Min(), -5 * 0.05);
}

TEST_F(AxisFollowTest, OnlyTheLastSampleOfATickCountsForX) {
    ASSERT_EQ(plot.BeginTick(3), 3);
    plot.AddSample({}, SampleAt(0));
    plot.AddSample({}, SampleAt(900));
    plot.AddSample({}, SampleAt(50));
    plot.EndTick();
    EXPECT_EQ(X().Max(), 100);
}

TEST_F(AxisFollowTest, ExtremesOfTheWholeTickCountForY) {
    ASSERT_EQ(plot.BeginTick(3), 3);
    for (const double bb : {0.001, 0.0123, 0.002}) {
        CalibratedSample sample = SampleAt(0);
        sample.bb[0] = bb;
        plot.AddSample(Usable(), sample);
    }
    plot.EndTick();
    EXPECT_EQ(Y().Max(), 13 * 0.001);
}

TEST_F(AxisFollowTest, LimitsNeverShrink) {
    PlotBb(0.0123);
    PlotBb(0.0001);
    EXPECT_EQ(Y().Max(), 13 * 0.001);
}

TEST_F(AxisFollowTest, TickWithoutDataMovesNothing) {
    const auto before = chart.AxesRevision();
    EXPECT_EQ(plot.BeginTick(0), 0);
    plot.EndTick();
    Plot(SampleAt(0));
    EXPECT_EQ(chart.AxesRevision(), before);
}

TEST_F(AxisFollowTest, LimitThatIsNoNumberIsRefused) {
    // 1e308 / 0.001 has no place among the numbers.
    PlotBb(1e308);
    EXPECT_EQ(Y().Max(), 0.01);
    EXPECT_EQ(primary.Y(1, 1), 1e308);
    PlotBeam(std::numeric_limits<float>::infinity());
    EXPECT_EQ(Y2().Max(), 0.1);
    PlotBb(std::nan(""));
    EXPECT_EQ(Y().Max(), 0.01);
    EXPECT_FALSE(chart.IsBatched());
}

TEST_F(AxisFollowTest, SentinelDrivesALimitThatHasRoomForIt) {
    Y().SetMax(1e307);  // spacing 1e306
    PlotBb(1e308);
    EXPECT_GT(Y().Max(), 1e308);
    EXPECT_TRUE(std::isfinite(Y().Max()));
}

}  // namespace
}  // namespace marisonde
