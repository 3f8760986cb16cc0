#include <cmath>
#include <stdexcept>
#include <vector>

#include "PlotFixture.h"

namespace marisonde {
namespace {

class PlotLayoutTest : public PlotTest {
  protected:
    static std::vector<int> Displays(const ChartGroup& group) {
        std::vector<int> displays;
        for (int s = 1; s <= group.NumSeries(); ++s) displays.push_back(static_cast<int>(group.Display(s)));
        return displays;
    }
    std::vector<std::int32_t> Contents(int group, int count) {
        std::vector<std::int32_t> contents;
        for (int s = 1; s <= count; ++s) contents.push_back(plot.ChartContents(group, s));
        return contents;
    }
};
using Ints = std::vector<int>;
using Types = std::vector<std::int32_t>;

TEST_F(PlotLayoutTest, Corvane6) {
    plot.SetupChartForInstrument(InstTypeCode::Corvane6);
    EXPECT_EQ(Displays(primary), (Ints{1, 1, 1, 1, 1, 1, 1, 1, 3, 3, 3}));
    EXPECT_EQ(Contents(0, 11), (Types{2, 2, 2, 2, 2, 2, 5, 5, 13, 19, 20}));
    EXPECT_EQ(secondary.NumSeries(), 0);
    EXPECT_FALSE(Y2().Visible());
    EXPECT_EQ(plot.PlotXType, 19);
    EXPECT_EQ(X().Title(), "Elapsed Time (minutes)");
    EXPECT_EQ(Y().Title(), "Backscattering Coefficient (/m)");
}

TEST_F(PlotLayoutTest, Corvane4WithoutSigma) {
    plot.SigmaOption = SigmaChoice::NoSigma;
    plot.SetupChartForInstrument(InstTypeCode::Corvane4);
    EXPECT_EQ(Displays(primary), (Ints{1, 1, 1, 1, 3, 3, 3}));
    EXPECT_EQ(Contents(0, 7), (Types{1, 1, 1, 1, 13, 19, 20}));
}

TEST_F(PlotLayoutTest, Corvane2) {
    plot.SetupChartForInstrument(InstTypeCode::Corvane2);
    EXPECT_EQ(Displays(primary), (Ints{1, 1, 1, 3, 3, 3}));
    EXPECT_EQ(Contents(0, 6), (Types{2, 2, 5, 13, 19, 20}));
}

TEST_F(PlotLayoutTest, LTidal) {
    plot.SetupChartForInstrument(InstTypeCode::LTidal);
    EXPECT_EQ(Displays(primary), (Ints{1, 3, 3}));
    EXPECT_EQ(Displays(secondary), (Ints{3, 1, 1}));
    EXPECT_TRUE(Y2().Visible());
    EXPECT_EQ(Y2().Title(), "Attenuation & Absorption (/m)");
}

TEST_F(PlotLayoutTest, NTidal) {
    plot.SetupChartForInstrument(InstTypeCode::NTidal);
    EXPECT_EQ(Displays(primary), (Ints{1, 3}));
    EXPECT_EQ(Displays(secondary), (Ints{3, 1}));
    EXPECT_TRUE(Y2().Visible());
}

TEST_F(PlotLayoutTest, DelphFamily) {
    for (const auto& [type, channels] : {std::pair{InstTypeCode::Fathom2, 2},
                                         {InstTypeCode::Delph2, 2},
                                         {InstTypeCode::Delph4, 4},
                                         {InstTypeCode::Delph6, 6}}) {
        plot.SetupChartForInstrument(type);
        ASSERT_EQ(primary.NumSeries(), channels + 1);
        for (int s = 1; s <= channels; ++s) {
            EXPECT_EQ(primary.Display(s), SeriesDisplay::Drawn);
            EXPECT_EQ(plot.ChartContents(0, s), 7);
        }
        EXPECT_EQ(primary.Display(channels + 1), SeriesDisplay::Kept);
        EXPECT_EQ(plot.ChartContents(0, channels + 1), 13);
        EXPECT_EQ(plot.ChartContents(0, channels + 2), 19);
        EXPECT_EQ(plot.ChartContents(0, channels + 3), 20);
        EXPECT_EQ(secondary.NumSeries(), 0);
        EXPECT_FALSE(Y2().Visible());
    }
}

TEST_F(PlotLayoutTest, OtherModelsHaveNoSeriesButTidalOnesAPair) {
    plot.SetupChartForInstrument(InstTypeCode::Unknown);
    EXPECT_EQ(primary.NumSeries(), 0);
    plot.SetupChartForInstrument(InstTypeCode::XTidal);
    EXPECT_NE(secondary.NumSeries(), 0);
    Plot(SampleAt(0));
    EXPECT_TRUE(std::isnan(primary.Y(1, 1)));
    EXPECT_TRUE(std::isnan(secondary.Y(2, 1)));
}

TEST_F(PlotLayoutTest, PointsStayWhenTheSameLayoutIsAppliedAgain) {
    plot.SetupChartForInstrument(InstTypeCode::Delph2);
    PlotMany(5);
    plot.SetupChartForInstrument(InstTypeCode::Fathom2);
    EXPECT_EQ(plot.PlotIndex(), 6);
    plot.SetupChartForInstrument(InstTypeCode::Delph4);
    EXPECT_EQ(plot.PlotIndex(), 1);
    EXPECT_EQ(primary.LastPoint(), 1);
    EXPECT_TRUE(std::isnan(primary.X(1)));
}

TEST_F(PlotLayoutTest, PointsOfAnotherFamilyGoAlsoWhereTheSeriesAreAsMany) {
    plot.SetupChartForInstrument(InstTypeCode::Corvane4);
    Plot(Scatter(0, 0, 0.004, 0.003));
    ASSERT_EQ(primary.NumSeries(), 7);
    plot.SetupChartForInstrument(InstTypeCode::Delph6);
    ASSERT_EQ(primary.NumSeries(), 7);
    EXPECT_EQ(plot.PlotIndex(), 1);
    EXPECT_TRUE(std::isnan(primary.Y(1, 1)));
}

TEST_F(PlotLayoutTest, ANameOfNoModelHasNoSeriesEither) {
    plot.SetupChartForInstrument(InstTypeCode::NTidal);
    PlotMany(3);
    plot.SetupChartForInstrument(InstTypeCode::NoSuchName);
    EXPECT_EQ(primary.NumSeries(), 0);
    EXPECT_EQ(secondary.NumSeries(), 0);
    EXPECT_FALSE(Y2().Visible());
    EXPECT_EQ(plot.PlotIndex(), 1);
}

TEST_F(PlotLayoutTest, FindsSeriesByType) {
    plot.SetupChartForInstrument(InstTypeCode::Corvane6);
    EXPECT_EQ(plot.FindSeriesOfType(5), 7);
    EXPECT_EQ(plot.FindSeriesOfType(20), 11);
    EXPECT_EQ(plot.FindSeriesOfType(7), 0);
    plot.SetupChartForInstrument(InstTypeCode::Delph2);
    EXPECT_EQ(plot.FindSeriesOfType(13), 3);
    EXPECT_EQ(plot.FindSeriesOfType(19), 0);  // noted, but behind the last series
}

TEST_F(PlotLayoutTest, TablesGuardTheirBounds) {
    EXPECT_NO_THROW((void)plot.ChartContents(1, 15));
    EXPECT_THROW((void)plot.ChartContents(2, 0), std::out_of_range);
    EXPECT_THROW((void)plot.ChartContents(0, 16), std::out_of_range);
    EXPECT_THROW((void)plot.ChartContents(-1, 0), std::out_of_range);
    EXPECT_NO_THROW((void)plot.AutoColor(12));
    EXPECT_THROW((void)plot.AutoColor(13), std::out_of_range);
}

TEST_F(PlotLayoutTest, TitlesOfAllTypes) {
    const std::vector<std::pair<int, std::string_view>> rows{{1, "Backscattering Coefficient (/m)"},
                                                             {2, "Backscattering Coefficient (/m)"},
                                                             {5, "Backscattering Coefficient (/m)"},
                                                             {6, "Normalized signal"},
                                                             {7, "Attenuation (/m)"},
                                                             {12, "Attenuation & Absorption (/m)"},
                                                             {13, "Depth (m)"},
                                                             {14, "Depth (feet)"},
                                                             {15, "Pressure (PSI)"},
                                                             {16, "Distance (cm)"},
                                                             {17, "Angle (degrees)"},
                                                             {18, "Wavelength (nm)"},
                                                             {19, "Elapsed Time (minutes)"},
                                                             {20, "Temperature (C)"},
                                                             {0, "Unknown data type"},
                                                             {3, "Unknown data type"},
                                                             {21, "Unknown data type"}};
    for (const auto& [code, title] : rows) EXPECT_EQ(AxisTitleForType(code), title) << code;
}

TEST_F(PlotLayoutTest, ClearGraphStartsAnew) {
    plot.SetupChartForInstrument(InstTypeCode::LTidal);
    PlotMany(1500);
    Y().SetMax(7);
    Y2().SetMax(9);
    plot.ClearGraph();
    for (const ChartGroup* group : {&primary, &secondary}) {
        EXPECT_EQ(group->NumPoints(), 1000);
        EXPECT_EQ(group->LastPoint(), 1);
        EXPECT_TRUE(std::isnan(group->X(1)));
    }
    EXPECT_EQ(plot.PlotIndex(), 1);
    EXPECT_EQ(plot.PrevDataMax, 7);
    EXPECT_EQ(plot.PrevDataMin, 0);
    EXPECT_EQ(plot.PrevData2Max, 9);
    EXPECT_FALSE(chart.IsBatched());
    chart.SetIsBatched(true);
    plot.ClearGraph();
    EXPECT_TRUE(chart.IsBatched());
}

TEST_F(PlotLayoutTest, InitializeTakesXOfTheViewInForce) {
    plot.CurrentTimeMin = 5;
    plot.CurrentTimeMax = 25;
    plot.InitializePlotInfo();
    EXPECT_EQ(X().Min(), 5);
    EXPECT_EQ(X().Max(), 25);
}

}  // namespace
}  // namespace marisonde
