#pragma once

#include <cmath>
#include <span>

namespace marisonde::simulator {

/// Half a count is the next one.
inline int Rounded(double value) {
    return static_cast<int>(std::lround(value));
}

/// c0 + c1 x + c2 x^2 and so on.
inline double Polynomial(std::span<const double> coefficients, double x) {
    double sum = 0;
    for (auto it = coefficients.rbegin(); it != coefficients.rend(); ++it) sum = sum * x + *it;
    return sum;
}

}  // namespace marisonde::simulator
