#include "calibration/PlainFormula.h"

#include <cmath>
#include <limits>

#include "common/Numbers.h"
#include "optics/PurewaterClass.h"

namespace marisonde {
namespace {

double Stored(double x) {
    return std::isfinite(x) ? x : 1e308;
}
float Stored32(double x) {
    const auto f = static_cast<float>(x);
    return std::isfinite(f) ? f : kSentinelF;
}
double OverFailed(double a, double b) {
    return std::isfinite(b) ? a / b : std::nan("");
}

double PlainBetaToBb(const PureWaterParams& p, double beta, double lambda, double beta2bb) {
    double c = 0;
    if (p.UseCalChi && beta2bb >= 3) c = beta2bb;
    if (p.UseCalChi && beta2bb < 3) c = beta2bb * 6.2832;
    if (!p.UseCalChi) c = double{p.chi} * 6.2832;
    const double w = lambda == 0 ? 0 : std::pow(double{p.lambda0} / lambda, double{p.gammaLambda});
    return double{static_cast<float>((beta - double{p.beta0} * w) * c + double{p.bb0} * w)};
}

struct Plain {
    RawSample& raw;
    const CalibrationDataClass& cal;
    const SigmaParams& sigma;
    const PureWaterParams& water;
    CalibratedSample& out;

    [[nodiscard]] double ModelK(int ch) const {
        const auto i = static_cast<std::size_t>(ch);
        const double lambda = cal.Channel(ch).lambda;
        const double a = cal.Channel(ch).a;
        const double bbTilde = cal.Channel(ch).bbTilde;
        if (sigma.includePurewater) return Purewater().a(lambda) + a + 0.4 * out.bbUncorr[i] / bbTilde;
        return (out.bbUncorr[i] - Purewater().bb(lambda, water.MorelSalt())) * 0.4 / bbTilde + a;
    }

    void SigmaSteps(int ch) const {
        const auto i = static_cast<std::size_t>(ch);
        const ChannelCal& c = cal.Channel(ch);
        const double K = double{out.K};
        out.Sigma[i] = Stored(c.UseSigmaExp ? c.Sigma[0] * std::exp(c.SigmaExp * K)
                                            : c.Sigma[0] + c.Sigma[1] * K + c.Sigma[2] * (K * K));
        out.beta[i] = Stored(out.betaUncorr[i] * out.Sigma[i]);
        out.bb[i] = Stored(PlainBetaToBb(water, out.beta[i], c.lambda, c.beta2bb));
    }

    void CorvaneChannel(int ch) const {
        const auto i = static_cast<std::size_t>(ch);
        const ChannelCal& c = cal.Channel(ch);
        const auto g = static_cast<std::size_t>(raw.Gain[i] & 7);
        if (g < 1 || g > 5) {
            out.Valid[i] = false;
            out.bbUncorr[i] = out.bb[i] = out.betaUncorr[i] = out.beta[i] = 0;
            return;
        }
        if (c.gain[g] == 0) {
            out.Valid[i] = false;
            out.bbUncorr[i] = out.bb[i] = 0;
            return;
        }
        if (raw.Snorm[i] == 0 && raw.Ref[i] - raw.RefOff[i] != 0) {
            const double snorm = std::nearbyint(c.RNominal * (raw.Sig[i] - raw.SigOff[i] - c.DarkOffset[g]) /
                                                (raw.Ref[i] - raw.RefOff[i]));
            if (std::abs(snorm) <= 2147483647.0) raw.Snorm[i] = static_cast<std::int32_t>(snorm);
        }
        double beta = OverFailed(c.Mu * raw.Snorm[i], c.gain[g] * c.RNominal);
        beta = OverFailed(beta, 1 + c.bTempCoeff * (double{raw.Temp} - double{cal.CalTemp}));
        out.betaUncorr[i] = Stored(beta);
        out.bbUncorr[i] =
            Stored(ch >= cal.bChannels() ? c.beta2bb * out.betaUncorr[i]
                                         : PlainBetaToBb(water, out.betaUncorr[i], c.lambda, c.beta2bb));
        out.Valid[i] = true;
        out.K = Stored32(ModelK(ch));
        SigmaSteps(ch);
    }

    void Virtual(std::size_t ch) const {
        const int e = cal.Channel(static_cast<int>(ch)).ChEx;
        if (!out.Valid[ch] || (ch == 7 && e < 1)) return;
        if (e >= 1 && e <= 13) {
            const auto receiver = static_cast<std::size_t>(e - 1);
            const int lamp = cal.Channel(e - 1).ChEx;
            if (lamp >= 1 && lamp <= 13) out.Sigma[ch] = out.Sigma[static_cast<std::size_t>(lamp - 1)];
            if (out.Valid[receiver]) {
                out.Sigma[ch] = Stored(std::sqrt(out.Sigma[receiver]) * std::sqrt(out.Sigma[ch]));
            }
        }
        out.bb[ch] = Stored(out.bbUncorr[ch] * out.Sigma[ch]);
    }

    void Corvane() const {
        out.Depth = Stored32(double{cal.DepthCal} * double{raw.Pressure} - double{cal.DepthOff});
        for (int ch = 0; ch < ChannelSlots(cal.InstType); ++ch) CorvaneChannel(ch);
        if (cal.InstType == InstTypeCode::Corvane2) {
            out.bb[2] = Stored(std::sqrt(out.Sigma[1]) * out.bbUncorr[2] * std::sqrt(out.Sigma[0]));
        }
        if (cal.InstType == InstTypeCode::Corvane6) {
            Virtual(6);
            Virtual(7);
        }
    }

