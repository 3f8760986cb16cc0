// Calibration files: load, save, and what a file is.
#include <cstdint>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "CalFixture.h"
#include "support/TestFolder.h"

namespace marisonde {
namespace {

namespace fs = std::filesystem;

class CalFiles : public testing::Test {
  protected:
    [[nodiscard]] fs::path Write(const std::string& name, std::string_view bytes) const {
        TestFolder::Write(folder_ / name, bytes);
        return folder_ / name;
    }

    TestFolder folder_;
};

TEST_F(CalFiles, LoadNotesTheSource) {
    const fs::path path = Write("a.cal", WithCrLf(kCorvane2Text));
    Cal cal;
    const auto result = cal.LoadSourceFile(path, FixedModel(), {});
    EXPECT_TRUE(result.ok);
    EXPECT_TRUE(result.messages.empty());
    EXPECT_EQ(cal.SourceFile(), path.string());
    EXPECT_EQ(cal.SavedFile(), path.string());
    EXPECT_EQ(cal.InstType, InstTypeCode::Corvane2);
    EXPECT_EQ(cal.Channel(0).Mu, 0.123457);
}

TEST_F(CalFiles, SavingACopyKeepsTheSource) {
    Cal cal = Corvane2Cal();
    cal.NoteSource("origin");
    cal.ChangedItems = 5;
    const fs::path path = folder_ / "copy.cal";
    EXPECT_TRUE(cal.SaveCopyToFile(path, {}).ok);
    EXPECT_EQ(TestFolder::Read(path), WithCrLf(kCorvane2Text));
    EXPECT_EQ(cal.ChangedItems, 0);
    EXPECT_EQ(cal.SourceFile(), "origin");
    EXPECT_EQ(cal.SavedFile(), path.string());
    fs::remove(path);
    EXPECT_EQ(cal.SavedFile(), "origin");
}

TEST_F(CalFiles, SavingAsMovesTheSource) {
    Cal cal = Corvane2Cal();
    const fs::path path = folder_ / "as.cal";
    EXPECT_TRUE(cal.SaveAsFile(path, {}).ok);
    EXPECT_EQ(cal.SourceFile(), path.string());
}

TEST_F(CalFiles, TypeByTheFirstTwoLettersOfTheSerial) {
    struct Row {
        const char* text;
        InstTypeCode type;
        const char* serial;
    };
    for (const auto& [text, type, serial] : {
             Row{"Serial=CV6-1", InstTypeCode::Corvane6, "CV6-1"},
             Row{"Serial=CV2-1", InstTypeCode::Corvane6, "CV2-1"},
             Row{"Serial=V2-1", InstTypeCode::Corvane2, "V2-1"},
             Row{"Serial=V4-1", InstTypeCode::Corvane4, "V4-1"},
             Row{"Serial=LT99", InstTypeCode::LTidal, "LT99"},
             Row{"Serial=NT99", InstTypeCode::NTidal, "NT99"},
             Row{"Serial=N2-1", InstTypeCode::Delph2, "N2-1"},
             Row{"Serial=D2-1", InstTypeCode::Delph2, "D2-1"},
             Row{"Serial=D4-1", InstTypeCode::Delph4, "D4-1"},
             Row{"Serial=D6-1", InstTypeCode::Delph6, "D6-1"},
             Row{"DeviceType=Fathom-2\nSerial=F2-1", InstTypeCode::Fathom2, "F2-1"},
             Row{"DeviceType=Toaster\nSerial=77", InstTypeCode::Unknown, "77"},
             Row{"Serial=77\nDeviceType=Delph-2", InstTypeCode::Delph2, "77"},
             Row{"Serial=CV6-1\nDeviceType=Delph-2", InstTypeCode::Corvane6, "CV6-1"},
             Row{"nothing", InstTypeCode::Unknown, ""},
         }) {
        const auto found = GetCalFileType(Write("t.cal", text));
        EXPECT_EQ(found.type, type) << text;
        EXPECT_EQ(found.serial, serial) << text;
        EXPECT_EQ(found.error, "");
    }
    EXPECT_EQ(GetCalFileType(folder_ / "none.cal").type, InstTypeCode::Unknown);
}

TEST_F(CalFiles, TypeInLinesOfAnyEnd) {
    for (const std::string end : {"\r\n", "\n", "\r"}) {
        const auto found = GetCalFileType(
            Write("t.cal", "[General]" + end + "DeviceType=Fathom-2" + end + end + "Serial=F2-1" + end));
        EXPECT_EQ(found.type, InstTypeCode::Fathom2);
        EXPECT_EQ(found.serial, "F2-1");
    }
}

// A recording taken for a calibration may be longer than the memory.
TEST_F(CalFiles, NothingBehindADecidingSerialIsRead) {
    const fs::path path = Write("long.cal", "Serial=CV6-1\r\n");
    std::error_code error;
    fs::resize_file(path, std::uintmax_t{1} << 40U, error);
    if (error) GTEST_SKIP() << "this file system has no room for a long empty file";
    EXPECT_EQ(GetCalFileType(path).type, InstTypeCode::Corvane6);
}

}  // namespace
}  // namespace marisonde
