#include "WindowFixture.h"
#include "app/GraphSetup.h"
#include "app/PlottedChannels.h"

namespace marisonde {
namespace {

using simulator::Model;

class GraphSetupTest : public WindowFixture {
  protected:
    static SeriesDisplay DisplayOf(DataWindow& window, int group, int series) {
        return window.Chart.ChartGroups(group).Display(series);
    }
};

TEST_F(GraphSetupTest, ANewWindowHasTheViewLastSeen) {
    const auto window = Scripted(Model::Corvane6);
    LoadGraphDefaults(*window);
    EXPECT_EQ(window->Plot.View(), PlotView::Vs_Depth) << "with nothing stored";
    EXPECT_TRUE(VsTimeCommand(*window));
    EXPECT_TRUE(app.prefs.VsTime);
    SavePreferences(settings, app.prefs);
    EXPECT_EQ(settings.GetSetting("GraphDefaults", "VsTime", ""), "TRUE");
    const auto later = Scripted(Model::Corvane6);
    LoadGraphDefaults(*later);
    EXPECT_EQ(later->Plot.View(), PlotView::Vs_Time);
    EXPECT_TRUE(VsDepthCommand(*later));
    EXPECT_FALSE(VsDepthCommand(*later));
    EXPECT_FALSE(app.prefs.VsTime);
}

TEST_F(GraphSetupTest, DefaultsReachTheGraph) {
    settings.SaveSetting("GraphDefaults", "DepthMax", "30");
    settings.SaveSetting("GraphDefaults", "TimeMax", "7");
    settings.SaveSetting("GraphDefaults", "DataColor1", "255");
    settings.SaveSetting("GraphDefaults", "Marker2", "Square");
    settings.SaveSetting("GraphDefaults", "LineSize", "3");
    settings.SaveSetting("GraphDefaults", "AutoDataMax", "0");
    settings.SaveSetting("GraphDefaults", "Units", "0");
    const auto window = Scripted(Model::Corvane6);
    LoadGraphDefaults(*window);
    EXPECT_EQ(window->Chart.Axes(AxisName::X).Max(), 30);
    EXPECT_EQ(window->Plot.CurrentTimeMax, 7);
    EXPECT_EQ(window->Plot.Look.LineSize, 3);
    EXPECT_FALSE(window->Plot.AutoDataMax);
    EXPECT_FALSE(window->Plot.DepthInMeters());
    const auto channels = PlottedChannels(window->Plot, window->Link.CalData);
    EXPECT_EQ(channels[1].color, 255U);
    EXPECT_EQ(channels[2].marker, "Square");
    // A colour that is not stored is that of the wavelength.
    EXPECT_EQ(channels[0].color, PlottedChannels(window->Plot.Model(), window->Link.CalData)[0].color);
}

TEST_F(GraphSetupTest, AutomaticColourComesFromTheWavelengthAtEachLoad) {
    settings.SaveSetting("GraphDefaults", "DataColor0", "-2147483633");
    const auto window = Scripted(Model::Corvane6);
    LoadGraphDefaults(*window);
    EXPECT_TRUE(window->Plot.AutoColor(0));
    const auto first = PlottedChannels(window->Plot, window->Link.CalData)[0];
    // 470 nm lies 30 of 50 nm behind blue: 0.6 of green at the power of 0.8 is 0.6645, of 255 is 169.
    EXPECT_EQ(first.name, "bb470");
    EXPECT_EQ(first.color, 255U * 65536U + 169U * 256U);
}

TEST_F(GraphSetupTest, AChannelSwitchedOffByDefaultStaysOffWithEachCalibration) {
    settings.SaveSetting("GraphDefaults", "ChannelOn1", "0");
    const auto window = Scripted(Model::Corvane6);
    LoadGraphDefaults(*window);
    window->ShowCalibration();
    EXPECT_EQ(DisplayOf(*window, 1, 1), SeriesDisplay::Drawn);
    EXPECT_EQ(DisplayOf(*window, 1, 2), SeriesDisplay::Kept);
}

TEST_F(GraphSetupTest, CopyTakesHiddenChannelsAndTellsTheForm) {
    const auto from = Scripted(Model::Corvane6);
    const auto to = Scripted(Model::Corvane6);
    int told = 0;
    to->OnInstrumentChanged = [&] { ++told; };
    from->Chart.ChartGroups(1).SetDisplay(3, SeriesDisplay::Kept);
    VsDepthCommand(*from);
    CopyGraphSettings(*from, *to);
    EXPECT_EQ(DisplayOf(*to, 1, 3), SeriesDisplay::Kept);
    EXPECT_EQ(DisplayOf(*to, 1, 2), SeriesDisplay::Drawn);
    EXPECT_EQ(to->Plot.View(), PlotView::Vs_Depth);
    EXPECT_EQ(told, 1);
}

TEST_F(GraphSetupTest, CopyBetweenModelsLeavesWhatIsNeverDrawn) {
    const auto from = Scripted(Model::Corvane6);
    const auto to = Scripted(Model::LTidal);
    from->Chart.ChartGroups(1).SetDisplay(2, SeriesDisplay::Kept);
    CopyGraphSettings(*from, *to);
    // Channel 1 of a Tidal, absorption, is series 2 of the second group; its first series carries depth.
    EXPECT_EQ(DisplayOf(*to, 1, 1), SeriesDisplay::Drawn);
    EXPECT_EQ(DisplayOf(*to, 1, 2), SeriesDisplay::Kept);
    EXPECT_EQ(DisplayOf(*to, 2, 1), SeriesDisplay::Kept);
    EXPECT_EQ(DisplayOf(*to, 2, 2), SeriesDisplay::Kept);
    EXPECT_EQ(DisplayOf(*to, 2, 3), SeriesDisplay::Drawn);
}

TEST_F(GraphSetupTest, OnlyCorvaneModelsHaveASpectrum) {
    EXPECT_EQ(NoSpectrumText(InstTypeCode::Corvane2), "");
    for (const InstTypeCode model : {InstTypeCode::LTidal, InstTypeCode::Delph4, InstTypeCode::Unknown})
        EXPECT_EQ(NoSpectrumText(model), "No spectral data available to display.");
}

}  // namespace
}  // namespace marisonde
