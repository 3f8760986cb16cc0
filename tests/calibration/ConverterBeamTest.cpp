// Conversion of single Tidal, Delph and Fathom samples, with results worked by hand.
#include "calibration/ConverterFixture.h"
#include "common/Numbers.h"

namespace marisonde {
namespace {

// --- Tidal --------------------------------------------------------------------------------------------

/// Temperature curve 2 (normalised: 1), path 0.25 m, threshold 15535, offset 535, compensation 0.1 to 0.5 /m;
/// scattering: dark 100, Mu 1e-4, gain step 2 is 10, beta2bb 7, sigma 1 + 0.5 K, chi 10, 100, 1000.
Cal Tidal(InstTypeCode type) {
    Cal cal;
    cal.InstType = type;
    cal.CalTemp = 20;
    cal.DepthCal = 0.5F;
    cal.DepthOff = 535;
    cal.EditChannel(0).lambda = 525;
    cal.EditChannel(0).beta2bb = 7;
    cal.EditChannel(0).DarkOffset[2] = 100;
    cal.SetMu(0, 1e-4);
    (void)cal.UpdateSigmaTables(Model());
    cal.SetSigma(0, 1, 0.5);
    AttenuationPlain& beam = cal.EditAttenuation(0);
    beam.KLambda = 660;
    beam.KPath = 0.25F;
    beam.TrPure = 10000;
    beam.KDepthThresh[0] = 15535;
    beam.KDepthCoeff = {0.125F, 0.5F};
    beam.KChi = {777, 10, 100, 1000};
    cal.SetKTempCoeff(0, 0, 2);
    return cal;
}

RawSample TidalSample() {
    RawSample raw;
    raw.Time = 86400;
    raw.Temp = 20;
    raw.Pressure = 535;
    raw.Trans = 5000;
    raw.Sig[0] = 300;
    raw.Gain[0] = 2;
    return raw;
}

CalibratedSample Converted(const Cal& cal, RawSample raw, const SigmaParams& sigma = Model()) {
    CalibratedSample out;
    EXPECT_TRUE(ApplyCalibration(raw, cal, sigma, NoWater(), out));
    return out;
}

TEST(ConvertTidal, PureWaterIsTheZero) {
    RawSample raw = TidalSample();
    raw.Trans = 10000;
    const auto out = Converted(Tidal(InstTypeCode::LTidal), raw);
    EXPECT_EQ(out.TransNorm, 10000);
    EXPECT_EQ(out.K, 0);  // r is 1, D is 0 at the offset
    EXPECT_TRUE(out.Valid[0]);
    EXPECT_EQ(out.Depth, 0);
    EXPECT_EQ(out.Time, 29222);
    raw.Pressure = 15535;
    EXPECT_EQ(Converted(Tidal(InstTypeCode::LTidal), raw).K, -0.125F);
    EXPECT_EQ(Converted(Tidal(InstTypeCode::LTidal), raw).Depth, 7500);  // (15535 - 535) x 0.5
}

TEST(ConvertTidal, AbsorptionOfTheLTidal) {
    Cal cal = Tidal(InstTypeCode::LTidal);
    cal.EditAttenuation(0).KDepthCoeff = {0.1F, 0.5F};
    RawSample raw = TidalSample();
    raw.Pressure = 40535;
    const auto out = Converted(cal, raw);
    // r = 10000 / 5000; ln 2 / 0.25 = 2.77258872; D = 0.1 + 0.4 x (40535 - 15535) / (65535 - 15535) = 0.3.
    ExpectClose(out.K, 2.4725887222);
    EXPECT_EQ(out.k[0], out.K);
    // (300 - 100) x 1e-4 / 10 = 0.002; sigma = 1 + 0.5 K = 2.23629436; beta = 4.4725887e-3; bb x 7.
    ExpectClose(out.betaUncorr[0], 0.002);
    ExpectClose(out.Sigma[0], 2.2362943611);
    ExpectClose(out.beta[0], 4.4725887222e-3);
    ExpectClose(out.bb[0], 3.1308121056e-2);
    // x = beta: K - 10 x - 100 x^2 - 1000 x^3 = 2.4725887 - 0.0447259 - 0.0020004 - 0.0000895.
    ExpectClose(out.a, 2.4257729601);
}

TEST(ConvertTidal, AttenuationOfTheNTidalByItsShare) {
    RawSample raw = TidalSample();
    raw.Pressure = 534;  // above the surface: no compensation
    const auto out = Converted(Tidal(InstTypeCode::NTidal), raw);
    ExpectClose(out.k[0], 2.7725887222);
    ExpectClose(out.K, 1.6635532333);  // x 0.6
    ExpectClose(out.Sigma[0], 1.8317766167);
    ExpectClose(out.bb[0], 2.5644872633e-2);
    EXPECT_EQ(out.a, 0);
}

TEST(ConvertTidal, AttenuationOfTheNTidalByTheModel) {
    SigmaParams sigma = Model();
    sigma.cUseCV = true;
    RawSample raw = TidalSample();
    raw.Pressure = 4285;  // a quarter of the way to the threshold
    const auto out = Converted(Tidal(InstTypeCode::NTidal), raw, sigma);
    ExpectClose(out.k[0], 2.7725887222 - 0.125 / 4);
    // (0.014 - 8.9936e-4) x 20 + 0.03182533 = 0.29383813; sigma 1.14691906.
    ExpectClose(out.K, 0.2938381276);
    ExpectClose(out.bb[0], 1.6056866893e-2);
    sigma.includePurewater = true;
    // 0.0417 + 0.03182533 + 0.4 x 0.014 / 0.02 = 0.35352533.
    ExpectClose(Converted(Tidal(InstTypeCode::NTidal), raw, sigma).K, 0.3535253276);
}

TEST(ConvertTidal, AnXTidalUsesItsOwnK) {
    const auto out = Converted(Tidal(InstTypeCode::XTidal), TidalSample());
    ExpectClose(out.K, 2.7725887222);
    ExpectClose(out.Sigma[0], 1 + 2.7725887222 / 2);
    EXPECT_EQ(out.a, 0);
}

TEST(ConvertTidal, WaterOfTheLTidalIsTakenAtTheBeamsWavelength) {
    PureWaterParams water = NoWater();
    water.Choice = PureWaterChoice::Custom;
    water.lambda0 = 1320;
    water.gammaLambda = 1;
    water.beta0 = 0.0005F;
    water.bb0 = 0;
    Cal cal = Tidal(InstTypeCode::LTidal);
    cal.SetSigma(0, 1, 0);
    RawSample raw = TidalSample();
    CalibratedSample out;
    ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), water, out));
    // beta 0.002, water 0.0005 x 1320 / 660 = 0.001: x = 0.001; K - 0.01 - 0.0001 - 0.000001.
    ExpectClose(out.a, 2.7725887222 - 0.010101);
}

