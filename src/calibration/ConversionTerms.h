#pragma once

// Arithmetic that all paths of the conversion share, and the parts of Converter that each of them inlines.
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include "calibration/Converter.h"
#include "common/Numbers.h"

namespace marisonde::conversion {

inline constexpr int kFirstGain = 1;
inline constexpr int kLastGain = 5;
inline constexpr double kFailed = std::numeric_limits<double>::quiet_NaN();

/// Infinite or not a number.
inline bool Failed(double value) {
    return !(std::abs(value) <= std::numeric_limits<double>::max());
}

/// 64 bits: what failed is the sentinel.
inline double OrSentinel(double value) {
    return Failed(value) ? kSentinel : value;
}

/// To 32 bits; what failed or does not fit is the sentinel.
inline float Single(double value) {
    const auto single = static_cast<float>(value);
    return std::abs(single) <= std::numeric_limits<float>::max() ? single : kSentinelF;
}

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
