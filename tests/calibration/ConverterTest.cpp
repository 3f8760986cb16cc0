// Conversion of single Corvane samples, with results worked by hand.
#include "calibration/ConverterFixture.h"
#include "common/Numbers.h"

namespace marisonde {
namespace {

/// 525 nm, Mu 0.01, nominal reference 4000, gains 1 to 10000, beta2bb 7, sigma 1 + 2 K + 10 K^2, 20 degrees.
Cal Corvane(InstTypeCode type) {
    Cal cal;
    cal.InstType = type;
    cal.CalTemp = 20;
    cal.DepthCal = 0.5F;
    cal.DepthOff = 10;
    for (int ch = 0; ch < cal.ChannelCount(); ++ch) {
        cal.EditChannel(ch).lambda = 525;
        cal.EditChannel(ch).beta2bb = 7;
        cal.SetMu(ch, 0.01);
        cal.SetRNominal(ch, 4000);
    }
    (void)cal.UpdateSigmaTables(Model());
    for (int ch = 0; ch < cal.ChannelCount(); ++ch) {
        cal.SetSigma(ch, 1, 2);
        cal.SetSigma(ch, 2, 10);
    }
    return cal;
}

RawSample CorvaneSample() {
    RawSample raw;
    raw.Time = 86400;
    raw.Pressure = 100;
    raw.Temp = 20;
    for (std::size_t ch = 0; ch < 8; ++ch) {
        raw.Gain[ch] = 3;
        raw.Snorm[ch] = 2000;
    }
    return raw;
}

TEST(ConvertCorvane, PolynomialSigmaAndTemperature) {
    Cal cal = Corvane(InstTypeCode::Corvane4);
    cal.SetMu(0, 0.02);
    cal.EditChannel(0).bTempCoeff = 0.01;
    cal.EditChannel(0).beta2bb = 1.1;
    RawSample raw = CorvaneSample();
    raw.Temp = 25;
    CalibratedSample out;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), NoWater(), out));
    // 0.02 x 2000 / (100 x 4000) = 1e-4; / (1 + 0.01 x 5) = 9.523810e-5.
    ExpectClose(out.betaUncorr[0], 9.523809524e-5);
    // x 1.1 x 6.2832 = 6.91152: 6.5824e-4.
    ExpectClose(out.bbUncorr[0], 6.5824e-4);
    // bbw is 8.03 x 0.000112 = 8.9936e-4: (6.5824e-4 - 8.9936e-4) x 0.4 / 0.02 + 0.03182533 = 0.02700293.
    // sigma = 1 + 2 K + 10 K^2 = 1.06129744.
    ExpectClose(out.Sigma[0], 1.0612974362);
    ExpectClose(out.beta[0], 1.0107594630e-4);
    ExpectClose(out.bb[0], 6.9858842437e-4);
    EXPECT_TRUE(out.Valid[0]);
    EXPECT_EQ(out.Depth, 40);  // 0.5 x 100 - 10
    EXPECT_EQ(out.Temp, 25);
    EXPECT_EQ(out.Time, 25570);
}

TEST(ConvertCorvane, ExponentialSigmaWithWaterInK) {
    SigmaParams sigma = Model();
    sigma.includePurewater = true;
    Cal cal = Corvane(InstTypeCode::Corvane4);
    cal.SetSigma(1, 0, 0.9);
    cal.SetSigmaExp(1, 0.25);
    RawSample raw = CorvaneSample();
    raw.Gain[1] = 2;
    raw.Snorm[1] = 8000;
    CalibratedSample out;
    ASSERT_TRUE(ApplyCalibration(raw, cal, sigma, NoWater(), out));
    // 0.01 x 8000 / (10 x 4000) = 0.002; x 7 = 0.014. K = 0.0417 + 0.03182533 + 0.4 x 0.014 / 0.02 =
    // 0.35352533. sigma = 0.9 exp(0.25 K) = 0.98316415.
    ExpectClose(out.betaUncorr[1], 0.002);
    ExpectClose(out.bbUncorr[1], 0.014);
    ExpectClose(out.Sigma[1], 0.9831641502);
    ExpectClose(out.beta[1], 1.9663283004e-3);
    ExpectClose(out.bb[1], 1.3764298103e-2);
}

