#pragma once

#include <cmath>
#include <random>
#include <string>

#include "calibration/CalibrationDataClass.h"
#include "decode/RawSample.h"

namespace marisonde {

/// Calibrations, parameters and samples with plausible and now and then awkward values, by seed.
class RandomCalibration {
  public:
    explicit RandomCalibration(std::uint32_t seed) : random_(seed) {}

    double Between(double low, double high) {
        return low + (high - low) * (static_cast<double>(random_()) / 4294967295.0);
    }
    int Whole(int low, int high) {
        return low + static_cast<int>(random_() % static_cast<unsigned>(high - low + 1));
    }
    bool OneIn(int n) { return Whole(1, n) == 1; }

    SigmaParams Sigma() {
        SigmaParams params;
        params.aStarValue = Between(0.005, 1);
        params.bbTildeValue = Between(0.005, 0.04);
        params.C = Between(0, 20);
        params.ad400 = Between(0, 0.1);
        params.p = Between(0.1, 1);
        params.cUseCV = OneIn(2);
        params.includePurewater = OneIn(2);
        return params;
    }

    PureWaterParams Water() {
        PureWaterParams water;
        water.UseCalChi = OneIn(2);
        water.chi = static_cast<float>(Between(0.9, 1.3));
        water.Choice = static_cast<PureWaterChoice>(Whole(0, 4));
        water.lambda0 = static_cast<float>(Between(400, 600));
        water.beta0 = static_cast<float>(Between(0, 3e-4));
        water.bb0 = static_cast<float>(Between(0, 2e-3));
        water.gammaLambda = static_cast<float>(Between(3.5, 4.8));
        return water;
    }

    CalibrationDataClass Calibration(InstTypeCode type, const SigmaParams& sigma,
                                     const PureWaterParams& water) {
        CalibrationDataClass cal;
        cal.InstType = type;
        cal.CalTemp = static_cast<float>(Between(15, 25));
        cal.DepthCal = static_cast<float>(Between(0.001, 0.1));
        cal.DepthOff = static_cast<float>(Between(0, 3000));
        cal.P0 = static_cast<float>(Between(0, 500));
        cal.TP0 = Whole(10, 30);
        cal.kp1 = static_cast<float>(Between(-2, 2));
        cal.kp2 = static_cast<float>(Between(-0.05, 0.05));
        cal.kD1 = static_cast<float>(Between(0.001, 0.1));
        cal.kD2 = static_cast<float>(Between(-1e-7, 1e-7));
        for (int ch = 0; ch < kChannelSlots; ++ch) FillChannel(cal, ch);
        for (int ch = 0; ch < kChannelSlots; ++ch) FillAttenuation(cal, ch);
        (void)cal.CheckAndUpdateAll(sigma, water);
        if (OneIn(40)) cal.SetSigma(0, 0, -2);
        if (OneIn(2)) {
            cal.SetChEx(1, 1);
            cal.SetChRep(1, 8);
            cal.SetChEx(7, 2);
            cal.SetChEx(6, Whole(-1, 14));
            cal.SetChEx(Whole(2, 5), Whole(0, 8));
        }
        return cal;
    }

    RawSample Sample() {
        RawSample raw;
        raw.Format = Whole(0, 4);
        raw.Time = OneIn(5) ? 0 : Whole(0, 2000000000);
        raw.Hundredths = static_cast<std::uint8_t>(Whole(0, 99));
        raw.DayFraction = Between(0, 10);
        raw.ElapsedCount = Whole(0, 100000000);
        raw.Pressure = static_cast<float>(Whole(0, 65535));
        raw.Temp = static_cast<float>(Whole(-50, 410)) / 10;
        for (std::size_t ch = 0; ch < 8; ++ch) {
            raw.Gain[ch] = static_cast<std::int16_t>(OneIn(10) ? Whole(0, 15) : Whole(1, 5));
            raw.Sig[ch] = Whole(0, 65535);
            raw.SigOff[ch] = static_cast<std::int16_t>(Whole(0, 300));
            raw.Ref[ch] = OneIn(20) ? raw.SigOff[ch] : Whole(0, 65535);
            raw.RefOff[ch] = static_cast<std::int16_t>(Whole(0, 300));
            raw.Snorm[ch] = OneIn(3) ? 0 : Whole(-500, 65535);
        }
        raw.Trans = Whole(-1000, 1000000);
        return raw;
    }

