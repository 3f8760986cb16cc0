#include <cerrno>
#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "calibration/CalibrationDataClass.h"
#include "common/Numbers.h"
#include "files/DatFile.h"
#include "files/DatFileReader.h"
#include "files/FileFixture.h"

namespace marisonde {
namespace {

using enum InstTypeCode;

TEST(ReadDatLineTest, ColumnsGoWhereTheModelHasThem) {
    CalibratedSample sample;
    EXPECT_EQ(ReadDatLine("40000.25,12.5,1,2,3,4,5,6,", Corvane2, sample), 8);
    EXPECT_EQ(sample.Time, 40000.25);
    EXPECT_EQ(sample.Depth, 12.5F);
    EXPECT_EQ(sample.bb[2], 3);
    EXPECT_EQ(sample.bb[3], 0);
    EXPECT_EQ(sample.bbUncorr[0], 4);
    EXPECT_TRUE(sample.Valid[2]);
    EXPECT_FALSE(sample.Valid[3]);

    EXPECT_EQ(ReadDatLine("40000.25,12.5,1,2,3,4,5,6", LTidal, sample), 8);
    EXPECT_EQ(sample.bb[0], 1);
    EXPECT_EQ(sample.bbUncorr[0], 2);
    EXPECT_EQ(sample.K, 3);
    EXPECT_EQ(sample.k[0], 3);
    EXPECT_EQ(sample.a, 4);
    EXPECT_EQ(sample.beta[0], 5);
    EXPECT_EQ(sample.betaUncorr[0], 6);
    EXPECT_TRUE(sample.Valid[0]);

    EXPECT_EQ(ReadDatLine("40000.25,12.5,1,2,0", NTidal, sample), 5);
    EXPECT_EQ(sample.k[0], 0);
    EXPECT_EQ(sample.beta[0], 0);
    EXPECT_FALSE(sample.Valid[0]);

    EXPECT_EQ(ReadDatLine("40000.25,12.5,1,2,3,4,21.5", Delph4, sample), 7);
    EXPECT_EQ(sample.k[3], 4);
    EXPECT_EQ(sample.Temp, 21.5F);

    EXPECT_EQ(ReadDatLine("40000.25,12.5,", XTidal, sample), 2);
    EXPECT_EQ(sample.Depth, 12.5F);
}

TEST(ReadDatLineTest, TooLittleIsNoSampleAndChangesNothing) {
    CalibratedSample sample;
    sample.Depth = 3;
    for (const char* line : {"", "40000", "40000,"})
        EXPECT_LT(ReadDatLine(line, Corvane2, sample), 2) << line;
    EXPECT_EQ(sample.Depth, 3);
}

TEST(ReadDatLineTest, MissingAndSurplusColumns) {
    CalibratedSample sample;
    EXPECT_EQ(ReadDatLine("1,2,3,x,,9", NTidal, sample), 6);
    EXPECT_EQ(sample.bb[0], 3);
    EXPECT_EQ(sample.bbUncorr[0], 0);
    EXPECT_EQ(sample.k[0], 0);
    EXPECT_EQ(ReadDatLine("1,2,3", Delph6, sample), 3);
    EXPECT_EQ(sample.k[0], 3);
    EXPECT_EQ(sample.k[5], 0);
}

TEST(ReadDatLineTest, CountsAllValuesOfALineAndTheCommaAtItsEndAsNone) {
    CalibratedSample sample;
    std::string line = "40000.25";
    for (int values = 2; values < 80; ++values) {
        line += "," + std::to_string(values);
        EXPECT_EQ(ReadDatLine(line, Corvane6, sample), values);
        EXPECT_EQ(ReadDatLine(line + ",", Corvane6, sample), values);
    }
    EXPECT_EQ(sample.bb[0], 3);
    EXPECT_EQ(sample.betaUncorr[7], 34);
    EXPECT_EQ(ReadDatLine(",,", Corvane6, sample), 2);
    EXPECT_EQ(sample.Time, 0);
}

TEST(ReadDatLineTest, FewerValuesThanWantedAreNoSample) {
    CalibratedSample sample;
    sample.Depth = 3;
    EXPECT_EQ(ReadDatLine("40000.25,1,2", Corvane2, sample, 4), 3);
    EXPECT_EQ(sample.Depth, 3);
    EXPECT_EQ(ReadDatLine("40000.25,1,2", Corvane2, sample, 3), 3);
    EXPECT_EQ(sample.Depth, 1);
}

TEST(ReadDatLineTest, FailedValuesStayFailed) {
    CalibratedSample sample;
    ReadDatLine("40000.25,12.5,1E+308,2,1E+308,1E+308", LTidal, sample);
    EXPECT_EQ(sample.bb[0], kSentinel);
    EXPECT_EQ(sample.K, kSentinelF);
    EXPECT_EQ(sample.a, kSentinelF);
}

/// Any number that a 32-bit value can be, by its bits.
double AnySingle(std::mt19937& random) {
    while (true) {
        const std::uint32_t bits = static_cast<std::uint32_t>(random());
        float value = 0;
        std::memcpy(&value, &bits, sizeof value);
        if (value == 0) continue;  // a negative zero is written without its sign
        if (std::isfinite(value)) return value;
        return kSentinel;
    }
}

float AnyFloat(std::mt19937& random) {
    const double value = AnySingle(random);
    return value == kSentinel ? kSentinelF : static_cast<float>(value);
}

/// A sample that holds what the lines of the model hold, and nothing else.
CalibratedSample AnySample(InstTypeCode type, bool betas, std::mt19937& random) {
    CalibratedSample sample;
    sample.Time = 30000 + static_cast<double>(random()) / 100000;
    sample.Depth = AnyFloat(random);
    const auto channels = static_cast<std::size_t>(std::max(ChannelSlots(type), 0));
    const bool scatters = IsCorvaneFamily(type) || type == LTidal || type == NTidal;
    for (std::size_t i = 0; scatters && i < channels; ++i) {
        sample.bb[i] = AnySingle(random);
        sample.bbUncorr[i] = AnySingle(random);
        if (betas) sample.beta[i] = AnySingle(random);
        if (betas) sample.betaUncorr[i] = AnySingle(random);
        sample.Valid[i] = true;
    }
    if (type == LTidal) sample.K = sample.k[0] = AnyFloat(random);
    if (type == LTidal) sample.a = AnyFloat(random);
    if (type == NTidal) sample.k[0] = AnyFloat(random);
    if (!IsDelphFamily(type)) return sample;
    for (std::size_t i = 0; i < static_cast<std::size_t>(DelphChannels(type)); ++i)
        sample.k[i] = AnyFloat(random);
    sample.Temp = AnyFloat(random);
    return sample;
}

TEST(ReadDatLineTest, WhatIsWrittenComesBackTheSame) {
    std::mt19937 random(7);
    for (int code = 0; code < kInstTypeCount; ++code) {
        const auto type = static_cast<InstTypeCode>(code);
        for (int i = 0; i < 2000; ++i) {
            const bool betas = i % 2 == 1;
            const CalibratedSample sample = AnySample(type, betas, random);
            std::string line;
            WriteDatLine(line, sample, type, betas);
            CalibratedSample back;
            ReadDatLine(std::string_view(line).substr(0, line.size() - 2), type, back);
            ASSERT_EQ(back, sample) << line;
        }
    }
}

class DatFileReaderTest : public FileFixture {
  protected:
    std::vector<CalibratedSample> SamplesOf(const std::string& text) { return SamplesOf(reader, text); }
    std::vector<CalibratedSample> SamplesOf(DatFileReader& from, const std::string& text) {
        EXPECT_FALSE(from.Open(Write("cast.dat", text)));
        std::vector<CalibratedSample> samples;
        while (from.NextLine())
            if (from.HasSample()) samples.push_back(from.Sample());
        EXPECT_FALSE(from.Error());
        return samples;
    }
    DatFileReader reader;
};

CalibrationDataClass CalibrationOf(InstTypeCode type) {
    CalibrationDataClass cal;
    cal.InstType = type;
    for (int ch = 0; ch < kChannelSlots; ++ch) {
        std::string name = "n";
        cal.EditChannel(ch).name = name.append(std::to_string(ch));
    }
    return cal;
}

/// Every header that is written, of every model and every choice of water, is read.
TEST_F(DatFileReaderTest, EveryHeaderOfThisProgram) {
    std::mt19937 random(8);
    for (int code = 0; code < kInstTypeCount; ++code) {
        for (int choice = 0; choice < 5; ++choice) {
            for (const bool betas : {false, true}) {
                const auto type = static_cast<InstTypeCode>(code);
                SCOPED_TRACE(std::string(InstTypeName(type)) + " " + std::to_string(choice));
                PureWaterParams water;
                water.Choice = static_cast<PureWaterChoice>(choice);
                water.WriteBetaColumns = betas;
                std::string text;
                WriteDatHeader(text, {"[Data] of leg 2", 40000}, "", CalibrationOf(type), {}, water);
                std::vector<CalibratedSample> samples;
                for (int i = 0; i < 3; ++i) {
                    samples.push_back(AnySample(type, betas, random));
                    WriteDatLine(text, samples.back(), type, betas);
                }
                EXPECT_EQ(SamplesOf(text), samples);
                EXPECT_EQ(reader.Type(), type);
                EXPECT_EQ(reader.HasBetaColumns(), betas && !DatLayoutOf(type).betaColumns.empty());
                ASSERT_EQ(reader.Channels().size(), static_cast<std::size_t>(DatLayoutOf(type).channelNames));
                if (!reader.Channels().empty()) {
                    EXPECT_EQ(reader.Channels().front(), "n0");
                }
                EXPECT_EQ(reader.Counts().lines, 3U);
                EXPECT_EQ(reader.Counts().PassedOver(), 0U);
            }
        }
    }
}

TEST_F(DatFileReaderTest, SectionsInAnyCaseAndAnyLineEnds) {
    const auto samples = SamplesOf(
        "[HEADER]\nDeviceType=delph-2\n[CHANNELS]\n\"c(488)\"\n\"c(650)\"\n[ColumnHeadings]\nTime,Depth\n"
        "\n[data]\n40000,1,2,3,4\r40001,5,6,7,8\r\n40002,9,10,11,12");
    ASSERT_EQ(samples.size(), 3U);
    EXPECT_EQ(samples[2].k[1], 11);
    EXPECT_EQ(reader.Type(), Delph2);
    EXPECT_EQ(reader.Channels(), (std::vector<std::string>{"c(488)", "c(650)"}));
}

TEST_F(DatFileReaderTest, WithoutHeaderTheModelIsTheCallers) {
    DatFileReader assuming(NTidal);
    const auto samples = SamplesOf(assuming, "40000,1,2,3,4\r\n40001,5,6,7,8\r\n");
    ASSERT_EQ(samples.size(), 2U);
    EXPECT_EQ(samples[1].k[0], 8);
}

TEST_F(DatFileReaderTest, WithoutADataSectionTheNumbersAreTheData) {
    const auto samples =
        SamplesOf("[Header]\r\nDeviceType=n-Tidal\r\np=0.6\r\nTime,Depth,bb\r\n\r\n40000,1,2,3,4\r\n");
    ASSERT_EQ(samples.size(), 1U);
    EXPECT_EQ(samples[0].k[0], 4);
    EXPECT_EQ(reader.Counts().text, 0U);
}

TEST_F(DatFileReaderTest, DamagedLinesArePassedOverAndCounted) {
    const auto samples = SamplesOf(
        "[Header]\r\nDeviceType=n-Tidal\r\n[Data]\r\n"
        "40000,1,2,3,4\r\n"
        "words\r\n"
        "40001,1,2\r\n"
        "\r\n"
        "40002,5,6,7,8\r\n"
        "40003,5,6");
    ASSERT_EQ(samples.size(), 2U);
    EXPECT_EQ(samples[1].Time, 40002);
    EXPECT_EQ(reader.Counts().lines, 5U);
    EXPECT_EQ(reader.Counts().samples, 2U);
    EXPECT_EQ(reader.Counts().text, 3U);
    EXPECT_EQ(PassedOverText(reader.Counts()), "3 lines passed over: 3 text");
}

TEST_F(DatFileReaderTest, ALineOfAMegabyteCostsOnlyItself) {
    const auto samples = SamplesOf("[Header]\r\nDeviceType=n-Tidal\r\n[Data]\r\n40000,1,2,3,4\r\n" +
                                   std::string(1024 * 1024, '1') + "\r\n40001,1,2,3,4\r\n");
    EXPECT_EQ(samples.size(), 2U);
    EXPECT_EQ(reader.Counts().text, 1U);
}

TEST_F(DatFileReaderTest, NothingAndMissing) {
    EXPECT_TRUE(SamplesOf("").empty());
    EXPECT_EQ(reader.Counts(), LineCounts{});
    EXPECT_EQ(reader.Open(In("nothing")).code, ENOENT);
    EXPECT_FALSE(reader.NextLine());
}

}  // namespace
}  // namespace marisonde
