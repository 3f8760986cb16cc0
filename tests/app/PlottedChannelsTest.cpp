#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "app/PlottedChannels.h"

namespace marisonde {
namespace {

CalibrationDataClass Named(const std::vector<std::string>& names) {
    CalibrationDataClass cal;
    for (std::size_t i = 0; i < names.size(); ++i) cal.EditChannel(static_cast<int>(i)).name = names[i];
    return cal;
}

/// "readout:group/series" of each channel.
std::vector<std::string> Places(InstTypeCode model) {
    std::vector<std::string> places;
    for (const PlottedChannel& channel : PlottedChannels(model, CalibrationDataClass()))
        places.push_back(std::to_string(channel.box) + ":" + std::to_string(channel.group) + "/" +
                         std::to_string(channel.series));
    return places;
}
using Texts = std::vector<std::string>;

TEST(PlottedChannelsTest, CurvesOfEveryModelStandInTheirSeries) {
    EXPECT_EQ(Places(InstTypeCode::Corvane6),
              (Texts{"0:1/1", "1:1/2", "2:1/3", "3:1/4", "4:1/5", "5:1/6", "6:1/7", "7:1/8"}));
    EXPECT_EQ(Places(InstTypeCode::Corvane4), (Texts{"0:1/1", "1:1/2", "2:1/3", "3:1/4"}));
    EXPECT_EQ(Places(InstTypeCode::Corvane2), (Texts{"0:1/1", "1:1/2", "2:1/3"}));
    EXPECT_EQ(Places(InstTypeCode::LTidal), (Texts{"0:1/1", "1:2/2", "2:2/3"}));
    EXPECT_EQ(Places(InstTypeCode::NTidal), (Texts{"0:1/1", "1:2/2"}));
    EXPECT_EQ(Places(InstTypeCode::XTidal), Texts{});
    EXPECT_EQ(Places(InstTypeCode::Fathom2), (Texts{"1:1/1", "2:1/2"}));
    EXPECT_EQ(Places(InstTypeCode::Delph2), (Texts{"1:1/1", "2:1/2"}));
    EXPECT_EQ(Places(InstTypeCode::Delph4), (Texts{"1:1/1", "2:1/2", "3:1/3", "4:1/4"}));
    EXPECT_EQ(Places(InstTypeCode::Delph6), (Texts{"1:1/1", "2:1/2", "3:1/3", "4:1/4", "5:1/5", "6:1/6"}));
    EXPECT_EQ(Places(InstTypeCode::Unknown), Texts{});
}

TEST(PlottedChannelsTest, CurvesHaveTheColoursOfTheirWavelengths) {
    CalibrationDataClass cal = Named({"bb700", "fl", "bb700", "bb300"});
    cal.EditChannel(0).lambda = 470;  // the number in the name wins
    cal.EditChannel(1).lambda = 545;
    cal.EditChannel(3).lambda = 500;  // 300 in a name is no wavelength yet
    const auto channels = PlottedChannels(InstTypeCode::Corvane4, cal);
    ASSERT_EQ(channels.size(), 4U);
    EXPECT_EQ(channels[0].color, 255U);  // red from 645 nm on
    // 545 nm: red (545 - 510) / 70 = 0.5; 255 * 0.5 ^ 0.8 = 146.46 -> 146; green 255.
    EXPECT_EQ(channels[1].color, 146U + 256U * 255U);
    EXPECT_EQ(channels[2].color, 178U);  // the second of one wavelength: 255 * 0.7 = 178.5, cut
    // 500 nm: green 255; blue (510 - 500) / 20 = 0.5 -> 146.
    EXPECT_EQ(channels[3].color, 256U * 255U + 65536U * 146U);
}

TEST(PlottedChannelsTest, NamesAndUnits) {
    const auto channels = PlottedChannels(InstTypeCode::Corvane2, Named({"bb470", "", "fl676"}));
    ASSERT_EQ(channels.size(), 3U);
    EXPECT_EQ(channels[0].name, "bb470");
    EXPECT_EQ(channels[1].name, "Channel 2");
    EXPECT_EQ(channels[1].unit, "1/m");
    EXPECT_EQ(channels[2].unit, "");
}

TEST(PlottedChannelsTest, DelphChannelsWithoutACalibrationAreTold) {
    CalibrationDataClass cal;
    cal.EditAttenuation(1).KL = 0.25F;
    const auto channels = PlottedChannels(InstTypeCode::Delph2, cal);
    ASSERT_EQ(channels.size(), 2U);
    EXPECT_FALSE(channels[0].calibrated);
    EXPECT_TRUE(channels[1].calibrated);
    EXPECT_TRUE(PlottedChannels(InstTypeCode::NTidal, cal)[0].calibrated);
}

}  // namespace
}  // namespace marisonde