TEST(ConvertCorvane, SnormFromTheCountsAndWaterTakenOff) {
    PureWaterParams water = NoWater();
    water.Choice = PureWaterChoice::Custom;
    water.lambda0 = 525;
    water.beta0 = 0.0002F;
    water.bb0 = 0.001F;
    Cal cal = Corvane(InstTypeCode::Corvane4);
    cal.EditChannel(2).DarkOffset[3] = 40;
    RawSample raw = CorvaneSample();
    raw.Snorm[2] = 0;
    raw.Sig[2] = 5100;
    raw.SigOff[2] = 60;
    raw.Ref[2] = 2100;
    raw.RefOff[2] = 100;
    raw.Gain[3] = 0;
    CalibratedSample out;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), water, out));
    // 4000 x (5100 - 60 - 40) / (2100 - 100) = 10000, kept in the sample.
    EXPECT_EQ(raw.Snorm[2], 10000);
    // 0.01 x 10000 / (100 x 4000) = 2.5e-4; bb = (2.5e-4 - 2e-4) x 7 + 0.001 = 0.00135.
    ExpectClose(out.betaUncorr[2], 2.5e-4);
    ExpectClose(out.bbUncorr[2], 1.35e-3);
    // K = (0.00135 - 8.9936e-4) x 20 + 0.03182533 = 0.04083813; sigma = 1.09835378; beta = 2.7458845e-4;
    // bb = (2.7458845e-4 - 2e-4) x 7 + 0.001 = 1.52211912e-3.
    ExpectClose(out.K, 0.0408381276);
    ExpectClose(out.bb[2], 1.5221191182e-3);
}

TEST(ConvertCorvane, FluorescenceOfTheCorvane2) {
    Cal cal = Corvane(InstTypeCode::Corvane2);
    // Constant sigmas 1.21 and 1.44; channel 3 is beta2bb x beta: 7 x 0.01 x 2000 / (100 x 4000) = 3.5e-4.
    for (int ch = 0; ch < 3; ++ch) {
        cal.SetSigma(ch, 1, 0);
        cal.SetSigma(ch, 2, 0);
    }
    cal.SetSigma(0, 0, 1.21);
    cal.SetSigma(1, 0, 1.44);
    RawSample raw = CorvaneSample();
    CalibratedSample out;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), NoWater(), out));
    ExpectClose(out.bbUncorr[2], 3.5e-4);
    ExpectClose(out.bb[2], 1.2 * 3.5e-4 * 1.1);
}

TEST(ConvertCorvane, FluorescenceIsNotFreedOfWater) {
    PureWaterParams water = NoWater();
    water.beta0 = 0.5F;
    Cal cal = Corvane(InstTypeCode::Corvane6);
    cal.EditChannel(6).beta2bb = 2;  // below 3, but no chi here
    RawSample raw = CorvaneSample();
    CalibratedSample out;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), water, out));
    EXPECT_EQ(out.bbUncorr[6], 2 * out.betaUncorr[6]);
}

/// Constant sigmas: channel i (from 0) has (1 + i)^2, so that square roots are whole.
Cal WithSquareSigmas() {
    Cal cal = Corvane(InstTypeCode::Corvane6);
    for (int ch = 0; ch < 8; ++ch) {
        cal.SetSigma(ch, 0, (1 + ch) * (1 + ch));
        cal.SetSigma(ch, 1, 0);
        cal.SetSigma(ch, 2, 0);
    }
    return cal;
}

TEST(ConvertCorvane, VirtualChannelsTakeTheSigmaOfLampAndReceiver) {
    Cal cal = WithSquareSigmas();
    cal.SetChEx(1, 1);
    cal.SetChEx(3, 3);
    cal.SetChRep(1, 8);
    cal.SetChEx(7, 2);
    cal.SetChRep(3, 7);
    cal.SetChEx(6, 4);
    RawSample raw = CorvaneSample();
    CalibratedSample out;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), NoWater(), out));
    // Channel 7 is received by channel 4 (sigma 16), which channel 3 (sigma 9) lights: 4 x 3.
    ExpectClose(out.Sigma[6], 12);
    ExpectClose(out.bb[6], 3.5e-4 * 12);
    // Channel 8 is received by channel 2 (sigma 4), which channel 1 (sigma 1) lights: 2 x 1.
    ExpectClose(out.Sigma[7], 2);
    ExpectClose(out.bb[7], 3.5e-4 * 2);
}

