#pragma once

#include <cmath>
#include <limits>

#include "common/Numbers.h"

namespace marisonde {

/// Whether a value of a sample or a graph is one. From 1e300 on stand the sentinels of arithmetic that
/// failed, of 64 and of 32 bits.
inline bool IsValue(double value) {
    constexpr double kFirstFailed = 1e300;
    return value > -kFirstFailed && value < kFirstFailed;
}

/// Infinite or not a number.
inline bool Failed(double value) {
    return !(std::abs(value) <= std::numeric_limits<double>::max());
}

/// 64 bits: what failed is the sentinel.
inline double OrSentinel(double value) {
    return Failed(value) ? kSentinel : value;
}

/// To 32 bits; what failed or does not fit is the sentinel, also where it is negative: files show it without
/// a sign.
inline float Single(double value) {
    const auto single = static_cast<float>(value);
    return std::abs(single) <= std::numeric_limits<float>::max() ? single : kSentinelF;
}

}  // namespace marisonde
