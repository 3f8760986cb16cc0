// Data files on disks that are full, removed or not to be written on.
#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <set>
#include <string>
#include <system_error>
#include <vector>

#include "DataFilesFixture.h"
#include "support/FailingOutputFile.h"
#include "support/ReadOnlyFolder.h"

namespace marisonde {
namespace {

namespace fs = std::filesystem;

TEST_F(DataFilesTest, AFileThatCannotBeOpenedStaysOffWhileTheOtherGoesOn) {
    fs::create_directory(Temporary() / "0.raw");  // a folder stands in the way
    DataFiles files(0);
    const std::string reason = std::generic_category().message(EISDIR);
    EXPECT_EQ(
        files.OpenDataFiles(Both()),
        std::vector<std::string>{"Error opening " + (Temporary() / "0.raw").string() + ": " + reason + "."});
    EXPECT_FALSE(files.IsOpen(kRaw));
    EXPECT_TRUE(files.State().rawTemporary.empty());
    EXPECT_TRUE(files.IsOpen(kDat));
    EXPECT_TRUE(files.CloseDataFiles(false).empty());
    EXPECT_TRUE(fs::is_directory(Temporary() / "0.raw"));
}

TEST_F(DataFilesTest, AMissingTemporaryFolderIsReportedForBoth) {
    DataFiles files(0);
    DataFilesRequest request = Both();
    request.temporaryFolder = Temporary() / "nowhere";
    const auto messages = files.OpenDataFiles(request);
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[1], "Error opening " + (Temporary() / "nowhere" / "0.dat").string() + ": " +
                               std::generic_category().message(ENOENT) + ".");
    EXPECT_FALSE(files.AnyOpen());
}

TEST_F(DataFilesTest, AFolderThatCannotBeWrittenInTakesNeitherRecordingsNorCopies) {
    fs::permissions(Temporary().parent_path(), fs::perms::all);
    fs::permissions(Temporary(), fs::perms::all);
    const ReadOnlyFolder disc(User());
    if (!disc.Refuses()) GTEST_SKIP() << "nothing is refused here";
    DataFiles files(0);
    DataFilesRequest request = Both();
    request.temporaryFolder = disc.Path();
    const std::string reason = std::generic_category().message(EACCES);
    EXPECT_EQ(files.OpenDataFiles(request),
              (std::vector<std::string>{"Error opening " + (disc / "0.raw").string() + ": " + reason + ".",
                                        "Error opening " + (disc / "0.dat").string() + ": " + reason + "."}));
    EXPECT_FALSE(files.AnyOpen());

    ASSERT_TRUE(files.OpenDataFiles(Both()).empty());
    files.WriteRaw("one\r\n", Millis(0));
    const auto trouble = files.SaveCopy(kRaw, disc / "cast.raw");
    ASSERT_TRUE(trouble);
    EXPECT_EQ(trouble->name, disc / "cast.raw");
    EXPECT_EQ(trouble->error.code, EACCES);
    EXPECT_EQ(trouble->error.text, reason);
    EXPECT_TRUE(files.HasUnsavedData());
    EXPECT_TRUE(TestFolder::Names(disc.Path()).empty());
    EXPECT_TRUE(files.IsOpen(kRaw));
    EXPECT_EQ(TextOf(Temporary() / "0.raw"), "raw header\r\none\r\n");
}

TEST_F(DataFilesTest, AFileThatVanishedBeginsAnewAndTheSavedOneIsLeftAlone) {
    DataFiles files(0);
    DataFilesRequest request = Both();
    request.basePath = User() / "cast";
    ASSERT_TRUE(files.OpenDataFiles(request).empty());
    files.WriteRaw("one\r\n", Millis(0));
    ASSERT_FALSE(files.SaveCopy(kRaw, User() / "cast.raw"));
    EXPECT_FALSE(files.HasVanished(kRaw));
    fs::remove(Temporary() / "0.raw");
    EXPECT_TRUE(files.HasVanished(kRaw));
    EXPECT_FALSE(files.HasVanished(kDat));
    EXPECT_FALSE(files.BeginAnew(kRaw, "new header\r\n"));
    EXPECT_TRUE(files.IsOpen(kRaw));
    EXPECT_FALSE(files.HasUnsavedData());
    EXPECT_TRUE(files.State().stillToBeNamed);
    EXPECT_TRUE(files.State().rawFinal.empty());
    EXPECT_TRUE(files.State().datFinal.empty());
    files.WriteRaw("two\r\n", Millis(20));
    EXPECT_FALSE(files.SaveCopy(kRaw, User() / "rest.raw"));
    EXPECT_EQ(TextOf(User() / "cast.raw"), "raw header\r\none\r\n");
    EXPECT_EQ(TextOf(User() / "rest.raw"), "new header\r\ntwo\r\n");
    fs::remove_all(Temporary());
    EXPECT_EQ(files.BeginAnew(kRaw, "new header\r\n").code, ENOENT);
    EXPECT_FALSE(files.IsOpen(kRaw));
    EXPECT_TRUE(files.HasVanished(kRaw));
}

#ifdef __linux__
TEST_F(DataFilesTest, AFileWithoutRoomForItsHeaderLeavesNothingBehind) {
    fs::create_symlink("/dev/full", Temporary() / "0.raw");  // takes no byte, as a full disk does
    DataFiles files(0);
    EXPECT_EQ(files.OpenDataFiles(Both()),
              std::vector<std::string>{"Error opening " + (Temporary() / "0.raw").string() + ": " +
                                       std::generic_category().message(ENOSPC) + "."});
    EXPECT_EQ(TestFolder::Names(Temporary()), std::set<std::string>{"0.dat"});
}

TEST_F(DataFilesTest, WhatCannotBeOpenedIsLeftAlone) {
    fs::create_directory(Temporary() / "0.raw");
    DataFiles files(0);
    EXPECT_EQ(files.OpenDataFiles(Both()).size(), 1U);
    EXPECT_EQ(TestFolder::Names(Temporary()), (std::set<std::string>{"0.raw", "0.dat"}));
}

TEST_F(DataFilesTest, ARemovedFolderIsReportedOnceAndDataComeOn) {
    DataFiles files(0);
    ASSERT_TRUE(files.OpenDataFiles(Both()).empty());
    fs::remove_all(Temporary());
    EXPECT_FALSE(files.WriteRaw("x", Millis(0)));
    EXPECT_FALSE(WriteTimeOf(files, 40000, Millis(0)));
    const auto troubles = files.FlushIfDue(Millis(500));
    ASSERT_EQ(troubles.size(), 2U);
    EXPECT_EQ(troubles[0].kind, kRaw);
    EXPECT_EQ(troubles[0].error.code, ENOENT);
    EXPECT_EQ(troubles[1].kind, kDat);
    EXPECT_FALSE(files.AnyOpen());
    EXPECT_FALSE(files.WriteRaw("y", Millis(600)));
    EXPECT_TRUE(files.FlushIfDue(Millis(2000)).empty());
    EXPECT_TRUE(files.CloseDataFiles(false).empty());
}
#endif

/// A real file on a disk with room for so many bytes, of which it takes what fits, as disks do.
class LimitedFile final : public OutputFile {
  public:
    explicit LimitedFile(std::size_t& room) : room_(room) {}
    FileError Open(const fs::path& path, OpenMode mode) override { return file_.Open(path, mode); }
    FileError Append(std::string_view bytes) override {
        const std::string_view fits = bytes.substr(0, room_);
        room_ -= fits.size();
        const FileError error = file_.Append(fits);
        if (error || fits.size() == bytes.size()) return error;
        return {ENOSPC, std::generic_category().message(ENOSPC)};
    }
    FileError Flush() override { return file_.Flush(); }
    FileError Close() override { return file_.Close(); }
    [[nodiscard]] bool IsOpen() const override { return file_.IsOpen(); }
    [[nodiscard]] const fs::path& Path() const override { return file_.Path(); }

