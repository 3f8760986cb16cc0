#include <cmath>
#include <gtest/gtest.h>

#include "common/Numbers.h"
#include "optics/OrcaParams.h"

namespace marisonde {
namespace {

TEST(OrcaDistanceTest, IsTheLogarithmOfTheRatioOverTheAttenuation) {
    EXPECT_NEAR(OrcaDistance(1, {}), 0.99325, 0.000005);
    EXPECT_NEAR(OrcaDistance(0.25, {}), 3.97301, 0.000005);
    EXPECT_NEAR(OrcaDistance(1, {10, 0.02}), 2.302585, 0.0000005);
    EXPECT_NEAR(OrcaDistance(1, {0.5, 0.02}), -0.693147, 0.0000005);
}

TEST(OrcaDistanceTest, WithoutAMeaningItIsTheSentinel) {
    for (const double K : {0.0, -0.1, std::nan("")}) EXPECT_EQ(OrcaDistance(K, {}), kSentinel) << K;
    EXPECT_EQ(OrcaDistance(1, {0, 0.02}), kSentinel);
    EXPECT_EQ(OrcaDistance(1, {-1, 0.02}), kSentinel);
    EXPECT_EQ(OrcaDistance(1, {2.7, 1}), kSentinel);
    EXPECT_NE(OrcaDistance(1, {2.7, 0.99}), kSentinel);
}

}  // namespace
}  // namespace marisonde
