#pragma once

#include <optional>

#include "common/Settings.h"

namespace marisonde {

/// Whose pure water is taken out of the signal. The names stand in files.
enum class PureWaterChoice { MorelSalt, MorelFresh, Custom, NoPure, VenmarkRecommended };

/// How beta becomes bb; one per application.
struct PureWaterParams {
    bool UseCalChi = false;  ///< chi is the calibration's beta2bb
    float chi = 1.08F;       ///< chi used otherwise
    PureWaterChoice Choice = PureWaterChoice::MorelFresh;
    float lambda0 = 525;            ///< reference wavelength, nm
    float beta0 = 0;                ///< beta of water at lambda0, 1/(m sr)
    float bb0 = 0;                  ///< bb of water at lambda0, 1/m
    float gammaLambda = 4.32F;      ///< spectral exponent
    bool WriteBetaColumns = false;  ///< also write beta columns into calibrated files

    [[nodiscard]] bool MorelSalt() const { return Choice == PureWaterChoice::MorelSalt; }
    bool operator==(const PureWaterParams&) const = default;
};

/// Parameters of a new user: beta0 and bb0 are half of fresh water at 525 nm and 140 degrees.
PureWaterParams DefaultPureWaterParams();
/// Water values that a choice of model stands for.
struct WaterValues {
    float lambda0;
    float beta0;
    float bb0;
    float gammaLambda;
};
/// Those of fresh water, sea water or the mean of both, at 525 nm and 140 degrees; none for the other
/// choices.
std::optional<WaterValues> WaterOfModel(PureWaterChoice choice);
/// Section "bbPrefs". Missing keys give the defaults above; a bad number reads as 0.
PureWaterParams LoadPureWaterParams(const Settings& settings);
void SavePureWaterParams(Settings& settings, const PureWaterParams& params);

/// What BetaToBb needs of the parameters and one channel, computed once: bb = (beta - betaWater) x c +
/// bbWater.
struct BetaToBbTerms {
    double c = 0;
    double betaWater = 0;
    double bbWater = 0;

    /// Rounded to 32 bits; infinite or not a number when it fails.
    [[nodiscard]] float operator()(double beta) const {
        return static_cast<float>((beta - betaWater) * c + bbWater);
    }
};
BetaToBbTerms PrepareBetaToBb(const PureWaterParams& params, double lambda, double beta2bb);

/// bb, 1/m, from beta, 1/(m sr), of a channel at `lambda` nm. `beta2bb` at 3 or above holds 2 pi chi, below
/// it chi.
float BetaToBb(const PureWaterParams& params, double beta, double lambda, double beta2bb);
/// beta of pure water at `lambda` nm; 0 for wavelength 0.
double BetaPureAt(const PureWaterParams& params, double lambda);

}  // namespace marisonde
