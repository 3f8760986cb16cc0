#include <cmath>
#include <limits>

#include "PlotFixture.h"
#include "graphs/CoordinateText.h"

namespace marisonde {
namespace {

using Range = std::pair<double, double>;

class PlotScaleTest : public PlotTest {
  protected:
    PlotScaleTest() { plot.SetupChartForInstrument(InstTypeCode::Corvane2); }
    static Range RangeOf(const ChartAxis& axis) { return {axis.Min(), axis.Max()}; }
    static void Set(ChartAxis& axis, double min, double max) {
        axis.SetMin(min);
        axis.SetMax(max);
    }
    void SetAll(Range x, Range y, Range y2) {
        Set(X(), x.first, x.second);
        Set(Y(), y.first, y.second);
        Set(Y2(), y2.first, y2.second);
    }
    Range PrevTime() const { return {plot.PrevTimeMin, plot.PrevTimeMax}; }
    Range PrevDepth() const { return {plot.PrevDepthMin, plot.PrevDepthMax}; }
    Range PrevData() const { return {plot.PrevDataMin, plot.PrevDataMax}; }
    Range PrevData2() const { return {plot.PrevData2Min, plot.PrevData2Max}; }
    Range CurrentTime() const { return {plot.CurrentTimeMin, plot.CurrentTimeMax}; }
    Range CurrentDepth() const { return {plot.CurrentDepthMin, plot.CurrentDepthMax}; }
};

TEST_F(PlotScaleTest, ZoomInHalvesAndZoomOutUndoesIt) {
    SetAll({0, 100}, {0, 8}, {0, 4});
    plot.Z_In_Button_Click();
    EXPECT_EQ(RangeOf(X()), Range(25, 75));
    EXPECT_EQ(RangeOf(Y()), Range(2, 6));
    EXPECT_EQ(RangeOf(Y2()), Range(0, 4)) << "no series use it";
    EXPECT_EQ(CurrentTime(), Range(25, 75));
    EXPECT_FALSE(chart.IsBatched());
    plot.Z_Out_Button_Click();
    EXPECT_EQ(RangeOf(X()), Range(0, 100));
    EXPECT_EQ(RangeOf(Y()), Range(0, 8));
    EXPECT_EQ(PrevTime(), Range(25, 75));
}

TEST_F(PlotScaleTest, ZoomTakesTheSecondAxisWhereItIsUsed) {
    plot.SetupChartForInstrument(InstTypeCode::NTidal);
    SetAll({0, 100}, {0, 8}, {-2, 6});
    plot.Z_In_Button_Click();
    EXPECT_EQ(RangeOf(Y2()), Range(0, 4));
    plot.Previous_Button_Click();
    EXPECT_EQ(RangeOf(Y2()), Range(-2, 6));
}

TEST_F(PlotScaleTest, ZoomEndsWithTheRangeOfNumbersAndComesBack) {
    Set(Y(), -1e308, 1e308);
    Set(X(), 0, 1e308);
    plot.Z_Out_Button_Click();  // 1.5 * 1e308 is no number
    EXPECT_EQ(RangeOf(Y()), Range(-1e308, 1e308));
    EXPECT_EQ(RangeOf(X()), Range(-5e307, 1.5e308)) << "as far as it goes";
    plot.Z_In_Button_Click();
    EXPECT_EQ(RangeOf(Y()), Range(-5e307, 5e307));
}

TEST_F(PlotScaleTest, ZoomHasNoLimitButTheNumbers) {
    Set(X(), 1, 3);
    for (int i = 0; i < 60; ++i) plot.Z_In_Button_Click();
    EXPECT_LE(X().Max() - X().Min(), 2e-15) << "numbers near 2 lie 4.4e-16 apart";
    Set(Y(), 4, 4);
    plot.Z_In_Button_Click();
    plot.Z_Out_Button_Click();
    EXPECT_EQ(RangeOf(Y()), Range(4, 4)) << "no range has no half";
}

TEST_F(PlotScaleTest, PreviousReturnsFromAxesThatHaveMovedOn) {
    SetAll({0, 10}, {0, 8}, {0, 1});
    plot.Z_In_Button_Click();
    Plot(SampleAt(0));
    Plot(SampleAt(30));  // X follows
    EXPECT_GT(X().Max(), 30);
    plot.Previous_Button_Click();
    EXPECT_EQ(RangeOf(X()), Range(0, 10));
    EXPECT_EQ(RangeOf(Y()), Range(0, 8));
    EXPECT_FALSE(chart.IsBatched());
}

TEST_F(PlotScaleTest, PreviousTwiceIsPreviousOnce) {
    SetAll({0, 10}, {0, 8}, {0, 1});
    plot.Z_Out_Button_Click();
    plot.Previous_Button_Click();
    plot.Previous_Button_Click();
    EXPECT_EQ(RangeOf(X()), Range(0, 10));
    EXPECT_EQ(RangeOf(Y()), Range(0, 8));
}

TEST_F(PlotScaleTest, PreviousLeavesTheRangeOfTheViewToTheNextTick) {
    SetAll({0, 10}, {0, 8}, {0, 1});
    plot.Z_In_Button_Click();
    plot.Previous_Button_Click();
    EXPECT_EQ(CurrentTime(), Range(2.5, 7.5));
    plot.UpdateCurrentPlotInfo();
    EXPECT_EQ(CurrentTime(), Range(0, 10));
}

TEST_F(PlotScaleTest, PreviousLeavesASecondAxisWithoutSeries) {
    SetAll({0, 10}, {0, 8}, {1, 3});
    plot.Z_In_Button_Click();
    EXPECT_EQ(PrevData2(), Range(1, 3)) << "stored all the same";
    Set(Y2(), 5, 6);
    plot.Previous_Button_Click();
    EXPECT_EQ(RangeOf(Y2()), Range(5, 6));
}

TEST_F(PlotScaleTest, EachViewHasItsOwnStoredX) {
    SetAll({0, 10}, {0, 8}, {0, 1});
    plot.Z_In_Button_Click();
    plot.VsDepthCommand();
    Set(X(), 0, 200);
    plot.Z_In_Button_Click();
    EXPECT_EQ(PrevTime(), Range(0, 10));
    EXPECT_EQ(PrevDepth(), Range(0, 200));
    EXPECT_EQ(CurrentDepth(), Range(50, 150));
    plot.Previous_Button_Click();
    EXPECT_EQ(RangeOf(X()), Range(0, 200));
    plot.VsTimeCommand();
    EXPECT_EQ(RangeOf(X()), Range(2.5, 7.5));
}

TEST_F(PlotScaleTest, ShowAllOfAnEmptyWindow) {
    plot.AutoScaleCommand();
    EXPECT_EQ(RangeOf(X()), Range(0, 1));
    for (ChartAxis* axis : {&X(), &Y(), &Y2()}) {
        EXPECT_FALSE(axis->MinIsDefault() || axis->MaxIsDefault());
        EXPECT_FALSE(axis->DataMin().isDefault || axis->DataMax().isDefault);
        EXPECT_EQ(axis->DataMin().value, -1e300);
        EXPECT_EQ(axis->DataMax().value, 1e300);
    }
    EXPECT_EQ(CurrentTime(), Range(0, 1));
}

TEST_F(PlotScaleTest, ShowAllHoldsAllDrawnDataBetweenRoundLimits) {
    for (int i = 0; i <= 43; ++i) Plot(Scatter(i, i % 2, 0.001 + 0.0001 * i, 0));
    SetAll({5, 6}, {3, 4}, {0, 1});
    plot.AutoScaleCommand();
    EXPECT_EQ(RangeOf(X()), Range(0, 45));  // tenths of 43 ask for a spacing of 5
    EXPECT_LE(Y().Min(), 0.001);
    EXPECT_GE(Y().Max(), 0.0053);
    EXPECT_LE(Y().Max() - Y().Min(), 0.006);
    EXPECT_EQ(CurrentTime(), RangeOf(X()));
    // From here on only data beyond the limits move them.
    Plot(Scatter(50, 0, 0.1, 0));
    EXPECT_GE(X().Max(), 50);
    EXPECT_GE(Y().Max(), 0.1);
}

TEST_F(PlotScaleTest, ShowAllLeavesTheBatchAsItWas) {
    chart.SetIsBatched(true);
    plot.AutoScaleCommand();
    EXPECT_TRUE(chart.IsBatched());
    plot.ApplyAutoScaleFlags();
    EXPECT_TRUE(chart.IsBatched());
    chart.SetIsBatched(false);
    plot.AutoScaleCommand();
    EXPECT_FALSE(chart.IsBatched());
}

TEST_F(PlotScaleTest, ShowAllStoresXUnderTheOtherView) {
    plot.VsDepthCommand();
    SetAll({10, 20}, {0, 8}, {0, 1});
    plot.Z_In_Button_Click();  // stored for depth: 10 to 20
    Plot(SampleAt(0, 55));
    const Range shown = RangeOf(X());
    plot.AutoScaleCommand();
    EXPECT_EQ(PrevTime(), shown);
    EXPECT_EQ(PrevDepth(), Range(10, 20));
    plot.Previous_Button_Click();
    EXPECT_EQ(RangeOf(X()), Range(10, 20));
}

TEST_F(PlotScaleTest, ShowAllInTheTimeViewStoresXForDepth) {
    SetAll({10, 20}, {3, 4}, {5, 6});
    plot.AutoScaleCommand();
    EXPECT_EQ(PrevDepth(), Range(10, 20));
    EXPECT_EQ(PrevTime(), Range(0, 0));
    EXPECT_EQ(PrevData(), Range(3, 4));
    EXPECT_EQ(PrevData2(), Range(5, 6));
    plot.Previous_Button_Click();
    EXPECT_EQ(RangeOf(Y()), Range(3, 4));
    plot.VsDepthCommand();
    plot.Previous_Button_Click();
    EXPECT_EQ(RangeOf(X()), Range(10, 20)) << "the range of minutes is now one of metres";
}

TEST_F(PlotScaleTest, ShowAllAgainShowsWhatHasComeSince) {
    Plot(Scatter(0, 0, 0.001, 0));
    Plot(Scatter(9, 0, 0.009, 0));
    plot.AutoScaleCommand();
    const Range before = RangeOf(Y());
    EXPECT_EQ(RangeOf(X()), Range(0, 9));
    plot.AutoScaleCommand();
    EXPECT_EQ(RangeOf(X()), Range(0, 9));
    EXPECT_EQ(RangeOf(Y()), before);
    plot.AutoTimeMax = plot.AutoDataMax = false;
    Plot(Scatter(90, 0, 0.09, 0));
    EXPECT_EQ(RangeOf(X()), Range(0, 9));
    plot.AutoScaleCommand();
    EXPECT_EQ(RangeOf(X()), Range(0, 90));
    EXPECT_GE(Y().Max(), 0.09);
    EXPECT_LE(Y().Max(), 0.1);
}

TEST_F(PlotScaleTest, ShowAllThenPreviousInANewWindowGivesXOfNought) {
    plot.VsDepthCommand();
    const Range y = RangeOf(Y());
    plot.AutoScaleCommand();
    plot.Previous_Button_Click();
    EXPECT_EQ(RangeOf(X()), Range(0, 0));
    EXPECT_EQ(RangeOf(Y()), y);
}

TEST_F(PlotScaleTest, FlagsSayWhichLimitsFollow) {
    for (int i = 0; i < 30; ++i) Plot(Scatter(i, 0, 0.004, 0));
    SetAll({-7, 500}, {-3, 9}, {2, 3});
    plot.AutoTimeMin = false;
    plot.AutoDataMax = false;
    plot.AutoDataMin2 = plot.AutoDataMax2 = false;
    plot.ApplyAutoScaleFlags();
    EXPECT_EQ(X().Min(), -7);
    EXPECT_GE(X().Max(), 29);
    EXPECT_LT(X().Max(), 500);
    EXPECT_EQ(Y().Max(), 9);
    EXPECT_GT(Y().Min(), -3);
    EXPECT_LE(Y().Min(), 0.004);
    EXPECT_EQ(RangeOf(Y2()), Range(2, 3));
    EXPECT_EQ(PrevTime(), Range(0, 500)) << "stored only where the flag is set";
    EXPECT_EQ(PrevData().first, -3);
    EXPECT_EQ(CurrentTime(), RangeOf(X()));
    EXPECT_EQ(Y().DataMax().value, 1e300);
    EXPECT_FALSE(Y().MinIsDefault());
}

TEST_F(PlotScaleTest, FlagsOfTheSecondAxisCountForIt) {
    for (const bool follows : {false, true}) {
        plot.SetupChartForInstrument(InstTypeCode::NTidal);
        plot.ClearGraph();
        CalibratedSample sample = SampleAt(0);
        sample.Valid[0] = true;
        sample.k[0] = 0.5;
        Plot(sample);
        SetAll({0, 100}, {-3, 9}, {-20, 30});
        plot.PrevData2Min = plot.PrevData2Max = 1;
        plot.AutoDataMin = plot.AutoDataMax = !follows;
        plot.AutoDataMin2 = plot.AutoDataMax2 = follows;
        plot.ApplyAutoScaleFlags();
        EXPECT_EQ(PrevData2(), follows ? Range(-20, 30) : Range(1, 1));
        EXPECT_EQ(RangeOf(Y2()) == Range(-20, 30), !follows);
        EXPECT_LE(Y2().Min(), 0.5);
        EXPECT_GE(Y2().Max(), 0.5);
        EXPECT_EQ(RangeOf(Y()) == Range(-3, 9), follows);
        EXPECT_EQ(Y2().DataMin().value, -1e300);
    }
}

TEST_F(PlotScaleTest, EachLimitFollowsByItsOwnFlag) {
    for (const bool min : {false, true}) {
        plot.ClearGraph();
        Plot(Scatter(0, 0, 0.5, 0));
        Plot(Scatter(30, 0, 0.6, 0));
        SetAll({-900, 900}, {-900, 900}, {0, 1});
        plot.AutoTimeMin = plot.AutoDataMin = min;
        plot.AutoTimeMax = plot.AutoDataMax = !min;
        plot.ApplyAutoScaleFlags();
        for (const ChartAxis* axis : {&X(), &Y()}) {
            EXPECT_EQ(axis->Min() > -900, min) << axis->Title();
            EXPECT_EQ(axis->Max() < 900, !min) << axis->Title();
        }
    }
}

TEST_F(PlotScaleTest, ALimitThatFollowsStaysOnItsSideOfAFixedOne) {
    Plot(Scatter(0, 0, 0.004, 0));
    Plot(Scatter(30, 0, 0.009, 0));
    Set(Y(), 0, 0.0005);
    plot.AutoDataMax = false;
    plot.ApplyAutoScaleFlags();
    EXPECT_EQ(Y().Max(), 0.0005) << "where the user wants it, below all data";
    EXPECT_LT(Y().Min(), 0.0005);
    Set(Y(), 0.5, 1);
    plot.AutoDataMax = true;
    plot.AutoDataMin = false;
    plot.ApplyAutoScaleFlags();
    EXPECT_EQ(Y().Min(), 0.5);
    EXPECT_GT(Y().Max(), 0.5);
}

TEST_F(PlotScaleTest, FlagsOfDepthCountInTheDepthView) {
    plot.VsDepthCommand();
    Plot(SampleAt(0, 3));
    Plot(SampleAt(1, 42));
    SetAll({-900, 900}, {0, 1}, {0, 1});
    plot.AutoTimeMin = plot.AutoTimeMax = false;
    plot.AutoDepthMin = false;
    plot.ApplyAutoScaleFlags();
    EXPECT_EQ(X().Min(), -900);
    EXPECT_GE(X().Max(), 42);
    EXPECT_LT(X().Max(), 900);
    EXPECT_EQ(plot.PrevDepthMax, 900);
    EXPECT_EQ(plot.PrevDepthMin, 0);
    EXPECT_EQ(CurrentDepth(), RangeOf(X()));
}

TEST_F(PlotScaleTest, LeftPressStoresTheWholeScale) {
    SetAll({1, 2}, {3, 4}, {5, 6});
    plot.ChartMouseDown(true, 100.6, 41.5);
    EXPECT_EQ(plot.ChartMouseDownX, 101);
    EXPECT_EQ(plot.ChartMouseDownY, 42);
    EXPECT_EQ(PrevTime(), Range(1, 2));
    EXPECT_EQ(PrevData(), Range(3, 4));
    EXPECT_EQ(PrevData2(), Range(5, 6));
    plot.ChartMouseUp(7.2, 9.9);
    EXPECT_EQ(plot.ChartMouseUpX, 7);
    EXPECT_EQ(plot.ChartMouseUpY, 10);
    const Range x = RangeOf(X());
    plot.Previous_Button_Click();
    EXPECT_EQ(RangeOf(X()), x) << "a click alone has made the present scale the stored one";
    EXPECT_EQ(RangeOf(Y()), Range(3, 4));
}

TEST_F(PlotScaleTest, LeftPressInTheDepthViewStoresDepth) {
    plot.VsDepthCommand();
    SetAll({1, 2}, {3, 4}, {5, 6});
    plot.ChartMouseDown(true, 0, 0);
    EXPECT_EQ(PrevDepth(), Range(1, 2));
    EXPECT_EQ(PrevTime(), Range(0, 0));
}

TEST_F(PlotScaleTest, OtherButtonsLeaveTheHistory) {
    SetAll({1, 2}, {3, 4}, {5, 6});
    plot.ChartMouseDown(false, 100, 40);
    EXPECT_EQ(plot.ChartMouseDownX, 0);
    EXPECT_EQ(PrevTime(), Range(0, 0));
    EXPECT_EQ(PrevData(), Range(0, 0.01)) << "as the empty graph was set up";
    plot.ChartMouseUp(3, 4);
    EXPECT_EQ(plot.ChartMouseUpX, 3);
}

TEST_F(PlotScaleTest, RectangleBecomesTheScale) {
    plot.SetupChartForInstrument(InstTypeCode::NTidal);
    SetAll({0, 100}, {0, 1}, {0, 10});
    plot.ChartMouseDown(true, 0, 0);
    plot.ShowRectangle({60, 0.75, 7.5}, {20, 0.25, 2.5});
    EXPECT_EQ(RangeOf(X()), Range(20, 60));
    EXPECT_EQ(RangeOf(Y()), Range(0.25, 0.75));
    EXPECT_EQ(RangeOf(Y2()), Range(2.5, 7.5));
    EXPECT_EQ(CurrentTime(), Range(20, 60));
    plot.Previous_Button_Click();
    EXPECT_EQ(RangeOf(X()), Range(0, 100));
    EXPECT_EQ(RangeOf(Y2()), Range(0, 10));
}

TEST_F(PlotScaleTest, RectangleWithoutWidthLeavesThatAxis) {
    SetAll({0, 100}, {0, 1}, {0, 10});
    plot.ShowRectangle({60, 0.75, 0}, {60, 0.25, 0});
    EXPECT_EQ(RangeOf(X()), Range(0, 100));
    EXPECT_EQ(RangeOf(Y()), Range(0.25, 0.75));
}

TEST_F(PlotScaleTest, ZoomAboutAPointKeepsIt) {
    SetAll({0, 100}, {0, 1}, {0, 10});
    plot.ZoomAbout({20, 0.5, 0}, 0.5, true);
    EXPECT_EQ(RangeOf(X()), Range(10, 60));
    EXPECT_EQ(RangeOf(Y()), Range(0.25, 0.75));
    plot.ZoomAbout({20, 0.5, 0}, 0.5, false);
    EXPECT_EQ(RangeOf(X()), Range(15, 40));
    EXPECT_EQ(CurrentTime(), Range(15, 40));
    plot.Previous_Button_Click();
    EXPECT_EQ(RangeOf(X()), Range(0, 100)) << "one movement, one step back";
}

TEST_F(PlotScaleTest, PanMovesByShares) {
    SetAll({0, 100}, {0, 1}, {0, 10});
    plot.Pan(0.25, -0.5, true);
    EXPECT_EQ(RangeOf(X()), Range(25, 125));
    EXPECT_EQ(RangeOf(Y()), Range(-0.5, 0.5));
    plot.Previous_Button_Click();
    EXPECT_EQ(RangeOf(X()), Range(0, 100));
}

TEST_F(PlotScaleTest, UserChangesUnitAndThePictureStays) {
    plot.VsDepthCommand();
    Plot(SampleAt(0, 12));
    Set(X(), 24, 120);
    plot.ChartMouseDown(true, 0, 0);
    plot.UpdateCurrentPlotInfo();
    plot.ChangeDepthUnitsAndLimits(false);
    // A foot is 12 inches and a metre 39.37 of them: 12 m are 39.37 ft.
    EXPECT_NEAR(primary.X(1), 39.37, 1e-12);
    EXPECT_NEAR(X().Min(), 78.74, 1e-10);
    EXPECT_NEAR(X().Max(), 393.7, 1e-10);
    EXPECT_NEAR(plot.CurrentDepthMin, 78.74, 1e-10);
    EXPECT_NEAR(plot.CurrentDepthMax, 393.7, 1e-10);
    EXPECT_NEAR(plot.PrevDepthMin, 78.74, 1e-10) << "where Previous leads to moves, too";
    EXPECT_NEAR(plot.PrevDepthMax, 393.7, 1e-10);
    EXPECT_EQ(X().Title(), "Depth (ft)");
    plot.VsTimeCommand();
    const Range time = RangeOf(X());
    plot.ChangeDepthUnitsAndLimits(true);
    EXPECT_EQ(RangeOf(X()), time) << "time has no unit of depth";
    EXPECT_NEAR(plot.CurrentDepthMin, 24, 1e-10);
    EXPECT_NEAR(plot.CurrentDepthMax, 120, 1e-10);
    EXPECT_NEAR(plot.PrevDepthMin, 24, 1e-10);
    EXPECT_NEAR(primary.Y(primary.NumSeries(), 1), 12, 1e-12);
}

TEST_F(PlotScaleTest, SettingsAreCopiedToAnotherGraph) {
    plot.VsDepthCommand();
    SetAll({5, 50}, {-1, 2}, {3, 4});
    plot.ChartMouseDown(true, 1, 1);
    plot.UpdateCurrentPlotInfo();
    plot.ChangeDepthUnitsAndLimits(false);
    plot.AutoDataMin = plot.AutoTimeMax = false;
    plot.AutoColor(2) = true;
    plot.Look.GridColor = 0x123456;
    plot.Look.channels[1].marker = "Cross";
    Chart2D otherChart;
    LivePlot other(otherChart);
    other.SetupChartForInstrument(InstTypeCode::LTidal);
    other.CopyGraphSettings(plot);
    EXPECT_EQ(other.View(), PlotView::Vs_Depth);
    EXPECT_FALSE(other.DepthInMeters());
    EXPECT_EQ(other.Look, plot.Look);
    EXPECT_FALSE(other.AutoDataMin || other.AutoTimeMax);
    EXPECT_TRUE(other.AutoDataMax && other.AutoColor(2));
    EXPECT_FALSE(other.AutoColor(1));
    EXPECT_EQ(other.PrevDepthMin, plot.PrevDepthMin);
    EXPECT_EQ(other.PrevData2Max, 4);
    EXPECT_EQ(other.CurrentDepthMax, plot.CurrentDepthMax);
    for (const AxisName name : {AxisName::X, AxisName::Y, AxisName::Y2})
        EXPECT_EQ(RangeOf(otherChart.Axes(name)), RangeOf(chart.Axes(name)));
    EXPECT_TRUE(otherChart.Rotated());
    EXPECT_EQ(otherChart.Axes(AxisName::X).Title(), "Depth (ft)");
    EXPECT_TRUE(otherChart.Axes(AxisName::Y2).Visible()) << "the other model keeps its own axes";
    EXPECT_FALSE(otherChart.IsBatched());
}

TEST_F(PlotScaleTest, CopyingKeepsTheOtherGraphsPoints) {
    Plot(SampleAt(0, 20));
    Plot(SampleAt(3, 25));
    Chart2D otherChart;
    LivePlot other(otherChart);
    other.VsDepthCommand();
    plot.CopyGraphSettings(other);
    EXPECT_EQ(plot.View(), PlotView::Vs_Depth);
    EXPECT_EQ(primary.X(2), 25);
    EXPECT_NEAR(primary.Y(primary.NumSeries(), 2), 3, 1e-6);
}

TEST_F(PlotScaleTest, ReadoutHasValueAndUnitOfEachAxis) {
    SetAll({0, 100}, {0, 1}, {0, 10});
    EXPECT_EQ(CoordinateText(chart, {12.3456, 0.0512345, 7}), "12.3 minutes, 0.0512 /m");
    plot.VsDepthCommand();
    EXPECT_EQ(CoordinateText(chart, {0, 1, 7}), "0 m, 1 /m") << "the ends are inside";
}

TEST_F(PlotScaleTest, ReadoutHasThreeValuesOnlyWithTheSecondAxis) {
    plot.SetupChartForInstrument(InstTypeCode::LTidal);
    SetAll({0, 100}, {0, 1}, {0, 10});
    EXPECT_EQ(CoordinateText(chart, {50, 0.25, 25}), "50 minutes, 0.25 /m, 25 /m");
    Y2().SetVisible(false);
    EXPECT_EQ(CoordinateText(chart, {50, 0.25, 25}), "50 minutes, 0.25 /m");
    plot.VsDepthCommand();
    plot.ChangeDepthUnits(false);
    EXPECT_EQ(CoordinateText(chart, {50, 0.25, 25}), "50 ft, 0.25 /m, 25 /m");
}

TEST_F(PlotScaleTest, ReadoutIsEmptyBeyondTheLimits) {
    SetAll({0, 100}, {0, 1}, {0, 10});
    for (const ChartPoint& point :
         {ChartPoint{-0.001, 0.5, 0}, ChartPoint{100.001, 0.5, 0}, ChartPoint{50, -0.001, 0},
          ChartPoint{50, 1.001, 0}, ChartPoint{std::nan(""), 0.5, 0}})
        EXPECT_EQ(CoordinateText(chart, point), "") << point.x << " " << point.y;
    EXPECT_NE(CoordinateText(chart, {50, 0.5, 99}), "") << "the second axis hides nothing";
}

TEST_F(PlotScaleTest, ReadoutShowsNoNoiseBehindItsDigits) {
    SetAll({0, 2000}, {0, 1}, {0, 10});
    EXPECT_EQ(CoordinateText(chart, {1234.5, 0.000512345, 0}), "1230 minutes, 0.000512 /m");
    for (int i = 1; i < 1000; ++i) {
        const std::string text = CoordinateText(chart, {1000.0 + i, i * 1.2345e-5, 0});
        EXPECT_LT(text.size(), 31U) << text;
    }
}

}  // namespace
}  // namespace marisonde
