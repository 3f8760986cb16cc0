#include <cerrno>
#include <filesystem>
#include <set>
#include <string>

#include "common/ReplacedFile.h"
#include "support/FileFixture.h"
#include "support/FileSizeLimit.h"

namespace marisonde {
namespace {

namespace fs = std::filesystem;

using ReplacedFileTest = FileFixture;

TEST_F(ReplacedFileTest, TwoAtATimeDoNotMixTheirBytes) {
    ReplacedFile first(In("cast.dat"), ".saving");
    ReplacedFile second(In("cast.dat"), ".saving");
    ASSERT_FALSE(first.Open());
    ASSERT_FALSE(second.Open());
    EXPECT_EQ(Names(), (std::set<std::string>{"cast.dat.saving", "cast.dat.saving2"}));
    first.Append("a long first text");
    second.Append("second");
    EXPECT_FALSE(first.Commit());
    EXPECT_EQ(TextOf(In("cast.dat")), "a long first text");
    EXPECT_FALSE(second.Commit());
    EXPECT_EQ(TextOf(In("cast.dat")), "second");
    EXPECT_EQ(Names(), std::set<std::string>{"cast.dat"});
}

TEST_F(ReplacedFileTest, AFileThatIsCalledLikeItIsLeftAlone) {
    Write("cast.dat.saving", "somebody's own");
    {
        ReplacedFile givenUp(In("cast.dat"), ".saving");
        ASSERT_FALSE(givenUp.Open());
    }
    EXPECT_EQ(Names(), std::set<std::string>{"cast.dat.saving"});
    EXPECT_EQ(TextOf(In("cast.dat.saving")), "somebody's own");
}

TEST_F(ReplacedFileTest, OfALinkItReplacesWhatTheLinkLeadsTo) {
    fs::create_directory(In("stick"));
    TestFolder::Write(In("stick") / "kept.dat", "older");
    fs::create_symlink(In("stick") / "kept.dat", In("cast.dat"));
    ReplacedFile file(In("cast.dat"), ".saving");
    ASSERT_FALSE(file.Open());
    file.Append("newer");
    EXPECT_FALSE(file.Commit());
    EXPECT_TRUE(fs::is_symlink(In("cast.dat")));
    EXPECT_EQ(TextOf(In("stick") / "kept.dat"), "newer");
    EXPECT_EQ(TestFolder::Names(In("stick")), std::set<std::string>{"kept.dat"});
}

TEST_F(ReplacedFileTest, ALinkThatLeadsNowhereGivesWay) {
    fs::create_symlink(In("gone"), In("cast.dat"));
    ReplacedFile file(In("cast.dat"), ".saving");
    ASSERT_FALSE(file.Open());
    file.Append("text");
    EXPECT_FALSE(file.Commit());
    EXPECT_FALSE(fs::is_symlink(In("cast.dat")));
    EXPECT_EQ(TextOf(In("cast.dat")), "text");
}

TEST_F(ReplacedFileTest, BytesAreSavedWholeOrNotAtAll) {
    EXPECT_FALSE(SaveWhole(In("notes.txt"), "first"));
    {
        const FileSizeLimit limit(10);
        if (!limit.Refuses()) GTEST_SKIP() << "this system knows no limit of a file's size";
        const FileError error = SaveWhole(In("notes.txt"), "more than ten bytes");
        EXPECT_EQ(error.code, EFBIG);
        EXPECT_EQ(error.text, "File too large");
    }
    EXPECT_EQ(TextOf(In("notes.txt")), "first");
    EXPECT_EQ(Names(), std::set<std::string>{"notes.txt"});
    EXPECT_FALSE(SaveWhole(In("notes.txt"), "more than ten bytes"));
    EXPECT_EQ(TextOf(In("notes.txt")), "more than ten bytes");
}

}  // namespace
}  // namespace marisonde
