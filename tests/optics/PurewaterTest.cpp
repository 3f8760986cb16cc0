#include <array>
#include <cmath>
#include <gtest/gtest.h>

#include "optics/PureWaterParams.h"
#include "optics/PurewaterClass.h"

namespace marisonde {
namespace {

TEST(Purewater, AbsorptionIsHeldConstantBeyondTheTable) {
    EXPECT_EQ(Purewater().a(0), 0.01137);
    EXPECT_EQ(Purewater().a(377), 0.01137);
    EXPECT_EQ(Purewater().a(380), 0.01137);
    EXPECT_EQ(Purewater().a(730), 2.0);
    EXPECT_EQ(Purewater().a(800), 2.0);
}

TEST(Purewater, AbsorptionBetweenRowsIsLinear) {
    // Halfway between 380 nm (0.01137) and 385 nm (0.00941).
    EXPECT_DOUBLE_EQ(Purewater().a(382.5), (0.01137 + 0.00941) / 2);
    // 532 nm is 2/5 of the way from 530 nm (0.0434) to 535 nm (0.0452): 0.0434 + 0.4 x 0.0018 = 0.04412.
    EXPECT_DOUBLE_EQ(Purewater().a(532), 0.04412);
    // 729 nm is 4/5 of the way from 725 nm (1.489) to 730 nm (2).
    EXPECT_DOUBLE_EQ(Purewater().a(729), 1.489 + 0.8 * 0.511);
}

TEST(Purewater, AbsorptionTable) {
    constexpr std::array kRows{
        0.01137, 0.00941, 0.00851, 0.00813, 0.00663, 0.0053,  0.00473, 0.00444, 0.00454, 0.00478, 0.00495,
        0.0053,  0.00635, 0.00751, 0.00922, 0.00962, 0.00979, 0.01011, 0.0106,  0.0114,  0.0127,  0.0136,
        0.0151,  0.0173,  0.0204,  0.0256,  0.0325,  0.0396,  0.0409,  0.0417,  0.0434,  0.0452,  0.0474,
        0.0511,  0.0565,  0.0596,  0.0619,  0.0642,  0.0695,  0.0772,  0.0896,  0.11,    0.1351,  0.1672,
        0.2224,  0.2577,  0.2644,  0.2678,  0.2755,  0.2834,  0.2916,  0.3012,  0.3108,  0.325,   0.34,
        0.371,   0.41,    0.429,   0.439,   0.448,   0.465,   0.486,   0.516,   0.559,   0.624,   0.704,
        0.827,   1.007,   1.231,   1.489,   2.0};
    for (std::size_t i = 0; i < kRows.size(); ++i) {
        EXPECT_EQ(Purewater().a(380 + 5.0 * static_cast<double>(i)), kRows[i]) << "row " << i;
    }
}

TEST(Purewater, ScatteringAtTheReferenceWavelength) {
    // (525 / 525)^4.32 is 1 and the cosine of 90 degrees (with the model's 3.1415926) squared is 7e-16.
    EXPECT_EQ(Purewater().beta(525, 90, false), 0.000112F);
    EXPECT_EQ(Purewater().beta(525, 90, true), 0.000146F);
    // cos(140 deg)^2 = 0.586824, x 0.835 = 0.489998: 0.000112 x 1.489998 = 1.668798e-4.
    EXPECT_NEAR(Purewater().beta(525, 140, false), 1.668798e-4, 1e-10);
    EXPECT_NEAR(Purewater().beta(525, 140, true), 2.175397e-4, 1e-10);
}

TEST(Purewater, ScatteringGrowsTowardsTheBlue) {
    // (525 / 470)^4.32 = 1.6129669; cos(117 deg)^2 = 0.206107, x 0.835 = 0.172100;
    // 1.6129669 x 0.000146 x 1.172100 = 2.760214e-4.
    EXPECT_NEAR(Purewater().beta(470, 117, true), 2.760214e-4, 1e-10);
    EXPECT_NEAR(Purewater().beta(470, 117, false), 2.117425e-4, 1e-10);
}

TEST(Purewater, BackscatteringIsBetaAt90DegreesTimes803) {
    // Of the 32-bit beta: 8.03 x 0.000112 as a 32-bit value.
    EXPECT_EQ(Purewater().bb(525, false), 8.03 * static_cast<double>(0.000112F));
    EXPECT_EQ(Purewater().bb(525, true), 8.03 * static_cast<double>(0.000146F));
    EXPECT_NEAR(Purewater().bb(470, true), 8.03 * 1.6129669 * 0.000146, 1e-10);
}

TEST(Purewater, NoWavelengthScattersNothing) {
    EXPECT_EQ(Purewater().beta(0, 90, false), 0);
    EXPECT_EQ(Purewater().bb(0, true), 0);
}

PureWaterParams NoWater() {
    PureWaterParams params;
    params.Choice = PureWaterChoice::NoPure;
    return params;
}

TEST(BetaToBb, ChiOfTheCalibration) {
    PureWaterParams params = NoWater();
    params.UseCalChi = true;
    // Below 3 the value is chi: 1.1 x 6.2832 = 6.91152. From 3 on it holds the 2 pi already.
    EXPECT_EQ(BetaToBb(params, 1, 470, 1.1), 6.91152F);
    EXPECT_EQ(BetaToBb(params, 1, 470, 7), 7.0F);
    EXPECT_EQ(BetaToBb(params, 1, 470, 3), 3.0F);
    EXPECT_EQ(BetaToBb(params, 2, 470, 2.9999), static_cast<float>(2 * (2.9999 * 6.2832)));
}

TEST(BetaToBb, ChiOfTheParameters) {
    PureWaterParams params = NoWater();
    params.chi = 1.25F;
    EXPECT_EQ(BetaToBb(params, 1, 470, 7), 7.854F);  // 1.25 x 6.2832
}

TEST(BetaToBb, WaterIsTakenOffBetaAndItsOwnBbComesBack) {
    PureWaterParams params = NoWater();
    params.UseCalChi = true;
    params.lambda0 = 500;
    params.gammaLambda = 2;
    params.beta0 = 0.125F;
    params.bb0 = 0.5F;
    // At 250 nm the weight is (500 / 250)^2 = 4: (2.5 - 0.125 x 4) x 4 + 0.5 x 4 = 10.
    EXPECT_EQ(BetaToBb(params, 2.5, 250, 4), 10.0F);
    EXPECT_EQ(BetaPureAt(params, 250), 0.5);
    // Wavelength 0 has no water: 2.5 x 4.
    EXPECT_EQ(BetaToBb(params, 2.5, 0, 4), 10.0F);
    EXPECT_EQ(BetaPureAt(params, 0), 0);
}

TEST(BetaToBb, IsRoundedTo32Bits) {
    PureWaterParams params = NoWater();
    params.UseCalChi = true;
    EXPECT_EQ(BetaToBb(params, 0.1, 470, 3), static_cast<float>(0.1 * 3));
    EXPECT_TRUE(std::isinf(BetaToBb(params, 1e300, 470, 3)));
}

TEST(PureWaterSettings, DefaultsOfANewUser) {
    const PureWaterParams params = LoadPureWaterParams(MapSettings());
    EXPECT_NEAR(params.beta0, 1.668798e-4 / 2, 2e-11);
    EXPECT_NEAR(params.bb0, 8.03 * 0.000112 / 2, 1e-10);
    EXPECT_EQ(params.chi, 1.08F);
    EXPECT_EQ(params.gammaLambda, 4.32F);
    EXPECT_EQ(params.lambda0, 525.0F);
    EXPECT_EQ(params.Choice, PureWaterChoice::MorelFresh);
    EXPECT_FALSE(params.UseCalChi);
    EXPECT_FALSE(params.WriteBetaColumns);
    EXPECT_EQ(params, DefaultPureWaterParams());
}

struct KeyCase {
    const char* key;
    const char* text;
    bool (*check)(const PureWaterParams&);
};

class EveryPureWaterKey : public testing::TestWithParam<KeyCase> {};

TEST_P(EveryPureWaterKey, IsRead) {
    MapSettings settings;
    settings.SaveSetting("bbPrefs", GetParam().key, GetParam().text);
    EXPECT_TRUE(GetParam().check(LoadPureWaterParams(settings))) << GetParam().key;
}

TEST_P(EveryPureWaterKey, IsSaved) {
    MapSettings first;
    first.SaveSetting("bbPrefs", GetParam().key, GetParam().text);
    MapSettings second;
    SavePureWaterParams(second, LoadPureWaterParams(first));
    EXPECT_TRUE(GetParam().check(LoadPureWaterParams(second))) << GetParam().key;
    EXPECT_NE(second.GetSetting("bbPrefs", GetParam().key, "none"), "none");
}

INSTANTIATE_TEST_SUITE_P(
    PureWaterSettings, EveryPureWaterKey,
    testing::Values(KeyCase{"beta0", "0.25", [](const PureWaterParams& p) { return p.beta0 == 0.25F; }},
                    KeyCase{"bb0", "2.5E-01", [](const PureWaterParams& p) { return p.bb0 == 0.25F; }},
                    KeyCase{"chi", "1.17", [](const PureWaterParams& p) { return p.chi == 1.17F; }},
                    KeyCase{"chi", "none", [](const PureWaterParams& p) { return p.chi == 0; }},
                    KeyCase{"gammaLambda", "4", [](const PureWaterParams& p) { return p.gammaLambda == 4; }},
                    KeyCase{"lambda0", "500", [](const PureWaterParams& p) { return p.lambda0 == 500; }},
                    KeyCase{"MorelFresh", "TRUE",
                            [](const PureWaterParams& p) { return p.Choice == PureWaterChoice::MorelFresh; }},
                    KeyCase{"MorelSalt", "true", [](const PureWaterParams& p) { return p.MorelSalt(); }},
                    KeyCase{"CustomPure", "True",
                            [](const PureWaterParams& p) { return p.Choice == PureWaterChoice::Custom; }},
                    KeyCase{"NoPure", "TRUE",
                            [](const PureWaterParams& p) { return p.Choice == PureWaterChoice::NoPure; }},
                    KeyCase{"VenmarkRecommended", "TRUE",
                            [](const PureWaterParams& p) {
                                return p.Choice == PureWaterChoice::VenmarkRecommended;
                            }},
                    KeyCase{"useCalFileChi", "tRuE", [](const PureWaterParams& p) { return p.UseCalChi; }},
                    KeyCase{"IncludeBetaInDatFiles", "TRUE",
                            [](const PureWaterParams& p) { return p.WriteBetaColumns; }}));

TEST(PureWaterSettings, ExactlyOneChoiceIsTrueInStorage) {
    MapSettings settings;
    PureWaterParams params;
    params.Choice = PureWaterChoice::NoPure;
    SavePureWaterParams(settings, params);
    EXPECT_EQ(settings.GetSetting("bbPrefs", "NoPure", ""), "TRUE");
    for (const char* other : {"MorelFresh", "MorelSalt", "CustomPure", "VenmarkRecommended"}) {
        EXPECT_EQ(settings.GetSetting("bbPrefs", other, ""), "FALSE") << other;
    }
}

}  // namespace
}  // namespace marisonde
