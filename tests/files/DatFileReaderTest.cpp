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
#include "files/DatSamples.h"
#include "support/FileFixture.h"

namespace marisonde {
namespace {

using enum InstTypeCode;

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

TEST_F(DatFileReaderTest, TheUsersTextIsNoSection) {
    for (const char* text : {"[Data]", "[Channels]", "[Header]", "[UserHeader]"}) {
        std::string file;
        WriteDatHeader(file, {text, 40000}, "", CalibrationOf(NTidal), {}, {});
        const auto samples = SamplesOf(file + "40000,1,2,3,4\r\n");
        EXPECT_EQ(samples.size(), 1U) << text;
        EXPECT_EQ(reader.Type(), NTidal) << text;
        EXPECT_EQ(reader.Channels(), (std::vector<std::string>{"n0", "n1", "n2"})) << text;
        EXPECT_EQ(reader.Counts().PassedOver(), 0U) << text;
    }
}

TEST_F(DatFileReaderTest, OneFormOfBackscatteringOfTheSameLines) {
    std::mt19937 random(14);
    std::string text;
    WriteDatHeader(text, {"", 40000}, "", CalibrationOf(Corvane6), {}, {});
    for (int i = 0; i < 3000; ++i) {
        CalibratedSample sample = AnySample(Corvane6, false, random);
        if (i % 3 == 0) sample.bb[random() % 8] = 0;
        if (i % 5 == 0) sample.bbUncorr[random() % 8] = 0;
        WriteDatLine(text, sample, Corvane6, false);
        if (i % 100 == 0) text += "40000.5,3,1.5,\r\nwords\r\n";
    }
    const auto whole = SamplesOf(text);
    const LineCounts counts = reader.Counts();
    for (const DatScattering form : {DatScattering::Corrected, DatScattering::Uncorrected}) {
        reader.Read(form);
        const auto samples = SamplesOf(text);
        EXPECT_EQ(reader.Counts(), counts);
        ASSERT_EQ(samples.size(), whole.size());
        for (std::size_t i = 0; i < samples.size(); ++i) {
            CalibratedSample expected = whole[i];
            (form == DatScattering::Corrected ? expected.bbUncorr : expected.bb) = {};
            ASSERT_EQ(samples[i], expected) << i;
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

TEST_F(DatFileReaderTest, AFirstLineThatRanIntoTheNextCostsOnlyItself) {
    const std::string head = "[Header]\r\nDeviceType=n-Tidal\r\n[Data]\r\n";
    const std::string lines = "40002,1,2,3,4\r\n40003,1,2,3,5\r\n40004,1,2\r\n";
    const auto samples = SamplesOf(head + "40000,1,2,3,440001,1,2,3,4\r\n" + lines);
    ASSERT_EQ(samples.size(), 3U);
    EXPECT_EQ(samples[1].Time, 40002);
    EXPECT_EQ(samples[2].k[0], 5);
    EXPECT_FALSE(reader.HasBetaColumns());
    // One that is too short tells nothing about the others.
    EXPECT_EQ(SamplesOf(head + "40001,1,2,3,4\r\n40002,1\r\n" + lines).size(), 3U);
}

TEST_F(DatFileReaderTest, WhereNoGainStepWasUsableNoneIsTold) {
    ASSERT_FALSE(reader.Open(Write("cast.dat",
                                   "[Header]\r\nDeviceType=n-Tidal\r\n[Data]\r\n"
                                   "40000,1,0,0,4\r\n40001,1,0.5,0,4\r\n40002,1,0,0.5,4\r\n")));
    for (const int gain : {0, 1, 1}) {
        ASSERT_TRUE(reader.NextLine());
        EXPECT_EQ(reader.Raw().Gain[0], gain);
    }
}

TEST_F(DatFileReaderTest, TheModelIsThatOfTheHeader) {
    SamplesOf(
        "[Header]\r\nDeviceType=n-Tidal\r\n[Notes]\r\nDeviceType=Delph-2\r\n[Data]\r\n40000,1,2,3,4\r\n");
    EXPECT_EQ(reader.Type(), NTidal);
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
