#include <cerrno>
#include <system_error>

#include "files/FileCopy.h"
#include "support/FileFixture.h"

namespace marisonde {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBlock = FileCopy::kBlock;

class FileCopyTest : public FileFixture {
  protected:
    /// Text without any two equal blocks.
    static std::string Text(std::size_t length) {
        std::string text;
        for (int i = 0; text.size() < length; ++i) text.append(std::to_string(i)).append("\r\n");
        text.resize(length);
        return text;
    }
};

TEST_F(FileCopyTest, CopiesFilesOfAnyLength) {
    for (const std::size_t length : {std::size_t{0}, std::size_t{1}, kBlock - 1, kBlock, 3 * kBlock + 7}) {
        const std::string text = Text(length);
        EXPECT_FALSE(CopyDataFile(Write("a.raw", text), In("b.raw"))) << length;
        EXPECT_EQ(TextOf(In("b.raw")), text) << length;
    }
    EXPECT_EQ(Names(), (std::set<std::string>{"a.raw", "b.raw"}));
}

TEST_F(FileCopyTest, GoesOnBlockByBlockAndAppearsWhenItIsWhole) {
    const fs::path source = Write("a.raw", Text(2 * kBlock + 1));
    Write("b.raw", "older");
    FileCopy copy(source, In("b.raw"));
    EXPECT_EQ(copy.Progress().size, 2 * kBlock + 1);
    EXPECT_TRUE(copy.Run());
    EXPECT_EQ(copy.Progress().done, kBlock);
    EXPECT_TRUE(copy.Run());
    EXPECT_EQ(TextOf(In("b.raw")), "older");
    EXPECT_FALSE(copy.Run());
    EXPECT_FALSE(copy.Error());
    EXPECT_FALSE(copy.Run());
    EXPECT_EQ(TextOf(In("b.raw")), TextOf(source));
}

TEST_F(FileCopyTest, GivenUpItLeavesNothing) {
    const fs::path source = Write("a.raw", Text(3 * kBlock));
    Write("b.raw", "older");
    {
        FileCopy copy(source, In("b.raw"));
        EXPECT_TRUE(copy.Run());
    }
    EXPECT_EQ(TextOf(In("b.raw")), "older");
    EXPECT_EQ(Names(), (std::set<std::string>{"a.raw", "b.raw"}));
}

TEST_F(FileCopyTest, OfAFileThatGrowsItTakesWhatWasThere) {
    const std::string text = Text(kBlock + 5);
    const fs::path source = Write("a.raw", text);
    FileCopy copy(source, In("b.raw"));
    std::ofstream(source, std::ios::binary | std::ios::app) << "more";
    while (copy.Run()) {
    }
    EXPECT_FALSE(copy.Error());
    EXPECT_EQ(TextOf(In("b.raw")), text);
}

TEST_F(FileCopyTest, AFileThatBecomesShorterIsNoCopy) {
    const fs::path source = Write("a.raw", Text(3 * kBlock));
    FileCopy copy(source, In("b.raw"));
    EXPECT_TRUE(copy.Run());
    fs::resize_file(source, 10);
    while (copy.Run()) {
    }
    EXPECT_TRUE(copy.Error());
    EXPECT_EQ(Names(), std::set<std::string>{"a.raw"});
}

TEST_F(FileCopyTest, NeverOntoItself) {
    const fs::path source = Write("a.raw", "text");
    fs::create_hard_link(source, In("b.raw"));
    for (const char* name : {"a.raw", "b.raw"}) {
        FileCopy copy(source, In(name));
        EXPECT_FALSE(copy.Run());
        EXPECT_EQ(copy.Error().code, EBUSY);
    }
    EXPECT_EQ(TextOf(source), "text");
}

TEST_F(FileCopyTest, WhatIsMissingIsAnErrorWithTheSystemsReason) {
    EXPECT_EQ(CopyDataFile(In("gone.raw"), In("b.raw")).code, ENOENT);
    const FileError error = CopyDataFile(Write("a.raw", "text"), In("gone") / "b.raw");
    EXPECT_EQ(error.code, ENOENT);
    EXPECT_EQ(error.text, std::generic_category().message(ENOENT));
    EXPECT_EQ(CopyDataFile(Folder(), In("b.raw")).code, EISDIR);
    EXPECT_EQ(Names(), std::set<std::string>{"a.raw"});
}

}  // namespace
}  // namespace marisonde
