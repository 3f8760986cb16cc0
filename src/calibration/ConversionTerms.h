#pragma once

// Arithmetic that all paths of the conversion share, and the parts of Converter that each of them inlines.
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include "calibration/ChannelRange.h"
#include "calibration/Converter.h"
#include "calibration/Sentinel.h"

namespace marisonde::conversion {

inline constexpr double kFailed = std::numeric_limits<double>::quiet_NaN();

/// A divisor that failed must not pass as a quotient of 0.
inline double Divide(double a, double b) {
    return Failed(b) ? kFailed : a / b;
}

/// Of degree 5, coefficients from the constant on.
inline double Polynomial(const std::array<double, 6>& coefficients, double x) {
    double sum = coefficients[0];
    double power = x;
    for (std::size_t i = 1; i < coefficients.size(); ++i) {
        sum += coefficients[i] * power;
        power *= x;
    }
    return sum;
}

}  // namespace marisonde::conversion

namespace marisonde {

inline double Converter::SigmaTerms::At(double K) const {
    return exponential ? s0 * std::exp(exponent * K) : s0 + s1 * K + s2 * (K * K);
}

inline double Converter::ModelTerms::At(double bbUncorr, bool withWater) const {
    return withWater ? offset + 0.4 * bbUncorr / bbTilde : (bbUncorr - water) * 0.4 / bbTilde + offset;
}

}  // namespace marisonde
