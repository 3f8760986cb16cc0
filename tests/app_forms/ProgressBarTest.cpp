#include <gtest/gtest.h>

#include "app/forms/ProgressBar.h"

namespace marisonde {
namespace {

TEST(ProgressBarTest, TheShareOfAFileIsFromNothingToAll) {
    EXPECT_EQ(ShareDone({0, 0}), 0);
    EXPECT_EQ(ShareDone({0, 200}), 0);
    EXPECT_EQ(ShareDone({50, 200}), 0.25);
    EXPECT_EQ(ShareDone({200, 200}), 1);
}

TEST(ProgressBarTest, ShowsSharesFinerThanPercent) {
    ProgressBar bar(nullptr, "Bar", "Progress of a test");
    EXPECT_EQ(bar.objectName(), "Bar");
    EXPECT_EQ(bar.accessibleName(), "Progress of a test");
    bar.ShowShare(0);
    EXPECT_EQ(bar.value(), bar.minimum());
    bar.ShowShare(0.502);
    const int half = bar.value();
    bar.ShowShare(0.504);
    EXPECT_GT(bar.value(), half);
    bar.ShowShare(1);
    EXPECT_EQ(bar.value(), bar.maximum());
}

TEST(ProgressBarTest, AFileThatGrowsWhileItIsReadFillsTheBar) {
    ProgressBar bar(nullptr, "Bar", "Progress of a test");
    bar.ShowShare(ShareDone({199, 200}));
    bar.ShowShare(ShareDone({230, 200}));
    EXPECT_EQ(bar.value(), bar.maximum());
}

}  // namespace
}  // namespace marisonde
