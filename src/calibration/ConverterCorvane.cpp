// Corvane samples: scattering of all channels side by side, then fluorescence.
#include "calibration/ConversionTerms.h"

namespace marisonde {

using namespace conversion;

namespace {

constexpr unsigned kGainMask = 7;

}  // namespace

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
    const std::size_t g = static_cast<unsigned>(raw.Gain[ch]) & kGainMask;
    in.gainRNominal[ch] = lanes_.gainRNominal[g][ch];
    if (!lanes_.usable[g][ch]) {
        in.snorm[ch] = 0;
        if (ch < lanes_.count) ClearChannel(ch, g, out);
        return false;
    }
    if (raw.Snorm[ch] == 0) raw.Snorm[ch] = NormalizedSignal(ch, g, raw);
    in.snorm[ch] = raw.Snorm[ch];
    return true;
}

/// A channel without a relative gain keeps its beta; one without a gain step does not.
void Converter::ClearChannel(std::size_t ch, std::size_t gain, CalibratedSample& out) {
    out.Valid[ch] = false;
    out.bbUncorr[ch] = out.bb[ch] = 0;
    if (gain < kFirstGain || gain > kLastGain) out.betaUncorr[ch] = out.beta[ch] = 0;
}

/// All channels at once. The quick form leaves what failed as it comes out and answers whether nothing did; a
/// failed value makes K, sigma or bb infinite or not a number, and so the sum of these and the divisors.
template <bool careful>
bool Converter::ScatterLanes(const LaneInputs& __restrict in, double warmth,
                             LaneValues& __restrict values) const {
    const auto kept = [](double value) { return careful ? OrSentinel(value) : value; };
    const auto kept32 = [](double value) {
        return static_cast<double>(careful ? Single(value) : static_cast<float>(value));
    };
    const LaneTerms& __restrict terms = lanes_;
    PerLane<double> sums;
    for (std::size_t ch = 0; ch < kLanes; ++ch) {
        const double warm = 1 + terms.bTempCoeff[ch] * warmth;
        const double beta = terms.Mu[ch] * in.snorm[ch] / in.gainRNominal[ch];
        values.betaUncorr[ch] = kept(careful ? Divide(beta, warm) : beta / warm);
        sums[ch] = warm;
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
        sums[ch] += values.K[ch] + values.sigma[ch] + values.bb[ch];
    }
    double sum = 0;
    for (const double lane : sums) sum += lane;
    return !Failed(sum);
}

/// Channels without a usable gain keep what TakeInputs gave them.
void Converter::StoreLanes(const PerLane<bool>& usable, const LaneValues& __restrict values,
                           CalibratedSample& __restrict out) const {
    for (std::size_t ch = 0; ch < kLanes; ++ch) {
        if (!usable[ch]) continue;
        out.Valid[ch] = true;
        out.betaUncorr[ch] = values.betaUncorr[ch];
        out.bbUncorr[ch] = values.bbUncorr[ch];
        out.K = static_cast<float>(values.K[ch]);
        out.Sigma[ch] = values.sigma[ch];
        out.beta[ch] = values.beta[ch];
        out.bb[ch] = values.bb[ch];
    }
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

}  // namespace marisonde
