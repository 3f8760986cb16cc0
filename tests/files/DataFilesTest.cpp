// The data files of a window: opened, written and closed.
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

#include "DataFilesFixture.h"

namespace marisonde {
namespace {

namespace fs = std::filesystem;

TEST_F(DataFilesTest, NamesCarryTheWindowNumberAndTheExtension) {
    EXPECT_EQ(TemporaryDataPath("/data", 0, kRaw), "/data/0.raw");
    EXPECT_EQ(TemporaryDataPath("/data", 5, kDat), "/data/5.dat");
    EXPECT_EQ(FinalDataPath("/data/cast", kRaw), "/data/cast.raw");
    EXPECT_EQ(FinalDataPath("/data/cast.dat", kRaw), "/data/cast.raw");
    EXPECT_EQ(FinalDataPath("/leg.2/cast", kDat), "/leg.2/cast.dat");  // the folder's dot is no extension
}

TEST_F(DataFilesTest, UnnamedFilesAreOnlyTheTemporaryOnes) {
    DataFiles files(0);
    EXPECT_TRUE(files.OpenDataFiles(Both()).empty());
    EXPECT_TRUE(files.State().stillToBeNamed);
    EXPECT_EQ(files.State().rawTemporary, Temporary() / "0.raw");
    EXPECT_EQ(files.State().datTemporary, Temporary() / "0.dat");
    EXPECT_TRUE(files.State().rawFinal.empty());
    EXPECT_TRUE(files.State().datFinal.empty());
    EXPECT_EQ(TestFolder::Names(Temporary()), (std::set<std::string>{"0.raw", "0.dat"}));
    EXPECT_TRUE(TestFolder::Names(User()).empty());
    EXPECT_EQ(TextOf(Temporary() / "0.raw"), "raw header\r\n");
    EXPECT_EQ(TextOf(Temporary() / "0.dat"), "dat header\r\n");
}

TEST_F(DataFilesTest, NamedFilesAreStillWrittenToTheTemporaryOnes) {
    DataFiles files(3);
    DataFilesRequest request = Both();
    request.basePath = User() / "cast.txt";
    EXPECT_TRUE(files.OpenDataFiles(request).empty());
    EXPECT_FALSE(files.State().stillToBeNamed);
    EXPECT_EQ(files.State().rawFinal, User() / "cast.raw");
    EXPECT_EQ(files.State().datFinal, User() / "cast.dat");
    EXPECT_EQ(TestFolder::Names(Temporary()), (std::set<std::string>{"3.raw", "3.dat"}));
    EXPECT_TRUE(TestFolder::Names(User()).empty());
}

TEST_F(DataFilesTest, OnlyTheWantedFilesAreOpened) {
    DataFiles files(1);
    DataFilesRequest calibratedOnly = Both();
    calibratedOnly.rawHeader.clear();
    calibratedOnly.basePath = User() / "cast";
    EXPECT_TRUE(files.OpenDataFiles(calibratedOnly).empty());
    EXPECT_FALSE(files.IsOpen(kRaw));
    EXPECT_TRUE(files.IsOpen(kDat));
    EXPECT_TRUE(files.State().rawFinal.empty());
    EXPECT_FALSE(files.WriteRaw("passed over", Millis(0)));
    EXPECT_FALSE(files.HasUnsavedData());

    DataFilesRequest rawOnly = Both();
    rawOnly.datHeader.clear();
    EXPECT_TRUE(files.OpenDataFiles(rawOnly).empty());
    EXPECT_TRUE(files.IsOpen(kRaw));
    EXPECT_FALSE(files.IsOpen(kDat));
    EXPECT_EQ(TestFolder::Names(Temporary()), std::set<std::string>{"1.raw"});
}

TEST_F(DataFilesTest, TwoWindowsNeverShareAFile) {
    std::vector<DataFiles> windows;
    for (int window = 0; window < 6; ++window) {
        DataFiles& files = windows.emplace_back(window);
        ASSERT_TRUE(files.OpenDataFiles(Both()).empty());
        EXPECT_FALSE(files.WriteRaw("window " + std::to_string(window), Millis(0)));
    }
    EXPECT_EQ(TestFolder::Names(Temporary()).size(), 12U);
    for (int window = 0; window < 6; ++window) {
        DataFiles& files = windows[static_cast<std::size_t>(window)];
        const fs::path path = files.State().rawTemporary;
        EXPECT_TRUE(files.CloseDataFiles(true).empty());
        EXPECT_EQ(TextOf(path), "raw header\r\nwindow " + std::to_string(window));
    }
}

TEST_F(DataFilesTest, AnEarlierFileIsReplaced) {
    std::ofstream(Temporary() / "0.raw") << "from an earlier run, longer than the header";
    DataFiles files(0);
    EXPECT_TRUE(files.OpenDataFiles(Both()).empty());
    EXPECT_EQ(TextOf(Temporary() / "0.raw"), "raw header\r\n");
}

TEST_F(DataFilesTest, ChunksAndSamplesReachTheFilesUnchanged) {
    DataFiles files(0);
    ASSERT_TRUE(files.OpenDataFiles(Both()).empty());
    const std::string bytes("*D12\r\n\0\x1A\xFF", 9);
    EXPECT_FALSE(files.WriteRaw(bytes, Millis(0)));
    EXPECT_FALSE(files.WriteRaw("*D1", Millis(50)));
    EXPECT_FALSE(WriteTimeOf(files, 40000, Millis(50)));
    EXPECT_FALSE(WriteTimeOf(files, 40001, Millis(50)));
    EXPECT_TRUE(files.CloseDataFiles(true).empty());
    EXPECT_EQ(TextOf(Temporary() / "0.raw"), "raw header\r\n" + bytes + "*D1");
    EXPECT_EQ(TextOf(Temporary() / "0.dat"), "dat header\r\n40000,2,\r\n40001,2,\r\n");
}

TEST_F(DataFilesTest, ClosingDeletesTheTemporaryFilesAndForgetsThePaths) {
    DataFiles files(0);
    ASSERT_TRUE(files.OpenDataFiles(Both()).empty());
    files.WriteRaw("data", Millis(0));
    EXPECT_TRUE(files.CloseDataFiles(false).empty());
    EXPECT_TRUE(TestFolder::Names(Temporary()).empty());
    EXPECT_TRUE(files.State().rawTemporary.empty());
    EXPECT_TRUE(files.State().datTemporary.empty());
    EXPECT_FALSE(files.State().stillToBeNamed);
    EXPECT_FALSE(files.AnyOpen());
    EXPECT_FALSE(files.HasUnsavedData());
    EXPECT_TRUE(files.CloseDataFiles(false).empty());  // closing twice is no error
}

TEST_F(DataFilesTest, OpeningAgainClosesTheEarlierFilesFirst) {
    DataFiles files(0);
    ASSERT_TRUE(files.OpenDataFiles(Both()).empty());
    files.WriteRaw("first", Millis(0));
    ASSERT_TRUE(files.OpenDataFiles(Both()).empty());
    EXPECT_FALSE(files.HasUnsavedData());
    EXPECT_TRUE(files.CloseDataFiles(true).empty());
    EXPECT_EQ(TextOf(Temporary() / "0.raw"), "raw header\r\n");
}

}  // namespace
}  // namespace marisonde
