#include "simulator/WaterColumn.h"

#include <algorithm>
#include <cmath>

namespace marisonde::simulator {

namespace {

constexpr double kTwoPi = 6.28318530717958648;
constexpr double kLoweringS = 90;
constexpr double kHaulingS = 60;
constexpr double kCycleS = kLoweringS + kHaulingS;

/// 0 at the surface, 1 at the bottom; the winch speeds up and slows down smoothly.
double Lowered(double seconds) {
    const double t = std::fmod(seconds, kCycleS);
    const double half = t < kLoweringS ? t / kLoweringS : 1 + (t - kLoweringS) / kHaulingS;
    return 0.5 * (1 - std::cos(kTwoPi / 2 * half));
}

double Bell(double x) {
    return std::exp(-x * x);
}

double ByWavelength(double lambdaNm, double slope) {
    return std::pow(550 / lambdaNm, slope);
}

}  // namespace

WaterState WaterColumn::At(Nanos sinceOn) const {
    const double seconds = std::chrono::duration<double>(sinceOn).count();
    const double swell = 0.15 * std::sin(kTwoPi * seconds / 7);
    // An internal wave lifts and sinks all layers by two metres within ten minutes.
    const double lift = 2 * std::sin(kTwoPi * seconds / 600);
    WaterState water;
    water.depthM = std::max(0.0, bottomM_ * Lowered(seconds) + swell);
    water.tempC = 8 + 10 / (1 + std::exp((water.depthM - 25 - lift) / 4));
    water.chlorophyll = 0.1 + 0.2 * std::exp(-water.depthM / 40) + 2.2 * Bell((water.depthM - 30 - lift) / 7);
    water.sediment = std::min(1.0, std::exp((water.depthM - bottomM_) / 7));
    return water;
}

double ParticleBb(const WaterState& water, double lambdaNm) {
    const double at550 = 0.0006 + 0.0016 * water.chlorophyll + 0.011 * water.sediment;
    return at550 * ByWavelength(lambdaNm, 1.1);
}

double ParticleC(const WaterState& water, double lambdaNm) {
    return (0.08 + 0.4 * water.chlorophyll + 1.3 * water.sediment) * ByWavelength(lambdaNm, 0.7);
}

double ParticleA(const WaterState& water, double lambdaNm) {
    const double at440 = 0.02 + 0.06 * std::pow(water.chlorophyll, 0.65) + 0.15 * water.sediment;
    return at440 * std::exp(-0.012 * (lambdaNm - 440));
}

double Fluorescence(const WaterState& water, double lambdaNm) {
    if (lambdaNm > 640) return 0.0004 + 0.005 * water.chlorophyll;
    return 0.0006 + 0.0012 * std::exp(-water.depthM / 60) + 0.0003 * water.chlorophyll;
}

}  // namespace marisonde::simulator