TEST(ConvertCorvane, VirtualChannelWithAnInvalidReceiver) {
    Cal cal = WithSquareSigmas();
    cal.SetChEx(3, 3);
    cal.SetChEx(6, 4);
    cal.SetChEx(7, 4);
    RawSample raw = CorvaneSample();
    raw.Gain[3] = 0;
    CalibratedSample out;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), NoWater(), out));
    ExpectClose(out.Sigma[6], 9);  // that of the lamp alone
    ExpectClose(out.Sigma[7], 9);
    raw = CorvaneSample();
    raw.Gain[6] = raw.Gain[7] = 7;
    CalibratedSample untouched;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), NoWater(), untouched));
    EXPECT_EQ(untouched.Sigma[6], 0);
    EXPECT_EQ(untouched.bb[7], 0);
}

TEST(ConvertCorvane, VirtualChannelsWithoutAReceiver) {
    const Cal cal = WithSquareSigmas();
    RawSample raw = CorvaneSample();
    CalibratedSample out;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), NoWater(), out));
    // The seventh keeps its own sigma, 49, on its uncorrected value; the eighth keeps bb of beta.
    ExpectClose(out.bb[6], 3.5e-4 * 49);
    ExpectClose(out.bb[7], 3.5e-4 * 64);
    EXPECT_EQ(out.bb[7], static_cast<double>(static_cast<float>(out.beta[7] * 7)));
}

TEST(ConvertCorvane, ReceiverWithoutALamp) {
    Cal cal = WithSquareSigmas();
    cal.SetChEx(6, 4);
    cal.SetChEx(7, 4);
    RawSample raw = CorvaneSample();
    CalibratedSample out;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), NoWater(), out));
    ExpectClose(out.Sigma[6], 4 * 7);  // receiver 16 and its own 49
    ExpectClose(out.Sigma[7], 4 * 8);
}

TEST(ConvertCorvane, GainStepsOutOfRange) {
    for (const std::int16_t gain : {0, 6, 7, 8, 14}) {
        Cal cal = Corvane(InstTypeCode::Corvane4);
        RawSample raw = CorvaneSample();
        raw.Gain[0] = gain;
        CalibratedSample out;
        out.betaUncorr[0] = out.beta[0] = out.bb[0] = out.bbUncorr[0] = 5;
        out.Valid[0] = true;
        ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), NoWater(), out));
        EXPECT_FALSE(out.Valid[0]) << gain;
        EXPECT_EQ(out.betaUncorr[0], 0);
        EXPECT_EQ(out.beta[0], 0);
        EXPECT_EQ(out.bbUncorr[0], 0);
        EXPECT_EQ(out.bb[0], 0);
        EXPECT_TRUE(out.Valid[1]);
    }
}

TEST(ConvertCorvane, OnlyTheLowBitsOfTheGainCount) {
    Cal cal = Corvane(InstTypeCode::Corvane4);
    RawSample raw = CorvaneSample();
    raw.Gain[0] = 9;
    CalibratedSample out;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), NoWater(), out));
    ExpectClose(out.betaUncorr[0], 0.01 * 2000 / (1 * 4000.0));
}

TEST(ConvertCorvane, AGainOfZeroLeavesBeta) {
    Cal cal = Corvane(InstTypeCode::Corvane4);
    cal.SetGain(0, 3, 0);
    RawSample raw = CorvaneSample();
    CalibratedSample out;
    out.betaUncorr[0] = 5;
    out.beta[0] = 6;
    out.bb[0] = 7;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), NoWater(), out));
    EXPECT_FALSE(out.Valid[0]);
    EXPECT_EQ(out.betaUncorr[0], 5);
    EXPECT_EQ(out.beta[0], 6);
    EXPECT_EQ(out.bb[0], 0);
    EXPECT_EQ(out.bbUncorr[0], 0);
}

TEST(ConvertCorvane, NoReferenceGivesNoSignal) {
    Cal cal = Corvane(InstTypeCode::Corvane4);
    RawSample raw = CorvaneSample();
    raw.Snorm[0] = 0;
    raw.Sig[0] = 500;
    raw.Ref[0] = raw.RefOff[0] = 100;
    CalibratedSample out;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), NoWater(), out));
    EXPECT_EQ(raw.Snorm[0], 0);
    EXPECT_TRUE(out.Valid[0]);
    EXPECT_EQ(out.betaUncorr[0], 0);
}

