#include <gtest/gtest.h>

#include "graphs/GraphDefaults.h"

namespace marisonde {
namespace {

constexpr std::string_view kSection = "GraphDefaults";

TEST(GraphDefaults, FirstRunIsWhiteWithAutomaticLimits) {
    const GraphDefaults d = LoadGraphDefaults(MapSettings());
    EXPECT_EQ(d, GraphDefaults());
    EXPECT_TRUE(d.GridOn);
    EXPECT_EQ(d.GridStyle, 0);
    EXPECT_EQ(d.GraphColor, 0xFFFFFFU);
    EXPECT_EQ(d.GraphExtColor, 0xFFFFFFU);
    EXPECT_EQ(d.GridColor, 0U);
    EXPECT_EQ(d.LineSize, 1);
    EXPECT_EQ(d.MarkerSize, 1);
    EXPECT_TRUE(d.AutoDataMin && d.AutoDataMax && d.AutoDataMin2 && d.AutoDataMax2);
    EXPECT_TRUE(d.AutoDepthMin && d.AutoDepthMax && d.AutoTimeMin && d.AutoTimeMax);
    EXPECT_EQ(d.DataMin, 0);
    EXPECT_EQ(d.DataMax, 0.01);
    EXPECT_EQ(d.DataMin2, 0);
    EXPECT_EQ(d.DataMax2, 0.1);
    EXPECT_EQ(d.DepthMax, 100);
    EXPECT_EQ(d.TimeMax, 100);
    for (const ChannelStyle& style : d.channels) {
        EXPECT_TRUE(style.on);
        EXPECT_EQ(style.color, kAutomaticColor);
        EXPECT_EQ(style.marker, "Circle");
    }
}

TEST(GraphDefaults, EveryKeyIsSavedAndReadBack) {
    GraphDefaults d;
    d.GridOn = false;
    d.GridStyle = 2;
    d.GraphColor = 0x102030;
    d.GraphExtColor = 0xFEDCBA;
    d.GridColor = 0x808080;
    d.LineSize = 3;
    d.MarkerSize = 5;
    d.channels[7] = {false, 0x00FF00, "Cross"};
    d.AutoDataMin = d.AutoDataMax = d.AutoDataMin2 = d.AutoDataMax2 = false;
    d.AutoDepthMin = d.AutoDepthMax = d.AutoTimeMin = d.AutoTimeMax = false;
    d.DataMin = -0.5;
    d.DataMax = 0.25;
    d.DataMin2 = 1e-7;
    d.DataMax2 = 12;
    d.DepthMin = 5;
    d.DepthMax = 300;
    d.TimeMin = 1;
    d.TimeMax = 60;
    d.Units = false;
    MapSettings settings;
    SaveGraphDefaults(settings, d);
    EXPECT_EQ(LoadGraphDefaults(settings), d);
    // 0x8000000F as a signed 32-bit number is -2147483633.
    EXPECT_EQ(settings.GetSetting(kSection, "DataColor0", ""), "-2147483633");
    EXPECT_EQ(settings.GetSetting(kSection, "ChannelOn7", ""), "0");
    EXPECT_EQ(settings.GetSetting(kSection, "Marker7", ""), "Cross");
}

TEST(GraphDefaults, AutomaticColourReadsAsSignedAndUnsignedNumber) {
    MapSettings settings;
    for (const char* text : {"-2147483633", "2147483663", "&H8000000F"}) {
        settings.SaveSetting(kSection, "DataColor3", text);
        EXPECT_EQ(LoadGraphDefaults(settings).channels[3].color, kAutomaticColor) << text;
    }
}

TEST(GraphDefaults, BadTextReadsAsNought) {
    MapSettings settings;
    settings.SaveSetting(kSection, "DataMax", "wide");
    settings.SaveSetting(kSection, "GridOn", "maybe");
    settings.SaveSetting(kSection, "GridColor", "1e300");
    settings.SaveSetting(kSection, "AutoTimeMax", "True");
    const GraphDefaults d = LoadGraphDefaults(settings);
    EXPECT_EQ(d.DataMax, 0);
    EXPECT_FALSE(d.GridOn);
    EXPECT_EQ(d.GridColor, 0U);
    EXPECT_TRUE(d.AutoTimeMax);
}

TEST(GraphDefaults, AreAppliedToTheViewInForceAndKeptForTheOther) {
    Chart2D chart;
    LivePlot plot(chart);
    GraphDefaults d;
    d.DepthMax = 300;
    d.TimeMax = 60;
    d.DataMax = 0.5;
    d.DataMax2 = 2;
    d.AutoDataMin = false;
    d.Units = false;
    d.channels[2].color = 0xFF;
    ApplyGraphDefaults(d, plot, chart);
    EXPECT_EQ(chart.Axes(AxisName::X).Max(), 60);
    EXPECT_EQ(chart.Axes(AxisName::Y).Max(), 0.5);
    EXPECT_EQ(chart.Axes(AxisName::Y2).Max(), 2);
    EXPECT_FALSE(plot.AutoDataMin);
    EXPECT_FALSE(plot.DepthInMeters());
    EXPECT_TRUE(plot.AutoColor(1));
    EXPECT_FALSE(plot.AutoColor(2));
    plot.VsDepthCommand();
    EXPECT_EQ(chart.Axes(AxisName::X).Max(), 300);
}

}  // namespace
}  // namespace marisonde