  private:
    void FillChannel(CalibrationDataClass& cal, int ch) {
        ChannelPlain& plain = cal.EditChannel(ch);
        plain.lambda = static_cast<std::int16_t>(OneIn(12) ? 0 : Whole(370, 740));
        plain.name = "bb(" + std::to_string(plain.lambda) + ")";
        plain.MuRho = 0.98;
        plain.beta2bb = OneIn(2) ? Between(0.9, 1.3) : Between(3, 8);
        plain.bTempCoeff = Between(-0.002, 0.002);
        for (int g = 1; g <= 5; ++g) {
            cal.SetGain(ch, g, OneIn(50) ? 0 : std::pow(10.0, g - 1) * Between(0.9, 1.1));
            plain.DarkOffset[static_cast<std::size_t>(g)] = static_cast<std::int16_t>(Whole(-20, 200));
        }
        cal.SetMu(ch, Between(0.001, 0.1));
        cal.SetRNominal(ch, OneIn(60) ? 0 : Between(500, 20000));
        cal.SetSigma(ch, 1, Between(-1, 4));
        cal.SetSigma(ch, 2, Between(-1, 20));
        if (OneIn(2)) cal.SetSigmaExp(ch, OneIn(30) ? 1e5 : Between(0, 0.4));
    }

    void FillAttenuation(CalibrationDataClass& cal, int ch) {
        AttenuationPlain& beam = cal.EditAttenuation(ch);
        beam.KLambda = static_cast<std::int16_t>(OneIn(12) ? 0 : Whole(400, 700));
        beam.KPath = OneIn(30) ? 0 : static_cast<float>(Between(0.1, 0.3));
        beam.TrNought = Whole(0, 2000);
        beam.TrPure = OneIn(30) ? beam.TrNought - Whole(0, 1) : Whole(100000, 900000);
        beam.KDepthThresh[0] = Whole(1000, 60000);
        beam.KL = OneIn(30) ? 0 : static_cast<float>(Between(0.1, 0.3));
        beam.KS0 = Whole(0, 300);
        beam.KR0 = Whole(0, 300);
        beam.KkTauPX = static_cast<float>(Between(-0.05, 0.05));
        beam.KTau0 = OneIn(30) ? -1 : Between(0.5, 1.5);
        for (std::size_t i = 0; i < 4; ++i) beam.KChi[i] = static_cast<float>(Between(-50, 50));
        for (std::size_t i = 0; i < 2; ++i) beam.KDepthCoeff[i] = static_cast<float>(Between(-0.2, 0.2));
        cal.SetKCalTemp(ch, static_cast<float>(Between(15, 25)));
        cal.SetKTPW(ch, static_cast<float>(Between(15, 25)));
        cal.SetKP(ch, 1, Between(0, 30000));
        cal.SetKP(ch, 2, Between(0, 60000));
        for (int i = 0; i <= 5; ++i) {
            cal.SetKTempCoeff(ch, i,
                              static_cast<float>(Between(-1, 1) * std::pow(40.0, -i) + (i == 0 ? 2 : 0)));
            cal.SetKkT(ch, i, Between(-1, 1) * std::pow(40.0, -i) + (i == 0 ? 3 : 0));
            cal.SetKkTauP(ch, i, Between(-1, 1) * std::pow(70000.0, -i) + (i == 0 ? 3 : 0));
        }
    }

    std::mt19937 random_;
};

}  // namespace marisonde