TEST(ConvertCorvane, SnormThatDoesNotFit) {
    Cal cal = Corvane(InstTypeCode::Corvane4);
    cal.SetRNominal(0, 1e300);
    RawSample raw = CorvaneSample();
    raw.Snorm[0] = 0;
    raw.Sig[0] = 500;
    raw.Ref[0] = 100;
    CalibratedSample out;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), NoWater(), out));
    EXPECT_EQ(raw.Snorm[0], 0);
}

TEST(ConvertCorvane, SnormHalvesGoToEven) {
    Cal cal = Corvane(InstTypeCode::Corvane4);
    cal.SetRNominal(0, 1);
    cal.SetRNominal(1, 1);
    RawSample raw = CorvaneSample();
    raw.Snorm[0] = raw.Snorm[1] = 0;
    raw.Sig[0] = 5;
    raw.Sig[1] = 7;
    raw.Ref[0] = raw.Ref[1] = 2;
    CalibratedSample out;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), NoWater(), out));
    EXPECT_EQ(raw.Snorm[0], 2);
    EXPECT_EQ(raw.Snorm[1], 4);
}

TEST(ConvertCorvane, FailedArithmeticLeavesTheSentinel) {
    Cal cal = Corvane(InstTypeCode::Corvane6);
    cal.SetSigmaExp(0, 1e6);    // exp overflows
    cal.SetRNominal(1, 0);      // nothing to divide by
    cal.SetSigma(2, 0, 1e308);  // sigma is near the limit, beta is not, bb overflows 32 bits
    cal.SetSigma(3, 0, -4);     // no root
    cal.SetChEx(3, 3);
    cal.SetChEx(6, 4);
    RawSample raw = CorvaneSample();
    CalibratedSample out;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), NoWater(), out));
    EXPECT_EQ(out.Sigma[0], kSentinel);
    EXPECT_EQ(out.bb[0], kSentinel);
    EXPECT_EQ(out.betaUncorr[1], kSentinel);
    EXPECT_EQ(out.bbUncorr[1], kSentinel);
    EXPECT_EQ(out.Sigma[1], kSentinel);
    EXPECT_EQ(out.beta[1], kSentinel);
    EXPECT_EQ(out.bb[1], kSentinel);
    EXPECT_EQ(out.bb[2], kSentinel);
    EXPECT_EQ(out.Sigma[6], kSentinel);
    EXPECT_TRUE(std::isfinite(out.bb[5]));
}

TEST(ConvertCorvane, WithoutAClockTheElapsedTimeIsCopied) {
    Cal cal = Corvane(InstTypeCode::Corvane4);
    RawSample raw = CorvaneSample();
    raw.Time = 0;
    raw.Hundredths = 50;
    raw.DayFraction = 0.25;
    CalibratedSample out;
    out.Time = 99;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), NoWater(), out));
    EXPECT_EQ(out.Time, 0);
    EXPECT_EQ(out.Elapsed, 0.25);
    raw.Time = 43200;
    raw.DayFraction = 0.5;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), NoWater(), out));
    EXPECT_DOUBLE_EQ(out.Time, 25569.5 + 0.5 / 86400);
    EXPECT_EQ(out.Elapsed, 0.25);
}

TEST(ConvertCorvane, NumbersOfTheSampleAreCopied) {
    Cal cal = Corvane(InstTypeCode::Corvane4);
    RawSample raw = CorvaneSample();
    raw.Format = 3;
    raw.ElapsedCount = 1234;
    CalibratedSample out;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), NoWater(), out));
    EXPECT_EQ(out.SampleNo, 3);
    EXPECT_EQ(out.Aux, 1234);
}

TEST(ConvertCorvane, SeaWaterScattersMoreInK) {
    Cal cal = Corvane(InstTypeCode::Corvane4);
    PureWaterParams water = NoWater();
    water.Choice = PureWaterChoice::MorelSalt;
    RawSample raw = CorvaneSample();
    CalibratedSample out;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), water, out));
    // bbw is 8.03 x 0.000146 = 1.17238e-3: (3.5e-4 - 1.17238e-3) x 20 + 0.03182533 = 0.01537773.
    ExpectClose(out.K, 0.0153777276);
}

TEST(Convert, OtherModelsAreLeftAlone) {
    RawSample raw = CorvaneSample();
    CalibratedSample out;
    out.Depth = 5;
    const CalibratedSample before = out;
    EXPECT_FALSE(Converter().Apply(raw, out));
    EXPECT_FALSE(ApplyCalibration(raw, Cal(), Model(), NoWater(), out));
    EXPECT_EQ(out, before);
}

}  // namespace
}  // namespace marisonde
