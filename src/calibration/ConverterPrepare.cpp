// What a Converter computes once from calibration and parameters.
#include "calibration/ConversionTerms.h"
#include "common/ConversionUtils.h"
#include "optics/PurewaterClass.h"

namespace marisonde {

using namespace conversion;

namespace {

constexpr double kTopPressure = 65535;  ///< highest count of the pressure sensor

}  // namespace

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
    for (std::size_t g = 0; g < lanes_.usable.size(); ++g) {
        const bool usable = ch < lanes_.count && g >= kFirstGain && g <= kLastGain && terms.gain[g] != 0;
        const double product = usable ? terms.gain[g] * terms.RNominal : 1;
        lanes_.usable[g][ch] = usable;
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

}  // namespace marisonde
