#pragma once

namespace marisonde {

/// Scattering (after Morel 1974) and absorption (after Pope and Fry 1997) of water without particles.
/// `salt` chooses sea water; wavelengths in nm, angles in degrees.
class PurewaterClass {
  public:
    virtual ~PurewaterClass() = default;
    /// Backscattering coefficient, 1/m; 0 for wavelength 0.
    [[nodiscard]] virtual double bb(double lambda, bool salt) const;
    /// Volume scattering function at `theta`, 1/(m sr); 0 for wavelength 0.
    [[nodiscard]] virtual float beta(double lambda, double theta, bool salt) const;
    /// Absorption coefficient, 1/m: linear between rows of 5 nm from 380 to 730 nm, held constant beyond
    /// them.
    [[nodiscard]] virtual double a(double lambda) const;
};

/// The one model of the program.
const PurewaterClass& Purewater();

}  // namespace marisonde