TEST(ConvertTidal, CompensationIsContinuousAndEndsAtTheTop) {
    Cal cal = Tidal(InstTypeCode::XTidal);
    RawSample raw = TidalSample();
    raw.Trans = 10000;
    raw.Pressure = 15535;
    EXPECT_EQ(Converted(cal, raw).K, -0.125F);
    raw.Pressure = 15536;
    EXPECT_NEAR(Converted(cal, raw).K, -0.125, 1e-5);
    EXPECT_LT(Converted(cal, raw).K, -0.125F);
    raw.Pressure = 65535;
    EXPECT_EQ(Converted(cal, raw).K, -0.5F);
}

TEST(ConvertTidal, TheTemperatureCurveNormalisesTheTransmission) {
    Cal cal = Tidal(InstTypeCode::XTidal);
    cal.SetKTempCoeff(0, 1, 0.1F);
    RawSample raw = TidalSample();
    raw.Temp = 10;
    // Curve 2 + 0.1 x 10 = 3, norm 2 at 0 degrees: 5000 / 1.5.
    ExpectClose(Converted(cal, raw).TransNorm, 5000 / 1.5);
    cal.SetKTempCoeff(0, 0, 0);  // norm 0 is not in force: 5000 / 1
    ExpectClose(Converted(cal, raw).TransNorm, 5000);
    raw.Temp = 0;  // curve 0
    const auto out = Converted(cal, raw);
    EXPECT_EQ(out.K, 0);
    EXPECT_FALSE(out.Valid[0]);
    EXPECT_EQ(out.k[0], 0);
    EXPECT_EQ(out.Sigma[0], 1);
}

