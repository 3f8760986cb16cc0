#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "common/Numbers.h"
#include "files/DatFile.h"
#include "files/DatLineReader.h"
#include "files/DatSamples.h"

namespace marisonde {
namespace {

using enum InstTypeCode;

TEST(DatLineReaderTest, ColumnsGoWhereTheModelHasThem) {
    CalibratedSample sample;
    EXPECT_EQ(DatLineReader(Corvane2).Read("40000.25,12.5,1,2,3,4,5,6,", sample), 8);
    EXPECT_EQ(sample.Time, 40000.25);
    EXPECT_EQ(sample.Depth, 12.5F);
    EXPECT_EQ(sample.bb[2], 3);
    EXPECT_EQ(sample.bb[3], 0);
    EXPECT_EQ(sample.bbUncorr[0], 4);
    EXPECT_TRUE(sample.Valid[2]);
    EXPECT_FALSE(sample.Valid[3]);

    EXPECT_EQ(DatLineReader(LTidal).Read("40000.25,12.5,1,2,3,4,5,6", sample), 8);
    EXPECT_EQ(sample.bb[0], 1);
    EXPECT_EQ(sample.bbUncorr[0], 2);
    EXPECT_EQ(sample.K, 3);
    EXPECT_EQ(sample.k[0], 3);
    EXPECT_EQ(sample.a, 4);
    EXPECT_EQ(sample.beta[0], 5);
    EXPECT_EQ(sample.betaUncorr[0], 6);
    EXPECT_TRUE(sample.Valid[0]);

    EXPECT_EQ(DatLineReader(NTidal).Read("40000.25,12.5,1,2,0", sample), 5);
    EXPECT_EQ(sample.k[0], 0);
    EXPECT_EQ(sample.beta[0], 0);
    EXPECT_FALSE(sample.Valid[0]);

    EXPECT_EQ(DatLineReader(Delph4).Read("40000.25,12.5,1,2,3,4,21.5", sample), 7);
    EXPECT_EQ(sample.k[3], 4);
    EXPECT_EQ(sample.Temp, 21.5F);

    EXPECT_EQ(DatLineReader(XTidal).Read("40000.25,12.5,", sample), 2);
    EXPECT_EQ(sample.Depth, 12.5F);
}

TEST(DatLineReaderTest, TooLittleIsNoSampleAndChangesNothing) {
    CalibratedSample sample;
    sample.Depth = 3;
    for (const char* line : {"", "40000", "40000,"})
        EXPECT_LT(DatLineReader(Corvane2).Read(line, sample), 2) << line;
    EXPECT_EQ(sample.Depth, 3);
}

TEST(DatLineReaderTest, MissingAndSurplusColumns) {
    CalibratedSample sample;
    EXPECT_EQ(DatLineReader(NTidal).Read("1,2,3,x,,9", sample), 6);
    EXPECT_EQ(sample.bb[0], 3);
    EXPECT_EQ(sample.bbUncorr[0], 0);
    EXPECT_EQ(sample.k[0], 0);
    EXPECT_EQ(DatLineReader(Delph6).Read("1,2,3", sample), 3);
    EXPECT_EQ(sample.k[0], 3);
    EXPECT_EQ(sample.k[5], 0);
}

TEST(DatLineReaderTest, CountsAllValuesOfALineAndTheCommaAtItsEndAsNone) {
    CalibratedSample sample;
    std::string line = "40000.25";
    for (int values = 2; values < 80; ++values) {
        line += "," + std::to_string(values);
        EXPECT_EQ(DatLineReader(Corvane6).Read(line, sample), values);
        EXPECT_EQ(DatLineReader(Corvane6).Read(line + ",", sample), values);
    }
    EXPECT_EQ(sample.bb[0], 3);
    EXPECT_EQ(sample.betaUncorr[7], 34);
    EXPECT_EQ(DatLineReader(Corvane6).Read(",,", sample), 2);
    EXPECT_EQ(sample.Time, 0);
}

TEST(DatLineReaderTest, FewerValuesThanWantedAreNoSample) {
    CalibratedSample sample;
    sample.Depth = 3;
    EXPECT_EQ(DatLineReader(Corvane2).Read("40000.25,1,2", sample, 4), 3);
    EXPECT_EQ(sample.Depth, 3);
    EXPECT_EQ(DatLineReader(Corvane2).Read("40000.25,1,2", sample, 3), 3);
    EXPECT_EQ(sample.Depth, 1);
}

TEST(DatLineReaderTest, FailedValuesStayFailed) {
    CalibratedSample sample;
    DatLineReader(LTidal).Read("40000.25,12.5,1E+308,2,1E+308,1E+308", sample);
    EXPECT_EQ(sample.bb[0], kSentinel);
    EXPECT_EQ(sample.K, kSentinelF);
    EXPECT_EQ(sample.a, kSentinelF);
}

TEST(DatLineReaderTest, WhatIsWrittenComesBackTheSame) {
    std::mt19937 random(7);
    for (int code = 0; code < kInstTypeCount; ++code) {
        const auto type = static_cast<InstTypeCode>(code);
        for (int i = 0; i < 2000; ++i) {
            const bool betas = i % 2 == 1;
            const CalibratedSample sample = AnySample(type, betas, random);
            std::string line;
            WriteDatLine(line, sample, type, betas);
            CalibratedSample back;
            DatLineReader(type).Read(std::string_view(line).substr(0, line.size() - 2), back);
            ASSERT_EQ(back, sample) << line;
        }
    }
}

/// The same line where much can be read behind it, as in the middle of a file, and where nothing can.
TEST(DatLineReaderTest, WhatLiesBehindTheLineDoesNotMatter) {
    std::mt19937 random(12);
    const std::vector<std::string> values{
        "1.234568E-03", "-0.25", "171.37", "0",        "1E+308", "",   "9.87654321", "1.5E-12", "-",
        "12345678",     " 2.5",  "x",      "-1.5E-05", "1.5.5",  "7.", ".5",         "3E-02",   "1.5E-03x"};
    for (int code = 0; code < kInstTypeCount; ++code) {
        const auto type = static_cast<InstTypeCode>(code);
        const DatLineReader reader(type);
        for (int run = 0; run < 3000; ++run) {
            std::string line = "45244.925937500003";
            for (auto left = random() % 40; left > 0; --left)
                line.append(",").append(values[random() % values.size()]);
            const std::string memory =
                line + "\r\n" + std::string(random() % 100, random() % 2 == 0 ? ',' : '7');
            FieldEnds ends(reader.Columns());
            ends.Mark(std::string_view(memory).substr(0, line.size()), memory.size());
            CalibratedSample within;
            CalibratedSample alone;
            const int count = reader.Read(std::string_view(memory).substr(0, line.size()), ends, within);
            ASSERT_EQ(reader.Read(line, alone), count) << line;
            ASSERT_EQ(within, alone) << line;
        }
    }
}

/// Each value beside the general reader of numbers, rounded to 32 bits.
TEST(DatLineReaderTest, EveryValueIsThatOfTheNumberReader) {
    std::mt19937 random(13);
    const DatLineReader reader(Delph6);
    for (int run = 0; run < 20000; ++run) {
        std::vector<std::string> texts{NumberText(40000 + static_cast<double>(random()) / 1e5)};
        while (texts.size() < 9) {
            float value = static_cast<float>(AnySingle(random));
            if (run % 2 == 0)
                value = static_cast<float>(std::pow(10.0, -6 + static_cast<int>(random() % 9)) *
                                           (random() % 1000003));
            texts.push_back(NumberText(value));
        }
        std::string line;
        for (const std::string& text : texts) line += text + ",";
        line += "9,9,9,9,9,9,9,9,9,9,9,9";
        CalibratedSample sample;
        reader.Read(line, sample);
        EXPECT_EQ(sample.Time, Val(texts[0]));
        const auto single = [&](std::size_t i) {
            const double value = Val(texts[i]);
            return value > 1e307 ? kSentinelF : static_cast<float>(value);
        };
        ASSERT_EQ(sample.Depth, single(1)) << line;
        for (std::size_t i = 0; i < 6; ++i) ASSERT_EQ(sample.k[i], single(2 + i)) << line;
        ASSERT_EQ(sample.Temp, single(8)) << line;
    }
}

constexpr std::string_view kOfCorvane2 = "40000.25,12.5,0.1,0,0,0.4,0.5,0,1.1,1.2,1.3,1.4,1.5,1.6,";

TEST(DatLineReaderTest, OneFormOfBackscatteringAlone) {
    CalibratedSample sample;
    EXPECT_EQ(DatLineReader(Corvane2, DatScattering::Corrected).Read(kOfCorvane2, sample), 14);
    EXPECT_EQ(sample.Depth, 12.5F);
    EXPECT_EQ(sample.bb[0], static_cast<double>(0.1F));
    for (const auto* other : {&sample.bbUncorr, &sample.beta, &sample.betaUncorr})
        EXPECT_EQ(*other, CalibratedSample::PerChannel<double>{});

    sample = {};
    EXPECT_EQ(DatLineReader(Corvane2, DatScattering::Uncorrected).Read(kOfCorvane2, sample), 14);
    EXPECT_EQ(sample.bbUncorr[1], 0.5);
    for (const auto* other : {&sample.bb, &sample.beta, &sample.betaUncorr})
        EXPECT_EQ(*other, CalibratedSample::PerChannel<double>{});
}

/// A zero that was measured has a value in the other form.
TEST(DatLineReaderTest, ValidIsTheSameWhateverIsRead) {
    for (const DatScattering scattering :
         {DatScattering::All, DatScattering::Corrected, DatScattering::Uncorrected}) {
        CalibratedSample sample;
        DatLineReader(Corvane2, scattering).Read(kOfCorvane2, sample);
        EXPECT_TRUE(sample.Valid[0]);
        EXPECT_TRUE(sample.Valid[1]);
        EXPECT_FALSE(sample.Valid[2]);
        EXPECT_FALSE(sample.Valid[3]);
        DatLineReader(Corvane2, scattering).Read("40000.25,12.5,0,0,0,0,0,0,", sample);
        EXPECT_EQ(sample.Valid, CalibratedSample::PerChannel<bool>{});
        // Too small for 32 bits, so that it is 0 like the others.
        DatLineReader(Corvane2, scattering).Read("40000.25,12.5,1E-53,0,0,0,1E-53,0,", sample);
        EXPECT_EQ(sample.Valid, CalibratedSample::PerChannel<bool>{});
    }
}

TEST(DatLineReaderTest, OtherModelsAreReadWhole) {
    const std::string line = "40000.25,12.5,1,2,3,4,5,6";
    for (const InstTypeCode type : {LTidal, NTidal, Delph4}) {
        CalibratedSample all;
        CalibratedSample one;
        DatLineReader(type).Read(line, all);
        DatLineReader(type, DatScattering::Corrected).Read(line, one);
        EXPECT_EQ(one, all);
        EXPECT_EQ(DatLineReader(type).Columns(), DatLineReader(type, DatScattering::Corrected).Columns());
    }
}

TEST(DatLineReaderTest, ColumnsAreThoseThatAreRead) {
    EXPECT_EQ(DatLineReader(Corvane6).Columns(), 34U);
    EXPECT_EQ(DatLineReader(Corvane6, DatScattering::Corrected).Columns(), 10U);
    EXPECT_EQ(DatLineReader(Corvane6, DatScattering::Uncorrected).Columns(), 18U);
    EXPECT_EQ(DatLineReader(Delph2).Columns(), 5U);
    EXPECT_EQ(DatLineReader(XTidal).Columns(), 2U);
}

TEST(DatLineReaderTest, ALineWithoutBetaForgetsThatOfTheLineBefore) {
    CalibratedSample sample;
    const DatLineReader reader(Corvane2);
    reader.Read(kOfCorvane2, sample);
    EXPECT_EQ(sample.beta[0], static_cast<double>(1.1F));
    EXPECT_TRUE(reader.HasBeta(14));
    reader.Read("40000.25,12.5,1,2,3,4,5,6,", sample);
    EXPECT_EQ(sample.beta[0], 0);
    EXPECT_EQ(sample.betaUncorr[2], 0);
    EXPECT_FALSE(reader.HasBeta(8));
    EXPECT_FALSE(DatLineReader(Delph2).HasBeta(14)) << "such a model has none";
}

}  // namespace
}  // namespace marisonde
