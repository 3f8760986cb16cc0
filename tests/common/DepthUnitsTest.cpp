#include <gtest/gtest.h>

#include "common/DepthUnits.h"

namespace marisonde {
namespace {

// 39.37 inches are a metre, 12 inches a foot: 12.5 m are 492.125 inches.
TEST(DepthUnitsTest, FeetAndMetersAreTurnedIntoEachOther) {
    EXPECT_NEAR(FeetFromMeters(12.5), 41.010416667, 5e-10);
    EXPECT_NEAR(FeetFromMeters(-2), -6.561666667, 5e-10);
    EXPECT_NEAR(MetersFromFeet(41.010416667), 12.5, 5e-10);
    EXPECT_NEAR(MetersFromFeet(1), 0.304800610, 5e-10);
}

TEST(DepthUnitsTest, ADepthIsShownInTheUnitOfTheUser) {
    EXPECT_EQ(ShownDepth(12.5, true), 12.5);
    EXPECT_EQ(ShownDepth(12.5, false), FeetFromMeters(12.5));
    EXPECT_EQ(ShownDepth(0, false), 0);
}

}  // namespace
}  // namespace marisonde
