#include <gtest/gtest.h>
#include <limits>

#include "calibration/Sentinel.h"

namespace marisonde {
namespace {

TEST(SentinelTest, WhatFailedIsNoValueOfEitherWidth) {
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const double failed : {OrSentinel(kNan), OrSentinel(-kInfinity), OrSentinel(kInfinity),
                                static_cast<double>(Single(kNan)), static_cast<double>(Single(1e39)),
                                static_cast<double>(Single(-1e39)), kNan, -kInfinity, 1e300, -1e300})
        EXPECT_FALSE(IsValue(failed)) << failed;
}

TEST(SentinelTest, EveryNumberThatFitsInto32BitsIsAValue) {
    constexpr float kLargest = std::numeric_limits<float>::max();
    for (const float value : {0.0F, -0.0F, 1e-45F, -12.5F, kLargest, -kLargest}) {
        EXPECT_TRUE(IsValue(static_cast<double>(Single(static_cast<double>(value))))) << value;
        EXPECT_EQ(OrSentinel(static_cast<double>(value)), static_cast<double>(value));
    }
    EXPECT_TRUE(IsValue(9.99e299));
}

}  // namespace
}  // namespace marisonde
