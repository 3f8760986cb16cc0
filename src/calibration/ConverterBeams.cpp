// Samples of the models with light beams: Tidal, and Delph with Fathom.
#include "calibration/ConversionTerms.h"

namespace marisonde {

using namespace conversion;

namespace {

constexpr float kOpaque = 100;  ///< attenuation when no light comes through, 1/m

}  // namespace

double Converter::BeamTerms::PressureFactor(double pressure) const {
    if (pressure <= p1) return 1;
    if (pressure > p2) return onePlusTauPX * Polynomial(tauP, pressure);
    return 1 + tauPX * (pressure - p1) / pSpan;  // between the two, so they are apart
}

/// Steps that turn the uncorrected beta of a channel into its sigma, beta and bb, with the K at hand.
void Converter::ApplySigma(std::size_t ch, double betaUncorr, double K, CalibratedSample& out) const {
    const ScatterTerms& terms = scatter_[ch];
    const double sigma = OrSentinel(terms.sigma.At(K));
    const double beta = OrSentinel(betaUncorr * sigma);
    out.Sigma[ch] = sigma;
    out.beta[ch] = beta;
    out.bb[ch] = OrSentinel(static_cast<double>(terms.toBb(beta)));
}

void Converter::ApplyTidal(const RawSample& raw, CalibratedSample& out) const {
    const ScatterTerms& terms = scatter_[0];
    const TransmissionTerms& beam = transmission_;
    out.Depth = Single((static_cast<double>(raw.Pressure) - depth_.offset) * depth_.slope);
    ApplyTransmission(raw, out);
    out.k[0] = out.K;

    const int gain = raw.Gain[0];
    if (gain < kFirstGain || gain > kLastGain) {
        out.betaUncorr[0] = out.bbUncorr[0] = 0;
    } else {
        const auto g = static_cast<std::size_t>(gain);
        const double warmth = static_cast<double>(raw.Temp) - calTemp_;
        out.betaUncorr[0] = OrSentinel(
            Divide((raw.Sig[0] - terms.dark[g]) * terms.Mu, (1 + terms.bTempCoeff * warmth) * terms.gain[g]));
        out.bbUncorr[0] = OrSentinel(static_cast<double>(terms.toBb(out.betaUncorr[0])));
    }
    if (beam.replaceK) {
        out.K = Single(beam.useModel ? terms.model.At(out.bbUncorr[0], withWater_)
                                     : static_cast<double>(out.k[0]) * beam.p);
    }
    ApplySigma(0, out.betaUncorr[0], static_cast<double>(out.K), out);
    if (type_ != InstTypeCode::LTidal) return;
    const double x = out.beta[0] - beam.betaPure;
    out.a =
        Single(static_cast<double>(out.K) - beam.chi1 * x - beam.chi2 * (x * x) - beam.chi3 * (x * x * x));
}

/// K and TransNorm from the transmission counts. Without light, path or temperature curve K is 0 and not
/// valid.
void Converter::ApplyTransmission(const RawSample& raw, CalibratedSample& out) const {
    const TransmissionTerms& beam = transmission_;
    out.K = 0;
    out.Valid[0] = false;
    double curve = Polynomial(beam.temp, static_cast<double>(raw.Temp));
    if (beam.tempNorm != 0) curve /= beam.tempNorm;
    if (curve == 0) return;
    out.TransNorm = Single(raw.Trans / curve);
    const double light = static_cast<double>(out.TransNorm) - beam.dark;
    if (light <= 0) return;
    const double r = beam.pureLessDark / light;
    if (r == 0 || beam.path == 0) return;
    out.K = Single(std::log(r) / beam.path);
    out.Valid[0] = true;

    const auto pressure = static_cast<double>(raw.Pressure);
    if (pressure < depth_.offset) return;
    const double depth =
        pressure <= beam.threshold
            ? (pressure - depth_.offset) * beam.depth0 / beam.thresholdLessOff
            : beam.depth0 + beam.depthStep * (pressure - beam.threshold) / beam.topLessThreshold;
    out.K = Single(static_cast<double>(out.K) - depth);
}

void Converter::ApplyDelph(const RawSample& raw, CalibratedSample& out) const {
    const auto temp = static_cast<double>(raw.Temp);
    const double atTemp = depth_.kp2 * temp * temp + depth_.kp1 * temp;
    const auto pressure =
        static_cast<double>(Single(static_cast<double>(raw.Pressure) - depth_.P0 - atTemp + depth_.atTP0));
    out.Depth = Single(depth_.kD2 * (pressure * pressure) + depth_.kD1 * pressure);
    for (std::size_t ch = 0; ch < static_cast<std::size_t>(channels_); ++ch) {
        const BeamTerms& beam = beams_[ch];
        const double reference = raw.Ref[ch] - beam.darkReference;
        const double ratio = reference < 1 ? 0 : (raw.Sig[ch] - beam.darkSignal) / reference;
        const double clear = beam.tau0 * beam.PressureFactor(pressure) * Polynomial(beam.kT, temp);
        out.k[ch] = ratio <= 0 ? kOpaque : Single(std::log(clear / ratio) / beam.path);
    }
}

}  // namespace marisonde
