// Calibration files that cannot be read or written.
#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <string>

#include "CalFixture.h"
#include "support/FileSizeLimit.h"
#include "support/TestFolder.h"

namespace marisonde {
namespace {

namespace fs = std::filesystem;

/// A calibration with edits that no file has yet.
Cal Changed() {
    Cal cal;
    cal.InstType = InstTypeCode::Corvane2;
    cal.Label = "bow";
    cal.ChangedItems = 5;
    return cal;
}

class CalFileErrors : public testing::Test {
  protected:
    TestFolder folder_;
};

TEST_F(CalFileErrors, AMissingFileFailsInSilence) {
    Cal cal = Changed();
    cal.NoteSource("before");
    const Cal before = cal;
    const auto result = cal.LoadSourceFile(folder_ / "none.cal", FixedModel(), {});
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(cal, before);
}

TEST_F(CalFileErrors, AFileThatCannotBeReadSaysWhy) {
    Cal cal = Changed();
    cal.NoteSource("before");
    const auto result = cal.LoadSourceFile(folder_.Path(), FixedModel(), {});
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.error, "Error opening file: Is a directory.\r" + folder_.Path().string());
    EXPECT_EQ(cal.SourceFile(), "before");
    EXPECT_EQ(cal.InstType, InstTypeCode::Unknown);  // nothing of the calibration before is left
    EXPECT_EQ(cal.Label, "");
    EXPECT_EQ(GetCalFileType(folder_.Path()).error, "Error opening cal file: Is a directory.");
}

TEST_F(CalFileErrors, ADeviceIsNoCalibration) {
    if (!fs::exists("/dev/null")) GTEST_SKIP() << "this system has no devices among its files";
    Cal cal = Changed();
    EXPECT_EQ(cal.LoadSourceFile("/dev/null", FixedModel(), {}).error,
              "Error opening file: Operation not supported.\r/dev/null");
    EXPECT_EQ(GetCalFileType("/dev/null").error, "Error opening cal file: it is not a file.");
}

TEST_F(CalFileErrors, AFailedSaveKeepsWhatIsKnownAsChanged) {
    Cal cal = Changed();
    const fs::path path = folder_ / "no folder" / "x.cal";
    const auto result = cal.SaveAsFile(path, {});
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.error, "Error writing file: No such file or directory.\r" + path.string());
    EXPECT_EQ(cal.ChangedItems, 5);
    EXPECT_EQ(cal.SourceFile(), "");
}

TEST_F(CalFileErrors, AFullDiskIsAFailedSave) {
    Cal cal = Changed();
    const fs::path path = folder_ / "x.cal";
    TestFolder::Write(path, "older");
    CalFileResult result;
    {
        const FileSizeLimit limit(100);
        if (!limit.Refuses()) GTEST_SKIP() << "this system knows no limit of a file's size";
        result = cal.SaveCopyToFile(path, {});
    }
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.error, "Error writing file: File too large.\r" + path.string());
    EXPECT_EQ(TestFolder::Read(path), "older");
    EXPECT_EQ(TestFolder::Names(folder_.Path()), std::set<std::string>{"x.cal"});
    EXPECT_EQ(cal.ChangedItems, 5);
    EXPECT_EQ(cal.SavedFile(), "");
}

TEST_F(CalFileErrors, OfALinkTheFileItLeadsToIsSaved) {
    TestFolder::Write(folder_ / "stick" / "x.cal", "older");
    fs::create_symlink(folder_ / "stick" / "x.cal", folder_ / "x.cal");
    Cal cal = Changed();
    EXPECT_TRUE(cal.SaveCopyToFile(folder_ / "x.cal", {}).ok);
    EXPECT_TRUE(fs::is_symlink(folder_ / "x.cal"));
    EXPECT_EQ(TestFolder::Read(folder_ / "stick" / "x.cal"), cal.CalText({}));
    EXPECT_EQ(TestFolder::Names(folder_ / "stick"), std::set<std::string>{"x.cal"});
}

}  // namespace
}  // namespace marisonde
