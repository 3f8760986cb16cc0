#pragma once

#include "simulator/OutputLine.h"

namespace marisonde::simulator {

/// The water at the instrument.
struct WaterState {
    double depthM = 0;
    double tempC = 0;
    double chlorophyll = 0;  ///< mg per cubic metre
    double sediment = 0;     ///< stirred up from the bottom, 0 none to 1
};

/// A layered sea and an instrument that is lowered to the bottom and hauled up again, 150 s a cycle: warm
/// water above a thermocline near 25 m, a chlorophyll layer near 30 m, sediment over the bottom.
class WaterColumn {
  public:
    explicit WaterColumn(double bottomM) : bottomM_(bottomM) {}
    [[nodiscard]] WaterState At(Nanos sinceOn) const;

  private:
    double bottomM_;
};

/// Backscattering by particles, 1/m; falls with the wavelength.
double ParticleBb(const WaterState& water, double lambdaNm);
/// Attenuation by everything but water, 1/m; falls with the wavelength.
double ParticleC(const WaterState& water, double lambdaNm);
/// Absorption by everything but water, 1/m.
double ParticleA(const WaterState& water, double lambdaNm);
/// Fluorescence in the unit of a backscatter reading: chlorophyll in the red, dissolved matter elsewhere.
double Fluorescence(const WaterState& water, double lambdaNm);

}  // namespace marisonde::simulator
