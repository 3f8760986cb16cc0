#include <gtest/gtest.h>

#include "Lines.h"
#include "decode/Decoders.h"

namespace marisonde {
namespace {

constexpr InstTypeCode kModel = InstTypeCode::XTidal;

TEST(TidalHex, WorkedExample) {
    RawSample sample;
    sample.SigOff[0] = 7;
    sample.Ref[0] = 9;
    ASSERT_TRUE(ParseRawLine(WithChecksum(lines::kLTidal), kModel, sample));
    EXPECT_EQ(sample.Format, 3);
    EXPECT_EQ(sample.Time, 305419896);  // 1234 x 10000 + 5678 = 4660 x 65536 + 22136
    EXPECT_EQ(sample.Hundredths, 25);   // 19 = 16 + 9
    EXPECT_EQ(sample.Sig[0], 1024);     // 0400
    EXPECT_EQ(sample.SnormF[0], 1024);
    EXPECT_EQ(sample.SigOff[0], 0);
    EXPECT_EQ(sample.Ref[0], 9);  // not in this line
    EXPECT_EQ(sample.Gain[0], 3);
    EXPECT_EQ(sample.Trans, -1);        // FFFFFF = 16777215 - 16777216
    EXPECT_EQ(sample.Pressure, 32768);  // 8000, which goes on counting upward
    EXPECT_EQ(sample.Temp, 10);         // 0C8 = 200; 200 / 10 - 10
}

TEST(TidalHex, TheOtherModelHasTheSameFields) {
    std::string body = lines::kLTidal;
    body[1] = 'C';
    RawSample n;
    RawSample l;
    ASSERT_TRUE(ParseRawLine(WithChecksum(body), kModel, n));
    ASSERT_TRUE(ParseRawLine(WithChecksum(lines::kLTidal), kModel, l));
    EXPECT_EQ(n.Format, 4);
    l.Format = 4;
    EXPECT_EQ(n, l);
}

TEST(TidalHex, SignsOfTransmissionAndPressure) {
    struct Row {
        std::string_view trans;
        std::int32_t counts;
        std::string_view pressure;
        float pressureCounts;
    };
    const Row rows[] = {{"000000", 0, "0000", 0},
                        {"7FFFFF", 8388607, "7FFF", 32767},
                        {"800000", -8388608, "8000", 32768},
                        {"FFFFFF", -1, "FFFF", 65535}};
    for (const Row& row : rows) {
        std::string body = lines::kLTidal;
        body.replace(17, 6, row.trans);
        body.replace(23, 4, row.pressure);
        RawSample sample;
        ASSERT_TRUE(ParseRawLine(WithChecksum(body), kModel, sample));
        EXPECT_EQ(sample.Trans, row.counts);
        EXPECT_EQ(sample.Pressure, row.pressureCounts);
    }
}

TEST(TidalExtra, FillsItsFieldsButMakesNoSample) {
    RawSample sample;
    ASSERT_TRUE(ParseRawLine(WithChecksum(lines::kLTidal), kModel, sample));
    RawSample expected = sample;
    EXPECT_FALSE(ParseRawLine(WithChecksum(lines::kTidalExtra), kModel, sample));
    expected.Voltage = 12;                                  // 78 = 120; 120 / 10
    expected.LEDDrive = static_cast<float>(256 * 0.00382);  // 0100
    expected.Bgnd[0] = 5;
    expected.TBgnd = 6;
    expected.Temp2 = static_cast<float>(12288 * 0.00382 - 50);  // 3000
    expected.Temp3 = static_cast<float>(16384 * 0.00382 - 50);  // 4000
    EXPECT_EQ(sample, expected);
    EXPECT_FLOAT_EQ(sample.LEDDrive, 0.97792F);
    EXPECT_FLOAT_EQ(sample.Temp2, -3.05984F);
    EXPECT_FLOAT_EQ(sample.Temp3, 12.58688F);
}

void ExpectShortFields(const RawSample& sample) {
    EXPECT_EQ(sample.Time, 915148800);
    EXPECT_EQ(sample.Hundredths, 25);
    EXPECT_EQ(sample.SnormF[0], 1024.5F);
    EXPECT_EQ(sample.Sig[0], 1024);  // the half goes to the even neighbour
    EXPECT_EQ(sample.SigOff[0], 0);
    EXPECT_EQ(sample.Ref[0], 1);
    EXPECT_EQ(sample.RefOff[0], 0);
    EXPECT_EQ(sample.Gain[0], 3);
    EXPECT_EQ(sample.Trans, -5000);
    EXPECT_EQ(sample.Pressure, 8000);
    EXPECT_EQ(sample.Temp, 12.5F);
}

const std::string kShort = "915148800.25,1024.5,3,-5000,8000,12.5";
const std::string kFull = kShort + ",11.9,2.5,4,5,20.1,20.2";

void ExpectFullFields(const RawSample& sample) {
    ExpectShortFields(sample);
    EXPECT_EQ(sample.Voltage, 11.9F);
    EXPECT_EQ(sample.LEDDrive, 2.5F);
    EXPECT_EQ(sample.Bgnd[0], 4);
    EXPECT_EQ(sample.TBgnd, 5);
    EXPECT_EQ(sample.Temp2, 20.1F);
    EXPECT_EQ(sample.Temp3, 20.2F);
}

TEST(TidalDecimal, ShortRecordKeepsTheLaterFields) {
    RawSample sample;
    sample.Voltage = 10;
    sample.Temp3 = 7;
    sample.SigOff[0] = 5;
    sample.RefOff[0] = 5;
    ASSERT_TRUE(ParseRawLine(kShort, kModel, sample));
    ExpectShortFields(sample);
    EXPECT_EQ(sample.Voltage, 10);
    EXPECT_EQ(sample.Temp3, 7);
}

TEST(TidalDecimal, FullRecordWithAndWithoutItsLastComma) {
    for (const std::string& line : {kFull, kFull + ","}) {
        RawSample sample;
        ASSERT_EQ(ClassifyLine(line), LineKind::TidalFull);
        ASSERT_TRUE(ParseRawLine(line, kModel, sample));
        ExpectFullFields(sample);
    }
}

TEST(TidalDecimal, TimedRecords) {
    RawSample sample;
    ASSERT_TRUE(ParseRawLine("12.5," + kShort, kModel, sample));
    ExpectShortFields(sample);
    EXPECT_EQ(sample.ElapsedHundredths, 1250);
    ASSERT_TRUE(ParseRawLine("7.25," + kFull + ",", kModel, sample));
    ExpectFullFields(sample);
    EXPECT_EQ(sample.ElapsedHundredths, 725);
}

TEST(TidalDecimal, FractionOfTheTimeIsRoundedToHundredths) {
    struct Row {
        std::string_view time;
        double seconds;
        int hundredths;
    };
    const Row rows[] = {{"100", 100, 0},      {"100.07", 100, 7}, {"100.29", 100, 29},
                        {"100.125", 100, 12},  // 12.5 to the even neighbour
                        {"100.375", 100, 38}, {"0.58", 0, 58},    {"", 0, 0}};
    for (const Row& row : rows) {
        RawSample sample;
        ASSERT_TRUE(ParseRawLine(std::string("+") + std::string(row.time) + ",1,1,1,1,1",
                                 LineKind::TidalShort, kModel, sample));
        EXPECT_EQ(sample.Time, row.seconds) << row.time;
        EXPECT_EQ(sample.Hundredths, row.hundredths) << row.time;
    }
}

TEST(TidalDecimal, BadFieldsReadZero) {
    RawSample sample;
    sample.Pressure = 5;
    ASSERT_TRUE(ParseRawLine("1,x,,99999999999,nan,-inf", kModel, sample));
    EXPECT_EQ(sample.Sig[0], 0);
    EXPECT_EQ(sample.Gain[0], 0);
    EXPECT_EQ(sample.Trans, 0);
    EXPECT_EQ(sample.Pressure, 0);
    EXPECT_EQ(sample.Temp, 0);
}

TEST(TidalDecimal, NumericLinesOfNoKindAreTakenForATidalModelOnly) {
    for (int code = 0; code <= 10; ++code) {
        const auto model = static_cast<InstTypeCode>(code);
        RawSample sample;
        sample.Gain[0] = 5;
        const bool taken = ParseRawLine("100.5,77", model, sample);
        EXPECT_EQ(taken, code >= 3 && code <= 5) << code;
        EXPECT_EQ(sample.Sig[0], taken ? 77 : 0);
        EXPECT_EQ(sample.Gain[0], 5);
    }
    RawSample sample;
    EXPECT_FALSE(ParseRawLine("Stopped", kModel, sample));
    EXPECT_FALSE(ParseRawLine("", kModel, sample));
    EXPECT_FALSE(ParseRawLine(" 1,2", kModel, sample));
}

TEST(ParseRawLine, RecognisedKindsWithoutDecoderGiveNoSample) {
    for (const int commas : {19, 21, 16}) {
        RawSample sample;
        EXPECT_FALSE(ParseRawLine(lines::Record(commas), kModel, sample)) << commas;
        EXPECT_EQ(sample, RawSample{});
    }
}

}  // namespace
}  // namespace marisonde
