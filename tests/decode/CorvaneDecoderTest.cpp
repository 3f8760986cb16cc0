#include <gtest/gtest.h>

#include "Lines.h"
#include "decode/Decoders.h"

namespace marisonde {
namespace {

constexpr InstTypeCode kModel = InstTypeCode::Corvane6;

/// A sample in which every field has been used before.
RawSample Used() {
    RawSample sample;
    sample.Format = 4;
    sample.Time = 5;
    sample.Hundredths = 9;
    sample.DayFraction = 0.25;
    sample.ElapsedCount = 17;
    sample.Error = 3;
    sample.Voltage = 11;
    sample.VSubB = 12;
    sample.VBack = 13;
    sample.Gain.fill(5);
    sample.Sig.fill(100);
    sample.SigOff.fill(2);
    sample.Ref.fill(200);
    sample.RefOff.fill(4);
    sample.Snorm.fill(6);
    sample.SnormF.fill(0.75F);
    sample.Bgnd.fill(8);
    return sample;
}

void ExpectExampleCounts(const RawSample& sample) {
    // 03E8 = 1000, 07D0 = 2000, ... 1770 = 6000, FFFF = 65535 (unsigned), 0000 = 0.
    const std::int32_t counts[] = {1000, 2000, 3000, 4000, 5000, 6000, 65535, 0};
    for (std::size_t slot = 0; slot < 8; ++slot) {
        EXPECT_EQ(sample.Snorm[slot], counts[slot]);
        EXPECT_EQ(sample.Gain[slot], static_cast<int>(slot) + 1);  // gain digit 8 is kept as it came
    }
    EXPECT_EQ(sample.Time, 1231070712);  // 4960 x 10000 + A5F8 = 18784 x 65536 + 42488
    EXPECT_EQ(sample.Pressure, 8000);    // 1F40 = 1 x 4096 + 15 x 256 + 4 x 16
    EXPECT_EQ(sample.Temp, 2);           // 3C = 60; 60 / 5 - 10
    EXPECT_EQ(sample.Error, 2);
}

TEST(CorvaneSample, WorkedExample) {
    RawSample sample;
    ASSERT_TRUE(ParseRawLine(WithChecksum(lines::kSample), kModel, sample));
    ExpectExampleCounts(sample);
    EXPECT_EQ(sample.Hundredths, 0);
}

TEST(CorvaneSample, WorkedExampleWithHundredths) {
    RawSample sample;
    ASSERT_TRUE(ParseRawLine(WithChecksum(lines::kHundredths, true), kModel, sample));
    ExpectExampleCounts(sample);
    EXPECT_EQ(sample.Hundredths, 50);  // 32 = 3 x 16 + 2
}

TEST(CorvaneSample, ClearsTheRawChannelsAndKeepsTheRest) {
    for (const std::string& body : {lines::kSample, lines::kHundredths}) {
        RawSample sample = Used();
        ASSERT_TRUE(ParseRawLine(WithChecksum(body), kModel, sample));
        for (std::size_t slot = 0; slot < kChannelSlots; ++slot) {
            EXPECT_EQ(sample.Sig[slot], 0);
            EXPECT_EQ(sample.SigOff[slot], 0);
            EXPECT_EQ(sample.Ref[slot], 0);
            EXPECT_EQ(sample.RefOff[slot], 0);
            EXPECT_EQ(sample.SnormF[slot], 0.75F);
            EXPECT_EQ(sample.Bgnd[slot], 8);
        }
        EXPECT_EQ(sample.Snorm[8], 6);
        EXPECT_EQ(sample.Gain[8], 5);
        EXPECT_EQ(sample.Voltage, 11);
        EXPECT_EQ(sample.DayFraction, 0.25);
        EXPECT_EQ(sample.Format, 4);
    }
}

TEST(CorvaneSample, TemperatureByte) {
    const std::pair<std::string_view, float> rows[] = {{"00", -10}, {"32", 0}, {"FF", 41}, {"01", -9.8F}};
    for (const auto& [digits, degrees] : rows) {
        std::string body = lines::kSample;
        body.replace(54, 2, digits);
        RawSample sample;
        ASSERT_TRUE(ParseRawLine(WithChecksum(body), kModel, sample));
        EXPECT_EQ(sample.Temp, degrees) << digits;
    }
}

TEST(CorvaneSample, BadDigitsReadTheLeadingOnes) {
    std::string body = lines::kSample;
    body.replace(10, 16, "12G4G234123 -001");
    RawSample sample;
    ASSERT_TRUE(ParseRawLine(WithChecksum(body), kModel, sample));
    EXPECT_EQ(sample.Snorm[0], 0x12);
    EXPECT_EQ(sample.Snorm[1], 0);
    EXPECT_EQ(sample.Snorm[2], 0x123);
    EXPECT_EQ(sample.Snorm[3], 0);
}

TEST(CorvaneSample, FieldsBeyondTheEndReadZero) {
    RawSample sample = Used();
    // Sum of "D4960A5F8": 68+52+57+54+48+65+53+70+56 = 523 = 2 x 256 + 11, so "0B" stands where slot 0 would.
    ASSERT_TRUE(ParseRawLine("*D4960A5F80B", kModel, sample));
    EXPECT_EQ(sample.Time, 1231070712);
    EXPECT_EQ(sample.Snorm[0], 0x0B);
    for (std::size_t slot = 1; slot < 8; ++slot) EXPECT_EQ(sample.Snorm[slot], 0);
    for (std::size_t slot = 0; slot < 8; ++slot) EXPECT_EQ(sample.Gain[slot], 0);
    EXPECT_EQ(sample.Pressure, 0);
    EXPECT_EQ(sample.Temp, -10);
    EXPECT_EQ(sample.Error, 0);
}

TEST(CorvaneVerbose, WorkedExample) {
    RawSample sample;
    ASSERT_TRUE(ParseRawLine(WithChecksum(lines::kVerbose), kModel, sample));
    EXPECT_EQ(sample.Time, 1231070712);
    for (std::size_t slot = 0; slot < 8; ++slot) {
        const auto i = static_cast<int>(slot);
        EXPECT_EQ(sample.Sig[slot], 1000 + i);  // 03E8 + i
        EXPECT_EQ(sample.SigOff[slot], 16);
        EXPECT_EQ(sample.Ref[slot], 2016);  // 07E0
        EXPECT_EQ(sample.RefOff[slot], 16);
        EXPECT_EQ(sample.Bgnd[slot], 5);
        EXPECT_EQ(sample.Gain[slot], i + 1);
        // (1000 + i - 16) / (2016 - 16)
        EXPECT_EQ(sample.SnormF[slot], static_cast<float>((984 + i) / 2000.0));
    }
    EXPECT_EQ(sample.SnormF[0], 0.492F);
    EXPECT_EQ(sample.Pressure, 8000);
    EXPECT_EQ(sample.Temp, 50);      // the byte itself, where "*D" has 0 degrees
    EXPECT_EQ(sample.Voltage, 120);  // bytes too
    EXPECT_EQ(sample.VSubB, 80);
    EXPECT_EQ(sample.VBack, 200);
}

TEST(CorvaneVerbose, ClearsWhatTheInstrumentNormalises) {
    RawSample sample = Used();
    ASSERT_TRUE(ParseRawLine(WithChecksum(lines::kVerbose), kModel, sample));
    for (const std::int32_t value : sample.Snorm) EXPECT_EQ(value, 0);
    EXPECT_EQ(sample.Hundredths, 0);
    EXPECT_EQ(sample.Error, 3);
    EXPECT_EQ(sample.SnormF[8], 0.5F);  // slot 8 is normalised too, from what it holds: (100 - 2) / (200 - 4)
    EXPECT_EQ(sample.SnormF[9], 0.75F);
}

TEST(CorvaneVerbose, NoReferenceGivesNothing) {
    std::string body = lines::kVerbose;
    body.replace(18, 8, "07E007E0");  // reference and its offset of slot 0
    RawSample sample = Used();
    ASSERT_TRUE(ParseRawLine(WithChecksum(body), kModel, sample));
    EXPECT_EQ(sample.Ref[0], 2016);
    EXPECT_EQ(sample.RefOff[0], 2016);
    EXPECT_EQ(sample.SnormF[0], 0);
    EXPECT_EQ(sample.SnormF[1], static_cast<float>(985 / 2000.0));
}

TEST(CorvaneVerbose, OffsetsThatDoNotFitReadZero) {
    std::string body = lines::kVerbose;
    body.replace(14, 4, "7FFF");
    body.replace(22, 4, "8000");
    RawSample sample;
    ASSERT_TRUE(ParseRawLine(WithChecksum(body), kModel, sample));
    EXPECT_EQ(sample.SigOff[0], 32767);
    EXPECT_EQ(sample.RefOff[0], 0);
    EXPECT_EQ(sample.SnormF[0], static_cast<float>((1000 - 32767) / 2016.0));
}

void ExpectDecimalExample(const RawSample& sample) {
    EXPECT_EQ(sample.Time, 0);
    EXPECT_EQ(sample.ElapsedCount, 360000);
    // 360000 hundredths are one hour.
    EXPECT_EQ(sample.DayFraction, 360000 * 1.1574074074074073e-5 / 100);
    EXPECT_NEAR(sample.DayFraction, 1.0 / 24, 1e-15);
    for (std::size_t slot = 0; slot < 8; ++slot) {
        const auto i = static_cast<int>(slot);
        EXPECT_EQ(sample.Sig[slot], 1000 + i);
        EXPECT_EQ(sample.SigOff[slot], 16);
        EXPECT_EQ(sample.Ref[slot], 2016);
        EXPECT_EQ(sample.RefOff[slot], 16);
        EXPECT_EQ(sample.Gain[slot], i + 1);
    }
    EXPECT_EQ(sample.Temp, 2);  // 60 / 5 - 10
    EXPECT_EQ(sample.Pressure, 8000);
    EXPECT_EQ(sample.Voltage, 12);  // the larger of 11.8 and 12.0
}

TEST(CorvaneVerboseDecimal, WorkedExample) {
    RawSample sample = Used();
    ASSERT_TRUE(ParseRawLine(lines::kVerboseDecimal, kModel, sample));
    ExpectDecimalExample(sample);
    for (const std::int32_t value : sample.Snorm) EXPECT_EQ(value, 0);
    EXPECT_EQ(sample.Hundredths, 0);
    EXPECT_EQ(sample.Bgnd[0], 8);  // not in this record
}

TEST(CorvaneVerboseDecimal, WithLeadingTime) {
    RawSample sample;
    ASSERT_TRUE(ParseRawLine("12.5," + lines::kVerboseDecimal, kModel, sample));
    ExpectDecimalExample(sample);
    EXPECT_EQ(sample.ElapsedHundredths, 1250);
    ASSERT_TRUE(ParseRawLine("Sample t=7.25," + lines::kVerboseDecimal, kModel, sample));
    ExpectDecimalExample(sample);
    EXPECT_EQ(sample.ElapsedHundredths, 725);
}

TEST(CorvaneVerboseDecimal, TheFirstVoltageStaysWhenItIsLarger) {
    std::string line = lines::kVerboseDecimal;
    line.replace(line.size() - 8, 8, "125,120,");
    RawSample sample;
    ASSERT_TRUE(ParseRawLine(line, kModel, sample));
    EXPECT_EQ(sample.Voltage, 12.5F);
}

TEST(CorvaneVerboseDecimal, ARecordThatEndsEarlyLeavesZeros) {
    RawSample sample = Used();
    ASSERT_TRUE(ParseRawLine("360000,1000,16,2016", LineKind::CorvaneVerbose, kModel, sample));
    EXPECT_EQ(sample.Sig[0], 1000);
    EXPECT_EQ(sample.Ref[0], 2016);
    EXPECT_EQ(sample.RefOff[0], 0);
    for (std::size_t slot = 1; slot < 8; ++slot) {
        EXPECT_EQ(sample.Sig[slot], 0);
        EXPECT_EQ(sample.Gain[slot], 0);
    }
    EXPECT_EQ(sample.Temp, 0);
    EXPECT_EQ(sample.Pressure, 0);
    EXPECT_EQ(sample.Voltage, 0);
}

TEST(CorvaneVerboseDecimal, ValuesBeyondTheirFieldReadZero) {
    std::string line = "99999999999,3000000000,40000,-5,-40000";
    for (int i = 0; i < 49; ++i) line += ",0";
    RawSample sample;
    ASSERT_EQ(ClassifyLine(line), LineKind::CorvaneVerbose);
    ASSERT_TRUE(ParseRawLine(line, kModel, sample));
    EXPECT_EQ(sample.ElapsedCount, 0);
    EXPECT_EQ(sample.Sig[0], 0);
    EXPECT_EQ(sample.SigOff[0], 0);
    EXPECT_EQ(sample.Ref[0], -5);
    EXPECT_EQ(sample.RefOff[0], 0);
}

TEST(DecodeCorvaneHex, TakesItsFourKindsOnly) {
    RawSample sample;
    for (const std::string& body : {lines::kSample, lines::kHundredths, lines::kVerbose})
        EXPECT_TRUE(DecodeCorvaneHex(WithChecksum(body), sample));
    EXPECT_TRUE(DecodeCorvaneHex(lines::kVerboseDecimal, sample));
    const RawSample before = sample;
    EXPECT_FALSE(DecodeCorvaneHex("1," + lines::kVerboseDecimal, sample));
    EXPECT_FALSE(DecodeCorvaneHex(WithChecksum(lines::kLTidal), sample));
    EXPECT_FALSE(DecodeCorvaneHex(WithChecksum(lines::kHousekeeping), sample));
    EXPECT_FALSE(DecodeCorvaneHex(lines::kSample + "00", sample));
    EXPECT_FALSE(DecodeCorvaneHex("", sample));
    EXPECT_EQ(sample, before);
}

TEST(Housekeeping, WorkedExample) {
    HousekeepingBlock block;
    ASSERT_TRUE(DecodeHousekeeping(WithChecksum(lines::kHousekeeping), block));
    EXPECT_EQ(block.Time, 1231070712);
    using Words = std::array<std::int32_t, 4>;
    EXPECT_EQ(block.Words[0], (Words{1, 2, 3, -1}));            // FF = 255 - 256
    EXPECT_EQ(block.Words[1], (Words{65535, 32768, 0, -128}));  // 80 = 128 - 256
    EXPECT_EQ(block.Words[2], (Words{0, 0, 0, 127}));
    EXPECT_EQ(block.Words[7], (Words{171, 205, 239, 5}));
    EXPECT_EQ(block.VoltageA, 12);  // 78 = 120 tenths
    EXPECT_EQ(block.VoltageB, 12.3F);
    EXPECT_EQ(block.Status3, 5);
    EXPECT_EQ(block.Status4, 4660);
}

TEST(Housekeeping, VoltageIsTheLargerByte) {
    RawSample sample;
    ASSERT_TRUE(DecodeVoltageOnly(WithChecksum(lines::kHousekeeping), sample));
    EXPECT_EQ(sample.Voltage, 12.3F);
    std::string body = lines::kHousekeeping;
    body.replace(122, 2, "80");
    ASSERT_TRUE(DecodeVoltageOnly(WithChecksum(body), sample));
    EXPECT_EQ(sample.Voltage, 12.8F);
}

TEST(Housekeeping, IsNoSampleAndRefusesOtherLines) {
    RawSample sample = Used();
    const RawSample before = sample;
    HousekeepingBlock block;
    EXPECT_FALSE(ParseRawLine(WithChecksum(lines::kHousekeeping), InstTypeCode::XTidal, sample));
    for (const std::string& line : {lines::kHousekeeping + "00", WithChecksum(lines::kSample)}) {
        EXPECT_FALSE(DecodeHousekeeping(line, block)) << line;
        EXPECT_FALSE(DecodeVoltageOnly(line, sample)) << line;
    }
    EXPECT_EQ(block, HousekeepingBlock{});
    EXPECT_EQ(sample, before);
}

}  // namespace
}  // namespace marisonde
