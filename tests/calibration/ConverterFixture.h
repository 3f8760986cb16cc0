#pragma once

#include <cmath>
#include <gtest/gtest.h>

#include "calibration/Converter.h"

namespace marisonde {

using Cal = CalibrationDataClass;

/// a at 525 nm: 0.06 x 0.5 x 1 x (1 + 0.2 exp(-0.014 x 85) = 1.0608442) = 0.03182533; bbTilde 0.02.
inline SigmaParams Model() {
    SigmaParams params;
    params.aStarValue = 0.5;
    params.C = 1;
    params.ad400 = 0;
    params.bbTildeValue = 0.02;
    return params;
}

/// chi from the calibration, and no water in beta.
inline PureWaterParams NoWater() {
    PureWaterParams water;
    water.UseCalChi = true;
    water.Choice = PureWaterChoice::NoPure;
    return water;
}

inline constexpr double kTiny = 2e-7;  ///< relative: K is held in 32 bits

inline void ExpectClose(double actual, double expected) {
    EXPECT_NEAR(actual, expected, kTiny * std::abs(expected));
}

}  // namespace marisonde
