#include <functional>
#include <gtest/gtest.h>

#include "calibration/CalibrationDataClass.h"

namespace marisonde {
namespace {

using Cal = CalibrationDataClass;

struct Change {
    const char* what;
    std::uint16_t bit;
    std::function<void(Cal&)> make;
};

Cal Sample() {
    Cal cal;
    cal.InstType = InstTypeCode::Corvane6;
    for (int ch = 0; ch < kChannelSlots; ++ch) {
        cal.SetMu(ch, 0.125 + ch);
        cal.EditChannel(ch).MuRho = 0.98;
        cal.EditChannel(ch).bTempCoeff = 0.001;
        cal.SetSigmaExp(ch, 0.25);
        cal.SetSigma(ch, 1, 2);
        cal.SetSigma(ch, 2, 3);
    }
    cal.DepthCal = 0.0125F;
    cal.DepthOff = 3;
    return cal;
}

std::ostream& operator<<(std::ostream& out, const Change& change) {
    return out << change.what;
}

class EveryDifference : public testing::TestWithParam<Change> {};

TEST_P(EveryDifference, IsFoundInItsGroupAlone) {
    const Cal mine = Sample();
    Cal other = mine;
    GetParam().make(other);
    EXPECT_EQ(mine.Compare(other, CalItems::All), GetParam().bit);
    EXPECT_EQ(mine.Compare(other, GetParam().bit), GetParam().bit);
}

TEST_P(EveryDifference, IsNotLookedForUnlessAsked) {
    const Cal mine = Sample();
    Cal other = mine;
    GetParam().make(other);
    EXPECT_EQ(mine.Compare(other, static_cast<std::uint16_t>(~GetParam().bit)), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Compare, EveryDifference,
    testing::Values(
        Change{"comment", 0x800, [](Cal& c) { c.Comment = "x"; }},
        Change{"mu", 1, [](Cal& c) { c.SetMu(5, 5.12501); }},
        Change{"mu rho", 1, [](Cal& c) { c.EditChannel(0).MuRho = 0.9821; }},
        Change{"fluorescence mu", 0x1000, [](Cal& c) { c.SetMu(6, 7); }},
        Change{"mu behind the last channel", 0x1000, [](Cal& c) { c.SetMu(11, 7); }},
        Change{"fluorescence mu rho", 0x1000, [](Cal& c) { c.EditChannel(7).MuRho = 0.9851; }},
        Change{"dark offset", 2, [](Cal& c) { c.EditChannel(11).DarkOffset[1] = 1; }},
        Change{"nominal offset", 2, [](Cal& c) { c.EditChannel(0).NomOffset[5] = 1; }},
        Change{"fluorescence offset", 2, [](Cal& c) { c.EditChannel(0).FlOffset[3] = 1; }},
        Change{"gain", 4, [](Cal& c) { c.SetGain(3, 1, 1.0011); }},
        Change{"nominal reference", 0x400, [](Cal& c) { c.SetRNominal(2, 2); }},
        Change{"reference offset", 0x400, [](Cal& c) { c.SetROutOff(2, 2); }},
        Change{"label", 8, [](Cal& c) { c.Label = "x"; }},
        Change{"serial", 8, [](Cal& c) { c.Serial = "x"; }},
        Change{"config", 8, [](Cal& c) { c.Config = "x"; }},
        Change{"depth slope", 16, [](Cal& c) { c.DepthCal = 0.01251F; }},
        Change{"depth offset", 16, [](Cal& c) { c.DepthOff = 3.0001F; }},
        Change{"sigma 0", 32, [](Cal& c) { c.SetSigma(1, 0, 1.00001); }},
        Change{"sigma 1", 32, [](Cal& c) { c.SetSigma(1, 1, 2.00001); }},
        Change{"sigma 2", 32, [](Cal& c) { c.SetSigma(11, 2, 0); }},
        Change{"exponential sigma", 64, [](Cal& c) { c.SetSigmaExp(4, 0.250001); }},
        Change{"beam wavelength", 0x80, [](Cal& c) { c.EditAttenuation(0).KLambda = 1; }},
        Change{"beam bandwidth", 0x80, [](Cal& c) { c.EditAttenuation(0).KDeltaLambda = 1; }},
        Change{"wavelength", 0x80, [](Cal& c) { c.EditChannel(9).lambda = 1; }},
        Change{"name", 0x80, [](Cal& c) { c.EditChannel(9).name = "n"; }},
        Change{"path", 0x80, [](Cal& c) { c.EditAttenuation(3).KPath = 0.25F; }},
        Change{"beam temperature", 0x100, [](Cal& c) { c.SetKCalTemp(0, 1); }},
        Change{"calibration temperature", 0x100, [](Cal& c) { c.CalTemp = 1; }},
        Change{"beam temperature curve", 0x100, [](Cal& c) { c.SetKTempCoeff(0, 6, 1); }},
        Change{"temperature coefficient", 0x100, [](Cal& c) { c.EditChannel(1).bTempCoeff = 0.00100001; }},
        Change{"chi", 0x200, [](Cal& c) { c.EditAttenuation(0).KChi[4] = 1; }},
        Change{"depth compensation", 0x200, [](Cal& c) { c.EditAttenuation(0).KDepthCoeff[6] = 1; }},
        Change{"depth threshold", 0x200, [](Cal& c) { c.EditAttenuation(0).KDepthThresh[10] = 1; }},
        Change{"water absorption", 0x200, [](Cal& c) { c.EditAttenuation(0).aPure = 1; }},
        Change{"water beta", 0x200, [](Cal& c) { c.EditAttenuation(0).betaPure = 1; }}));

TEST(Compare, EqualObjects) {
    EXPECT_EQ(Sample().Compare(Sample(), CalItems::All), 0);
}

TEST(Compare, AnotherModelIsAnotherIdentification) {
    Cal other = Sample();
    other.InstType = InstTypeCode::Corvane4;
    EXPECT_EQ(Sample().Compare(other, CalItems::All), CalItems::Identification);
}

TEST(Compare, SmallDifferencesAreNone) {
    Cal other = Sample();
    other.SetMu(5, 5.125001);             // the same 6 digits
    other.EditChannel(0).MuRho = 0.9819;  // below 0.002
    other.EditChannel(6).MuRho = 0.9849;  // below 0.005
    other.SetGain(3, 1, 1.0009);          // below 0.001
    other.DepthOff = 3.000001F;           // the same 6 digits
    other.SetSigma(1, 1, 2.000001);       // the same 6 digits
    other.EditChannel(1).bTempCoeff = 0.001000000001;
    other.SetMu(12, 99);  // the last slot is not looked at
    EXPECT_EQ(Sample().Compare(other, CalItems::All), 0);
}

TEST(Compare, FluorescenceOffsetsCountForTheCorvane6Only) {
    Cal mine = Sample();
    mine.InstType = InstTypeCode::Corvane4;
    Cal other = mine;
    other.EditChannel(0).FlOffset[3] = 1;
    EXPECT_EQ(mine.Compare(other, CalItems::All), 0);
}

// --- merge --------------------------------------------------------------------------------------------

Cal Donor() {
    Cal cal;
    cal.InstType = InstTypeCode::Corvane4;
    cal.Serial = "CV4-9";
    cal.Config = "T";
    cal.Label = "donor";
    cal.MaxDepth = 500;
    cal.CalTemp = 18;
    cal.DepthCal = 2;
    cal.DepthOff = 7;
    for (int ch = 0; ch < kChannelSlots; ++ch) {
        cal.SetMu(ch, 10 + ch);
        cal.EditChannel(ch).MuRho = 0.5;
        cal.SetSigmaExp(ch, 0.75);
        for (int i = 0; i < 3; ++i) cal.SetSigma(ch, i, 30 + i);
        cal.EditChannel(ch).DarkOffset = {0, 1, 2, 3, 4, 5};
        cal.EditChannel(ch).NomOffset = {0, 6, 7, 8, 9, 10};
        cal.EditChannel(ch).FlOffset = {0, 11, 12, 13, 14, 15};
    }
    return cal;
}

Cal Merged(std::uint16_t mask) {
    Cal cal;
    cal.InstType = InstTypeCode::Corvane6;
    cal.Merge(Donor(), mask);
    return cal;
}

TEST(Merge, NothingButTheSource) {
    Cal expected;
    expected.InstType = InstTypeCode::Corvane6;
    expected.NoteSource("[multiple sources]");
    EXPECT_EQ(Merged(0), expected);
    EXPECT_EQ(Merged(CalItems::Configuration | CalItems::TemperatureCoefficient |
                     CalItems::AttenuationParams | CalItems::Reference | CalItems::Comment),
              expected);
}

TEST(Merge, MuOfTheBackscatterChannels) {
    const Cal cal = Merged(CalItems::Mu);
    EXPECT_EQ(cal.Channel(5).Mu, 15);
    EXPECT_EQ(cal.Channel(5).MuRho, 0.5);
    EXPECT_EQ(cal.Channel(6).Mu, 0);
    EXPECT_EQ(cal.CalTemp, 18);
}

TEST(Merge, MuOfTheFluorescenceChannels) {
    const Cal cal = Merged(CalItems::FluorescenceMu);
    EXPECT_EQ(cal.Channel(5).Mu, 0);
    EXPECT_EQ(cal.Channel(6).Mu, 16);
    EXPECT_EQ(cal.Channel(7).Mu, 17);
    EXPECT_EQ(cal.Channel(7).MuRho, 0.5);
    EXPECT_EQ(cal.Channel(8).Mu, 0);
    EXPECT_EQ(cal.CalTemp, 0);
}

TEST(Merge, MuBringsItsGainStep) {
    Cal donor = Donor();
    donor.SetMuGain(0, 2);
    Cal cal;
    cal.InstType = InstTypeCode::Corvane6;
    cal.Merge(donor, CalItems::Mu);
    EXPECT_EQ(cal.Channel(0).MuGain, 2);
    EXPECT_EQ(cal.Channel(0).gain[1], 0.1);
    EXPECT_EQ(cal.Channel(1).gain[1], 1);
}

TEST(Merge, ExponentialSigma) {
    const Cal cal = Merged(CalItems::ExponentialSigma);
    EXPECT_EQ(cal.Channel(11).SigmaExp, 0.75);
    EXPECT_TRUE(cal.Channel(11).UseSigmaExp);
    EXPECT_EQ(cal.Channel(11).Sigma, (std::array<double, 3>{30, 0, 0}));
    EXPECT_EQ(cal.Channel(12).SigmaExp, 0);
}

TEST(Merge, PolynomialSigma) {
    const Cal cal = Merged(CalItems::PolynomialSigma);
    EXPECT_EQ(cal.Channel(11).Sigma, (std::array<double, 3>{30, 31, 32}));
    EXPECT_EQ(cal.Channel(11).SigmaExp, 0);
    EXPECT_EQ(cal.Channel(12).Sigma[0], 1);
}

TEST(Merge, Offsets) {
    const Cal cal = Merged(CalItems::Offset);
    EXPECT_EQ(cal.Channel(11).DarkOffset, (GainOffsets{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(cal.Channel(11).NomOffset, (GainOffsets{0, 6, 7, 8, 9, 10}));
    EXPECT_EQ(cal.Channel(11).FlOffset, (GainOffsets{0, 11, 12, 13, 14, 15}));
    EXPECT_EQ(cal.Channel(12).DarkOffset, GainOffsets{});
}

TEST(Merge, GainsRelativeToTheMuGain) {
    Cal donor = Donor();
    for (int g = 1; g <= 5; ++g) donor.SetGain(0, g, 3.0 * g);
    donor.SetGain(1, 1, 0);
    Cal cal;
    cal.InstType = InstTypeCode::Corvane6;
    cal.SetMuGain(2, 2);
    cal.SetMuGain(3, 0);
    cal.Merge(donor, CalItems::Gain);
    // Step 1 of the donor is 3: 1, 2, 3, 4, 5.
    EXPECT_EQ(cal.Channel(0).gain, (std::array<double, 6>{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(cal.Channel(1).gain, (std::array<double, 6>{0, 1, 1, 1, 1, 1}));
    EXPECT_EQ(cal.Channel(2).gain, (std::array<double, 6>{0, 0.1, 1, 10, 100, 1000}));
    EXPECT_EQ(cal.Channel(3).gain, (std::array<double, 6>{0, 1, 10, 100, 1000, 10000}));
}

TEST(Merge, GainQuotientsHaveSixDigits) {
    Cal donor;
    donor.SetGain(0, 1, 3);
    Cal cal;
    cal.Merge(donor, CalItems::Gain);
    EXPECT_EQ(cal.Channel(0).gain[2], 3.33333);
    EXPECT_EQ(cal.Channel(0).gain[5], 3333.33);
}

TEST(Merge, Depth) {
    const Cal cal = Merged(CalItems::Depth);
    EXPECT_EQ(cal.DepthCal, 2);
    EXPECT_EQ(cal.DepthOff, 7);
}

TEST(Merge, Identification) {
    const Cal cal = Merged(CalItems::Identification);
    EXPECT_EQ(cal.InstType, InstTypeCode::Corvane4);
    EXPECT_EQ(cal.Serial, "CV4-9");
    EXPECT_EQ(cal.Config, "T");
    EXPECT_EQ(cal.Label, "donor");
    EXPECT_EQ(cal.MaxDepth, 500);
    EXPECT_EQ(cal.DepthCal, 0);
}

}  // namespace
}  // namespace marisonde
