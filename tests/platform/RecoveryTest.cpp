#include <QDateTime>
#include <QFile>
#ifdef __linux__
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#endif
#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <string>

#include "platform/Paths.h"
#include "platform/Recovery.h"
#include "support/TestFolder.h"

namespace marisonde {
namespace {

using Names = std::set<std::string>;

TEST(TemporaryDataNameTest, IsAWindowNumberAndRawOrDat) {
    for (const char* name : {"0.raw", "5.dat", "12.raw"}) EXPECT_TRUE(IsTemporaryDataName(name)) << name;
    for (const char* name : {"", ".raw", "raw", "0", "0.", "0.cal", "a0.raw", "0a.raw", "0.raw.bak",
                             "temp1.cal", "-1.raw", "0.RAW", "0.rawx", "0..raw"})
        EXPECT_FALSE(IsTemporaryDataName(name)) << name;
}

class RecoveryTest : public testing::Test {
  protected:
    void WriteAt(const std::string& name, const std::string& text, const QDateTime& time) {
        TestFolder::Write(folder / "dead" / name, text);
        QFile file(TextFromPath(folder / "dead" / name));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(time, QFileDevice::FileModificationTime));
    }
    RecoveryReport Recover() {
        RecoveryReport report;
        RecoverFiles(folder / "dead", {folder / "recovered", folder / "second"}, report);
        return report;
    }
    TestFolder folder;
    QDateTime morning{QDate(2026, 3, 1), QTime(9, 5, 7)};
};

TEST_F(RecoveryTest, MovesDataFilesUnderTheirTimeAndLeavesOthers) {
    WriteAt("0.raw", "lines", morning);
    WriteAt("1.dat", "values", morning.addSecs(3600));
    WriteAt("temp1.cal", "cal", morning);
    const RecoveryReport report = Recover();
    EXPECT_EQ(report.recovered, (std::vector{folder / "recovered" / "2026-03-01 09-05-07 0.raw",
                                             folder / "recovered" / "2026-03-01 10-05-07 1.dat"}));
    EXPECT_TRUE(report.leftBehind.empty());
    EXPECT_EQ(TestFolder::Read(report.recovered[0]), "lines");
    EXPECT_EQ(TestFolder::Read(report.recovered[1]), "values");
    EXPECT_EQ(TestFolder::Names(folder / "dead"), Names{"temp1.cal"});
}

TEST_F(RecoveryTest, OfSomeFilesTheOthersStay) {
    WriteAt("0.raw", "lines", morning);
    WriteAt("1.raw", "other lines", morning);
    RecoveryReport report;
    RecoverFiles({folder / "dead" / "1.raw", folder / "dead" / "1.dat"},
                 {folder / "recovered", folder / "second"}, report);
    EXPECT_EQ(report.recovered, std::vector{folder / "recovered" / "2026-03-01 09-05-07 1.raw"});
    EXPECT_TRUE(report.leftBehind.empty());
    EXPECT_EQ(TestFolder::Names(folder / "dead"), Names{"0.raw"});
}

TEST_F(RecoveryTest, BothFilesOfAWindowGetTheLaterTime) {
    WriteAt("2.raw", "lines", morning.addSecs(1));
    WriteAt("2.dat", "values", morning);
    Recover();
    EXPECT_EQ(TestFolder::Names(folder / "recovered"),
              (Names{"2026-03-01 09-05-08 2.raw", "2026-03-01 09-05-08 2.dat"}));
}

TEST_F(RecoveryTest, NeverReplacesAFile) {
    for (const char* text : {"first", "second", "third"}) {
        WriteAt("0.raw", text, morning);
        Recover();
    }
    EXPECT_EQ(TestFolder::Read(folder / "recovered" / "2026-03-01 09-05-07 0.raw"), "first");
    EXPECT_EQ(TestFolder::Read(folder / "recovered" / "2026-03-01 09-05-07 0 (2).raw"), "second");
    EXPECT_EQ(TestFolder::Read(folder / "recovered" / "2026-03-01 09-05-07 0 (3).raw"), "third");
}

TEST_F(RecoveryTest, EmptyFilesAreNotWorthKeeping) {
    WriteAt("0.raw", "", morning);
    const RecoveryReport report = Recover();
    EXPECT_TRUE(report.recovered.empty());
    EXPECT_EQ(TestFolder::Names(folder / "dead"), Names{});
    EXPECT_EQ(TestFolder::Names(folder / "recovered"), Names{});
}

TEST_F(RecoveryTest, ASecondPlaceIsUsedWhenTheFirstCannotBeMade) {
    WriteAt("0.raw", "lines", morning);
    TestFolder::Write(folder / "recovered", "a file where the folder should be");
    const RecoveryReport report = Recover();
    EXPECT_EQ(report.recovered, std::vector{folder / "second" / "2026-03-01 09-05-07 0.raw"});
}

TEST_F(RecoveryTest, WhatCannotBeMovedStaysAndIsReported) {
    WriteAt("0.raw", "lines", morning);
    TestFolder::Write(folder / "recovered", "a file where the folder should be");
    TestFolder::Write(folder / "second", "another");
    const RecoveryReport report = Recover();
    EXPECT_TRUE(report.recovered.empty());
    ASSERT_EQ(report.leftBehind.size(), 1u);
    EXPECT_EQ(report.leftBehind[0].path, folder / "dead" / "0.raw");
    EXPECT_NE(report.leftBehind[0].reason, "");
    EXPECT_EQ(TestFolder::Read(folder / "dead" / "0.raw"), "lines");
}

TEST_F(RecoveryTest, AFolderThatIsNotThereGivesNothing) {
    const RecoveryReport report = Recover();
    EXPECT_TRUE(report.recovered.empty());
    EXPECT_TRUE(report.leftBehind.empty());
}

#ifdef __linux__
/// A place on another disk than the tests have, which may be full.
class OtherDiskTest : public RecoveryTest {
  protected:
    OtherDiskTest() {
        disk = std::filesystem::path("/dev/shm") / folder.Path().filename();
        std::error_code passedOver;
        std::filesystem::create_directory(disk, passedOver);
    }
    ~OtherDiskTest() override {
        setrlimit(RLIMIT_FSIZE, &before);
        std::error_code passedOver;
        std::filesystem::remove_all(disk, passedOver);
    }
    [[nodiscard]] bool IsAnother() const {
        struct stat here {};
        struct stat there {};
        return stat(folder.Path().c_str(), &here) == 0 && stat(disk.c_str(), &there) == 0 &&
               here.st_dev != there.st_dev;
    }
    /// No file grows beyond so many bytes.
    void Fill(rlim_t room) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit small{room, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    RecoveryReport RecoverTo() {
        RecoveryReport report;
        RecoverFiles(folder / "dead", {disk, folder / "second"}, report);
        return report;
    }
    std::filesystem::path disk;
    rlimit before{RLIM_INFINITY, RLIM_INFINITY};
};

TEST_F(OtherDiskTest, TakesFilesWithRoom) {
    if (!IsAnother()) GTEST_SKIP() << "there is no other disk here";
    WriteAt("0.raw", std::string(5000, 'x'), morning);
    EXPECT_EQ(RecoverTo().recovered, std::vector{disk / "2026-03-01 09-05-07 0.raw"});
    EXPECT_EQ(TestFolder::Read(disk / "2026-03-01 09-05-07 0.raw"), std::string(5000, 'x'));
    EXPECT_TRUE(TestFolder::Names(folder / "dead").empty());
}

TEST_F(OtherDiskTest, WithoutRoomLeavesNoHalvesOfFiles) {
    if (!IsAnother()) GTEST_SKIP() << "there is no other disk here";
    WriteAt("0.raw", std::string(5000, 'x'), morning);
    Fill(1000);
    EXPECT_EQ(RecoverTo().recovered, std::vector{folder / "second" / "2026-03-01 09-05-07 0.raw"});
    EXPECT_TRUE(TestFolder::Names(disk).empty());
    EXPECT_EQ(TestFolder::Read(folder / "second" / "2026-03-01 09-05-07 0.raw"), std::string(5000, 'x'));
}
#endif

}  // namespace
}  // namespace marisonde
