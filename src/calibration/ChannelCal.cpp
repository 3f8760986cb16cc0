#include "calibration/ChannelCal.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace marisonde {

void NormalizedPolynomial::Set(int i, double value, double reference) {
    stored_[static_cast<std::size_t>(i)] = value;
    UpdateNorm(reference);
}

void NormalizedPolynomial::UpdateNorm(double reference) {
    double sum = 0;
    double magnitude = 0;
    double power = 1;
    for (const double coefficient : stored_) {
        const double term = coefficient * power;
        sum += term;
        magnitude += std::abs(term);
        power *= reference;
    }
    // Coefficients that were normalised before sum up to 1 but for the rounding of the sum itself; dividing
    // by that again would change their last digit each time a file is loaded and saved.
    constexpr double kRounding = 64 * std::numeric_limits<double>::epsilon();
    constexpr double kWidest = 1e-9;
    const bool isOne = std::abs(sum - 1) <= std::min(kRounding * magnitude, kWidest);
    norm_ = !std::isfinite(sum) ? 0 : isOne ? 1 : sum;
}

}  // namespace marisonde
