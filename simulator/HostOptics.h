#pragma once

namespace marisonde::simulator {

// What a host assumes about clear sea water unless its user says otherwise. A reading is shown right only if
// the counts were made with the same assumptions, so the instruments invert them here, on their own.

/// Backscattering shown for a beta at 140 degrees: particles by 2 pi chi with chi 1.08, water by half of the
/// fresh-water values at 525 nm, spectral exponent -4.32 (after Morel 1974).
double ShownBb(double beta, double lambdaNm);
/// The inverse of ShownBb.
double BetaForShownBb(double bb, double lambdaNm);
/// The part of ShownBb that is water, 1/m.
double ShownWaterBb(double lambdaNm);
/// Beta of water within ShownBb.
double ShownWaterBeta(double lambdaNm);

/// How a signal shrinks along its path: sigma is what a host multiplies it by.
struct SigmaLaw {
    double exponent = 0;            ///< above 0.0001: sigma = s0 exp(exponent K)
    double linear = 0, square = 0;  ///< else sigma = s0 + linear K + square K^2

    /// s0, three decimals, such that sigma is 1 where K is `clearK`.
    [[nodiscard]] double Constant(double clearK) const;
    [[nodiscard]] double At(double constant, double K) const;
};

/// K in clear water without water's absorption, for SigmaLaw::Constant: 0.8 bb of fresh water.
double ClearK(double lambdaNm);
/// K estimated from an uncorrected backscatter reading, with chlorophyll 0.1 and bb/b 0.015. Known at the
/// wavelengths that the instruments have.
double EstimatedK(double bbUncorrected, double lambdaNm);
/// 1.6 bb of fresh water plus absorption of water (Pope and Fry 1997): K for older readers of calibrations.
double OldClearK(double lambdaNm);

}  // namespace marisonde::simulator
