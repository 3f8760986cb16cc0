#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "graphs/Chart2D.h"

namespace marisonde {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(TickSpacing, IsOneTwoOrFiveTimesAPowerOfTen) {
    EXPECT_EQ(TickSpacingFor(0, 100), 10);       // 100/10 = 10
    EXPECT_EQ(TickSpacingFor(0, 110), 20);       // 11 -> 20
    EXPECT_EQ(TickSpacingFor(0, 0.01), 0.001);   // 0.001 itself
    EXPECT_EQ(TickSpacingFor(0, 0.013), 0.002);  // 0.0013 -> 0.002
    EXPECT_EQ(TickSpacingFor(0, 0.05), 0.005);
    EXPECT_EQ(TickSpacingFor(0, 0.06), 0.01);  // 0.006 -> 0.01
    EXPECT_EQ(TickSpacingFor(-5, 15), 2);
    EXPECT_EQ(TickSpacingFor(0, 2e6), 2e5);
}

TEST(TickSpacing, IsUsableForAnyRange) {
    for (const auto& [min, max] : {std::pair{3.0, 3.0},
                                   {5.0, 2.0},
                                   {-1e308, 1e308},
                                   {0.0, 1e308},
                                   {0.0, 5e-324},
                                   {-kInf, kInf},
                                   {std::nan(""), 1.0}}) {
        const double spacing = TickSpacingFor(min, max);
        EXPECT_TRUE(spacing > 0 && std::isfinite(spacing)) << min << " " << max;
    }
    EXPECT_EQ(TickSpacingFor(3, 3), 0.1);
}

TEST(TickSpacing, TicksAroundAValue) {
    EXPECT_EQ(TickAbove(37, 10), 40);
    EXPECT_EQ(TickAbove(40, 10), 50);
    EXPECT_EQ(TickBelow(40, 10), 40);
    EXPECT_EQ(TickBelow(-1, 10), -10);
}

class ChartAxisTest : public testing::Test {
  protected:
    void Hold(std::initializer_list<double> values) {
        ChartGroup& group = chart.ChartGroups(1);
        group.SetNumSeries(2);
        group.SetDisplay(2, SeriesDisplay::Kept);
        int point = 0;
        for (const double value : values) {
            ++point;
            group.SetX(point, point * 10);
            group.SetY(1, point, value);
            group.SetY(2, point, 1000);
        }
        group.SetLastPoint(point);
    }
    Chart2D chart;
    ChartAxis& y = chart.Axes(AxisName::Y);
};

TEST_F(ChartAxisTest, LimitsThatAreNoNumbersAreRefused) {
    y.SetMax(kInf);
    y.SetMin(std::nan(""));
    EXPECT_EQ(y.Max(), 0.01);
    EXPECT_EQ(y.Min(), 0);
}

TEST_F(ChartAxisTest, DefaultLimitsAreRoundValuesAroundTheDrawnData) {
    Hold({3.2, 47.1, 12});
    y.SetMinIsDefault(true);
    y.SetMaxIsDefault(true);
    // Range 43.9, a tenth 4.39, spacing 5: 0 and 50.
    EXPECT_EQ(y.Min(), 0);
    EXPECT_EQ(y.Max(), 50);
}

TEST_F(ChartAxisTest, FailedValuesDoNotStretchDefaultLimits) {
    Hold({3.2, 1e308, 47.1, kInf, std::nan("")});
    y.SetMinIsDefault(true);
    y.SetMaxIsDefault(true);
    EXPECT_EQ(y.Max(), 50);
}

TEST_F(ChartAxisTest, DefaultLimitsWithoutDataAreNoughtAndOne) {
    chart.ChartGroups(1).SetNumSeries(1);
    ChartAxis& x = chart.Axes(AxisName::X);
    x.SetMinIsDefault(true);
    x.SetMaxIsDefault(true);
    EXPECT_EQ(x.Min(), 0);
    EXPECT_EQ(x.Max(), 1);
    x.SetMinIsDefault(false);
    x.SetMaxIsDefault(false);
    EXPECT_EQ(x.Max(), 1);
}

TEST_F(ChartAxisTest, ClearingDefaultFreezesTheComputedValue) {
    Hold({3.2, 47.1});
    y.SetMaxIsDefault(true);
    y.SetMaxIsDefault(false);
    chart.ChartGroups(1).SetY(1, 1, 5000);
    EXPECT_EQ(y.Max(), 50);
    EXPECT_FALSE(y.MaxIsDefault());
}

TEST_F(ChartAxisTest, DataLimitsStandForTheData) {
    Hold({3.2, 47.1});
    y.SetMinIsDefault(true);
    y.SetMaxIsDefault(true);
    y.SetDataMax({99, false});
    EXPECT_EQ(y.Max(), 100);
}

TEST_F(ChartAxisTest, ADefaultLimitLiesBesideAFixedOneThatNoDataReach) {
    Hold({0.004, 0.009});
    y.SetMax(0.0005);
    y.SetMinIsDefault(true);
    // A tenth of 0.0005 is 0.00005: the tick below.
    EXPECT_DOUBLE_EQ(y.Min(), 0.00045);
    EXPECT_EQ(y.Max(), 0.0005);
    y.SetMaxIsDefault(true);
    y.SetMin(40);
    EXPECT_EQ(y.Max(), 45);  // ticks of 5
    y.SetMin(-40);
    EXPECT_EQ(y.Max(), 5) << "ticks of 5 again, around the data";
    chart.ChartGroups(1).SetLastPoint(0);
    y.SetMin(3);
    EXPECT_GT(y.Max(), 3) << "not 1, as without data and without a fixed limit";
    y.SetMin(1.7e308);
    EXPECT_EQ(y.Max(), 1.7e308) << "as far as numbers go";
}

TEST_F(ChartAxisTest, PointsThatAppendUnderDefaultLimitsRedrawAll) {
    Hold({1, 2});
    y.SetMaxIsDefault(true);
    const auto before = chart.AxesRevision();
    chart.ChartGroups(1).FastAdd(1);
    EXPECT_GT(chart.AxesRevision(), before);
}

TEST(ChartDataRange, KnowsEveryChangeOfWhatIsDrawn) {
    Chart2D chart;
    ChartGroup& group = chart.ChartGroups(1);
    group.SetNumSeries(2);
    group.SetLastPoint(0);
    const auto range = [&](AxisName name) {
        const AxisRange found = chart.DataRange(name);
        return std::pair(found.min, found.max);
    };
    EXPECT_GT(range(AxisName::Y).first, range(AxisName::Y).second) << "nothing is drawn";
    for (int i = 1; i <= 9; ++i) {
        group.SetX(i, i);
        group.SetY(1, i, 10 * i);
        group.SetY(2, i, -i);
    }
    group.FastAdd(3);
    EXPECT_EQ(range(AxisName::Y), std::pair(-3.0, 30.0));
    group.FastAdd(5);
    EXPECT_EQ(range(AxisName::X), std::pair(1.0, 8.0));
    EXPECT_EQ(range(AxisName::Y), std::pair(-8.0, 80.0));
    group.SetY(2, 7, -70);
    EXPECT_EQ(range(AxisName::Y), std::pair(-70.0, 80.0));
    group.SetDisplay(2, SeriesDisplay::Kept);
    EXPECT_EQ(range(AxisName::Y), std::pair(10.0, 80.0));
    group.MovePoints(7, 1, 3);
    EXPECT_EQ(range(AxisName::Y), std::pair(30.0, 90.0));
    group.SwapSeries(1, 2);
    EXPECT_EQ(range(AxisName::Y), std::pair(-70.0, -3.0));
    group.ScaleX(2);
    EXPECT_EQ(range(AxisName::X), std::pair(6.0, 18.0));
    group.SwapXWithSeries(1);
    EXPECT_EQ(range(AxisName::Y), std::pair(6.0, 18.0));
    chart.Axes(AxisName::Y).SetMin(3);
    EXPECT_EQ(range(AxisName::Y), std::pair(6.0, 18.0));
    group.SetNumPoints(0);
    EXPECT_GT(range(AxisName::Y).first, range(AxisName::Y).second);
}

}  // namespace
}  // namespace marisonde
