#include <array>
#include <gtest/gtest.h>
#include <vector>

#include "graphs/Colors.h"

namespace marisonde {
namespace {

struct ColorRow {
    double wavelength;
    int red, green, blue;
};

// Between 420 and 700 nm the eye's answer is full: byte = round(255 * part ^ gamma), here with gamma 1.
TEST(Colors, RampsBetweenThePureHues) {
    const std::array rows{
        ColorRow{420, 85, 0, 255},                               // (440-420)/60 = 1/3; 255/3 = 85
        ColorRow{440, 0, 0, 255},   ColorRow{465, 0, 128, 255},  // 25/50; 127.5 to the even 128
        ColorRow{490, 0, 255, 255}, ColorRow{500, 0, 255, 128},  // (510-500)/20 = 0.5
        ColorRow{510, 0, 255, 0},   ColorRow{545, 128, 255, 0},  // 35/70
        ColorRow{580, 255, 255, 0}, ColorRow{619, 255, 102, 0},  // 26/65 = 0.4
        ColorRow{645, 255, 0, 0},   ColorRow{700, 255, 0, 0},
    };
    for (const ColorRow& row : rows) {
        const PackedColor color = WavelengthToColor(row.wavelength, 1);
        EXPECT_EQ(RedOf(color), row.red) << row.wavelength;
        EXPECT_EQ(GreenOf(color), row.green) << row.wavelength;
        EXPECT_EQ(BlueOf(color), row.blue) << row.wavelength;
    }
}

TEST(Colors, FallsOffTowardTheEndsOfTheVisibleRange) {
    // 380: factor 0.3, 255 * 0.3 = 76.5 -> 76 (even); red (440-380)/60 = 1.
    EXPECT_EQ(WavelengthToColor(380, 1), 76U + 65536U * 76U);
    // 400: 0.3 + 0.7 * 20/40 = 0.65; red 40/60 * 0.65 * 255 = 110.5 -> 110 (even); blue 165.75 -> 166.
    EXPECT_EQ(WavelengthToColor(400, 1), 110U + 65536U * 166U);
    // 740: 0.3 + 0.7 * 40/80 = 0.65; 165.75 -> 166.
    EXPECT_EQ(WavelengthToColor(740, 1), 166U);
    // 780: 0.3 -> 76.
    EXPECT_EQ(WavelengthToColor(780, 1), 76U);
    // From 807 on held: 0.3 - 0.7 * 27/80 = 0.06375; 16.25625 -> 16.
    EXPECT_EQ(WavelengthToColor(807, 1), 16U);
    EXPECT_EQ(WavelengthToColor(2000, 1), 16U);
    // Below 367 held: 0.3 - 0.7 * 13/40 = 0.0725; 18.4875 -> 18.
    EXPECT_EQ(WavelengthToColor(0, 1), 18U + 65536U * 18U);
}

TEST(Colors, GammaRaisesEachPart) {
    // 0.5 ^ 0.8 = 0.574349; * 255 = 146.459 -> 146.
    EXPECT_EQ(WavelengthToColor(465, 0.8), 256U * 146U + 65536U * 255U);
}

TEST(Colors, CaptionNumberWinsFrom301) {
    EXPECT_EQ(WavelengthOfChannel(470, 532), 470);
    EXPECT_EQ(WavelengthOfChannel(301, 532), 301);
    EXPECT_EQ(WavelengthOfChannel(300, 532), 532);
    EXPECT_EQ(WavelengthOfChannel(0, 300), 0);
    EXPECT_EQ(WavelengthOfChannel(0, 301), 301);
}

TEST(Colors, ChannelsOfOneWavelengthNeverShareAColour) {
    const std::array<double, 5> wavelengths{700, 470, 700, 700, 470};
    // 700 nm is pure red: 255; * 0.7 = 178.5 cut to 178; * 0.7 = 124.6 cut to 124.
    EXPECT_EQ(ColorForChannel(wavelengths, 0), 255U);
    EXPECT_EQ(ColorForChannel(wavelengths, 2), 178U);
    EXPECT_EQ(ColorForChannel(wavelengths, 3), 124U);
    // 470: green 30/50 = 0.6 ^ 0.8 = 0.664540 * 255 = 169.46 -> 169; darkened 118.3 -> 118, blue 178.5 ->
    // 178.
    EXPECT_EQ(ColorForChannel(wavelengths, 1), 256U * 169U + 65536U * 255U);
    EXPECT_EQ(ColorForChannel(wavelengths, 4), 256U * 118U + 65536U * 178U);
}

TEST(Colors, ChannelOutsideIsBlack) {
    const std::array<double, 2> wavelengths{470, 532};
    EXPECT_EQ(ColorForChannel(wavelengths, 2), 0U);
    EXPECT_EQ(ColorForChannel(wavelengths, -1), 0U);
}

TEST(Colors, OnlyAutomaticChannelsOfTheFirstEightFollowTheirWavelength) {
    const std::vector<double> wavelengths(10, 700);
    std::array<bool, 10> automatic{true, false, true, true, true, true, true, true, true, true};
    std::array<PackedColor, 10> colors{};
    colors.fill(0x123456);
    AutoColorChannels(wavelengths, automatic, colors);
    EXPECT_EQ(colors[0], 255U);
    EXPECT_EQ(colors[1], 0x123456U);
    EXPECT_EQ(colors[2], 124U);  // the second 700 nm channel counts although its own colour is chosen by hand
    EXPECT_EQ(colors[8], 0x123456U);
}

}  // namespace
}  // namespace marisonde
