#include "PlotFixture.h"

namespace marisonde {
namespace {

class PlotSigmaTest : public PlotTest {
  protected:
    void SetUp() override { plot.SigmaOption = SigmaChoice::NoSigma; }
};

TEST_F(PlotSigmaTest, TheNextSampleOfACorvaneIsOfTheChosenForm) {
    plot.SetupChartForInstrument(InstTypeCode::Corvane2);
    Plot(Scatter(0, 0, 0.25, 0.125));
    EXPECT_TRUE(plot.SetSigmaOption(SigmaChoice::SigmaCorrect)) << "the point there is of the other form";
    Plot(Scatter(1, 0, 0.25, 0.125));
    EXPECT_EQ(primary.Y(1, 1), 0.125);
    EXPECT_EQ(primary.Y(1, 2), 0.25);
    EXPECT_EQ(plot.ChartContents(0, 1), PlotType::BbCorrected);
    EXPECT_EQ(plot.PlotYType, PlotType::BbCorrected);
    EXPECT_EQ(plot.ChartContents(0, 3), PlotType::Fluorescence);
}

TEST_F(PlotSigmaTest, AnLTidalSwapsItsTwoFormsWithoutRecalculation) {
    plot.SetupChartForInstrument(InstTypeCode::LTidal);
    RawSample raw;
    raw.Gain[0] = 3;
    Plot(Scatter(0, 0, 0.25, 0.125), raw);
    ASSERT_EQ(primary.Y(1, 1), 0.125);
    EXPECT_FALSE(plot.SetSigmaOption(SigmaChoice::SigmaCorrect));
    EXPECT_EQ(primary.Y(1, 1), 0.25);
    EXPECT_EQ(primary.Y(2, 1), 0.125);
    EXPECT_EQ(plot.ChartContents(0, 1), PlotType::BbCorrected);
    EXPECT_EQ(plot.ChartContents(0, 2), PlotType::BbUncorrected);
    EXPECT_FALSE(plot.SetSigmaOption(SigmaChoice::SigmaCorrect)) << "chosen already";
    EXPECT_EQ(primary.Y(1, 1), 0.25);
}

TEST_F(PlotSigmaTest, ADelphHasNoSuchForms) {
    plot.SetupChartForInstrument(InstTypeCode::Delph2);
    EXPECT_FALSE(plot.SetSigmaOption(SigmaChoice::SigmaCorrect));
    EXPECT_EQ(plot.PlotYType, PlotType::Attenuation);
}

}  // namespace
}  // namespace marisonde
