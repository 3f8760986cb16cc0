// How the data of a window reach their place: saved under a name, or set aside.
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <system_error>
#include <vector>

#include "DataFilesFixture.h"

namespace marisonde {
namespace {

namespace fs = std::filesystem;

TEST_F(DataFilesTest, FilesSetAsideMoveAsAPair) {
    DataFiles files(0);
    ASSERT_TRUE(files.OpenDataFiles(Both()).empty());
    ASSERT_FALSE(files.WriteRaw("line\r\n", Millis(0)));
    std::vector<fs::path> given;
    std::string atTheMove;
    EXPECT_TRUE(files.SetAside([&](const std::vector<fs::path>& paths) {
        given = paths;
        atTheMove = TextOf(paths.at(0));
        return true;
    }));
    EXPECT_EQ(given, (std::vector{Temporary() / "0.raw", Temporary() / "0.dat"}));
    EXPECT_EQ(atTheMove, "raw header\r\nline\r\n") << "nothing waits in memory any more";
    EXPECT_FALSE(files.AnyOpen());
    EXPECT_FALSE(files.HasUnsavedData());
    EXPECT_TRUE(files.State().rawTemporary.empty());
    EXPECT_TRUE(fs::exists(Temporary() / "0.raw")) << "moving is not the files' own business";
}

TEST_F(DataFilesTest, FilesThatCannotBeSetAsideStayUnsaved) {
    DataFiles files(0);
    ASSERT_TRUE(files.OpenDataFiles(Both()).empty());
    ASSERT_FALSE(files.WriteRaw("line\r\n", Millis(0)));
    EXPECT_FALSE(files.SetAside([](const std::vector<fs::path>&) { return false; }));
    EXPECT_FALSE(files.AnyOpen());
    EXPECT_TRUE(files.HasUnsavedData());
    EXPECT_EQ(files.State().rawTemporary, Temporary() / "0.raw");
    EXPECT_FALSE(files.SaveCopy(kRaw, User() / "cast.raw"));
    EXPECT_EQ(TextOf(User() / "cast.raw"), "raw header\r\nline\r\n");
}

TEST_F(DataFilesTest, WhatComesDuringACopyIsNotSavedByIt) {
    DataFiles files(0);
    ASSERT_TRUE(files.OpenDataFiles(Both()).empty());
    files.WriteRaw("one\r\n", Millis(0));
    EXPECT_FALSE(files.FlushNow(kRaw));
    const CopyMark mark = files.MarkForCopy(kRaw);
    EXPECT_EQ(mark.taken, 5U);
    files.WriteRaw("two\r\n", Millis(10));
    EXPECT_FALSE(files.NoteCopy(kRaw, User() / "cast.raw", mark, {}));
    EXPECT_EQ(files.State().rawFinal, User() / "cast.raw");
    EXPECT_TRUE(files.HasUnsavedData());
    EXPECT_FALSE(files.NoteCopy(kRaw, User() / "cast.raw", files.MarkForCopy(kRaw), {}));
    EXPECT_FALSE(files.HasUnsavedData());
}

TEST_F(DataFilesTest, ACopyOfClosedFilesNamesNoOthers) {
    DataFiles files(0);
    ASSERT_TRUE(files.OpenDataFiles(Both()).empty());
    files.WriteRaw("one\r\n", Millis(0));
    const CopyMark mark = files.MarkForCopy(kRaw);
    EXPECT_TRUE(files.CloseDataFiles(false).empty());
    EXPECT_FALSE(files.NoteCopy(kRaw, User() / "late.raw", mark, {}));
    EXPECT_TRUE(files.State().rawFinal.empty());
    ASSERT_TRUE(files.OpenDataFiles(Both()).empty());
    files.WriteRaw("two\r\n", Millis(10));
    EXPECT_FALSE(files.NoteCopy(kRaw, User() / "late.raw", mark, {}));
    EXPECT_TRUE(files.State().rawFinal.empty());
    EXPECT_TRUE(files.HasUnsavedData());
    const auto trouble = files.NoteCopy(kRaw, User() / "late.raw", mark, {ENOSPC, "full"});
    ASSERT_TRUE(trouble);
    EXPECT_TRUE(trouble->temporary.empty());
}

TEST_F(DataFilesTest, SavingCopiesAndWritingGoesOnInTheTemporaryFile) {
    DataFiles files(0);
    ASSERT_TRUE(files.OpenDataFiles(Both()).empty());
    files.WriteRaw("one\r\n", Millis(0));
    EXPECT_TRUE(files.HasUnsavedData());
    EXPECT_FALSE(files.SaveCopy(kRaw, User() / "cast.raw"));
    EXPECT_EQ(TextOf(User() / "cast.raw"), "raw header\r\none\r\n");
    EXPECT_EQ(files.State().rawFinal, User() / "cast.raw");
    EXPECT_FALSE(files.State().stillToBeNamed);
    EXPECT_FALSE(files.HasUnsavedData());

    files.WriteRaw("two\r\n", Millis(10));
    EXPECT_TRUE(files.HasUnsavedData());
    EXPECT_EQ(TextOf(User() / "cast.raw"), "raw header\r\none\r\n");
    EXPECT_FALSE(files.SaveCopy(kRaw, User() / "cast.raw"));
    EXPECT_EQ(TextOf(User() / "cast.raw"), "raw header\r\none\r\ntwo\r\n");
    EXPECT_EQ(TestFolder::Names(User()), std::set<std::string>{"cast.raw"});
    EXPECT_TRUE(files.CloseDataFiles(false).empty());
    EXPECT_EQ(TestFolder::Names(User()), std::set<std::string>{"cast.raw"});
}

TEST_F(DataFilesTest, AFailedSaveChangesNothing) {
    DataFiles files(0);
    ASSERT_TRUE(files.OpenDataFiles(Both()).empty());
    WriteTimeOf(files, 40000, Millis(0));
    const fs::path destination = User() / "nowhere" / "cast.dat";
    const auto trouble = files.SaveCopy(kDat, destination);
    ASSERT_TRUE(trouble);
    EXPECT_EQ(trouble->kind, kDat);
    EXPECT_EQ(trouble->name, destination);
    EXPECT_EQ(trouble->temporary, Temporary() / "0.dat");
    EXPECT_EQ(trouble->error.code, ENOENT);
    EXPECT_EQ(trouble->error.text, std::generic_category().message(ENOENT));
    EXPECT_TRUE(files.State().datFinal.empty());
    EXPECT_TRUE(files.State().stillToBeNamed);
    EXPECT_TRUE(files.HasUnsavedData());
    WriteTimeOf(files, 40001, Millis(10));
    EXPECT_FALSE(files.SaveCopy(kDat, User() / "cast.dat"));
    EXPECT_EQ(TextOf(User() / "cast.dat"), "dat header\r\n40000,2,\r\n40001,2,\r\n");
}

TEST_F(DataFilesTest, AFailedSaveLeavesAnEarlierFileOfThatNameAlone) {
    DataFiles files(0);
    ASSERT_TRUE(files.OpenDataFiles(Both()).empty());
    fs::create_directory(User() / "cast.raw");  // cannot be replaced by a file
    std::ofstream(User() / "cast.raw" / "inside") << "x";
    EXPECT_TRUE(files.SaveCopy(kRaw, User() / "cast.raw"));
    EXPECT_EQ(TestFolder::Names(User()), std::set<std::string>{"cast.raw"});
    EXPECT_EQ(TextOf(User() / "cast.raw" / "inside"), "x");
}

TEST_F(DataFilesTest, SavingOntoTheTemporaryFileIsRefused) {
    DataFiles files(0);
    ASSERT_TRUE(files.OpenDataFiles(Both()).empty());
    const auto trouble = files.SaveCopy(kRaw, Temporary() / "0.raw");
    ASSERT_TRUE(trouble);
    EXPECT_EQ(trouble->error.code, EBUSY);
    EXPECT_TRUE(files.State().rawFinal.empty());
    EXPECT_FALSE(files.WriteRaw("more", Millis(0)));
    EXPECT_TRUE(files.CloseDataFiles(true).empty());
    EXPECT_EQ(TextOf(Temporary() / "0.raw"), "raw header\r\nmore");
}

TEST_F(DataFilesTest, NamingLaterGivesTheFilesTheirFinalPaths) {
    DataFiles files(0);
    DataFilesRequest rawOnly = Both();
    rawOnly.datHeader.clear();
    ASSERT_TRUE(files.OpenDataFiles(rawOnly).empty());
    files.NameFiles(User() / "cast");
    EXPECT_EQ(files.State().rawFinal, User() / "cast.raw");
    EXPECT_TRUE(files.State().datFinal.empty());
    EXPECT_FALSE(files.State().stillToBeNamed);
}

}  // namespace
}  // namespace marisonde