  private:
    std::size_t& room_;
    DiskFile file_;
};

TEST_F(DataFilesTest, AFullDiskLeavesNoHalfOfASample) {
    const std::string head = "dat header\r\n";
    const std::string first = "40000,2,\r\n";
    // Of the second sample: half its time, its time, all but the line end, and half of that too.
    for (const std::size_t more : {std::size_t{3}, std::size_t{6}, std::size_t{8}, std::size_t{9}}) {
        std::size_t room = head.size() + first.size() + more;
        DataFiles files(0, [&room] { return std::make_unique<LimitedFile>(room); });
        DataFilesRequest request = Both();
        request.rawHeader.clear();
        ASSERT_TRUE(files.OpenDataFiles(request).empty());
        EXPECT_FALSE(WriteTimeOf(files, 40000, Millis(0)));
        EXPECT_TRUE(WriteTimeOf(files, 40001, Millis(50)));
        const bool half = more < 9;  // "40001,2," and a CR is a whole line to every reader
        EXPECT_EQ(TextOf(Temporary() / "0.dat"), head + first + (half ? "" : "40001,2,\r")) << more;
        room = 1000;
        ASSERT_FALSE(files.OpenForAppending(kDat));
        EXPECT_FALSE(WriteTimeOf(files, 40002, Millis(100)));
        EXPECT_FALSE(files.FlushNow(kDat));
        EXPECT_EQ(TextOf(Temporary() / "0.dat"),
                  head + first + (half ? "" : "40001,2,\r\r\n") + "40002,2,\r\n")
            << more;
    }
}

TEST_F(DataFilesTest, ARecordingThatIsTakenUpAgainJoinsNoHalvesOfLines) {
    std::size_t room = std::string("raw header\r\none\r\ntw").size();
    DataFiles files(0, [&room] { return std::make_unique<LimitedFile>(room); });
    DataFilesRequest request = Both();
    request.datHeader.clear();
    ASSERT_TRUE(files.OpenDataFiles(request).empty());
    EXPECT_FALSE(files.WriteRaw("one\r\n", Millis(0)));
    EXPECT_TRUE(files.WriteRaw("two\r\nthr", Millis(50)));
    EXPECT_EQ(TextOf(Temporary() / "0.raw"), "raw header\r\none\r\ntw");
    room = 1000;
    ASSERT_FALSE(files.OpenForAppending(kRaw));
    EXPECT_FALSE(files.WriteRaw("our\r\nfive\r\n", Millis(100)));
    EXPECT_FALSE(files.FlushNow(kRaw));
    EXPECT_EQ(TextOf(Temporary() / "0.raw"), "raw header\r\none\r\ntw\r\nour\r\nfive\r\n");
}

/// Files in memory that fail when the test wants it. A file lives until its window opens or closes files
/// again.
class FailingDataFilesTest : public testing::Test {
  protected:
    std::unique_ptr<OutputFile> Make() {
        auto file = std::make_unique<FailingOutputFile>(made_.empty() ? rawRoom : datRoom);
        made_.push_back(file.get());
        return file;
    }
    [[nodiscard]] FailingOutputFile& Raw() const { return *made_.at(0); }
    [[nodiscard]] FailingOutputFile& Dat() const { return *made_.at(1); }
    [[nodiscard]] std::vector<std::string> Open() {
        return files.OpenDataFiles({"/t", {}, "RAW\r\n", "DAT\r\n"});
    }

