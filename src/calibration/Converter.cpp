#include "calibration/Converter.h"

#include <cmath>
#include <limits>

#include "common/ConversionUtils.h"
#include "common/Numbers.h"
#include "decode/Decoders.h"
#include "optics/PurewaterClass.h"

namespace marisonde {

namespace {

constexpr int kFirstGain = 1;
constexpr int kLastGain = 5;
constexpr unsigned kGainMask = 7;
constexpr double kTopPressure = 65535;  ///< highest count of the pressure sensor
constexpr float kOpaque = 100;          ///< attenuation when no light comes through, 1/m
constexpr double kFailed = std::numeric_limits<double>::quiet_NaN();

bool IsChannel(int ch) {
    return ch >= 0 && ch < kChannelSlots;
}

bool Failed(double value) {
    return !(std::abs(value) <= std::numeric_limits<double>::max());
}

double OrSentinel(double value) {
    return Failed(value) ? kSentinel : value;
}

/// To 32 bits; what failed or does not fit is the sentinel.
float Single(double value) {
    const auto single = static_cast<float>(value);
    return std::abs(single) <= std::numeric_limits<float>::max() ? single : kSentinelF;
}

/// A divisor that failed must not pass as a quotient of 0.
double Divide(double a, double b) {
    return Failed(b) ? kFailed : a / b;
}

double Polynomial(const std::array<double, 6>& coefficients, double x) {
    double sum = coefficients[0];
    double power = x;
    for (std::size_t i = 1; i < coefficients.size(); ++i) {
        sum += coefficients[i] * power;
        power *= x;
    }
    return sum;
}

}  // namespace

inline double Converter::SigmaTerms::At(double K) const {
    return exponential ? s0 * std::exp(exponent * K) : s0 + s1 * K + s2 * (K * K);
}

inline double Converter::ModelTerms::At(double bbUncorr, bool withWater) const {
    return withWater ? offset + 0.4 * bbUncorr / bbTilde : (bbUncorr - water) * 0.4 / bbTilde + offset;
}

double Converter::BeamTerms::PressureFactor(double pressure) const {
    if (pressure <= p1) return 1;
    if (pressure > p2) return onePlusTauPX * Polynomial(tauP, pressure);
    return 1 + tauPX * (pressure - p1) / pSpan;  // between the two, so they are apart
}

// --- preparing ----------------------------------------------------------------------------------------

Converter::Converter(const CalibrationDataClass& cal, const SigmaParams& sigma, const PureWaterParams& water)
    : type_(cal.InstType), calTemp_(static_cast<double>(cal.CalTemp)), withWater_(sigma.includePurewater) {
    if (IsCorvaneFamily(type_)) {
        family_ = Family::Corvane;
        channels_ = cal.ChannelCount();
    } else if (IsTidalFamily(type_)) {
        family_ = Family::Tidal;
        channels_ = 1;
        PrepareTransmission(cal, sigma, water);
    } else if (IsDelphFamily(type_)) {
        family_ = Family::Delph;
        channels_ = DelphChannels(type_);
        for (int ch = 0; ch < channels_; ++ch) PrepareBeam(cal, ch);
    } else {
        return;
    }
    epoch_ = family_ == Family::Tidal ? kDay1980 : kDay1970;
    PrepareDepth(cal);
    if (family_ == Family::Delph) return;
    for (int ch = 0; ch < channels_; ++ch) PrepareScatter(cal, ch, water);
    lanes_.backscatter = static_cast<std::size_t>(cal.bChannels());
    lanes_.count = static_cast<std::size_t>(channels_);
    for (std::size_t ch = 0; ch < kLanes; ++ch) PrepareLane(ch);
    for (int ch = 0; ch < kChannelSlots; ++ch)
        excitation_[static_cast<std::size_t>(ch)] = cal.Channel(ch).ChEx;
}

void Converter::PrepareScatter(const CalibrationDataClass& cal, int ch, const PureWaterParams& water) {
    const ChannelCal& channel = cal.Channel(ch);
    ScatterTerms& terms = scatter_[static_cast<std::size_t>(ch)];
    for (std::size_t g = kFirstGain; g <= kLastGain; ++g) {
        terms.gain[g] = channel.gain[g];
        terms.dark[g] = channel.DarkOffset[g];
    }
    terms.Mu = channel.Mu;
    terms.RNominal = channel.RNominal;
    terms.bTempCoeff = channel.bTempCoeff;
    terms.fluorescence = ch >= cal.bChannels();
    terms.beta2bb = channel.beta2bb;
    terms.toBb = PrepareBetaToBb(water, channel.lambda, channel.beta2bb);
    terms.model.water = Purewater().bb(channel.lambda, water.MorelSalt());
    terms.model.offset = withWater_ ? Purewater().a(channel.lambda) + channel.a : channel.a;
    terms.model.bbTilde = channel.bbTilde;
    terms.sigma = {channel.Sigma[0], channel.Sigma[1], channel.Sigma[2], channel.SigmaExp,
                   channel.UseSigmaExp};
}

void Converter::PrepareLane(std::size_t ch) {
    const ScatterTerms& terms = scatter_[ch];
    for (std::size_t g = kFirstGain; g <= kLastGain; ++g) {
        const double product = terms.gain[g] * terms.RNominal;
        lanes_.gainRNominal[g][ch] = Failed(product) ? kFailed : product;
    }
    lanes_.Mu[ch] = terms.Mu;
    lanes_.bTempCoeff[ch] = terms.bTempCoeff;
    lanes_.c[ch] = terms.toBb.c;
    lanes_.betaWater[ch] = terms.toBb.betaWater;
    lanes_.bbWater[ch] = terms.toBb.bbWater;
    lanes_.beta2bb[ch] = terms.beta2bb;
    lanes_.modelWater[ch] = terms.model.water;
    lanes_.modelOffset[ch] = terms.model.offset;
    // A lane without a channel must not look like a failure.
    lanes_.bbTilde[ch] = ch < static_cast<std::size_t>(channels_) ? terms.model.bbTilde : 1;
}

void Converter::PrepareTransmission(const CalibrationDataClass& cal, const SigmaParams& sigma,
                                    const PureWaterParams& water) {
    const AttenuationCal& beam = cal.Attenuation(0);
    TransmissionTerms& terms = transmission_;
    for (std::size_t i = 0; i < terms.temp.size(); ++i)
        terms.temp[i] = static_cast<double>(beam.KTempCoeff[i]);
    terms.tempNorm = beam.KTempNormCoeff;
    terms.dark = beam.TrNought;
    terms.pureLessDark = static_cast<double>(beam.TrPure) - beam.TrNought;
    terms.path = static_cast<double>(beam.KPath);
    terms.threshold = beam.KDepthThresh[0];
    terms.depth0 = static_cast<double>(beam.KDepthCoeff[0]);
    terms.depthStep = static_cast<double>(beam.KDepthCoeff[1]) - terms.depth0;
    terms.thresholdLessOff = terms.threshold - static_cast<double>(cal.DepthOff);
    terms.topLessThreshold = kTopPressure - terms.threshold;
    terms.chi1 = static_cast<double>(beam.KChi[1]);
    terms.chi2 = static_cast<double>(beam.KChi[2]);
    terms.chi3 = static_cast<double>(beam.KChi[3]);
    terms.betaPure = BetaPureAt(water, beam.KLambda);
    terms.replaceK = cal.InstType == InstTypeCode::NTidal;
    terms.useModel = sigma.cUseCV;
    terms.p = sigma.p;
}

void Converter::PrepareBeam(const CalibrationDataClass& cal, int ch) {
    const AttenuationCal& beam = cal.Attenuation(ch);
    BeamTerms& terms = beams_[static_cast<std::size_t>(ch)];
    terms.darkSignal = beam.KS0;
    terms.darkReference = beam.KR0;
    terms.p1 = static_cast<double>(beam.KP(1));
    terms.p2 = static_cast<double>(beam.KP(2));
    terms.pSpan = terms.p2 - terms.p1;
    terms.tauPX = static_cast<double>(beam.KkTauPX);
    terms.onePlusTauPX = 1 + terms.tauPX;
    for (int i = 0; i <= NormalizedPolynomial::kUpperBound; ++i) {
        terms.tauP[static_cast<std::size_t>(i)] = beam.KkTauP[i];
        terms.kT[static_cast<std::size_t>(i)] = beam.KkT[i];
    }
    terms.tau0 = beam.KTau0;
    terms.path = static_cast<double>(beam.KL);
}

void Converter::PrepareDepth(const CalibrationDataClass& cal) {
    const auto tp0 = static_cast<double>(cal.TP0);
    depth_.slope = static_cast<double>(cal.DepthCal);
    depth_.offset = static_cast<double>(cal.DepthOff);
    depth_.P0 = static_cast<double>(cal.P0);
    depth_.kp1 = static_cast<double>(cal.kp1);
    depth_.kp2 = static_cast<double>(cal.kp2);
    depth_.atTP0 = depth_.kp2 * tp0 * tp0 + depth_.kp1 * tp0;
    depth_.kD1 = static_cast<double>(cal.kD1);
    depth_.kD2 = static_cast<double>(cal.kD2);
}

// --- one sample ---------------------------------------------------------------------------------------

bool Converter::Apply(RawSample& raw, CalibratedSample& out) const {
    if (family_ == Family::None) return false;
    out.SampleNo = raw.Format;
    out.Aux = raw.ElapsedCount;
    out.Temp = raw.Temp;
    ApplyClock(raw, out);
    if (family_ == Family::Corvane) ApplyCorvane(raw, out);
    if (family_ == Family::Tidal) ApplyTidal(raw, out);
    if (family_ == Family::Delph) ApplyDelph(raw, out);
    return true;
}

void Converter::ApplyClock(const RawSample& raw, CalibratedSample& out) const {
    if (family_ == Family::Corvane && raw.Time == 0) {
        out.Time = 0;
        out.Elapsed = raw.DayFraction;
        return;
    }
    out.Time = (raw.Time + raw.Hundredths / 100.0) * kDaysPerSecond + epoch_;
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

void Converter::ApplyCorvane(RawSample& raw, CalibratedSample& out) const {
    out.Depth = Single(depth_.slope * static_cast<double>(raw.Pressure) - depth_.offset);
    LaneInputs in;
    for (std::size_t ch = 0; ch < kLanes; ++ch) in.usable[ch] = TakeInputs(ch, raw, in, out);
    const double warmth = static_cast<double>(raw.Temp) - calTemp_;
    LaneValues values;
    // Failures are rare: the quick way only notices them, and the careful one puts the sentinels in.
    if (!ScatterLanes<false>(in, warmth, values)) ScatterLanes<true>(in, warmth, values);
    StoreLanes(in.usable, values, out);
    ApplyFluorescence(out);
}

/// The signal relative to the reference, in counts. 0 when there is no reference or the result does not fit.
std::int32_t Converter::NormalizedSignal(std::size_t ch, std::size_t gain, const RawSample& raw) const {
    const ScatterTerms& terms = scatter_[ch];
    const double reference = static_cast<double>(raw.Ref[ch]) - raw.RefOff[ch];
    if (reference == 0) return 0;
    const double signal = static_cast<double>(raw.Sig[ch]) - raw.SigOff[ch] - terms.dark[gain];
    const double counts = RoundHalfEven(terms.RNominal * signal / reference);
    const bool fits = counts >= std::numeric_limits<std::int32_t>::min() &&
                      counts <= std::numeric_limits<std::int32_t>::max();
    return fits ? static_cast<std::int32_t>(counts) : 0;
}

/// False, with the output of the channel cleared, when it has no usable gain. Other lanes get values that do
/// no harm.
bool Converter::TakeInputs(std::size_t ch, RawSample& raw, LaneInputs& in, CalibratedSample& out) const {
    in.snorm[ch] = 0;
    in.gainRNominal[ch] = 1;
    if (ch >= static_cast<std::size_t>(channels_)) return false;
    const std::size_t g = static_cast<unsigned>(raw.Gain[ch]) & kGainMask;
    const bool inRange = g >= kFirstGain && g <= kLastGain;
    if (!inRange || scatter_[ch].gain[g] == 0) {
        out.Valid[ch] = false;
        out.bbUncorr[ch] = out.bb[ch] = 0;
        if (!inRange) out.betaUncorr[ch] = out.beta[ch] = 0;
        return false;
    }
    if (raw.Snorm[ch] == 0) raw.Snorm[ch] = NormalizedSignal(ch, g, raw);
    in.snorm[ch] = raw.Snorm[ch];
    in.gainRNominal[ch] = lanes_.gainRNominal[g][ch];
    return true;
}

/// All channels at once. The quick form leaves what failed as it comes out and answers whether nothing did; a
/// failed value makes K, sigma or bb infinite or not a number, so these and the divisors are all that is
/// looked at.
template <bool careful>
bool Converter::ScatterLanes(const LaneInputs& __restrict in, double warmth,
                             LaneValues& __restrict values) const {
    const auto kept = [](double value) { return careful ? OrSentinel(value) : value; };
    const auto kept32 = [](double value) {
        return static_cast<double>(careful ? Single(value) : static_cast<float>(value));
    };
    const LaneTerms& __restrict terms = lanes_;
    PerLane<double> fault;
    for (std::size_t ch = 0; ch < kLanes; ++ch) {
        const double warm = 1 + terms.bTempCoeff[ch] * warmth;
        const double beta = terms.Mu[ch] * in.snorm[ch] / in.gainRNominal[ch];
        values.betaUncorr[ch] = kept(careful ? Divide(beta, warm) : beta / warm);
        fault[ch] = warm - warm;  // 0, or not a number
    }
    for (std::size_t ch = 0; ch < kLanes; ++ch) {
        values.bbUncorr[ch] = kept(static_cast<float>(
            (values.betaUncorr[ch] - terms.betaWater[ch]) * terms.c[ch] + terms.bbWater[ch]));
    }
    for (std::size_t ch = terms.backscatter; ch < terms.count; ++ch) {
        values.bbUncorr[ch] = kept(terms.beta2bb[ch] * values.betaUncorr[ch]);
    }
    for (std::size_t ch = 0; ch < kLanes; ++ch) {
        const ModelTerms model{terms.modelWater[ch], terms.modelOffset[ch], terms.bbTilde[ch]};
        values.K[ch] = kept32(model.At(values.bbUncorr[ch], withWater_));
    }
    for (std::size_t ch = 0; ch < terms.count; ++ch)
        values.sigma[ch] = kept(scatter_[ch].sigma.At(values.K[ch]));
    for (std::size_t ch = terms.count; ch < kLanes; ++ch) values.sigma[ch] = 1;
    for (std::size_t ch = 0; ch < kLanes; ++ch) {
        const double beta = kept(values.betaUncorr[ch] * values.sigma[ch]);
        values.beta[ch] = beta;
        values.bb[ch] =
            kept(static_cast<float>((beta - terms.betaWater[ch]) * terms.c[ch] + terms.bbWater[ch]));
        fault[ch] += (values.K[ch] - values.K[ch]) + (values.sigma[ch] - values.sigma[ch]) +
                     (values.bb[ch] - values.bb[ch]);
    }
    double sum = 0;
    for (const double lane : fault) sum += lane;
    return sum == 0;
}

/// Channels without a usable gain keep what TakeInputs gave them.
void Converter::StoreLanes(const PerLane<bool>& usable, const LaneValues& __restrict values,
                           CalibratedSample& __restrict out) const {
    for (std::size_t ch = 0; ch < kLanes; ++ch) {
        if (!usable[ch]) continue;
        out.Valid[ch] = true;
        out.K = static_cast<float>(values.K[ch]);
    }
    const auto store = [&usable](const PerLane<double>& from, CalibratedSample::PerChannel<double>& to) {
        for (std::size_t ch = 0; ch < kLanes; ++ch) to[ch] = usable[ch] ? from[ch] : to[ch];
    };
    store(values.betaUncorr, out.betaUncorr);
    store(values.bbUncorr, out.bbUncorr);
    store(values.sigma, out.Sigma);
    store(values.beta, out.beta);
    store(values.bb, out.bb);
}

void Converter::ApplyFluorescence(CalibratedSample& out) const {
    constexpr int kFirstVirtual = 6;
    constexpr int kSecondVirtual = 7;
    if (type_ == InstTypeCode::Corvane2) {
        out.bb[2] = OrSentinel(std::sqrt(out.Sigma[1]) * out.bbUncorr[2] * std::sqrt(out.Sigma[0]));
    } else if (type_ == InstTypeCode::Corvane6) {
        // The first is not asked whether it has an excitation channel: it then keeps the sigma of its own.
        ApplyVirtualChannel(kFirstVirtual, out);
        if (excitation_[kSecondVirtual] >= 1) ApplyVirtualChannel(kSecondVirtual, out);
    }
}

/// Light goes out at one channel's wavelength and comes back at another's: sigma is the mean of both.
void Converter::ApplyVirtualChannel(std::size_t ch, CalibratedSample& out) const {
    if (!out.Valid[ch]) return;
    const int receiver = excitation_[ch] - 1;
    if (IsChannel(receiver)) {
        const auto received = static_cast<std::size_t>(receiver);
        const int lit = excitation_[received] - 1;
        if (IsChannel(lit)) out.Sigma[ch] = out.Sigma[static_cast<std::size_t>(lit)];
        if (out.Valid[received]) {
            out.Sigma[ch] = OrSentinel(std::sqrt(out.Sigma[received]) * std::sqrt(out.Sigma[ch]));
        }
    }
    out.bb[ch] = OrSentinel(out.bbUncorr[ch] * out.Sigma[ch]);
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

bool ApplyCalibration(RawSample& raw, const CalibrationDataClass& cal, const SigmaParams& sigma,
                      const PureWaterParams& water, CalibratedSample& out) {
    return Converter(cal, sigma, water).Apply(raw, out);
}

bool ParseAndConvert(std::string_view line, InstTypeCode instType, const Converter& converter, RawSample& raw,
                     CalibratedSample& out) {
    return ParseRawLine(line, instType, raw) && converter.Apply(raw, out);
}

}  // namespace marisonde