TEST(ConvertTidal, NoLightIsInvalid) {
    Cal cal = Tidal(InstTypeCode::XTidal);
    cal.EditAttenuation(0).TrNought = 5000;
    for (const std::int32_t trans : {5000, 4999, -1}) {
        RawSample raw = TidalSample();
        raw.Trans = trans;
        CalibratedSample out;
        out.k[0] = 9;
        out.Valid[0] = true;
        ASSERT_TRUE(ApplyCalibration(raw, cal, Model(), NoWater(), out));
        EXPECT_EQ(out.K, 0);
        EXPECT_EQ(out.k[0], 0);
        EXPECT_FALSE(out.Valid[0]);
        ExpectClose(out.beta[0], 0.002);
    }
}

TEST(ConvertTidal, NoPathOrNoWaterValueIsInvalid) {
    Cal cal = Tidal(InstTypeCode::XTidal);
    cal.EditAttenuation(0).KPath = 0;
    EXPECT_FALSE(Converted(cal, TidalSample()).Valid[0]);
    EXPECT_EQ(Converted(cal, TidalSample()).K, 0);
    cal = Tidal(InstTypeCode::XTidal);
    cal.EditAttenuation(0).TrPure = 0;
    EXPECT_FALSE(Converted(cal, TidalSample()).Valid[0]);
    cal.EditAttenuation(0).TrPure = -5;  // logarithm of a negative
    EXPECT_EQ(Converted(cal, TidalSample()).K, kSentinelF);
}

TEST(ConvertTidal, GainIsNotMasked) {
    for (const std::int16_t gain : {0, 6, 9, 10}) {
        RawSample raw = TidalSample();
        raw.Gain[0] = gain;
        const auto out = Converted(Tidal(InstTypeCode::XTidal), raw);
        EXPECT_EQ(out.betaUncorr[0], 0) << gain;
        EXPECT_EQ(out.bbUncorr[0], 0);
        ExpectClose(out.Sigma[0], 1 + 2.7725887222 / 2);
        EXPECT_TRUE(out.Valid[0]);
    }
}

TEST(ConvertTidal, AGainOfZeroFails) {
    Cal cal = Tidal(InstTypeCode::XTidal);
    cal.SetGain(0, 2, 0);
    const auto out = Converted(cal, TidalSample());
    EXPECT_EQ(out.betaUncorr[0], kSentinel);
    EXPECT_EQ(out.bb[0], kSentinel);
}

// --- Delph --------------------------------------------------------------------------------------------

/// Pressure: 1000 - 100 - (0.01 T^2 + T) + (0.01 x 20^2 + 20) at 10 degrees; break points 413 and 1413.
Cal Delph(InstTypeCode type) {
    Cal cal;
    cal.InstType = type;
    cal.P0 = 100;
    cal.kp2 = 0.01F;
    cal.kp1 = 1;
    cal.TP0 = 20;
    cal.kD2 = 0.001F;
    cal.kD1 = 0.5F;
    for (int ch = 0; ch < 6; ++ch) {
        AttenuationPlain& beam = cal.EditAttenuation(ch);
        beam.KS0 = 100;
        beam.KR0 = 100;
        beam.KL = 0.25F;
        beam.KTau0 = 0.9;
        beam.KkTauPX = 0.2F;
        cal.SetKkT(ch, 0, 1);
        cal.SetKkT(ch, 1, 0.5);
        cal.SetKP(ch, 1, 413);
        cal.SetKP(ch, 2, 1413);
    }
    return cal;
}

RawSample DelphSample() {
    RawSample raw;
    raw.Time = 86400;
    raw.Temp = 10;
    raw.Pressure = 1000;
    for (std::size_t ch = 0; ch < 6; ++ch) {
        raw.Sig[ch] = 600;
        raw.Ref[ch] = 1100;
    }
    return raw;
}

