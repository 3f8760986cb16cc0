#include "optics/PureWaterParams.h"

#include <array>
#include <cmath>
#include <string>
#include <string_view>

#include "common/ConversionUtils.h"
#include "common/Numbers.h"
#include "optics/PurewaterClass.h"

namespace marisonde {

namespace {

constexpr std::string_view kSection = "bbPrefs";
constexpr double kReferenceLambda = 525;
constexpr double kReferenceTheta = 140;
constexpr float kReferenceExponent = 4.32F;

struct NumberKey {
    std::string_view key;
    float PureWaterParams::*field;
};
constexpr std::array kNumberKeys{
    NumberKey{"beta0", &PureWaterParams::beta0},     NumberKey{"bb0", &PureWaterParams::bb0},
    NumberKey{"chi", &PureWaterParams::chi},         NumberKey{"gammaLambda", &PureWaterParams::gammaLambda},
    NumberKey{"lambda0", &PureWaterParams::lambda0},
};

struct FlagKey {
    std::string_view key;
    bool PureWaterParams::*field;
};
constexpr std::array kFlagKeys{
    FlagKey{"useCalFileChi", &PureWaterParams::UseCalChi},
    FlagKey{"IncludeBetaInDatFiles", &PureWaterParams::WriteBetaColumns},
};

struct ChoiceKey {
    std::string_view key;
    PureWaterChoice choice;
};
/// MorelFresh comes last: it is the default of a missing key and must not hide a choice that was stored.
constexpr std::array kChoiceKeys{
    ChoiceKey{"MorelSalt", PureWaterChoice::MorelSalt},
    ChoiceKey{"CustomPure", PureWaterChoice::Custom},
    ChoiceKey{"NoPure", PureWaterChoice::NoPure},
    ChoiceKey{"VenmarkRecommended", PureWaterChoice::VenmarkRecommended},
    ChoiceKey{"MorelFresh", PureWaterChoice::MorelFresh},
};

std::string_view FlagText(bool flag) {
    return flag ? "TRUE" : "FALSE";
}
bool IsTrue(std::string_view text) {
    return EqualIgnoringCase(Trim(text), "TRUE");
}

PureWaterChoice LoadChoice(const Settings& settings) {
    for (const auto& [key, choice] : kChoiceKeys) {
        if (IsTrue(settings.GetSetting(kSection, key, "FALSE"))) return choice;
    }
    return PureWaterChoice::MorelFresh;
}

/// Spectral weight of the water values given at lambda0.
double WaterWeight(const PureWaterParams& params, double lambda) {
    return lambda == 0 ? 0 : std::pow(static_cast<double>(params.lambda0) / lambda, params.gammaLambda);
}

}  // namespace

std::optional<WaterValues> WaterOfModel(PureWaterChoice choice) {
    const auto beta = [](bool salt) {
        return static_cast<double>(Purewater().beta(kReferenceLambda, kReferenceTheta, salt));
    };
    const auto bb = [](bool salt) { return Purewater().bb(kReferenceLambda, salt); };
    const auto values = [](double beta0, double bb0) {
        return WaterValues{static_cast<float>(kReferenceLambda), static_cast<float>(beta0),
                           static_cast<float>(bb0), kReferenceExponent};
    };
    switch (choice) {
        case PureWaterChoice::MorelFresh:
            return values(beta(false), bb(false));
        case PureWaterChoice::MorelSalt:
            return values(beta(true), bb(true));
        case PureWaterChoice::VenmarkRecommended:
            return values((beta(false) + beta(true)) / 2, (bb(false) + bb(true)) / 2);
        case PureWaterChoice::Custom:
        case PureWaterChoice::NoPure:
            break;
    }
    return std::nullopt;
}

PureWaterParams DefaultPureWaterParams() {
    const auto water = WaterOfModel(PureWaterChoice::MorelFresh);
    PureWaterParams params;
    params.beta0 = water->beta0 / 2;
    params.bb0 = water->bb0 / 2;
    return params;
}

PureWaterParams LoadPureWaterParams(const Settings& settings) {
    PureWaterParams params = DefaultPureWaterParams();
    for (const auto& [key, field] : kNumberKeys) {
        const std::string text = settings.GetSetting(kSection, key, NumberText(params.*field));
        params.*field = static_cast<float>(SafeVal(text));
    }
    for (const auto& [key, field] : kFlagKeys) {
        params.*field = IsTrue(settings.GetSetting(kSection, key, "FALSE"));
    }
    params.Choice = LoadChoice(settings);
    return params;
}

void SavePureWaterParams(Settings& settings, const PureWaterParams& params) {
    for (const auto& [key, field] : kNumberKeys)
        settings.SaveSetting(kSection, key, NumberText(params.*field));
    for (const auto& [key, field] : kFlagKeys) settings.SaveSetting(kSection, key, FlagText(params.*field));
    for (const auto& [key, choice] : kChoiceKeys) {
        settings.SaveSetting(kSection, key, FlagText(params.Choice == choice));
    }
}

BetaToBbTerms PrepareBetaToBb(const PureWaterParams& params, double lambda, double beta2bb) {
    constexpr double kTwoPi = 6.2832;
    BetaToBbTerms terms;
    if (params.UseCalChi) {
        terms.c = beta2bb >= 3 ? beta2bb : beta2bb * kTwoPi;
    } else {
        terms.c = static_cast<double>(params.chi) * kTwoPi;
    }
    const double weight = WaterWeight(params, lambda);
    terms.betaWater = static_cast<double>(params.beta0) * weight;
    terms.bbWater = static_cast<double>(params.bb0) * weight;
    return terms;
}

float BetaToBb(const PureWaterParams& params, double beta, double lambda, double beta2bb) {
    return PrepareBetaToBb(params, lambda, beta2bb)(beta);
}

double BetaPureAt(const PureWaterParams& params, double lambda) {
    return static_cast<double>(params.beta0) * WaterWeight(params, lambda);
}

}  // namespace marisonde
