#include <cmath>
#include <limits>

#include "PlotFixture.h"

namespace marisonde {
namespace {

class LivePlotTest : public PlotTest {
  protected:
    std::string_view Box(int channel) const {
        return plot.Readouts().DataBox[static_cast<std::size_t>(channel)].View();
    }
};

TEST_F(LivePlotTest, FirstPointStandsAtMinuteNought) {
    plot.SetupChartForInstrument(InstTypeCode::Corvane2);
    Plot(Scatter(0, 0, 0.002, 0.001));
    EXPECT_EQ(primary.X(1), 0);
    EXPECT_EQ(primary.Y(6, 1), 10);  // the carrier holds depth
    EXPECT_EQ(primary.LastPoint(), 1);
    EXPECT_EQ(plot.PlotStartTime(), kStart);
    EXPECT_EQ(plot.Readouts().Elapsed.View(), "0.0 min");
}

TEST_F(LivePlotTest, DepthViewHasDepthOnX) {
    plot.VsDepthCommand();
    plot.SetupChartForInstrument(InstTypeCode::Corvane2);
    Plot(SampleAt(0, 3));
    Plot(SampleAt(2, 4.5F));
    EXPECT_EQ(primary.X(2), 4.5);
    EXPECT_NEAR(primary.Y(6, 2), 2, 1e-6);
}

TEST_F(LivePlotTest, FeetMode) {
    plot.ChangeDepthUnits(false);
    plot.VsDepthCommand();
    plot.SetupChartForInstrument(InstTypeCode::Corvane2);
    Plot(SampleAt(0, 12));
    EXPECT_EQ(primary.X(1), 12.0 * 39.37 / 12);
    EXPECT_EQ(X().Title(), "Depth (ft)");
}

TEST_F(LivePlotTest, SecondaryGroupCarriesTheOtherCoordinate) {
    plot.SetupChartForInstrument(InstTypeCode::NTidal);
    Plot(SampleAt(0, 7));
    EXPECT_EQ(primary.X(1), 0);
    EXPECT_EQ(secondary.X(1), 0);
    EXPECT_EQ(secondary.Y(1, 1), 7);
    EXPECT_TRUE(std::isnan(primary.Y(2, 1)));
    EXPECT_EQ(secondary.LastPoint(), 1);
}

TEST_F(LivePlotTest, DistanceOnXComesFromTheProcedure) {
    plot.SetupChartForInstrument(InstTypeCode::NTidal);
    plot.SetPlotTypes(6, 0, 16);
    plot.PlotDistance = 2.5F;
    Plot(SampleAt(0));
    EXPECT_EQ(primary.X(1), 2.5);
    EXPECT_EQ(secondary.X(1), 2.5);
    EXPECT_TRUE(std::isnan(secondary.Y(1, 1)));
}

TEST_F(LivePlotTest, ATickTakesAtMostAFifthOfTheArrays) {
    plot.SetupChartForInstrument(InstTypeCode::Delph2);
    for (int waiting = 2000; waiting > 1000; waiting -= 200) {
        ASSERT_EQ(plot.BeginTick(waiting), 200);
        for (int i = 0; i < 200; ++i) plot.AddSample({}, SampleAt(i));
        plot.EndTick();
    }
    EXPECT_EQ(primary.LastPoint(), 1000);
    EXPECT_EQ(plot.BeginTick(200), 200);
    plot.AbandonTick();
    EXPECT_EQ(plot.BeginTick(199), 199);
    EXPECT_EQ(plot.BeginTick(0), 0);
}

TEST_F(LivePlotTest, SigmaOptionChoosesTheForm) {
    plot.SetupChartForInstrument(InstTypeCode::Corvane6);
    Plot(Scatter(0, 3, 0.004, 0.003));
    EXPECT_EQ(primary.Y(4, 1), 0.004);
    EXPECT_EQ(Box(3), "0.004");
    plot.SigmaOption = SigmaChoice::NoSigma;
    Plot(Scatter(1, 3, 0.004, 0.003));
    EXPECT_EQ(primary.Y(4, 2), 0.003);
    EXPECT_EQ(Box(3), "0.003");
}

TEST_F(LivePlotTest, InactiveChannelShowsNoDataAndDoesNotMoveLimits) {
    plot.SetupChartForInstrument(InstTypeCode::Corvane6);
    CalibratedSample sample = Scatter(0, 0, 0.004, 0.004);
    sample.bb[1] = 99;
    Plot(sample);
    EXPECT_EQ(Box(1), "No Data");
    EXPECT_EQ(Box(7), "No Data");
    EXPECT_TRUE(std::isnan(primary.Y(2, 1)));
    EXPECT_EQ(Y().Max(), 0.01);
}

TEST_F(LivePlotTest, InactiveChannelLeavesWhatStandsAtItsPlace) {
    plot.SetupChartForInstrument(InstTypeCode::Corvane6);
    primary.SetY(2, 1, 0.123);
    Plot(Scatter(0, 0, 0.004, 0.004));
    EXPECT_EQ(primary.Y(2, 1), 0.123);
}

TEST_F(LivePlotTest, HiddenSeriesReceivesValuesButMovesNoLimit) {
    plot.SetupChartForInstrument(InstTypeCode::Corvane6);
    primary.SetDisplay(1, SeriesDisplay::Kept);
    Plot(Scatter(0, 0, 0.5, 0.5));
    EXPECT_EQ(primary.Y(1, 1), 0.5);
    EXPECT_EQ(Y().Max(), 0.01);
}

TEST_F(LivePlotTest, NormalizedSignal) {
    plot.SetupChartForInstrument(InstTypeCode::Corvane6);
    plot.PlotYType = PlotType::NormalizedSignal;
    CalibratedSample sample = Scatter(0, 0, 0.5, 0.5);
    sample.Valid[1] = true;
    RawSample raw;
    raw.Snorm[0] = 1234;
    Plot(sample, raw);
    EXPECT_EQ(primary.Y(1, 1), 1234);
    EXPECT_EQ(Box(0), "1234");
    EXPECT_EQ(primary.Y(2, 1), 0);  // absent: said so, and plotted all the same
    EXPECT_EQ(Box(1), "No Data");
}

TEST_F(LivePlotTest, DelphShowsAttenuationOfEachChannel) {
    plot.SetupChartForInstrument(InstTypeCode::Delph4);
    CalibratedSample sample = SampleAt(0);
    sample.k = {0.25F, 1.23456F, -0.5F, 100};
    Plot(sample);
    for (int s = 1; s <= 4; ++s) EXPECT_EQ(primary.Y(s, 1), sample.k[static_cast<std::size_t>(s) - 1]);
    EXPECT_EQ(primary.Y(5, 1), 10);
    EXPECT_EQ(Box(0), "");
    EXPECT_EQ(Box(1), "0.25");
    EXPECT_EQ(Box(2), "1.2345");
    EXPECT_EQ(Box(3), "-0.5");
    EXPECT_EQ(Box(4), "100");
}

CalibratedSample TidalSample() {
    CalibratedSample sample;
    sample.Time = 40000;
    sample.Valid[0] = true;
    sample.bb[0] = 0.004;
    sample.bbUncorr[0] = 0.003;
    sample.k[0] = 0.75F;
    sample.K = 0.5F;
    sample.a = 0.125F;
    return sample;
}

RawSample TidalRaw(std::int16_t gain) {
    RawSample raw;
    raw.Gain[0] = gain;
    raw.SnormF[0] = 321.5F;
    return raw;
}

TEST_F(LivePlotTest, NTidal) {
    plot.SetupChartForInstrument(InstTypeCode::NTidal);
    Plot(TidalSample(), TidalRaw(2));
    EXPECT_EQ(primary.Y(1, 1), 0.004);
    EXPECT_EQ(secondary.Y(2, 1), 0.75);
    EXPECT_EQ(Box(0), "0.004");
    EXPECT_EQ(Box(1), "0.75");
    EXPECT_EQ(Box(2), "");
    // 0.75 at a spacing of 0.01 (range 0.1, a tenth): (75 + 1) * 0.01.
    EXPECT_EQ(Y2().Max(), 76 * 0.01);
}

TEST_F(LivePlotTest, NTidalWithoutUsableGainOrTransmission) {
    plot.SetupChartForInstrument(InstTypeCode::NTidal);
    CalibratedSample sample = TidalSample();
    sample.Valid[0] = false;
    Plot(sample, TidalRaw(6));
    EXPECT_TRUE(std::isnan(primary.Y(1, 1)));
    EXPECT_TRUE(std::isnan(secondary.Y(2, 1)));
    EXPECT_EQ(Box(0), "No Data");
    EXPECT_EQ(Box(1), "No Data");
    // Scattering is measured beside a transmission that could not be used.
    sample.Time += kMinute;
    Plot(sample, TidalRaw(5));
    EXPECT_EQ(primary.Y(1, 2), 0.004);
}

TEST_F(LivePlotTest, NTidalNormalizedSignal) {
    plot.SetupChartForInstrument(InstTypeCode::NTidal);
    plot.PlotYType = PlotType::NormalizedSignal;
    Plot(TidalSample(), TidalRaw(1));
    EXPECT_EQ(primary.Y(1, 1), 321.5);
}

TEST_F(LivePlotTest, LTidalKeepsBothFormsAndShowsAbsorptionAndAttenuation) {
    plot.SetupChartForInstrument(InstTypeCode::LTidal);
    Plot(TidalSample(), TidalRaw(3));
    EXPECT_EQ(primary.Y(1, 1), 0.004);
    EXPECT_EQ(primary.Y(2, 1), 0.003);
    EXPECT_EQ(secondary.Y(2, 1), 0.125);
    EXPECT_EQ(secondary.Y(3, 1), 0.75);
    EXPECT_EQ(Box(1), "0.125");
    EXPECT_EQ(Box(2), "0.75");
    plot.SigmaOption = SigmaChoice::NoSigma;
    Plot(TidalSample(), TidalRaw(3));
    EXPECT_EQ(primary.Y(1, 2), 0.003);
    EXPECT_EQ(primary.Y(2, 2), 0.004);
}

TEST_F(LivePlotTest, FailedDecodeEndsTheTickAndLeavesAGap) {
    plot.SetupChartForInstrument(InstTypeCode::Delph2);
    PlotMany(10);
    chart.SetIsBatched(true);
    ASSERT_EQ(plot.BeginTick(5), 5);
    plot.AddSample({}, SampleAt(20));
    plot.AddSample({}, SampleAt(2000));
    plot.AbandonTick();
    EXPECT_EQ(plot.PlotIndex(), 13);
    EXPECT_EQ(primary.LastPoint(), 10);
    EXPECT_TRUE(chart.IsBatched());
    EXPECT_EQ(X().Max(), 100);
    EXPECT_EQ(plot.Readouts().Elapsed.View(), "2000 min");
    PlotMany(3);
    EXPECT_EQ(plot.PlotIndex(), 16);
    EXPECT_EQ(primary.LastPoint(), 13);  // short of the next index by the two points of the ended tick
    EXPECT_FALSE(chart.IsBatched());
    plot.ClearGraph();
    PlotMany(1);
    EXPECT_EQ(primary.LastPoint(), plot.PlotIndex() - 1);
}

TEST_F(LivePlotTest, ElapsedChangesItsFormAtAThousandMinutes) {
    ReadoutText text;
    text.SetMinutes(0);
    EXPECT_EQ(text.View(), "0.0 min");
    text.SetMinutes(12.34);
    EXPECT_EQ(text.View(), "12.3 min");
    text.SetMinutes(999.9);
    EXPECT_EQ(text.View(), "999.9 min");
    text.SetMinutes(1000);
    EXPECT_EQ(text.View(), "1000 min");
    text.SetMinutes(1234.6);
    EXPECT_EQ(text.View(), "1235 min");
    text.SetMinutes(-3.26);
    EXPECT_EQ(text.View(), "-3.3 min");
    text.SetMinutes(-0.01);
    EXPECT_EQ(text.View(), "0.0 min");
}

TEST_F(LivePlotTest, ReadoutsAreCutDownward) {
    ReadoutText text;
    text.SetCut(-0.000001, 5);
    EXPECT_EQ(text.View(), "-0.00001");
    text.SetCut(0.123459, 5);
    EXPECT_EQ(text.View(), "0.12345");
    text.SetCut(0.123459, 4);
    EXPECT_EQ(text.View(), "0.1234");
    text.SetCut(3, 5);
    EXPECT_EQ(text.View(), "3");
    text.SetCut(1e308, 5);
    EXPECT_EQ(text.View(), "1E+308");
    text.SetCut(std::numeric_limits<double>::infinity(), 4);
    EXPECT_EQ(text.View(), "1E+308");
}

TEST_F(LivePlotTest, SampleBeforeTheStartHasNegativeMinutes) {
    plot.SetupChartForInstrument(InstTypeCode::Delph2);
    Plot(SampleAt(0));
    Plot(SampleAt(-7));
    EXPECT_NEAR(primary.X(2), -7, 1e-6);
    EXPECT_EQ(plot.Readouts().Elapsed.View(), "-7.0 min");
    EXPECT_EQ(X().Min(), -10);  // spacing 10: Int(-0.7) * 10
}

TEST_F(LivePlotTest, ModelWithoutPlotStillCountsItsSamples) {
    plot.SetupChartForInstrument(InstTypeCode::Unknown);
    Plot(SampleAt(0));
    EXPECT_EQ(plot.PlotIndex(), 2);
    EXPECT_EQ(primary.X(1), 0);
}

}  // namespace
}  // namespace marisonde