    static constexpr std::size_t kPlenty = 1 << 20;
    std::size_t rawRoom = kPlenty;
    std::size_t datRoom = kPlenty;
    DataFiles files{2, [this] { return Make(); }};

  private:
    std::vector<FailingOutputFile*> made_;
};

TEST_F(FailingDataFilesTest, NothingWaitsForASecond) {
    ASSERT_TRUE(Open().empty());
    EXPECT_EQ(Raw().flushedBytes, 5U);  // the header at once
    const int flushesOfTheHeader = Raw().flushes;
    // Ticks of 50 ms with a chunk in each: look that no byte is older than a second when it reaches the
    // system.
    std::size_t oldBytes = Raw().text.size();
    for (int tick = 0; tick < 200; ++tick) {
        const Millis now(50 * tick);
        EXPECT_FALSE(files.WriteRaw("0123456789", now));
        EXPECT_TRUE(files.FlushIfDue(now).empty());
        if (tick % 20 == 19) {
            EXPECT_GE(Raw().flushedBytes, oldBytes);
            oldBytes = Raw().text.size();
        }
    }
    const int flushes = Raw().flushes - flushesOfTheHeader;
    EXPECT_GE(flushes, 10);  // 10 seconds
    EXPECT_LE(flushes, 20);  // but not at every tick
    EXPECT_EQ(Dat().flushes, flushesOfTheHeader);
}

TEST_F(FailingDataFilesTest, AFlushIsDueFromTheOldestByteOn) {
    ASSERT_TRUE(Open().empty());
    files.WriteRaw("a", Millis(1000));
    files.WriteRaw("b", Millis(1499));
    EXPECT_TRUE(files.FlushIfDue(Millis(1499)).empty());
    EXPECT_EQ(Raw().flushedBytes, 5U);
    EXPECT_TRUE(files.FlushIfDue(Millis(1500)).empty());
    EXPECT_EQ(Raw().flushedBytes, 7U);
    const int flushes = Raw().flushes;
    EXPECT_TRUE(files.FlushIfDue(Millis(9999)).empty());  // nothing waits
    EXPECT_EQ(Raw().flushes, flushes);
}

TEST_F(FailingDataFilesTest, AFullDiskIsReportedOnceAndWhatWasWrittenStays) {
    rawRoom = 12;  // header 5, then 7 more
    ASSERT_TRUE(Open().empty());
    EXPECT_FALSE(files.WriteRaw("12345", Millis(0)));
    const auto trouble = files.WriteRaw("67890", Millis(50));
    ASSERT_TRUE(trouble);
    EXPECT_EQ(trouble->kind, kRaw);
    EXPECT_EQ(trouble->temporary, fs::path("/t") / "2.raw");
    EXPECT_EQ(trouble->name, fs::path("/t") / "2.raw");
    EXPECT_EQ(trouble->error.code, ENOSPC);
    EXPECT_EQ(trouble->error.text, std::generic_category().message(ENOSPC));

    EXPECT_EQ(Raw().text, "RAW\r\n1234567");
    EXPECT_FALSE(files.IsOpen(kRaw));
    EXPECT_FALSE(files.WriteRaw("more", Millis(100)));
    EXPECT_TRUE(files.FlushIfDue(Millis(5000)).empty());
    EXPECT_EQ(Raw().text, "RAW\r\n1234567");
    EXPECT_TRUE(files.HasUnsavedData());
    EXPECT_EQ(files.State().rawTemporary, fs::path("/t") / "2.raw");

    // The other file goes on.
    EXPECT_FALSE(files.WriteSample(SampleAt(40000), InstTypeCode::XTidal, false, Millis(100)));
    EXPECT_EQ(Dat().text, "DAT\r\n40000,2,\r\n");
    EXPECT_TRUE(files.CloseDataFiles(true).empty());  // nothing is reported again
}

TEST_F(FailingDataFilesTest, AFullDiskOfTheCalibratedFileTurnsOnlyThatOff) {
    datRoom = 5 + 9;
    ASSERT_TRUE(files.OpenDataFiles({"/t", "/home/cast", "RAW\r\n", "DAT\r\n"}).empty());
    const auto trouble = files.WriteSample(SampleAt(40000), InstTypeCode::XTidal, false, Millis(0));
    ASSERT_TRUE(trouble);
    EXPECT_EQ(trouble->kind, kDat);
    EXPECT_EQ(trouble->name, fs::path("/home/cast.dat"));
    EXPECT_EQ(trouble->temporary, fs::path("/t") / "2.dat");
    EXPECT_EQ(Dat().text, "DAT\r\n40000,2,\r");
    EXPECT_TRUE(files.IsOpen(kRaw));
    EXPECT_FALSE(files.WriteRaw("on", Millis(50)));
    EXPECT_EQ(Raw().text, "RAW\r\non");
}

TEST_F(FailingDataFilesTest, AnErrorAtTheFlushIsReportedOnce) {
    ASSERT_TRUE(Open().empty());
    files.WriteRaw("x", Millis(0));
    Raw().flushFailsWith = EIO;
    const auto troubles = files.FlushIfDue(Millis(600));
    ASSERT_EQ(troubles.size(), 1U);
    EXPECT_EQ(troubles[0].error.text, std::generic_category().message(EIO));
    EXPECT_TRUE(files.FlushIfDue(Millis(1300)).empty());
    EXPECT_FALSE(files.IsOpen(kRaw));
}

TEST_F(FailingDataFilesTest, NoRoomForTheHeaderIsAnErrorOfOpening) {
    rawRoom = 3;
    EXPECT_EQ(Open(), std::vector<std::string>{"Error opening " + (fs::path("/t") / "2.raw").string() + ": " +
                                               std::generic_category().message(ENOSPC) + "."});
    EXPECT_FALSE(files.IsOpen(kRaw));
    EXPECT_TRUE(files.State().rawTemporary.empty());
    EXPECT_TRUE(files.IsOpen(kDat));
}

TEST_F(FailingDataFilesTest, AnErrorWhileClosingIsReported) {
    ASSERT_TRUE(Open().empty());
    files.WriteRaw("x", Millis(0));
    Raw().flushFailsWith = ENOSPC;
    EXPECT_EQ(files.CloseDataFiles(true),
              std::vector<std::string>{"Error closing files: " + std::generic_category().message(ENOSPC)});
    EXPECT_FALSE(files.AnyOpen());
    EXPECT_TRUE(files.State().rawTemporary.empty());
}

}  // namespace
}  // namespace marisonde
