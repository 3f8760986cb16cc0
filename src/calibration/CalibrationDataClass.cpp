#include "calibration/CalibrationDataClass.h"

#include <algorithm>
#include <cmath>
#include <system_error>

#include "calibration/ChannelRange.h"
#include "calibration/Sentinel.h"
#include "common/Numbers.h"
#include "optics/PurewaterClass.h"

namespace marisonde {

namespace {

constexpr int kModelChannels = 8;  ///< the sigma model is filled for these
constexpr int kGainDecimals = 6;
constexpr double kSmallestSigmaExp = 0.0001;

std::size_t Index(int i) {
    return static_cast<std::size_t>(i);
}

bool AnyOffset(const GainOffsets& offsets) {
    return std::any_of(offsets.begin() + kFirstGain, offsets.end(),
                       [](std::int16_t offset) { return offset != 0; });
}

/// K of pure water, 1/m, with the water's own absorption in it.
double WaterK(double lambda, bool salt) {
    return 1.6 * Purewater().bb(lambda, salt) + Purewater().a(lambda);
}

/// sigma's constant that makes sigma 1 at the K of pure water.
double SigmaAtWater(const ChannelCal& channel, double waterK) {
    if (channel.UseSigmaExp) return std::exp(-channel.SigmaExp * waterK);
    return 1 - channel.Sigma[1] * waterK - channel.Sigma[2] * (waterK * waterK);
}

struct ItemName {
    std::uint16_t item;
    std::string_view name;
};
/// In the order in which the user reads them.
constexpr std::array kItemNames{
    ItemName{CalItems::AttenuationParams, "attenuation params"},
    ItemName{CalItems::Mu, "mu"},
    ItemName{CalItems::Comment, "comment"},
    ItemName{CalItems::Configuration, "configuration"},
    ItemName{CalItems::Depth, "depth"},
    ItemName{CalItems::FluorescenceMu, "fluorescence mu"},
    ItemName{CalItems::Gain, "gain"},
    ItemName{CalItems::Identification, "identification"},
    ItemName{CalItems::ExponentialSigma, "exponential sigma"},
    ItemName{CalItems::Offset, "offset"},
    ItemName{CalItems::PolynomialSigma, "polynomial sigma"},
    ItemName{CalItems::Reference, "reference"},
    ItemName{CalItems::TemperatureCoefficient, "temperature coefficient"},
};

}  // namespace

void CalibrationDataClass::SetGain(int ch, int gainStep, double value) {
    const double rounded = RoundDecimals(value, kGainDecimals);
    // Channels may name each other in a ring; no chain is longer than the channels there are.
    for (int links = 0; links < kChannelSlots; ++links) {
        channels_[Index(ch)].gain[Index(gainStep)] = rounded;
        if (InstType == InstTypeCode::Corvane2 && ch == 1) channels_[2].gain[Index(gainStep)] = rounded;
        if (InstType != InstTypeCode::Corvane6) return;
        const int reported = IsReceiverForVirtualChannel(ch);
        if (reported == 0 || !IsChannel(reported - 1)) return;
        ch = reported - 1;
    }
}

void CalibrationDataClass::SetMu(int ch, double value, int muGain) {
    ChannelCal& channel = channels_[Index(ch)];
    channel.Mu = value;
    if (muGain == channel.MuGain || (muGain != 1 && muGain != 2)) return;
    const double reference = channel.gain[Index(muGain)];
    if (reference > 0 && reference != 1.0) {
        for (int g = kFirstGain; g <= kLastGain; ++g) channel.gain[Index(g)] /= reference;
    }
    channel.MuGain = static_cast<std::int16_t>(muGain);
}

bool CalibrationDataClass::SetSigma(int ch, int index, double value) {
    ChannelCal& channel = channels_[Index(ch)];
    if (index < 0 || Index(index) >= channel.Sigma.size()) return false;
    channel.Sigma[Index(index)] = value;
    return true;
}

void CalibrationDataClass::SetSigmaExp(int ch, double value) {
    channels_[Index(ch)].SigmaExp = value;
    channels_[Index(ch)].UseSigmaExp = value > kSmallestSigmaExp;
}

void CalibrationDataClass::SetROutOff(int ch, double value) {
    const double whole = std::trunc(value);
    channels_[Index(ch)].ROutOff = whole;
    const double fraction = std::abs(value - whole);
    if (fraction > kSmallestSigmaExp) SetSigmaExp(ch, fraction);
}

void CalibrationDataClass::SetRNominal(int ch, double value) {
    if (value != channels_[Index(ch)].RNominal) ChangedItems = CalItems::All;
    channels_[Index(ch)].RNominal = value;
}

void CalibrationDataClass::SetChEx(int ch, int channelFrom1) {
    channels_[Index(ch)].ChEx = static_cast<std::int16_t>(channelFrom1);
    UpdateVirtualChannels();
}

void CalibrationDataClass::SetChRep(int ch, int channelFrom1) {
    channels_[Index(ch)].ChRep = static_cast<std::int16_t>(channelFrom1);
    UpdateVirtualChannels();
}

void CalibrationDataClass::UpdateVirtualChannels() {
    for (int ch = 0; ch < kWalkedChannels; ++ch) {
        ChannelCal& channel = channels_[Index(ch)];
        const int excitation = channel.ChEx - 1;
        if (channel.ChEx > 0 && channel.ChRep > 0) {
            channel.IsSharedReceiver = true;
            if (!IsChannel(excitation)) continue;
            channels_[Index(excitation)].IsExcitationForChannel = static_cast<std::int16_t>(ch + 1);
        } else if (IsChannel(excitation) && channels_[Index(excitation)].ChEx != 0) {
            channel.IsVirtualChannel = true;
        }
    }
}

void CalibrationDataClass::SetKCalTemp(int ch, float value) {
    attenuations_[Index(ch)].KCalTemp = value;
    UpdateTempNorm(ch);
}

void CalibrationDataClass::SetKTempCoeff(int ch, int index, float value) {
    attenuations_[Index(ch)].KTempCoeff[Index(index)] = value;
    UpdateTempNorm(ch);
}

void CalibrationDataClass::UpdateTempNorm(int ch) {
    AttenuationCal& attenuation = attenuations_[Index(ch)];
    constexpr int kLastPower = 5;
    double sum = 0;
    double power = 1;
    for (int i = 0; i <= kLastPower; ++i) {
        sum += static_cast<double>(attenuation.KTempCoeff[Index(i)]) * power;
        power *= static_cast<double>(attenuation.KCalTemp);
    }
    attenuation.KTempNormCoeff = sum;
}

void CalibrationDataClass::SetKkT(int ch, int index, double value) {
    attenuations_[Index(ch)].KkT.Set(index, value, static_cast<double>(attenuations_[Index(ch)].KTPW));
}

void CalibrationDataClass::SetKTPW(int ch, float value) {
    attenuations_[Index(ch)].KTPW = value;
    attenuations_[Index(ch)].KkT.UpdateNorm(static_cast<double>(value));
}

void CalibrationDataClass::SetKP(int ch, int index, double value) {
    AttenuationCal& attenuation = attenuations_[Index(ch)];
    attenuation.KPStored[Index(index)] = value;
    attenuation.KkTauP.UpdateNorm(static_cast<double>(attenuation.KP(2)));
}

void CalibrationDataClass::SetKkTauP(int ch, int index, double value) {
    AttenuationCal& attenuation = attenuations_[Index(ch)];
    attenuation.KkTauP.Set(index, value, static_cast<double>(attenuation.KP(2)));
}

std::string CalibrationDataClass::ChannelName(int ch) const {
    const std::string& name = Channel(ch).name;
    return name.empty() ? "Channel " + std::to_string(ch + 1) : name;
}

int CalibrationDataClass::bChannels() const {
    return IsCorvaneFamily(InstType) || IsTidalFamily(InstType) ? ChannelsShown(InstType) : 0;
}

int CalibrationDataClass::IsReceiverForVirtualChannel(int ch) const {
    return Channel(ch).IsSharedReceiver ? Channel(ch).ChRep : 0;
}

bool CalibrationDataClass::HasOffsets() const {
    return std::any_of(channels_.begin(), channels_.end(), [](const ChannelCal& channel) {
        return AnyOffset(channel.DarkOffset) || AnyOffset(channel.NomOffset) || AnyOffset(channel.FlOffset);
    });
}

std::string CalibrationDataClass::ChangedDescription() const {
    std::string text;
    for (const auto& [item, name] : kItemNames) {
        if ((ChangedItems & item) == 0) continue;
        if (!text.empty()) text += ", ";
        text += name;
    }
    return text;
}

double CalibrationDataClass::OldSigmaK1(int ch, bool salt) const {
    return OrSentinel(SigmaAtWater(Channel(ch), WaterK(Channel(ch).lambda, salt)));
}

void CalibrationDataClass::Copy(const CalibrationDataClass& source) {
    *this = source;
    for (ChannelCal& channel : channels_) {
        channel.IsExcitationForChannel = 0;
        channel.IsSharedReceiver = false;
        channel.IsVirtualChannel = false;
    }
    UpdateVirtualChannels();
}

void CalibrationDataClass::UpdateMuGains() {
    for (int ch = 0; ch < kWalkedChannels; ++ch) {
        ChannelCal& channel = channels_[Index(ch)];
        if (channel.gain[2] == 1.0) channel.MuGain = 2;
        if (channel.gain[1] == 1.0) channel.MuGain = 1;
    }
}

std::vector<std::string> CalibrationDataClass::UpdateSigmaTables(const SigmaParams& params) {
    std::string missingA;
    std::string missingBbTilde;
    for (int ch = 0; ch < kModelChannels; ++ch) {
        ChannelCal& channel = channels_[Index(ch)];
        if (channel.lambda == 0) continue;
        if (const auto a = SigmaA(params, channel.lambda, false)) {
            channel.a = OrSentinel(static_cast<double>(*a));
        } else if (missingA.empty()) {
            missingA = MissingAStarText(params, channel.lambda);
        }
        if (const auto bbTilde = SigmaBbTilde(params, channel.lambda)) {
            channel.bbTilde = *bbTilde;
        } else if (missingBbTilde.empty()) {
            missingBbTilde = MissingBbTildeText(params, channel.lambda);
        }
    }
    std::vector<std::string> messages;
    for (std::string* text : {&missingA, &missingBbTilde}) {
        if (!text->empty()) messages.push_back(std::move(*text));
    }
    return messages;
}

void CalibrationDataClass::UpdateSigmas(const SigmaParams& params, bool salt) {
    constexpr int kSigmaDecimals = 3;
    for (int ch = 0; ch < ChannelCount(); ++ch) {
        ChannelCal& channel = channels_[Index(ch)];
        const double waterK = params.includePurewater ? WaterK(channel.lambda, salt)
                                                      : 0.8 * Purewater().bb(channel.lambda, salt);
        channel.Sigma[0] = OrSentinel(RoundDecimals(SigmaAtWater(channel, waterK), kSigmaDecimals));
    }
}

std::vector<std::string> CalibrationDataClass::CheckAndUpdateAll(const SigmaParams& params,
                                                                 const PureWaterParams& water) {
    UpdateMuGains();
    auto messages = UpdateSigmaTables(params);
    UpdateSigmas(params, water.MorelSalt());
    return messages;
}

std::string CalibrationDataClass::SavedFile() const {
    std::error_code error;
    return !savedFile_.empty() && std::filesystem::exists(savedFile_, error) ? savedFile_ : sourceFile_;
}

}  // namespace marisonde
