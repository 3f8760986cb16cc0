#include <gtest/gtest.h>
#include <string>

#include "platform/KeepAwake.h"
#include "support/NotingInhibitor.h"

namespace marisonde {
namespace {

TEST(KeepAwakeTest, TheInhibitorHearsOfChangesOnly) {
    std::string notes;
    KeepAwake awake(std::make_unique<NotingInhibitor>(notes));
    awake.Update(false);
    EXPECT_EQ(notes, "");
    awake.Update(true);
    awake.Update(true);
    EXPECT_EQ(notes, "hold ");
    awake.Update(false);
    awake.Update(false);
    EXPECT_EQ(notes, "hold release ");
}

TEST(KeepAwakeTest, TheEndReleases) {
    std::string notes;
    {
        KeepAwake awake(std::make_unique<NotingInhibitor>(notes));
        awake.Update(true);
    }
    EXPECT_EQ(notes, "hold release ");
}

TEST(KeepAwakeTest, AnotherInhibitorTakesOver) {
    std::string first;
    std::string second;
    KeepAwake awake(std::make_unique<NotingInhibitor>(first));
    awake.Update(true);
    awake.Use(std::make_unique<NotingInhibitor>(second));
    EXPECT_EQ(first, "hold release ");
    awake.Update(true);
    EXPECT_EQ(second, "hold ") << "held once more, for the need goes on";
}

TEST(KeepAwakeTest, WithoutAnInhibitorNothingHappens) {
    KeepAwake awake;
    awake.Update(true);
    awake.Update(false);
}

TEST(KeepAwakeTest, TheSystemsOwnMayHaveNoBus) {
    const auto inhibitor = SystemSleepInhibitor();
    inhibitor->Hold();
    inhibitor->Release();
    inhibitor->Release();
}

}  // namespace
}  // namespace marisonde
