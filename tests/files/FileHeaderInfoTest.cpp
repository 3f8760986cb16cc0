#include <cerrno>
#include <string>

#include "calibration/CalibrationDataClass.h"
#include "decode/Lines.h"
#include "files/DatFile.h"
#include "files/FileHeaderInfo.h"
#include "files/RawFile.h"
#include "support/FileFixture.h"

namespace marisonde {
namespace {

using enum InstTypeCode;

struct Told {
    InstTypeCode model = Unknown;
    std::string type;
    std::string serial;
    bool operator==(const Told&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Told& told) {
    return out << InstTypeName(told.model) << " '" << told.type << "' '" << told.serial << "'";
}

Told TypeOfText(const std::string& text) {
    Told told;
    told.model = GetDataFileTypeOfText(text, told.type, told.serial);
    return told;
}

std::string Repeated(const std::string& line, int times) {
    std::string text;
    for (int i = 0; i < times; ++i) text += line;
    return text;
}

TEST(DataFileTypeTest, AHeaderTellsAll) {
    EXPECT_EQ(
        TypeOfText("[Header]\r\nFileType=raw\r\nDeviceType=Corvane-4\r\nSerial=V4970312\r\n[EndHeader]\r\n"),
        (Told{Corvane4, "raw", "V4970312"}));
    EXPECT_EQ(TypeOfText("FileType=dat\nDeviceType=n-tidal\nSerial=NT1 // the old one\n"),
              (Told{NTidal, "dat", "NT1"}));
    EXPECT_EQ(TypeOfText("FileType=rmu\rDeviceType=Delph-6\rSerial=D61\r"), (Told{Delph6, "rmu", "D61"}));
}

TEST(DataFileTypeTest, NothingBehindTheLastThingToKnowIsRead) {
    EXPECT_EQ(TypeOfText("FileType=raw\r\nDeviceType=Delph-4\r\nSerial=D41\r\nDeviceType=Delph-6\r\n"),
              (Told{Delph4, "raw", "D41"}));
    EXPECT_EQ(TypeOfText("FileType=raw\r\nDeviceType=Delph-4\r\nDeviceType=Delph-6\r\nSerial=D41\r\n"),
              (Told{Delph6, "raw", "D41"}));
}

struct LineCase {
    std::string line;
    Told told;
};

TEST(DataFileTypeTest, WithoutAHeaderTheLinesTell) {
    using namespace lines;
    const LineCase cases[] = {
        {WithChecksum(kLTidal), {LTidal, "raw", ""}},
        {WithChecksum("*C" + kLTidal.substr(2)), {NTidal, "raw", ""}},
        {WithChecksum(kTidalExtra), {XTidal, "raw", ""}},
        {Record(5), {XTidal, "raw", ""}},
        {Record(11), {XTidal, "raw", ""}},
        {Record(8), {Fathom2, "raw", ""}},
        {Record(15), {Fathom2, "raw", ""}},
        {WithChecksum(kSample), {Corvane6, "raw", ""}},
        {kVerboseDecimal, {Corvane6, "raw", ""}},
        // A leading time field is the mark of the factory procedures.
        {"0.5," + kVerboseDecimal, {Corvane6, "rmu", ""}},
        // Tidal lines with a time field name no model themselves.
        {Record(6), {XTidal, "raw", ""}},
        {Record(13), {XTidal, "raw", ""}},
        // Kinds without a decoder are data, of nobody knows what.
        {Record(19), {Unknown, "raw", ""}},
        {Record(7), {Unknown, "", ""}},
        {"hello", {Unknown, "", ""}},
        {"", {Unknown, "", ""}},
        {WithChecksum(kSample) + "0", {Unknown, "", ""}},
    };
    for (const LineCase& row : cases) EXPECT_EQ(TypeOfText(row.line + "\r\n"), row.told) << row.line;
}

TEST(DataFileTypeTest, TheHeaderHasTheLastWordOnTheModel) {
    EXPECT_EQ(TypeOfText("DeviceType=Delph-2\r\n" + lines::Record(8) + "\r\n"), (Told{Delph2, "raw", ""}));
    EXPECT_EQ(TypeOfText("FileType=raw\r\n" + lines::Record(54) + "\r\n" + lines::Record(8) + "\r\n").type,
              "raw");
    EXPECT_EQ(TypeOfText("DeviceType=l-Tidal\r\n" + lines::Record(13) + "\r\n"), (Told{LTidal, "rmu", ""}));
    EXPECT_EQ(TypeOfText("DeviceType=nonsense\r\n" + lines::Record(5) + "\r\n"), (Told{XTidal, "raw", ""}));
}

TEST(DataFileTypeTest, TheNumbersOfACalibratedFileAreNoLinesOfAnInstrument) {
    EXPECT_EQ(TypeOfText("FileType=dat\r\n[Data]\r\n" + lines::Record(8) + "\r\n"),
              (Told{Unknown, "dat", ""}));
}

TEST(DataFileTypeTest, OnlyTheFirst300LinesAreLookedAt) {
    const std::string data = lines::Record(5) + "\r\n";
    EXPECT_EQ(TypeOfText(Repeated("\r\n", 299) + data), (Told{XTidal, "raw", ""}));
    EXPECT_EQ(TypeOfText(Repeated("\r\n", 300) + data), Told{});
}

class FileHeaderInfoTest : public FileFixture {};

TEST_F(FileHeaderInfoTest, ARawFileOfThisProgram) {
    CalibrationDataClass cal;
    cal.Serial = "CV970312";
    cal.Config = "FT";
    cal.NoteSource("//server/cal, old/CV970312.cal");
    std::string text;
    WriteRawHeader(text, {"Leg 2", 40000}, "raw", Corvane6, &cal);
    FileHeaderInfo info;
    ASSERT_FALSE(ReadFileHeader(Write("cast.raw", text), info));
    const FileHeaderInfo expected{Corvane6,
                                  "raw",
                                  "CV970312",
                                  "Corvane-6",
                                  "FT",
                                  "",
                                  "Corvane-6",
                                  "//server/cal, old/CV970312.cal",
                                  "07/06/09 00:00:00"};
    EXPECT_EQ(info, expected);
    Told told;
    told.model = GetDataFileType(In("cast.raw"), told.type, told.serial);
    EXPECT_EQ(told, (Told{Corvane6, "raw", "CV970312"}));
}

TEST_F(FileHeaderInfoTest, ACalibratedFileUpToItsData) {
    FileHeaderInfo info;
    ASSERT_FALSE(ReadFileHeader(
        Write("cast.dat",
              "[Header]\r\nFileType=dat\r\nDeviceType=n-Tidal\r\nID=7\r\n[Data]\r\nSerial=too late\r\n"),
        info));
    EXPECT_EQ(info.InstType, NTidal);
    EXPECT_EQ(info.ID, "7");
    EXPECT_EQ(info.Serial, "");
}

TEST_F(FileHeaderInfoTest, WithoutATypeTheSearchGoesOnInTheData) {
    FileHeaderInfo info;
    ASSERT_FALSE(ReadFileHeader(Write("cast.rmu", "[Data]\r\n0.5," + lines::kVerboseDecimal + "\r\n"), info));
    EXPECT_EQ(info.FileType, "rmu");
    EXPECT_EQ(info.InstType, Corvane6);
}

TEST_F(FileHeaderInfoTest, AMissingFileIsAnErrorAndTellsNothing) {
    FileHeaderInfo info;
    info.Serial = "left over";
    EXPECT_EQ(ReadFileHeader(In("nothing"), info).code, ENOENT);
    EXPECT_EQ(info, FileHeaderInfo{});
    Told told{Delph2, "left", "over"};
    told.model = GetDataFileType(In("nothing"), told.type, told.serial);
    EXPECT_EQ(told, Told{});
}

struct HeaderCase {
    std::string header;  ///< what is passed over
    std::string data;
};

TEST(HeaderLengthTest, OnlyACompleteBlockIsAHeader) {
    const std::string sample = lines::WithChecksum(lines::kSample) + "\r\n";
    const HeaderCase cases[] = {
        {"[Header]\r\nSerial=1\r\n[EndHeader]\r\n", sample},
        {"[Header]\nSerial=1\n[EndHeader]\n", sample},
        {"[Header]\rSerial=1\r[EndHeader]\r", sample},
        {"[Header]\r\n[End of it\r\n", "[Header]\r\n[End]\r\n"},
        {"[UserHeader]\r\n1,2,3,4,5,6\r\n[Header]\r\n[EndHeader]\r\n", sample},
        {"some words\r\n[Header]\r\n[EndHeader]\r\n", sample},
        {"[Header]\r\n" + sample + "[EndHeader]\r\n", sample},
        {"[Header]\r\n[EndHeader]", ""},
        // Without its end, or behind data, there is none.
        {"", "[Header]\r\nSerial=1\r\n" + sample},
        {"", "[EndHeader]\r\n" + sample},
        {"", sample + "[Header]\r\n[EndHeader]\r\n" + sample},
        {"", sample},
        {"", ""},
    };
    for (const HeaderCase& row : cases)
        EXPECT_EQ(HeaderLength(row.header + row.data), row.header.size()) << row.header << row.data;
}

class WholeLines : public FileFixture,
                   public testing::WithParamInterface<std::pair<std::string, std::uint64_t>> {};

/// A recording that goes on has whole lines up to its last carriage return.
TEST_P(WholeLines, EndWithTheLastCarriageReturn) {
    EXPECT_EQ(WholeLinesLength(Write("log.raw", GetParam().first)), GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(
    Recordings, WholeLines,
    testing::Values(std::pair{std::string(), 0U}, std::pair{std::string("abc"), 0U},
                    std::pair{std::string("abc\r\nde"), 4U}, std::pair{std::string("abc\r"), 4U},
                    std::pair{"\r" + std::string(10000, 'x'), 1U},
                    std::pair{std::string(4095, 'x') + "\r" + std::string(4096, 'y'), 4096U}));

TEST(WholeLinesTest, OfAFileThatIsNotThereThereAreNone) {
    EXPECT_EQ(WholeLinesLength("/nowhere/at/all.raw"), 0U);
}

}  // namespace
}  // namespace marisonde
