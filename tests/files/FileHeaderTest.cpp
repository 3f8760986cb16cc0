#include <gtest/gtest.h>
#include <string>

#include "calibration/CalibrationDataClass.h"
#include "common/ConversionUtils.h"
#include "files/RawFile.h"

namespace marisonde {
namespace {

/// 4 July 2011, 09:15:22.
HeaderStamp Stamp(std::string userHeader = "") {
    return {std::move(userHeader), DateFromCivil(2011, 7, 4, 9, 15, 22)};
}

CalibrationDataClass SomeCalibration() {
    CalibrationDataClass cal;
    cal.InstType = InstTypeCode::Corvane4;
    cal.Serial = "HS970312";
    cal.Config = std::string("F");
    return cal;
}

std::string RawHeader(const HeaderStamp& stamp, std::string_view kind, InstTypeCode type,
                      const CalibrationDataClass* cal) {
    std::string out;
    WriteRawHeader(out, stamp, kind, type, cal);
    return out;
}

TEST(CreationDateTest, ComesBackFromItsText) {
    EXPECT_EQ(CreationDateFrom("07/04/11 09:15:22"), DateFromCivil(2011, 7, 4, 9, 15, 22));
    for (const char* text : {"", "07/04/11", "07/04/11 09:15:2x", "2011-07-04 09:15:", "07/04/2011 09:15:22"})
        EXPECT_FALSE(CreationDateFrom(text)) << text;
}

TEST(RawHeaderTest, WithUserHeaderAndCalibrationFile) {
    CalibrationDataClass cal = SomeCalibration();
    cal.NoteSource("/cals/HS970312 new.cal");
    EXPECT_EQ(RawHeader(Stamp("Leg 2, station 14"), "raw", InstTypeCode::Corvane4, &cal),
              "[UserHeader]\r\n"
              "Leg 2, station 14\r\n"
              "[Header]\r\n"
              "MarisondeVersion=2.85\r\n"
              "CreationDate=07/04/11 09:15:22\r\n"
              "FileType=raw\r\n"
              "DeviceType=Corvane-4\r\n"
              "DataSource=Corvane-4\r\n"
              "CalSource=/cals/HS970312 new.cal\r\n"
              "Serial=HS970312\r\n"
              "Config=F\r\n"
              "[EndHeader]\r\n");
}

TEST(RawHeaderTest, AnEmptyUserHeaderWritesNoSectionAndAnEmptySourceTheModel) {
    const CalibrationDataClass cal = SomeCalibration();
    EXPECT_EQ(RawHeader(Stamp(), "rmu", InstTypeCode::Corvane4, &cal),
              "[Header]\r\n"
              "MarisondeVersion=2.85\r\n"
              "CreationDate=07/04/11 09:15:22\r\n"
              "FileType=rmu\r\n"
              "DeviceType=Corvane-4\r\n"
              "DataSource=Corvane-4\r\n"
              "CalSource=Corvane-4\r\n"
              "Serial=HS970312\r\n"
              "Config=F\r\n"
              "[EndHeader]\r\n");
}

TEST(RawHeaderTest, WithoutCalibrationItsKeysAreEmpty) {
    EXPECT_EQ(RawHeader(Stamp(), "raw", InstTypeCode::Unknown, nullptr),
              "[Header]\r\n"
              "MarisondeVersion=2.85\r\n"
              "CreationDate=07/04/11 09:15:22\r\n"
              "FileType=raw\r\n"
              "DeviceType=unknown\r\n"
              "DataSource=unknown\r\n"
              "CalSource=unknown\r\n"
              "Serial=\r\n"
              "Config=\r\n"
              "[EndHeader]\r\n");
}

TEST(RawHeaderTest, TheModelIsThatOfTheWindow) {
    const CalibrationDataClass cal = SomeCalibration();  // of another model
    for (int code = 0; code < kInstTypeCount; ++code) {
        const auto type = static_cast<InstTypeCode>(code);
        const std::string name(InstTypeName(type));
        const std::string header = RawHeader(Stamp(), "raw", type, &cal);
        EXPECT_NE(header.find("\r\nDeviceType=" + name + "\r\nDataSource=" + name + "\r\nCalSource=" + name +
                              "\r\n"),
                  std::string::npos)
            << header;
    }
}

TEST(RawHeaderTest, NothingAboutChannelsStandsInIt) {
    CalibrationDataClass cal = SomeCalibration();
    cal.EditChannel(0).name = "bb470";
    EXPECT_EQ(RawHeader(Stamp(), "raw", InstTypeCode::Corvane4, &cal).find("bb470"), std::string::npos);
}

TEST(RawHeaderTest, AUserHeaderOfSeveralLinesStaysOnOne) {
    const std::string header =
        RawHeader(Stamp("first\r\n[Header]\nthird"), "raw", InstTypeCode::Delph2, nullptr);
    EXPECT_EQ(header.substr(0, header.find("MarisondeVersion")),
              "[UserHeader]\r\nfirst  [Header] third\r\n[Header]\r\n");
}

}  // namespace
}  // namespace marisonde