    [[nodiscard]] float TidalK() const {
        const AttenuationCal& c = cal.Attenuation(0);
        const auto T = double{raw.Temp};
        double P = 0;
        double power = 1;
        for (std::size_t i = 0; i <= 5; ++i, power *= T) P += double{c.KTempCoeff[i]} * power;
        if (c.KTempNormCoeff != 0) P = P / c.KTempNormCoeff;
        if (P == 0) return 0;
        out.TransNorm = Stored32(raw.Trans / P);
        if (double{out.TransNorm} - c.TrNought <= 0) return 0;
        const double r = double(c.TrPure - c.TrNought) / (double{out.TransNorm} - c.TrNought);
        if (r == 0 || c.KPath == 0) return 0;
        out.Valid[0] = true;
        const float K = Stored32(std::log(r) / double{c.KPath});
        const auto p = double{raw.Pressure};
        const auto off = double{cal.DepthOff};
        const double thresh = c.KDepthThresh[0];
        const auto d0 = double{c.KDepthCoeff[0]};
        if (p < off) return K;
        const double D = p <= thresh ? (p - off) * d0 / (thresh - off)
                                     : d0 + (double{c.KDepthCoeff[1]} - d0) * (p - thresh) / (65535 - thresh);
        return Stored32(double{K} - D);
    }

    void Tidal() const {
        const ChannelCal& s = cal.Channel(0);
        const AttenuationCal& c = cal.Attenuation(0);
        out.Depth = Stored32((double{raw.Pressure} - double{cal.DepthOff}) * double{cal.DepthCal});
        out.Valid[0] = false;
        out.K = TidalK();
        out.k[0] = out.K;
        out.betaUncorr[0] = out.bbUncorr[0] = 0;
        if (raw.Gain[0] >= 1 && raw.Gain[0] <= 5) {
            const auto g = static_cast<std::size_t>(raw.Gain[0]);
            out.betaUncorr[0] =
                Stored(OverFailed((raw.Sig[0] - s.DarkOffset[g]) * s.Mu,
                                  (1 + s.bTempCoeff * (double{raw.Temp} - double{cal.CalTemp})) * s.gain[g]));
            out.bbUncorr[0] = Stored(PlainBetaToBb(water, out.betaUncorr[0], s.lambda, s.beta2bb));
        }
        if (cal.InstType == InstTypeCode::NTidal) {
            out.K = Stored32(sigma.cUseCV ? ModelK(0) : double{out.k[0]} * sigma.p);
        }
        SigmaSteps(0);
        if (cal.InstType != InstTypeCode::LTidal) return;
        const double lambda = c.KLambda;
        const double w =
            lambda == 0 ? 0 : std::pow(double{water.lambda0} / lambda, double{water.gammaLambda});
        const double x = out.beta[0] - double{water.beta0} * w;
        out.a = Stored32(double{out.K} - double{c.KChi[1]} * x - double{c.KChi[2]} * (x * x) -
                         double{c.KChi[3]} * (x * x * x));
    }

    void Delph() const {
        const auto T = double{raw.Temp};
        const auto kp1 = double{cal.kp1};
        const auto kp2 = double{cal.kp2};
        const double TP0 = cal.TP0;
        const float Pc = Stored32(double{raw.Pressure} - double{cal.P0} - (kp2 * T * T + kp1 * T) +
                                  (kp2 * TP0 * TP0 + kp1 * TP0));
        const auto p = double{Pc};
        out.Depth = Stored32(double{cal.kD2} * (p * p) + double{cal.kD1} * p);
        double F = 0;
        for (int ch = 0; ch < DelphChannels(cal.InstType); ++ch) {
            const auto i = static_cast<std::size_t>(ch);
            const AttenuationCal& c = cal.Attenuation(ch);
            double ratio = 0;
            if (double(raw.Ref[i]) - c.KR0 >= 1)
                ratio = (double(raw.Sig[i]) - c.KS0) / (double(raw.Ref[i]) - c.KR0);
            const auto p1 = double{c.KP(1)};
            const auto p2 = double{c.KP(2)};
            if (p <= p1) {
                F = 1;
            } else if (p <= p2) {
                if (p2 > p1) F = 1 + double{c.KkTauPX} * (p - p1) / (p2 - p1);
            } else {
                double sum = c.KkTauP[0];
                double power = p;
                for (int m = 1; m <= 5; ++m, power *= p) sum += c.KkTauP[m] * power;
                F = (1 + double{c.KkTauPX}) * sum;
            }
            double G = c.KkT[0];
            double power = T;
            for (int m = 1; m <= 5; ++m, power *= T) G += c.KkT[m] * power;
            out.k[i] = ratio <= 0 ? 100 : Stored32(std::log(c.KTau0 * F * G / ratio) / double{c.KL});
        }
    }
};

}  // namespace

bool PlainConvert(RawSample& raw, const CalibrationDataClass& cal, const SigmaParams& sigma,
                  const PureWaterParams& water, CalibratedSample& out) {
    const InstTypeCode type = cal.InstType;
    if (!IsCorvaneFamily(type) && !IsTidalFamily(type) && !IsDelphFamily(type)) return false;
    out.SampleNo = raw.Format;
    out.Aux = raw.ElapsedCount;
    out.Temp = raw.Temp;
    const double base = IsTidalFamily(type) ? 29221 : 25569;
    if (IsCorvaneFamily(type) && raw.Time == 0) {
        out.Time = 0;
        out.Elapsed = raw.DayFraction;
    } else {
        out.Time = (raw.Time + raw.Hundredths / 100.0) * 1.1574074074074073E-5 + base;
    }
    const Plain plain{raw, cal, sigma, water, out};
    if (IsCorvaneFamily(type)) plain.Corvane();
    if (IsTidalFamily(type)) plain.Tidal();
    if (IsDelphFamily(type)) plain.Delph();
    return true;
}

}  // namespace marisonde
