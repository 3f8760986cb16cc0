#include <cmath>
#include <vector>

#include "PlotFixture.h"

namespace marisonde {
namespace {

class PlotViewsTest : public PlotTest {
  protected:
    void Fill(InstTypeCode model) {
        plot.SetupChartForInstrument(model);
        for (int i = 0; i < 5; ++i) Plot(SampleAt(i * 0.3, static_cast<float>(i * 1.7)));
    }
    std::vector<double> Xs(const ChartGroup& group) {
        return {group.XData().begin(), group.XData().begin() + 5};
    }
    /// The other coordinate of the same points.
    std::vector<double> Carried() {
        const bool paired = secondary.NumSeries() != 0;
        const auto values = paired ? secondary.YData(1) : primary.YData(primary.NumSeries());
        return {values.begin(), values.begin() + 5};
    }
};

TEST_F(PlotViewsTest, ViewInForceIsLeftAlone) {
    Fill(InstTypeCode::Corvane2);
    const auto before = chart.PointsRevision();
    EXPECT_FALSE(plot.VsTimeCommand());
    EXPECT_EQ(chart.PointsRevision(), before);
    EXPECT_EQ(plot.PlotYType, 2);
    EXPECT_TRUE(plot.VsDepthCommand());
    const auto after = chart.PointsRevision();
    EXPECT_FALSE(plot.VsDepthCommand());
    EXPECT_EQ(chart.PointsRevision(), after);
}

TEST_F(PlotViewsTest, ThereAndBackMovesEveryBitBack) {
    const std::vector<double> depths{0, 1.7F, 3.4F, static_cast<float>(3 * 1.7), 6.8F};
    for (const InstTypeCode model : {InstTypeCode::Corvane2, InstTypeCode::LTidal}) {
        Fill(model);
        const auto times = Xs(primary);
        plot.VsDepthCommand();
        EXPECT_EQ(Xs(primary), depths);
        EXPECT_EQ(Carried(), times);
        plot.VsTimeCommand();
        EXPECT_EQ(Xs(primary), times);
        EXPECT_EQ(Carried(), depths);
    }
}

TEST_F(PlotViewsTest, AChangeOfViewIsShownOnceAndEndsABatch) {
    Fill(InstTypeCode::LTidal);
    int shown = 0;
    chart.OnChange = [&shown] { ++shown; };
    plot.VsDepthCommand();
    EXPECT_EQ(shown, 1);
    chart.SetIsBatched(true);
    plot.VsTimeCommand();
    EXPECT_FALSE(chart.IsBatched());
    EXPECT_EQ(shown, 2);
}

TEST_F(PlotViewsTest, CarrierOfTheSecondaryGroupServesBoth) {
    Fill(InstTypeCode::NTidal);
    plot.VsDepthCommand();
    EXPECT_EQ(Xs(secondary), Xs(primary));
    EXPECT_NEAR(secondary.Y(1, 3), 0.6, 1e-6);
    EXPECT_TRUE(std::isnan(primary.Y(2, 3)));  // the primary group's own last series is not touched
}

TEST_F(PlotViewsTest, WholeAllocatedLengthIsSwapped) {
    Fill(InstTypeCode::Corvane2);
    primary.SetX(900, 42);
    plot.VsDepthCommand();
    EXPECT_EQ(primary.Y(6, 900), 42);
}

TEST_F(PlotViewsTest, DepthRunsDownTheScreen) {
    Fill(InstTypeCode::Corvane2);
    plot.VsDepthCommand();
    EXPECT_TRUE(X().Reversed());
    EXPECT_TRUE(chart.Rotated());
    EXPECT_EQ(X().Placement(), 2);
    EXPECT_EQ(Y().Placement(), 1);
    EXPECT_EQ(X().Title(), "Depth (m)");
    EXPECT_EQ(plot.PlotXType, 13);
    plot.VsTimeCommand();
    EXPECT_FALSE(X().Reversed());
    EXPECT_FALSE(chart.Rotated());
    EXPECT_EQ(X().Placement(), 1);
    EXPECT_EQ(Y().Placement(), 2);
    EXPECT_EQ(X().Title(), "Elapsed Time (minutes)");
    EXPECT_EQ(plot.PlotXType, 13);  // stale on purpose
    EXPECT_EQ(plot.PlotYType, 19);
    EXPECT_FALSE(chart.IsBatched());
}

TEST_F(PlotViewsTest, TitlesOfYByFamily) {
    Fill(InstTypeCode::Delph2);
    plot.VsDepthCommand();
    EXPECT_EQ(Y().Title(), "Attenuation Coefficient (/m)");
    EXPECT_FALSE(Y2().Visible());
    Y2().SetVisible(true);
    plot.VsTimeCommand();
    EXPECT_EQ(Y().Title(), "Attenuation Coefficient (/m)");
    EXPECT_FALSE(Y2().Visible()) << "only Tidals have use for it";
    Fill(InstTypeCode::Corvane4);
    Y().SetTitle("Normalized signal");
    plot.VsDepthCommand();
    EXPECT_EQ(Y().Title(), "Backscattering Coefficient (/m)");
}

TEST_F(PlotViewsTest, TypeOfDepthIsTheSameInFeet) {
    Fill(InstTypeCode::Corvane2);
    plot.ChangeDepthUnits(false);
    plot.VsDepthCommand();
    EXPECT_EQ(plot.PlotXType, 13);
    EXPECT_EQ(X().Title(), "Depth (ft)");
    EXPECT_EQ(primary.X(2), 1.7F * (39.37 / 12)) << "the change of view converts nothing more";
}

TEST_F(PlotViewsTest, TidalKeepsItsSecondAxisInBothViews) {
    Fill(InstTypeCode::LTidal);
    plot.VsDepthCommand();
    EXPECT_TRUE(Y2().Visible());
    EXPECT_EQ(Y2().Title(), "Attenuation Coefficient(/m)");
    EXPECT_EQ(Y2().Placement(), 1);
    plot.VsTimeCommand();
    EXPECT_TRUE(Y2().Visible());
    EXPECT_EQ(Y2().Title(), "Attenuation Coefficient (/m)");
    EXPECT_EQ(Y2().Placement(), 2);
    EXPECT_EQ(Y().Title(), "Backscattering Coefficient (/m)");
}

TEST_F(PlotViewsTest, EachViewComesBackWithItsOwnRange) {
    Fill(InstTypeCode::Corvane2);
    X().SetMax(50);
    plot.UpdateCurrentPlotInfo();
    plot.CurrentDepthMin = 7;
    plot.CurrentDepthMax = 300;
    plot.VsDepthCommand();
    EXPECT_EQ(X().Min(), 7);
    EXPECT_EQ(X().Max(), 300);
    plot.VsTimeCommand();
    EXPECT_EQ(X().Min(), 0);
    EXPECT_EQ(X().Max(), 50);
}

TEST_F(PlotViewsTest, AnEmptyGraphBeginsWithTheRangeOfItsView) {
    Fill(InstTypeCode::Corvane2);
    plot.VsDepthCommand();
    SetAxisRange(chart, AxisName::X, -1, 1);
    SetAxisRange(chart, AxisName::Y, 3, 4);
    SetAxisRange(chart, AxisName::Y2, 5, 6);
    plot.CurrentDepthMin = 20;
    plot.CurrentDepthMax = 60;
    plot.InitializePlotInfo();
    EXPECT_EQ(X().Min(), 20);
    EXPECT_EQ(X().Max(), 60);
    EXPECT_EQ(plot.PrevDataMin, 3);
    EXPECT_EQ(plot.PrevDataMax, 4);
    EXPECT_EQ(plot.PrevData2Max, 6);
    EXPECT_EQ(plot.PrevData2Min, 0) << "as it was";
    EXPECT_EQ(plot.PlotIndex(), 1);
}

TEST_F(PlotViewsTest, UnitChangeInTheTimeViewAltersOnlyTheCarrier) {
    Fill(InstTypeCode::Corvane2);
    const auto times = Xs(primary);
    plot.ChangeDepthUnits(false);
    EXPECT_EQ(Xs(primary), times);
    EXPECT_EQ(primary.Y(6, 2), 1.7F * (39.37 / 12));
    EXPECT_EQ(X().Title(), "Elapsed Time (minutes)");
    EXPECT_FALSE(plot.DepthInMeters());
    plot.ChangeDepthUnits(false);
    EXPECT_EQ(primary.Y(6, 2), 1.7F * (39.37 / 12));
    Fill(InstTypeCode::NTidal);
    plot.ChangeDepthUnits(true);
    EXPECT_EQ(secondary.Y(1, 2), 1.7F * 39.37 / 12 * (12 / 39.37));
}

TEST_F(PlotViewsTest, UnitChangeLeavesWhatIsNoCarrier) {
    Fill(InstTypeCode::NTidal);
    primary.SetY(2, 2, 5);
    plot.ChangeDepthUnits(false);
    EXPECT_EQ(primary.Y(2, 2), 5) << "the last series of a group whose carrier is elsewhere";
    EXPECT_EQ(secondary.Y(1, 2), 1.7F * (39.37 / 12));
}

TEST_F(PlotViewsTest, UnitChangeLeavesTheBatchAsItWas) {
    Fill(InstTypeCode::Corvane2);
    plot.ChangeDepthUnits(false);
    EXPECT_FALSE(chart.IsBatched());
    chart.SetIsBatched(true);
    plot.ChangeDepthUnits(true);
    EXPECT_TRUE(chart.IsBatched());
}

TEST_F(PlotViewsTest, UnitChangeInTheDepthViewAltersX) {
    Fill(InstTypeCode::NTidal);
    plot.VsDepthCommand();
    plot.ChangeDepthUnits(false);
    EXPECT_EQ(primary.X(2), 1.7F * (39.37 / 12));
    EXPECT_EQ(secondary.X(2), 1.7F * (39.37 / 12));
    EXPECT_EQ(X().Title(), "Depth (ft)");
    EXPECT_EQ(X().Max(), 100);  // limits are not converted
    plot.ChangeDepthUnits(true);
    EXPECT_EQ(X().Title(), "Depth (m)");
    EXPECT_NEAR(primary.X(2), 1.7, 1e-6);
}

TEST_F(PlotViewsTest, PlotTypesDecideTheShapeOfTheChart) {
    plot.SetPlotTypes(6, 7, 14);
    EXPECT_EQ(X().Title(), "Depth (feet)");
    EXPECT_EQ(Y().Title(), "Normalized signal");
    EXPECT_EQ(Y2().Title(), "Attenuation (/m)");
    EXPECT_TRUE(Y2().Visible());
    EXPECT_TRUE(X().Reversed());
    EXPECT_TRUE(chart.Rotated());
    EXPECT_EQ(X().Placement(), 2);
    EXPECT_EQ(Y().Placement(), 1);
    EXPECT_EQ(Y2().Placement(), 1);
    plot.SetPlotTypes(2, 0, 16);
    EXPECT_FALSE(Y2().Visible());
    EXPECT_FALSE(X().Reversed());
    EXPECT_FALSE(chart.Rotated());
    EXPECT_EQ(X().Placement(), 1);
    EXPECT_EQ(Y().Placement(), 2);
    EXPECT_EQ(Y2().Placement(), 3);
    plot.SetPlotTypes(2, 0, 13);
    EXPECT_EQ(X().Title(), "Depth (m)");
    EXPECT_TRUE(X().Reversed());
    EXPECT_TRUE(chart.Rotated());
}

}  // namespace
}  // namespace marisonde
