#include "simulator/HostOptics.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace marisonde::simulator {

namespace {

constexpr double kTwoPiChi = 6.2832 * 1.08;
constexpr double kFreshBeta90 = 0.000112;  // at 525 nm
constexpr double kFreshBb = kFreshBeta90 * 8.03;
constexpr double kShareOf140 = 1.489998;  // 1 + 0.835 cos^2(140 degrees); cos = -0.766044
constexpr double kHalfBeta = kFreshBeta90 * kShareOf140 / 2;
constexpr double kHalfBb = kFreshBb / 2;
constexpr double kBbRatio = 0.015;

struct Absorption {
    int lambdaNm;
    double water;        ///< 1/m
    double chlorophyll;  ///< specific, 1 at 440 nm (Prieur and Sathyendranath 1981)
};
constexpr std::array kAbsorption{
    Absorption{420, 0.00454, 0.913}, Absorption{440, 0.00635, 1.0},  Absorption{470, 0.0106, 0.87},
    Absorption{510, 0.0325, 0.618},  Absorption{530, 0.0434, 0.474}, Absorption{550, 0.0565, 0.357},
    Absorption{620, 0.2755, 0.276},  Absorption{700, 0.624, 0.215},
};

const Absorption& AbsorptionAt(double lambdaNm) {
    const auto* row = std::find_if(kAbsorption.begin(), kAbsorption.end(),
                                   [&](const Absorption& a) { return a.lambdaNm >= lambdaNm; });
    return row == kAbsorption.end() ? kAbsorption.back() : *row;
}

double WaterShare(double lambdaNm) {
    return std::pow(525 / lambdaNm, 4.32);
}

/// Clear ocean: chlorophyll 0.1, detritus 0.01 at 400 nm, yellow substance as a fifth at 440 nm.
double ClearAbsorption(double lambdaNm) {
    const double chlorophyll = 0.06 * AbsorptionAt(lambdaNm).chlorophyll * std::pow(0.1, 0.65);
    return chlorophyll * (1 + 0.2 * std::exp(-0.014 * (lambdaNm - 440))) +
           0.01 * std::exp(-0.011 * (lambdaNm - 400));
}

double SigmaBy(const SigmaLaw& law, double constant, double K) {
    if (law.exponent > 0.0001) return constant * std::exp(law.exponent * K);
    return constant + law.linear * K + law.square * K * K;
}

/// The signal that is left where sigma brings it back to 1.
double LeftAt(const SigmaLaw& law, double K) {
    if (law.exponent > 0.0001) return std::exp(-law.exponent * K);
    return 1 - law.linear * K - law.square * K * K;
}

}  // namespace

HostView::HostView(double lambdaNm, const SigmaLaw& law)
    : law_(law),
      waterBb_(kHalfBb * WaterShare(lambdaNm)),
      waterBeta_(kHalfBeta * WaterShare(lambdaNm)),
      freshBb_(kFreshBb * WaterShare(lambdaNm)),
      absorption_(ClearAbsorption(lambdaNm)),
      s0_(std::round(1000 * LeftAt(law, 0.8 * freshBb_)) / 1000) {}

double HostView::ShownBb(double beta) const {
    return (beta - waterBeta_) * kTwoPiChi + waterBb_;
}
double HostView::BetaFor(double shownBb) const {
    return (shownBb - waterBb_) / kTwoPiChi + waterBeta_;
}
double HostView::SigmaAt(double K) const {
    return SigmaBy(law_, s0_, K);
}

double HostView::SigmaOf(double uncorrectedBeta) const {
    return SigmaAt((ShownBb(uncorrectedBeta) - freshBb_) * 0.4 / kBbRatio + absorption_);
}

double HostView::Uncorrected(double beta) const {
    // Sigma depends so weakly on the reading that each round gains more than a decimal.
    double uncorrected = beta;
    for (int round = 0; round < 6; ++round) uncorrected = beta / SigmaOf(uncorrected);
    return uncorrected;
}

double OldSigma(double lambdaNm, const SigmaLaw& law) {
    return LeftAt(law, 1.6 * kFreshBb * WaterShare(lambdaNm) + AbsorptionAt(lambdaNm).water);
}

}  // namespace marisonde::simulator
