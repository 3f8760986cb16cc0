#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <vector>

#include "calibration/CalibrationDataClass.h"
#include "optics/PurewaterClass.h"

namespace marisonde {
namespace {

using Gains = std::array<double, 6>;

CalibrationDataClass OfType(InstTypeCode type) {
    CalibrationDataClass cal;
    cal.InstType = type;
    return cal;
}

void SetGains(CalibrationDataClass& cal, int ch, const Gains& gains) {
    for (int g = 1; g <= 5; ++g) cal.SetGain(ch, g, gains[static_cast<std::size_t>(g)]);
}

TEST(CalibrationData, AFreshObject) {
    const CalibrationDataClass cal;
    EXPECT_EQ(cal.InstType, InstTypeCode::Unknown);
    for (int ch = 0; ch < kChannelSlots; ++ch) {
        const ChannelCal& channel = cal.Channel(ch);
        EXPECT_EQ(channel.gain, (Gains{0, 1, 10, 100, 1000, 10000}));
        EXPECT_EQ(channel.bbTilde, 0.015);
        EXPECT_EQ(channel.MuGain, 1);
        EXPECT_EQ(channel.Sigma, (std::array<double, 3>{1, 0, 0}));
        EXPECT_EQ(channel.RNominal, 1);
        EXPECT_EQ(channel.Mu, 0);
        EXPECT_FALSE(channel.UseSigmaExp);
        EXPECT_EQ(cal.Attenuation(ch), AttenuationCal());
    }
    EXPECT_EQ(cal.ChangedItems, 0);
    EXPECT_FALSE(cal.HasOffsets());
}

TEST(CalibrationData, ClearGivesAFreshObject) {
    CalibrationDataClass cal = OfType(InstTypeCode::Corvane6);
    cal.SetRNominal(3, 2);
    cal.SetChEx(6, 2);
    cal.Label = "x";
    cal.NoteSource("y");
    cal.Clear();
    EXPECT_EQ(cal, CalibrationDataClass());
}

TEST(CalibrationData, ExponentialSigmaIsUsedAboveASmallValue) {
    CalibrationDataClass cal;
    cal.SetSigmaExp(2, 0.0001);
    EXPECT_FALSE(cal.Channel(2).UseSigmaExp);
    cal.SetSigmaExp(2, 0.00011);
    EXPECT_TRUE(cal.Channel(2).UseSigmaExp);
    cal.SetSigmaExp(2, -1);
    EXPECT_FALSE(cal.Channel(2).UseSigmaExp);
}

TEST(CalibrationData, ReferenceOffsetCarriesTheExponentInItsFraction) {
    CalibrationDataClass cal;
    cal.SetROutOff(0, 1024.25);
    EXPECT_EQ(cal.Channel(0).ROutOff, 1024);
    EXPECT_EQ(cal.Channel(0).SigmaExp, 0.25);
    EXPECT_TRUE(cal.Channel(0).UseSigmaExp);
    cal.SetROutOff(0, 1024);
    EXPECT_EQ(cal.Channel(0).SigmaExp, 0.25);
    cal.SetROutOff(0, -3.5);
    EXPECT_EQ(cal.Channel(0).ROutOff, -3);
    EXPECT_EQ(cal.Channel(0).SigmaExp, 0.5);
}

TEST(CalibrationData, GainIsRoundedToSixDecimals) {
    CalibrationDataClass cal;
    cal.SetGain(0, 3, 98.76543219);
    EXPECT_EQ(cal.Channel(0).gain[3], 98.765432);
}

TEST(CalibrationData, Corvane2SharesTheGainsOfItsReceiver) {
    CalibrationDataClass cal = OfType(InstTypeCode::Corvane2);
    cal.SetGain(1, 2, 9.5);
    EXPECT_EQ(cal.Channel(1).gain[2], 9.5);
    EXPECT_EQ(cal.Channel(2).gain[2], 9.5);
    cal.SetGain(2, 2, 7);
    EXPECT_EQ(cal.Channel(1).gain[2], 9.5);
    cal.SetGain(0, 2, 8);
    EXPECT_EQ(cal.Channel(2).gain[2], 7);
}

TEST(CalibrationData, Corvane6SharesTheGainsOfItsReceiver) {
    CalibrationDataClass cal = OfType(InstTypeCode::Corvane6);
    cal.SetChEx(1, 1);
    cal.SetChRep(1, 8);
    EXPECT_EQ(cal.IsReceiverForVirtualChannel(1), 8);
    cal.SetGain(1, 4, 900);
    EXPECT_EQ(cal.Channel(7).gain[4], 900);
    cal.SetGain(7, 4, 800);
    EXPECT_EQ(cal.Channel(1).gain[4], 900);
    cal.InstType = InstTypeCode::Corvane4;
    cal.SetGain(1, 4, 700);
    EXPECT_EQ(cal.Channel(7).gain[4], 800);
}

TEST(CalibrationData, ReceiversThatNameEachOtherEndTheChain) {
    CalibrationDataClass cal = OfType(InstTypeCode::Corvane6);
    cal.SetChEx(1, 1);
    cal.SetChRep(1, 4);
    cal.SetChEx(3, 1);
    cal.SetChRep(3, 2);
    cal.SetGain(1, 1, 5);
    EXPECT_EQ(cal.Channel(1).gain[1], 5);
    EXPECT_EQ(cal.Channel(3).gain[1], 5);
}

TEST(CalibrationData, VirtualChannels) {
    CalibrationDataClass cal = OfType(InstTypeCode::Corvane6);
    cal.SetChEx(1, 1);
    cal.SetChRep(1, 8);
    cal.SetChEx(7, 2);
    // Channel 2 (index 1) is lit by channel 1 and reports as channel 8; channel 8 uses channel 2.
    EXPECT_TRUE(cal.Channel(1).IsSharedReceiver);
    EXPECT_EQ(cal.Channel(0).IsExcitationForChannel, 2);
    EXPECT_TRUE(cal.Channel(7).IsVirtualChannel);
    EXPECT_FALSE(cal.Channel(1).IsVirtualChannel);
    EXPECT_EQ(cal.IsReceiverForVirtualChannel(7), 0);

    // Flags stay when their cause goes; only Copy computes them anew.
    cal.SetChRep(1, 0);
    EXPECT_TRUE(cal.Channel(1).IsSharedReceiver);
    CalibrationDataClass copy;
    copy.Copy(cal);
    EXPECT_FALSE(copy.Channel(1).IsSharedReceiver);
    EXPECT_EQ(copy.Channel(0).IsExcitationForChannel, 0);
    EXPECT_TRUE(copy.Channel(7).IsVirtualChannel);
}

TEST(CalibrationData, ACopyHasEverything) {
    CalibrationDataClass cal = OfType(InstTypeCode::Corvane6);
    cal.Comment = "two words";
    cal.Serial = "CV6-1";
    cal.ModificationTime = 40000;
    cal.kD2 = 0.5F;
    cal.NoteSource("origin");
    cal.SetMu(12, 0.25);
    cal.SetChEx(1, 1);
    cal.SetChRep(1, 8);
    cal.EditAttenuation(12).KDepthThresh[10] = 7;
    cal.SetKkT(3, 5, 0.125);
    cal.ChangedItems = CalItems::Comment;
    CalibrationDataClass copy = OfType(InstTypeCode::Delph2);
    copy.SetSigmaExp(2, 1);
    copy.Copy(cal);
    EXPECT_EQ(copy, cal);
}

TEST(CalibrationData, ChannelNumbersOutsideTheArraysDoNoHarm) {
    CalibrationDataClass cal = OfType(InstTypeCode::Corvane6);
    cal.SetChEx(0, 30000);
    cal.SetChRep(0, 30000);
    cal.SetChEx(1, -5);
    cal.SetGain(0, 1, 2);
    EXPECT_EQ(cal.Channel(0).gain[1], 2);
    EXPECT_FALSE(cal.Channel(1).IsVirtualChannel);
}

TEST(CalibrationData, MuAtAnotherGainMakesTheGainsRelativeToIt) {
    CalibrationDataClass cal;
    cal.SetMu(4, 0.5, 2);
    EXPECT_EQ(cal.Channel(4).Mu, 0.5);
    EXPECT_EQ(cal.Channel(4).MuGain, 2);
    EXPECT_EQ(cal.Channel(4).gain, (Gains{0, 0.1, 1, 10, 100, 1000}));
}

TEST(CalibrationData, MuAtAHighGainIsOnlyStored) {
    CalibrationDataClass cal;
    cal.SetMu(4, 0.5, 3);
    EXPECT_EQ(cal.Channel(4).Mu, 0.5);
    EXPECT_EQ(cal.Channel(4).MuGain, 1);
    EXPECT_EQ(cal.Channel(4).gain[2], 10);
}

TEST(CalibrationData, MuDivisionDoesNotRound) {
    CalibrationDataClass cal;
    SetGains(cal, 0, {0, 1, 3, 30, 300, 3000});
    cal.SetMu(0, 1, 2);
    EXPECT_EQ(cal.Channel(0).gain[1], 1.0 / 3);
}

TEST(CalibrationData, MuGainIsTakenAlsoWhenNothingIsDivided) {
    CalibrationDataClass cal;
    SetGains(cal, 0, {0, 2, 1, 30, 300, 3000});
    SetGains(cal, 1, {0, 2, 0, 30, 300, 3000});
    SetGains(cal, 2, {0, 2, -4, 30, 300, 3000});
    for (int ch = 0; ch < 3; ++ch) {
        cal.SetMu(ch, 1, 2);
        EXPECT_EQ(cal.Channel(ch).MuGain, 2);
        EXPECT_EQ(cal.Channel(ch).gain[1], 2);
    }
}

TEST(CalibrationData, UpdateMuGains) {
    CalibrationDataClass cal;
    SetGains(cal, 0, {0, 1, 1, 10, 100, 1000});
    SetGains(cal, 1, {0, 0.1, 1, 10, 100, 1000});
    SetGains(cal, 2, {0, 0.1, 2, 10, 100, 1000});
    SetGains(cal, 12, {0, 0.1, 1, 10, 100, 1000});
    cal.SetMuGain(0, 2);
    cal.SetMuGain(2, 2);
    cal.UpdateMuGains();
    EXPECT_EQ(cal.Channel(0).MuGain, 1);
    EXPECT_EQ(cal.Channel(1).MuGain, 2);
    EXPECT_EQ(cal.Channel(2).MuGain, 2);
    EXPECT_EQ(cal.Channel(12).MuGain, 1);
}

TEST(CalibrationData, SigmaIndexOutOfBoundsChangesNothing) {
    CalibrationDataClass cal;
    EXPECT_TRUE(cal.SetSigma(0, 2, 5));
    EXPECT_FALSE(cal.SetSigma(0, 3, 6));
    EXPECT_FALSE(cal.SetSigma(0, -1, 6));
    EXPECT_EQ(cal.Channel(0).Sigma, (std::array<double, 3>{1, 0, 5}));
}

TEST(CalibrationData, ChangedNominalReferenceMarksEverything) {
    CalibrationDataClass cal;
    cal.SetRNominal(0, 1);
    EXPECT_EQ(cal.ChangedItems, 0);
    cal.SetRNominal(0, 4000);
    EXPECT_EQ(cal.ChangedItems, CalItems::All);
}

TEST(CalibrationData, ChangedDescriptionInItsFixedOrder) {
    CalibrationDataClass cal;
    EXPECT_EQ(cal.ChangedDescription(), "");
    cal.ChangedItems = CalItems::Gain | CalItems::Mu;
    EXPECT_EQ(cal.ChangedDescription(), "mu, gain");
    cal.ChangedItems = CalItems::All;
    EXPECT_EQ(cal.ChangedDescription(),
              "attenuation params, mu, comment, configuration, depth, fluorescence mu, gain, identification, "
              "exponential sigma, offset, polynomial sigma, reference, temperature coefficient");
}

TEST(CalibrationData, ChannelsOfEachModel) {
    struct Row {
        InstTypeCode type;
        int scattering;
        int inLines;
    };
    for (const auto& [type, scattering, inLines] :
         {Row{InstTypeCode::Corvane6, 6, 8}, Row{InstTypeCode::Corvane4, 4, 4},
          Row{InstTypeCode::Corvane2, 2, 3}, Row{InstTypeCode::LTidal, 1, 1}, Row{InstTypeCode::NTidal, 1, 1},
          Row{InstTypeCode::XTidal, 1, 1}, Row{InstTypeCode::Fathom2, 0, 0}, Row{InstTypeCode::Delph4, 0, 0},
          Row{InstTypeCode::Unknown, 0, -1}}) {
        EXPECT_EQ(OfType(type).bChannels(), scattering);
        EXPECT_EQ(OfType(type).ChannelCount(), inLines);
    }
}

TEST(CalibrationData, HasOffsetsLooksAtEverySlotAndStep) {
    for (const auto field : {&ChannelPlain::DarkOffset, &ChannelPlain::NomOffset, &ChannelPlain::FlOffset}) {
        CalibrationDataClass cal;
        (cal.EditChannel(12).*field)[0] = 7;
        EXPECT_FALSE(cal.HasOffsets());
        (cal.EditChannel(12).*field)[5] = -1;
        EXPECT_TRUE(cal.HasOffsets());
    }
}

TEST(CalibrationData, TemperatureNormFollowsItsInputs) {
    CalibrationDataClass cal;
    cal.SetKTempCoeff(0, 0, 2);
    EXPECT_EQ(cal.Attenuation(0).KTempNormCoeff, 2);
    cal.SetKTempCoeff(0, 2, 0.5F);
    cal.SetKCalTemp(0, 4);
    EXPECT_EQ(cal.Attenuation(0).KTempNormCoeff, 10);  // 2 + 0.5 x 16
}

TEST(CalibrationData, PolynomialsAreReadNormalised) {
    CalibrationDataClass cal;
    cal.SetKkT(1, 0, 3);
    EXPECT_EQ(cal.Attenuation(1).KkT[0], 1);  // its value at 0 degrees is 3
    cal.SetKkT(1, 1, 0.5);
    cal.SetKTPW(1, 2);
    EXPECT_EQ(cal.Attenuation(1).KkT.Norm(), 4);  // 3 + 0.5 x 2
    EXPECT_EQ(cal.Attenuation(1).KkT[0], 0.75);
    EXPECT_EQ(cal.Attenuation(1).KkT[1], 0.125);
    cal.SetKkT(1, 0, -3);  // norm -2: not in force
    EXPECT_EQ(cal.Attenuation(1).KkT[0], -3);

    cal.SetKkTauP(0, 1, 0.25);
    EXPECT_EQ(cal.Attenuation(0).KkTauP[1], 0.25);  // 0 at pressure 0
    cal.SetKP(0, 2, 8);
    EXPECT_EQ(cal.Attenuation(0).KkTauP[1], 0.125);  // 0.25 x 8 = 2
    cal.SetKP(0, 1, 100);
    EXPECT_EQ(cal.Attenuation(0).KkTauP[1], 0.125);
    EXPECT_EQ(cal.Attenuation(0).KP(1), 100.0F);
    EXPECT_EQ(CalibrationDataClass::KkTUbound(), 5);
    EXPECT_EQ(CalibrationDataClass::KkTauPUbound(), 5);
}

TEST(CalibrationData, NormalisedCoefficientsStayAsTheyAre) {
    CalibrationDataClass first;
    first.SetKTPW(0, 20);
    for (int i = 0; i <= 5; ++i) first.SetKkT(0, i, 1.0371 / std::pow(-37.0, i));
    CalibrationDataClass second;
    second.SetKTPW(0, 20);
    for (int i = 0; i <= 5; ++i) second.SetKkT(0, i, first.Attenuation(0).KkT[i]);
    EXPECT_EQ(second.Attenuation(0).KkT.Norm(), 1);
    for (int i = 0; i <= 5; ++i) EXPECT_EQ(second.Attenuation(0).KkT[i], first.Attenuation(0).KkT[i]);
}

TEST(CalibrationData, SigmaIsOneInPureWater) {
    CalibrationDataClass cal = OfType(InstTypeCode::Corvane2);
    cal.EditChannel(0).lambda = 525;
    cal.EditChannel(1).lambda = 525;
    cal.SetSigma(0, 1, 10);
    cal.SetSigma(0, 2, 1000);
    cal.SetSigmaExp(1, 100);
    SigmaParams params;
    // Without water in K: K0 = 0.8 x 8.03 x 0.000112 = 7.194880e-4.
    // 1 - 10 K0 - 1000 K0^2 = 0.99228746 -> 0.992; exp(-100 K0) = 0.93057 -> 0.931.
    cal.UpdateSigmas(params, false);
    EXPECT_EQ(cal.Channel(0).Sigma[0], 0.992);
    EXPECT_EQ(cal.Channel(1).Sigma[0], 0.931);
    EXPECT_EQ(cal.Channel(2).Sigma[0], 1);
    // With water: a is 0.0417, K0 = 1.6 x 8.9936e-4 + 0.0417 = 0.04313898.
    // 1 - 0.4313898 - 1000 x 0.001860971 = -1.2923612 -> -1.292; exp(-4.313898) = 0.0133812 -> 0.013.
    params.includePurewater = true;
    cal.UpdateSigmas(params, false);
    EXPECT_EQ(cal.Channel(0).Sigma[0], -1.292);
    EXPECT_EQ(cal.Channel(1).Sigma[0], 0.013);
    // In salt water: K0 = 1.6 x 8.03 x 0.000146 + 0.0417 = 0.04357581; exp(-4.357581) = 0.0128092.
    cal.UpdateSigmas(params, true);
    EXPECT_EQ(cal.Channel(1).Sigma[0], 0.013);
    // 1 - 0.4357581 - 1.8988511 = -1.3346092.
    EXPECT_EQ(cal.Channel(0).Sigma[0], -1.335);
}

TEST(CalibrationData, OldSigmaHasTheWaterInK) {
    CalibrationDataClass cal = OfType(InstTypeCode::Corvane2);
    cal.EditChannel(0).lambda = 525;
    cal.SetSigma(0, 1, 10);
    cal.SetSigma(0, 2, 1000);
    EXPECT_NEAR(cal.OldSigmaK1(0, false), -1.2923612, 1e-6);
    cal.SetSigmaExp(0, 100);
    EXPECT_NEAR(cal.OldSigmaK1(0, false), 0.0133812, 1e-7);
}

TEST(CalibrationData, SigmaModelOfChannelsWithAWavelength) {
    CalibrationDataClass cal = OfType(InstTypeCode::Corvane6);
    cal.EditChannel(0).lambda = 440;
    cal.EditChannel(8).lambda = 440;
    SigmaParams params;
    params.aStarValue = 0.5;
    params.C = 1;
    params.ad400 = 0;
    params.bbTildeValue = 0.02;
    EXPECT_TRUE(cal.UpdateSigmaTables(params).empty());
    EXPECT_EQ(cal.Channel(0).a, static_cast<double>(0.036F));  // 0.06 x 0.5 x 1.2
    EXPECT_EQ(cal.Channel(0).bbTilde, 0.02);
    EXPECT_EQ(cal.Channel(1).bbTilde, 0.015);
    EXPECT_EQ(cal.Channel(8).a, 0);
}

TEST(CalibrationData, MissingTablesKeepTheOldValuesAndAreToldOnce) {
    CalibrationDataClass cal = OfType(InstTypeCode::Corvane6);
    for (int ch = 0; ch < 8; ++ch) cal.EditChannel(ch).lambda = 440;
    SigmaParams params;
    params.aStarValue = 0.5;
    (void)cal.CheckAndUpdateAll(params, {});
    const double before = cal.Channel(3).a;
    params.aStarValue = kSentinel;
    params.aStarFile = "gone.csv";
    params.bbTildeValue = kSentinel;
    params.bbTildeFile = "lost.csv";
    const auto messages = cal.CheckAndUpdateAll(params, {});
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[0], MissingAStarText(params, 440));
    EXPECT_EQ(messages[1], MissingBbTildeText(params, 440));
    EXPECT_NE(before, 0);
    EXPECT_EQ(cal.Channel(3).a, before);
    EXPECT_EQ(cal.Channel(3).bbTilde, 0.015);
    EXPECT_EQ(cal.ChangedItems, 0);
}

}  // namespace
}  // namespace marisonde
