#include "optics/PurewaterClass.h"

#include <array>
#include <cmath>

namespace marisonde {

namespace {

constexpr double kFirstLambda = 380;
constexpr double kStep = 5;
/// Absorption of water, 1/m, from 380 to 730 nm.
constexpr std::array kAbsorption{
    0.01137, 0.00941, 0.00851, 0.00813, 0.00663, 0.0053,  0.00473, 0.00444, 0.00454, 0.00478, 0.00495, 0.0053,
    0.00635, 0.00751, 0.00922, 0.00962, 0.00979, 0.01011, 0.0106,  0.0114,  0.0127,  0.0136,  0.0151,  0.0173,
    0.0204,  0.0256,  0.0325,  0.0396,  0.0409,  0.0417,  0.0434,  0.0452,  0.0474,  0.0511,  0.0565,  0.0596,
    0.0619,  0.0642,  0.0695,  0.0772,  0.0896,  0.11,    0.1351,  0.1672,  0.2224,  0.2577,  0.2644,  0.2678,
    0.2755,  0.2834,  0.2916,  0.3012,  0.3108,  0.325,   0.34,    0.371,   0.41,    0.429,   0.439,   0.448,
    0.465,   0.486,   0.516,   0.559,   0.624,   0.704,   0.827,   1.007,   1.231,   1.489,   2.0};
static_assert(kAbsorption.size() == 71);
constexpr double kLastLambda = kFirstLambda + kStep * (kAbsorption.size() - 1);

/// The model's own constant, kept so that published values come out to the last digit.
constexpr double kDegree = 3.1415926 / 180;
constexpr double kSeaWater = 0.000146;
constexpr double kFreshWater = 0.000112;
/// 2 pi times the integral over the back half-space of the angular term, relative to 90 degrees.
constexpr double kBackscatterIntegral = 8.03;

}  // namespace

float PurewaterClass::beta(double lambda, double theta, bool salt) const {
    if (lambda == 0) return 0;
    const double cosine = std::cos(theta * kDegree);
    return static_cast<float>(std::pow(525 / lambda, 4.32) * (salt ? kSeaWater : kFreshWater) *
                              (1 + 0.835 * (cosine * cosine)));
}

double PurewaterClass::bb(double lambda, bool salt) const {
    return static_cast<double>(beta(lambda, 90, salt)) * kBackscatterIntegral;
}

double PurewaterClass::a(double lambda) const {
    if (!(lambda > kFirstLambda)) return kAbsorption.front();
    if (lambda >= kLastLambda) return kAbsorption.back();
    const auto row = static_cast<std::size_t>(std::floor((lambda - kFirstLambda) / kStep));
    const double rowLambda = kFirstLambda + kStep * static_cast<double>(row);
    if (lambda == rowLambda) return kAbsorption[row];
    return kAbsorption[row] + (lambda - rowLambda) / kStep * (kAbsorption[row + 1] - kAbsorption[row]);
}

const PurewaterClass& Purewater() {
    static const PurewaterClass water;
    return water;
}

}  // namespace marisonde
