#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "calibration/CalibrationDataClass.h"
#include "calibration/Converter.h"
#include "decode/Decoders.h"
#include "decode/Lines.h"
#include "files/DecFile.h"

namespace marisonde {
namespace {

using enum InstTypeCode;
using namespace lines;

std::string Heading(InstTypeCode type, bool houseCheck) {
    std::string text;
    WriteDecHeader(text, type, houseCheck);
    return text;
}

/// The row of the last of these lines, decoded one after the other.
std::string RowOf(std::initializer_list<std::string> lines, InstTypeCode type, bool houseCheck) {
    RawSample sample;
    LineKind kind = LineKind::Other;
    for (const std::string& line : lines) {
        kind = ClassifyLine(line);
        ParseRawLine(line, kind, type, sample);
    }
    std::string text;
    WriteDecLine(text, sample, kind, type, houseCheck);
    return text;
}

TEST(DecFileTest, HeadingsOfTheCorvaneModels) {
    EXPECT_EQ(Heading(Corvane2, false),
              "Time,Pressure,Snorm1,Snorm2,Snorm3,Gain1,Bgnd1,Gain2,Bgnd2,Gain3,Bgnd3,Temp,Error\r\n");
    EXPECT_EQ(Heading(Corvane2, true),
              "Time,Pressure,Snorm1,SigOff1,Ref1,RefOff1,Snorm2,SigOff2,Ref2,RefOff2,Snorm3,SigOff3,Ref3,"
              "RefOff3,Gain1,Bgnd1,Gain2,Bgnd2,Gain3,Bgnd3,Temp,VSupA,VSubB,VBack,VAux,Error\r\n");
    EXPECT_EQ(Heading(Corvane4, false),
              "Time,Pressure,Snorm1,Snorm2,Snorm3,Snorm4,Gain1,Bgnd1,Gain2,Bgnd2,Gain3,Bgnd3,Gain4,Bgnd4,"
              "Temp,Error\r\n");
    EXPECT_EQ(Heading(Corvane6, false),
              "Time,Pressure,Snorm1,Snorm2,Snorm3,Snorm4,Snorm5,Snorm6,Snorm7,Snorm8,Gain1,Bgnd1,Gain2,Bgnd2,"
              "Gain3,Bgnd3,Gain4,Bgnd4,Gain5,Bgnd5,Gain6,Bgnd6,Gain7,Bgnd7,Gain8,Bgnd8,Temp,Error\r\n");
}

TEST(DecFileTest, HeadingsOfTheOtherModels) {
    for (const InstTypeCode type : {LTidal, NTidal, XTidal}) {
        EXPECT_EQ(Heading(type, false), "Time,Beta,Gain,Trans,Pressure,Temp\r\n");
        EXPECT_EQ(Heading(type, true),
                  "Time,Beta,Gain,Trans,Pressure,Temp,Voltage,LEDDrive,BBgnd,TBgnd,Temp2,Temp3\r\n");
    }
    for (const InstTypeCode type : {Fathom2, Delph2, Delph4, Delph6, Unknown})
        EXPECT_EQ(Heading(type, true), "Time,\r\n");
}

// Time of the Corvane examples: 1231070712 x 1.1574074074074073E-5 + 25569 = 39817.50361111111 in doubles.

TEST(DecFileTest, ASampleAsTheInstrumentNormalisedIt) {
    // Signals 1000, 2000, 3000; gains 1, 2, 3 without background; temperature 60 / 5 - 10; error 2.
    EXPECT_EQ(RowOf({WithChecksum(kSample)}, Corvane2, false),
              "39817.50361111111,8000,1000,2000,3000,1,0,2,0,3,0,2,2\r\n");
}

TEST(DecFileTest, HundredthsAreInTheTime) {
    // (1231070712 + 0.5) x 1.1574074074074073E-5 + 25569 = 39817.503616898146.
    EXPECT_EQ(RowOf({WithChecksum(kHundredths)}, Corvane2, false),
              "39817.503616898146,8000,1000,2000,3000,1,0,2,0,3,0,2,2\r\n");
}

TEST(DecFileTest, AVerboseRecordIsNormalisedHere) {
    // Slot i: (1000 + i - 16) / (2016 - 16) = 0.492, 0.4925, 0.493. The temperature byte 32h = 50 as it is.
    EXPECT_EQ(RowOf({WithChecksum(kVerbose)}, Corvane2, true),
              "39817.50361111111,8000,0.492,16,2016,16,0.4925,16,2016,16,0.493,16,2016,16,"
              "1,5,2,5,3,5,50,120,80,200,0,0\r\n");
}

TEST(DecFileTest, ADecimalVerboseRecordShowsItsElapsedTime) {
    // 360000 hundredths x 1.1574074074074073E-5 / 100 = 4.166666666666666E-02 days. The larger supply is 120
    // / 10.
    EXPECT_EQ(RowOf({kVerboseDecimal}, Corvane2, true),
              "4.166666666666666E-02,8000,0.492,16,2016,16,0.4925,16,2016,16,0.493,16,2016,16,"
              "1,0,2,0,3,0,2,12,0,0,0,0\r\n");
}

TEST(DecFileTest, ALeadingTimeFieldChangesNothing) {
    EXPECT_EQ(RowOf({"0.5," + kVerboseDecimal}, Corvane2, true), RowOf({kVerboseDecimal}, Corvane2, true));
}

TEST(DecFileTest, AReferenceAtItsOffsetGivesNoSignal) {
    // Only slot 1 differs: reference 16 with offset 16.
    const std::string line =
        "360000,1000,16,16,16,1001,16,2016,16,1002,16,2016,16,1003,16,2016,16,"
        "1004,16,2016,16,1005,16,2016,16,1006,16,2016,16,1007,16,2016,16,"
        "90,91,92,93,94,95,96,97,1,2,3,4,5,6,7,8,60,8000,118,120,";
    EXPECT_EQ(RowOf({line}, Corvane2, false),
              "4.166666666666666E-02,8000,0,0.4925,0.493,1,0,2,0,3,0,2,0\r\n");
}

TEST(DecFileTest, TidalSamplesCarryWhatTheExtraLineBeforeSaid) {
    // (12345678h + 0.25) x 1.1574074074074073E-5 + 29221 = 32755.952502893517. Extra line: 78h / 10 volts,
    // 100h x 0.00382 = 0.97792, 5, 6, 3000h x 0.00382 - 50 = -3.05984, 4000h x 0.00382 - 50 = 12.58688.
    EXPECT_EQ(RowOf({WithChecksum(kTidalExtra), WithChecksum(kLTidal)}, LTidal, true),
              "32755.952502893517,1024,3,-1,32768,10,12,0.97792,5,6,-3.06,12.59\r\n");
    EXPECT_EQ(RowOf({WithChecksum(kLTidal)}, LTidal, false), "32755.952502893517,1024,3,-1,32768,10\r\n");
}

TEST(DecFileTest, PressureAndTemperatureHaveTwoDecimals) {
    // 0 seconds is the epoch of the family, 29221. 0.125 and 0.375 are halves and go to the even digit.
    EXPECT_EQ(RowOf({"0,1,2,3,1000.125,21.375"}, XTidal, false), "29221,1,2,3,1000.12,21.38\r\n");
    std::string line = kVerboseDecimal;
    line.replace(line.find("60,8000,"), 8, "60,8000.375,");
    EXPECT_EQ(RowOf({line}, Corvane2, false),
              "4.166666666666666E-02,8000.38,0.492,0.4925,0.493,1,0,2,0,3,0,2,0\r\n");
}

TEST(DecFileTest, DelphModelsHaveTheirTimeAlone) {
    EXPECT_EQ(RowOf({kDelph}, Delph4, true), "39817.50361111111,\r\n");
}

TEST(DecFileTest, TheTimeIsThatOfTheCalibratedFile) {
    for (int code = 0; code < static_cast<int>(Unknown); ++code) {
        CalibrationDataClass cal;
        cal.InstType = static_cast<InstTypeCode>(code);
        RawSample raw;
        raw.Time = 1231070712;
        raw.Hundredths = 37;
        CalibratedSample sample;
        ASSERT_TRUE(ApplyCalibration(raw, cal, {}, {}, sample));
        EXPECT_EQ(SampleDays(raw, cal.InstType), sample.Time) << InstTypeName(cal.InstType);
    }
}

}  // namespace
}  // namespace marisonde
