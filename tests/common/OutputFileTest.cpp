#include <cerrno>
#include <fstream>
#include <gtest/gtest.h>
#include <string>

#include "common/OutputFile.h"
#include "support/FailingOutputFile.h"
#include "support/FileFixture.h"

namespace marisonde {
namespace {

namespace fs = std::filesystem;

using OutputFileTest = FileFixture;

TEST_F(OutputFileTest, BytesReachTheFileUnchangedAfterFlush) {
    DiskFile file;
    ASSERT_FALSE(file.Open(In("0.raw")));
    EXPECT_FALSE(file.Append("line\r\n"));
    EXPECT_FALSE(file.Append(std::string_view("\0\x1A\xFF", 3)));
    EXPECT_FALSE(file.Flush());
    EXPECT_EQ(TextOf(In("0.raw")), std::string("line\r\n\0\x1A\xFF", 9));
    EXPECT_TRUE(file.IsOpen());
    EXPECT_EQ(file.Path(), In("0.raw"));
}

TEST_F(OutputFileTest, MoreThanTheBufferArrivesInOrder) {
    DiskFile file;
    ASSERT_FALSE(file.Open(In("0.raw")));
    std::string expected;
    for (int i = 0; i < 20000; ++i) {
        const std::string line = std::to_string(i) + "\r\n";
        expected += line;
        ASSERT_FALSE(file.Append(line));
    }
    EXPECT_FALSE(file.Close());
    EXPECT_EQ(TextOf(In("0.raw")), expected);
}

TEST_F(OutputFileTest, ReplaceEmptiesAndExtendGoesOn) {
    DiskFile file;
    ASSERT_FALSE(file.Open(In("0.dat")));
    file.Append("first");
    ASSERT_FALSE(file.Open(In("0.dat"), OpenMode::Extend));
    file.Append("+second");
    EXPECT_FALSE(file.Close());
    EXPECT_EQ(TextOf(In("0.dat")), "first+second");
    ASSERT_FALSE(file.Open(In("0.dat"), OpenMode::Replace));
    file.Append("third");
    EXPECT_FALSE(file.Close());
    EXPECT_EQ(TextOf(In("0.dat")), "third");
}

TEST_F(OutputFileTest, AMissingFolderIsReportedWithTheSystemsReason) {
    DiskFile file;
    const FileError error = file.Open(In("nowhere") / "0.raw");
    EXPECT_EQ(error.code, ENOENT);
    EXPECT_EQ(error.text, std::generic_category().message(ENOENT));
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(file.Append("x").code, EBADF);
    EXPECT_EQ(file.Flush().code, EBADF);
    EXPECT_FALSE(file.Close());
}

TEST_F(OutputFileTest, AnOpenFileIsFlushedWhenDestroyed) {
    {
        DiskFile file;
        ASSERT_FALSE(file.Open(In("0.raw")));
        file.Append("kept");
    }
    EXPECT_EQ(TextOf(In("0.raw")), "kept");
}

#ifdef __linux__
TEST_F(OutputFileTest, AFullDiskFailsAndGoesOnFailing) {
    DiskFile file;
    ASSERT_FALSE(file.Open("/dev/full"));
    EXPECT_FALSE(file.Append("still in memory"));
    EXPECT_EQ(file.Flush().code, ENOSPC);
    EXPECT_EQ(file.Append("more").code, ENOSPC);
    EXPECT_EQ(file.Flush().text, std::generic_category().message(ENOSPC));
    EXPECT_EQ(file.Close().code, ENOSPC);
    EXPECT_FALSE(file.IsOpen());
    // A new try starts afresh.
    ASSERT_FALSE(file.Open(In("0.raw")));
    EXPECT_FALSE(file.Append("again"));
    EXPECT_FALSE(file.Close());
}

TEST_F(OutputFileTest, AFullDiskIsNoticedWithoutFlushOnceTheBufferIsFull) {
    DiskFile file;
    ASSERT_FALSE(file.Open("/dev/full"));
    EXPECT_EQ(file.Append(std::string(70000, 'x')).code, ENOSPC);
}

TEST_F(OutputFileTest, ARemovedFolderIsNoticedAtTheNextFlush) {
    fs::create_directory(In("log"));
    DiskFile file;
    ASSERT_FALSE(file.Open(In("log") / "0.raw"));
    file.Append("one");
    EXPECT_FALSE(file.Flush());
    fs::remove_all(In("log"));
    EXPECT_FALSE(file.Append("two"));
    EXPECT_EQ(file.Flush().code, ENOENT);
    EXPECT_EQ(file.Close().code, ENOENT);
}
#endif

TEST(FailingOutputFileTest, TakesWhatFitsThenFails) {
    FailingOutputFile file(5);
    ASSERT_FALSE(file.Open("0.raw", OpenMode::Replace));
    EXPECT_FALSE(file.Append("abc"));
    EXPECT_EQ(file.Append("defg").code, ENOSPC);
    EXPECT_EQ(file.text, "abcde");
    EXPECT_EQ(file.Append("h").code, ENOSPC);
    EXPECT_EQ(file.text, "abcde");
    EXPECT_EQ(file.Close().code, ENOSPC);
}

}  // namespace
}  // namespace marisonde
