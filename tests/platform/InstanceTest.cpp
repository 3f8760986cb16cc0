#include <QProcess>
#ifdef Q_OS_UNIX
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#endif
#include <gtest/gtest.h>
#include <memory>
#include <set>
#include <string>

#include "platform/Instance.h"
#include "support/ReadOnlyFolder.h"
#include "support/TestFolder.h"

namespace marisonde {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

class InstanceTest : public testing::Test {
  protected:
    InstancePlaces Places() { return {{temporary.Path()}, user / "recovered"}; }
    std::unique_ptr<Instance> Start() { return std::make_unique<Instance>(Places(), settings); }
    [[nodiscard]] std::string Stored() const { return settings.GetSetting("App", "Instance", "none"); }
    /// The folder that this user's copies share, found by starting one.
    fs::path Root() { return Start()->Folder().parent_path(); }

    TestFolder temporary;
    TestFolder user;
    MapSettings settings;
};

TEST_F(InstanceTest, TheFirstCopyIsNumberOneWhateverIsStored) {
    settings.SaveSetting("App", "Instance", "7");
    const auto first = Start();
    EXPECT_FALSE(first->PrevInstance());
    EXPECT_EQ(first->Number(), 1);
    EXPECT_EQ(Stored(), "1");
    EXPECT_EQ(first->Folder().filename(), "1");
    EXPECT_TRUE(fs::is_directory(first->Folder()));
    EXPECT_EQ(first->Problem(), "");
}

TEST_F(InstanceTest, ALaterCopyTakesTheStoredNumberPlusOne) {
    const auto first = Start();
    auto second = Start();
    EXPECT_TRUE(second->PrevInstance());
    EXPECT_EQ(second->Number(), 2);
    const auto third = Start();
    EXPECT_EQ(third->Number(), 3);
    second.reset();
    // 2 is free again, but the stored number is 3.
    EXPECT_EQ(Start()->Number(), 4);
}

TEST_F(InstanceTest, AStoredNumberThatIsLostOrBadNeverLeadsIntoAnothersFolder) {
    const auto first = Start();
    for (const char* stored : {"", "abc", "0", "-5", "1e300"}) {
        settings.SaveSetting("App", "Instance", stored);
        const auto second = Start();
        EXPECT_GT(second->Number(), 1) << stored;
        EXPECT_NE(second->Folder(), first->Folder()) << stored;
        EXPECT_EQ(second->Problem(), "") << stored;
    }
}

TEST_F(InstanceTest, AfterAllHaveEndedNothingIsLeftAndNumbersBeginAgain) {
    const fs::path root = Root();
    Start();
    EXPECT_EQ(TestFolder::Names(root), Names{});
    EXPECT_EQ(Start()->Number(), 1);
}

TEST_F(InstanceTest, DataOfADeadRunIsMovedBeforeItsFolderIsUsedAgain) {
    const fs::path root = Root();
    TestFolder::Write(root / "1" / "0.raw", "lines");
    TestFolder::Write(root / "1" / "temp1.cal", "cal");
    TestFolder::Write(root / "4" / "5.dat", "values");
    const auto next = Start();
    EXPECT_EQ(next->Number(), 1);
    EXPECT_FALSE(next->PrevInstance());
    ASSERT_EQ(next->Recovered().recovered.size(), 2u);
    EXPECT_EQ(TestFolder::Read(next->Recovered().recovered[0]), "lines");
    EXPECT_EQ(TestFolder::Read(next->Recovered().recovered[1]), "values");
    EXPECT_EQ(next->Recovered().recovered[0].parent_path(), user / "recovered");
    EXPECT_EQ(TestFolder::Names(next->Folder()), Names{"temp1.cal"});
    EXPECT_EQ(TestFolder::Names(root), (Names{"1", "1.lock"}));
}

TEST_F(InstanceTest, ALiveCopyKeepsItsFiles) {
    const auto first = Start();
    TestFolder::Write(first->Folder() / "0.raw", "being written");
    const auto second = Start();
    EXPECT_TRUE(second->Recovered().recovered.empty());
    EXPECT_EQ(TestFolder::Names(first->Folder()), Names{"0.raw"});
}

TEST_F(InstanceTest, FilesKeptOnPurposeAreRecoveredAtTheNextStart) {
    auto first = Start();
    TestFolder::Write(first->Folder() / "0.raw", "kept");
    first.reset();
    EXPECT_EQ(Start()->Recovered().recovered.size(), 1u);
}

TEST_F(InstanceTest, TheLockOfAProcessThatIsGoneIsVoid) {
    const fs::path root = Root();
    // A process that has certainly ended by the time its number is written into the lock.
    QProcess process;
    process.start(QStringLiteral("true"), QStringList());
    const qint64 dead = process.waitForStarted() ? process.processId() : 0;
    ASSERT_TRUE(process.waitForFinished());
    ASSERT_NE(dead, 0);
    TestFolder::Write(root / "1.lock", std::to_string(dead) + "\nmarisonde\n\n\n\n");
    TestFolder::Write(root / "1" / "0.raw", "lines");
    const auto next = Start();
    EXPECT_EQ(next->Number(), 1);
    EXPECT_EQ(next->Recovered().recovered.size(), 1u);
}

#ifdef Q_OS_UNIX
TEST_F(InstanceTest, AKilledRunLosesNothing) {
    const pid_t child = fork();
    if (child == 0) {
        const Instance killed(Places(), settings);
        TestFolder::Write(killed.Folder() / "0.raw", "lines");
        raise(SIGKILL);
    }
    ASSERT_GT(child, 0);
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    EXPECT_EQ(TestFolder::Names(temporary.Path()).size(), 1u);
    const auto next = Start();
    EXPECT_EQ(next->Number(), 1);
    EXPECT_FALSE(next->PrevInstance());
    ASSERT_EQ(next->Recovered().recovered.size(), 1u);
    EXPECT_EQ(TestFolder::Read(next->Recovered().recovered[0]), "lines");
}
#endif

TEST_F(InstanceTest, FoldersOfLowerRankAreSearchedToo) {
    TestFolder older;
    InstancePlaces before{{older.Path()}, user / "recovered"};
    fs::path folder;
    {
        const Instance first(before, settings);
        folder = first.Folder();
        TestFolder::Write(folder / "0.raw", "from the former temporary folder");
    }
    InstancePlaces now{{temporary.Path(), older.Path()}, user / "recovered"};
    const Instance next(now, settings);
    EXPECT_EQ(next.Recovered().recovered.size(), 1u);
    EXPECT_EQ(next.Folder().parent_path().parent_path(), temporary.Path());
}

TEST_F(InstanceTest, AFolderWithDataThatCannotBeMovedIsNotUsed) {
    const fs::path root = Root();
    TestFolder::Write(root / "1" / "0.raw", "lines");
    TestFolder::Write(user / "recovered", "a file where the folder should be");
    TestFolder::Write(root / "recovered", "another");
    const auto next = Start();
    EXPECT_EQ(next->Number(), 2);
    EXPECT_EQ(next->Recovered().leftBehind.size(), 1u);
    EXPECT_EQ(TestFolder::Read(root / "1" / "0.raw"), "lines");
}

TEST_F(InstanceTest, ATemporaryFolderThatCannotBeMadeIsReported) {
    TestFolder::Write(temporary / "file", "no folder");
    const Instance instance({{temporary / "file"}, user / "recovered"}, settings);
    EXPECT_NE(instance.Problem(), "");
    EXPECT_EQ(instance.Number(), 1);
    EXPECT_FALSE(fs::exists(instance.Folder()));
}

TEST_F(InstanceTest, WhatADeadRunLeftOnAFullDiskIsNotWrittenOver) {
    const fs::path root = Root();
    TestFolder::Write(root / "1" / "0.raw", "lines");
    const ReadOnlyFolder disc(user.Path());
    if (!disc.Refuses()) GTEST_SKIP() << "nothing is refused here";
    const auto next = Start();  // as on a full disk, no lock can be made
    EXPECT_NE(next->Problem(), "");
    EXPECT_NE(next->Folder(), root / "1");
    std::error_code passedOver;
    EXPECT_FALSE(fs::exists(next->Folder(), passedOver));
}

}  // namespace
}  // namespace marisonde
