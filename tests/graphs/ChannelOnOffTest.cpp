#include <string>

#include "PlotFixture.h"
#include "graphs/ChannelOnOff.h"

namespace marisonde {
namespace {

class ChannelOnOffTest : public PlotTest {
  protected:
    /// Display of the series of both groups: 1 drawn, 3 kept.
    std::string Displays() {
        std::string text;
        for (const int group : {1, 2}) {
            const ChartGroup& series = chart.ChartGroups(group);
            for (int s = 1; s <= series.NumSeries(); ++s)
                text += std::to_string(static_cast<int>(series.Display(s)));
            text += group == 1 ? "/" : "";
        }
        return text;
    }
    void Turn(int channel, bool on) { ChannelOnOffCommand(chart, plot.Model(), channel, on); }
};

TEST_F(ChannelOnOffTest, ACorvaneChannelIsItsOwnSeries) {
    plot.SetupChartForInstrument(InstTypeCode::Corvane6);
    ASSERT_EQ(Displays(), "11111111333/");
    for (int channel = 0; channel < 8; ++channel) {
        std::string expected = "11111111333/";
        expected[static_cast<std::size_t>(channel)] = '3';
        Turn(channel, false);
        EXPECT_EQ(Displays(), expected);
        EXPECT_FALSE(ChannelIsOn(chart, plot.Model(), channel));
        Turn(channel, true);
        EXPECT_EQ(Displays(), "11111111333/");
        EXPECT_TRUE(ChannelIsOn(chart, plot.Model(), channel));
    }
}

TEST_F(ChannelOnOffTest, ADelphChannelIsItsOwnSeries) {
    plot.SetupChartForInstrument(InstTypeCode::Delph4);
    Turn(0, false);
    Turn(3, false);
    EXPECT_EQ(Displays(), "31133/");
}

TEST_F(ChannelOnOffTest, TheScatteringOfATidalGoesWithItsPartner) {
    plot.SetupChartForInstrument(InstTypeCode::LTidal);
    ASSERT_EQ(Displays(), "133/311");
    Turn(0, false);
    EXPECT_EQ(Displays(), "333/311");
    Turn(0, true);
    EXPECT_EQ(Displays(), "113/311");
}

TEST_F(ChannelOnOffTest, TheBeamChannelsOfATidalStandInTheSecondGroup) {
    plot.SetupChartForInstrument(InstTypeCode::LTidal);
    Turn(1, false);
    EXPECT_EQ(Displays(), "133/331");
    Turn(2, false);
    EXPECT_EQ(Displays(), "133/333");
    Turn(1, true);
    EXPECT_EQ(Displays(), "133/313");
    plot.SetupChartForInstrument(InstTypeCode::NTidal);
    ASSERT_EQ(Displays(), "13/31");
    Turn(1, false);
    EXPECT_EQ(Displays(), "13/33");
}

TEST_F(ChannelOnOffTest, ChannelsThatAModelDoesNotHaveChangeNothing) {
    plot.SetupChartForInstrument(InstTypeCode::NTidal);
    for (const int channel : {-1, 2, 12}) {
        Turn(channel, false);
        EXPECT_EQ(Displays(), "13/31") << channel;
        EXPECT_FALSE(ChannelIsOn(chart, plot.Model(), channel));
    }
}

TEST_F(ChannelOnOffTest, TheBatchComesBackAsItWas) {
    plot.SetupChartForInstrument(InstTypeCode::Corvane2);
    for (const bool batched : {false, true}) {
        chart.SetIsBatched(batched);
        Turn(0, !batched);
        EXPECT_EQ(chart.IsBatched(), batched);
    }
}

}  // namespace
}  // namespace marisonde
