#pragma once

namespace marisonde::simulator {

/// How a signal shrinks along its path: sigma is what a host multiplies it by.
struct SigmaLaw {
    double exponent = 0;            ///< above 0.0001: sigma = s0 exp(exponent K)
    double linear = 0, square = 0;  ///< else sigma = s0 + linear K + square K^2
};

/// What a host shows for one backscatter channel unless its user chose other assumptions about clear sea
/// water. A reading is shown right only if the counts were made with the same assumptions, so the instruments
/// invert them here, on their own. Known at the wavelengths that the instruments have.
class HostView {
  public:
    HostView(double lambdaNm, const SigmaLaw& law);

    /// bb, 1/m, shown for a beta at 140 degrees: particles by 2 pi chi with chi 1.08, water by half of the
    /// fresh-water values at 525 nm with the spectral exponent -4.32 (after Morel 1974).
    [[nodiscard]] double ShownBb(double beta) const;
    /// The inverse of ShownBb.
    [[nodiscard]] double BetaFor(double shownBb) const;
    /// The water within ShownBb, 1/m, and its beta.
    [[nodiscard]] double WaterBb() const { return waterBb_; }
    [[nodiscard]] double WaterBeta() const { return waterBeta_; }

    /// Sigma, 1 in clear water, where the attenuation of the path is `K`, 1/m.
    [[nodiscard]] double SigmaAt(double K) const;
    /// Sigma where K is estimated from the reading itself, with chlorophyll 0.1 and bb/b 0.015.
    [[nodiscard]] double SigmaOf(double uncorrectedBeta) const;
    /// The beta that a host corrects to `beta` by SigmaOf.
    [[nodiscard]] double Uncorrected(double beta) const;

  private:
    SigmaLaw law_;
    double waterBb_, waterBeta_;
    double freshBb_;     ///< all of fresh water's
    double absorption_;  ///< of clear ocean without water itself, 1/m
    double s0_;          ///< three decimals
};

/// Sigma in clear water with all of its K, for readers of old calibrations: 1.6 bb of fresh water plus
/// absorption of water (Pope and Fry 1997).
double OldSigma(double lambdaNm, const SigmaLaw& law);

}  // namespace marisonde::simulator