TEST(ConvertDelph, ShallowWater) {
    Cal cal = Delph(InstTypeCode::Delph2);
    cal.SetKP(0, 1, 913);
    const auto out = Converted(cal, DelphSample());
    // Pc = 900 - 11 + 24 = 913, at P1: F is 1. Depth = 0.001 x 913^2 + 0.5 x 913 = 1290.069.
    ExpectClose(out.Depth, 1290.069);
    // ratio 500 / 1000; G = 1 + 0.5 x 10 = 6; ln(0.9 x 1 x 6 / 0.5) / 0.25.
    ExpectClose(out.k[0], 9.5181845365);
    EXPECT_EQ(out.Time, 25570);
    EXPECT_EQ(out.Temp, 10);
}

TEST(ConvertDelph, BetweenTheBreakPoints) {
    // F = 1 + 0.2 x (913 - 413) / 1000 = 1.1; ln(0.9 x 1.1 x 6 / 0.5) / 0.25.
    ExpectClose(Converted(Delph(InstTypeCode::Fathom2), DelphSample()).k[1], 9.8994252557);
}

TEST(ConvertDelph, BelowTheSecondBreakPoint) {
    Cal cal = Delph(InstTypeCode::Delph6);
    for (int ch = 0; ch < 6; ++ch) {
        cal.SetKP(ch, 1, 100);
        cal.SetKP(ch, 2, 400);
        cal.SetKkTauP(ch, 0, 1);
        cal.SetKkTauP(ch, 1, 0.0025);
    }
    const auto out = Converted(cal, DelphSample());
    // Curve at 400 is 2, so 0.5 + 0.00125 Pc is read: F = 1.2 x (0.5 + 0.00125 x 913) = 1.9695.
    for (std::size_t ch = 0; ch < 6; ++ch) ExpectClose(out.k[ch], 12.229303350);
}

TEST(ConvertDelph, NoLightIsOpaque) {
    RawSample raw = DelphSample();
    raw.Sig[0] = 100;
    raw.Sig[1] = 99;
    raw.Ref[2] = 100;
    raw.Ref[3] = 50;
    const auto out = Converted(Delph(InstTypeCode::Delph4), raw);
    for (std::size_t ch = 0; ch < 4; ++ch) EXPECT_EQ(out.k[ch], 100) << ch;
    EXPECT_EQ(out.k[4], 0);  // not a channel of this model
    raw.Ref[2] = 101;        // a reference of 1 is enough: ratio 500
    ExpectClose(Converted(Delph(InstTypeCode::Delph4), raw).k[2], std::log(0.9 * 1.1 * 6 / 500) / 0.25);
}

TEST(ConvertDelph, BreakPointsInAnyOrder) {
    Cal cal = Delph(InstTypeCode::Delph4);
    // The second channel is at its P2; the third is past both, and its P2 lies before its P1.
    cal.SetKP(1, 1, 900);
    cal.SetKP(1, 2, 913);
    cal.SetKP(2, 1, -5000);
    cal.SetKP(2, 2, -6000);
    const auto out = Converted(cal, DelphSample());
    // F = 1 + 0.2 x 13 / 13 = 1.2.
    ExpectClose(out.k[1], std::log(0.9 * 1.2 * 6 / 0.5) / 0.25);
    // (1 + 0.2) x 0, as there is no curve: the logarithm of 0 fails.
    EXPECT_EQ(out.k[2], kSentinelF);
}

TEST(ConvertDelph, FailedArithmeticLeavesTheSentinel) {
    Cal cal = Delph(InstTypeCode::Delph4);
    cal.EditAttenuation(0).KL = 0;
    cal.EditAttenuation(1).KTau0 = -1;
    const auto out = Converted(cal, DelphSample());
    EXPECT_EQ(out.k[0], kSentinelF);
    EXPECT_EQ(out.k[1], kSentinelF);
    ExpectClose(out.k[2], 9.8994252557);
}

// --- lines --------------------------------------------------------------------------------------------

TEST(ParseAndConvert, OnlyDataLinesGiveASample) {
    const Converter converter(Delph(InstTypeCode::Delph2), Model(), NoWater());
    RawSample raw;
    CalibratedSample out;
    EXPECT_FALSE(ParseAndConvert("Going to sleep", InstTypeCode::Delph2, converter, raw, out));
    EXPECT_EQ(out, CalibratedSample());
    EXPECT_FALSE(ParseAndConvert("", InstTypeCode::Delph2, converter, raw, out));
}

}  // namespace
}  // namespace marisonde
