// What differs between two calibrations, and taking groups of fields from one into another.
#include <cmath>

#include "calibration/CalibrationDataClass.h"
#include "calibration/ChannelRange.h"
#include "common/Numbers.h"

namespace marisonde {

namespace {

constexpr int kDigits = 6;

/// The two calibrations at hand and one channel of them.
struct Pair {
    const CalibrationDataClass& mine;
    const CalibrationDataClass& other;
    int ch = 0;
    [[nodiscard]] const ChannelCal& a() const { return mine.Channel(ch); }
    [[nodiscard]] const ChannelCal& b() const { return other.Channel(ch); }
    [[nodiscard]] const AttenuationCal& atA() const { return mine.Attenuation(ch); }
    [[nodiscard]] const AttenuationCal& atB() const { return other.Attenuation(ch); }
};

bool DifferInDigits(double a, double b) {
    return RoundSignificant(a, kDigits) != RoundSignificant(b, kDigits);
}

bool MuDiffers(const Pair& pair, double rhoTolerance) {
    return DifferInDigits(pair.a().Mu, pair.b().Mu) ||
           std::abs(pair.a().MuRho - pair.b().MuRho) >= rhoTolerance;
}

bool BackscatterMuDiffers(const Pair& pair) {
    return pair.ch < pair.mine.bChannels() && MuDiffers(pair, 0.002);
}

bool FluorescenceMuDiffers(const Pair& pair) {
    return pair.ch >= pair.mine.bChannels() && MuDiffers(pair, 0.005);
}

bool OffsetsDiffer(const Pair& pair) {
    const bool withFluorescence = pair.mine.InstType == InstTypeCode::Corvane6;
    for (std::size_t g = kFirstGain; g <= kLastGain; ++g) {
        if (pair.a().DarkOffset[g] != pair.b().DarkOffset[g] ||
            pair.a().NomOffset[g] != pair.b().NomOffset[g]) {
            return true;
        }
        if (withFluorescence && pair.a().FlOffset[g] != pair.b().FlOffset[g]) return true;
    }
    return false;
}

bool GainsDiffer(const Pair& pair) {
    constexpr double kTolerance = 0.001;
    for (std::size_t g = kFirstGain; g <= kLastGain; ++g) {
        if (std::abs(pair.a().gain[g] - pair.b().gain[g]) > kTolerance) return true;
    }
    return false;
}

bool ReferenceDiffers(const Pair& pair) {
    return pair.a().RNominal != pair.b().RNominal || pair.a().ROutOff != pair.b().ROutOff;
}

bool PolynomialSigmaDiffers(const Pair& pair) {
    for (std::size_t i = 0; i < pair.a().Sigma.size(); ++i) {
        if (DifferInDigits(pair.a().Sigma[i], pair.b().Sigma[i])) return true;
    }
    return false;
}

bool ExponentialSigmaDiffers(const Pair& pair) {
    return DifferInDigits(pair.a().SigmaExp, pair.b().SigmaExp);
}

bool ConfigurationDiffers(const Pair& pair) {
    return pair.atA().KLambda != pair.atB().KLambda || pair.atA().KDeltaLambda != pair.atB().KDeltaLambda ||
           pair.a().lambda != pair.b().lambda || pair.a().name != pair.b().name ||
           pair.atA().KPath != pair.atB().KPath;
}

bool TemperatureDiffers(const Pair& pair) {
    return pair.mine.CalTemp != pair.other.CalTemp || pair.atA().KCalTemp != pair.atB().KCalTemp ||
           pair.atA().KTempCoeff != pair.atB().KTempCoeff ||
           DifferInDigits(pair.a().bTempCoeff, pair.b().bTempCoeff);
}

bool AttenuationDiffers(const Pair& pair) {
    return pair.atA().KChi != pair.atB().KChi || pair.atA().KDepthCoeff != pair.atB().KDepthCoeff ||
           pair.atA().KDepthThresh != pair.atB().KDepthThresh || pair.atA().aPure != pair.atB().aPure ||
           pair.atA().betaPure != pair.atB().betaPure;
}

bool CommentDiffers(const Pair& pair) {
    return pair.mine.Comment != pair.other.Comment;
}

bool IdentificationDiffers(const Pair& pair) {
    return pair.mine.InstType != pair.other.InstType || pair.mine.Label != pair.other.Label ||
           pair.mine.Serial != pair.other.Serial || pair.mine.Config != pair.other.Config;
}

bool DepthDiffers(const Pair& pair) {
    return DifferInDigits(pair.mine.DepthCal, pair.other.DepthCal) ||
           DifferInDigits(pair.mine.DepthOff, pair.other.DepthOff);
}

struct GroupRule {
    std::uint16_t item;
    bool perChannel;
    bool (*differ)(const Pair&);
};
constexpr std::array kGroups{
    GroupRule{CalItems::Comment, false, CommentDiffers},
    GroupRule{CalItems::Mu, true, BackscatterMuDiffers},
    GroupRule{CalItems::FluorescenceMu, true, FluorescenceMuDiffers},
    GroupRule{CalItems::Offset, true, OffsetsDiffer},
    GroupRule{CalItems::Gain, true, GainsDiffer},
    GroupRule{CalItems::Reference, true, ReferenceDiffers},
    GroupRule{CalItems::Identification, false, IdentificationDiffers},
    GroupRule{CalItems::Depth, false, DepthDiffers},
    GroupRule{CalItems::PolynomialSigma, true, PolynomialSigmaDiffers},
    GroupRule{CalItems::ExponentialSigma, true, ExponentialSigmaDiffers},
    GroupRule{CalItems::Configuration, true, ConfigurationDiffers},
    GroupRule{CalItems::TemperatureCoefficient, true, TemperatureDiffers},
    GroupRule{CalItems::AttenuationParams, true, AttenuationDiffers},
};

bool GroupDiffers(const GroupRule& group, const CalibrationDataClass& mine,
                  const CalibrationDataClass& other) {
    for (int ch = 0; ch < (group.perChannel ? kWalkedChannels : 1); ++ch) {
        if (group.differ({mine, other, ch})) return true;
    }
    return false;
}

}  // namespace

std::uint16_t CalibrationDataClass::Compare(const CalibrationDataClass& other, std::uint16_t mask) const {
    unsigned result = 0;
    for (const GroupRule& group : kGroups) {
        if ((mask & group.item) != 0 && GroupDiffers(group, *this, other)) result |= group.item;
    }
    return static_cast<std::uint16_t>(result);
}

void CalibrationDataClass::MergeMu(const CalibrationDataClass& source, int from, int to) {
    for (int ch = from; ch < to; ++ch) {
        SetMu(ch, source.Channel(ch).Mu, source.Channel(ch).MuGain);
        EditChannel(ch).MuRho = source.Channel(ch).MuRho;
    }
}

void CalibrationDataClass::MergeGain(const CalibrationDataClass& source, int ch) {
    ChannelCal& channel = channels_[static_cast<std::size_t>(ch)];
    const auto& gains = source.Channel(ch).gain;
    channel.gain = gains;
    if (channel.MuGain < kFirstGain || channel.MuGain > kLastGain) return;
    const double reference = gains[static_cast<std::size_t>(channel.MuGain)];
    for (std::size_t g = kFirstGain; g <= kLastGain; ++g) {
        channel.gain[g] = reference == 0 ? 1 : RoundSignificant(channel.gain[g] / reference, kDigits);
    }
}

void CalibrationDataClass::Merge(const CalibrationDataClass& source, std::uint16_t mask) {
    sourceFile_ = "[multiple sources]";
    const auto takes = [mask](std::uint16_t item) { return (mask & item) != 0; };
    if (takes(CalItems::Mu)) {
        MergeMu(source, 0, bChannels());
        CalTemp = source.CalTemp;
    }
    if (takes(CalItems::FluorescenceMu)) MergeMu(source, bChannels(), ChannelCount());
    for (int ch = 0; ch < kWalkedChannels; ++ch) {
        const ChannelCal& from = source.Channel(ch);
        if (takes(CalItems::ExponentialSigma)) {
            SetSigmaExp(ch, from.SigmaExp);
            SetSigma(ch, 0, from.Sigma[0]);
        }
        if (takes(CalItems::PolynomialSigma)) channels_[static_cast<std::size_t>(ch)].Sigma = from.Sigma;
        if (takes(CalItems::Offset)) {
            EditChannel(ch).DarkOffset = from.DarkOffset;
            EditChannel(ch).NomOffset = from.NomOffset;
            EditChannel(ch).FlOffset = from.FlOffset;
        }
        if (takes(CalItems::Gain)) MergeGain(source, ch);
    }
    if (takes(CalItems::Depth)) {
        DepthCal = source.DepthCal;
        DepthOff = source.DepthOff;
    }
    if (takes(CalItems::Identification)) {
        InstType = source.InstType;
        Serial = source.Serial;
        Config = source.Config;
        Label = source.Label;
        MaxDepth = source.MaxDepth;
    }
}

}  // namespace marisonde
