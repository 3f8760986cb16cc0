#include <gtest/gtest.h>

#include "Lines.h"
#include "decode/LineKind.h"

namespace marisonde {
namespace {

using enum LineKind;
using lines::Record;

TEST(ClassifyLine, HexLinesByTheirLetter) {
    const std::pair<std::string_view, LineKind> rows[] = {
        {"*D", CorvaneHex},
        {"*T", CorvaneHexHundredths},
        {"*H", CorvaneHousekeeping},
        {"*V", CorvaneVerboseHex},
        {"*A", LTidalHex},
        {"*C", NTidalHex},
        {"*I", TidalExtraHex},
        {"*Z", Other},
        {"*d", Other},
        {"**", Other},
    };
    for (const auto& [start, kind] : rows) {
        EXPECT_EQ(ClassifyLine(WithChecksum(std::string(start) + "0123")), kind) << start;
        EXPECT_EQ(ClassifyLine(WithChecksum(std::string(start) + "0123", true)), kind) << start;
        EXPECT_EQ(ClassifyLine(std::string(start) + "012300"), Other) << start;
    }
}

TEST(ClassifyLine, NumericLinesByTheirCommas) {
    const std::pair<int, LineKind> rows[] = {
        {5, TidalShort}, {6, TidalTimed},  {8, Delph},           {11, TidalFull},
        {12, TidalFull}, {13, TidalTimed}, {15, DelphFull},      {16, Commas16},
        {19, Commas19},  {21, Commas21},   {53, CorvaneVerbose}, {54, CorvaneVerboseTimed},
    };
    std::size_t row = 0;
    for (int commas = 0; commas <= 60; ++commas) {
        const bool inTable = row < std::size(rows) && rows[row].first == commas;
        EXPECT_EQ(ClassifyLine(Record(commas)), inTable ? rows[row].second : Other) << commas;
        if (inTable) ++row;
    }
    EXPECT_EQ(row, std::size(rows));
}

TEST(ClassifyLine, FiftyFourCommasNeedNoNumber) {
    for (int commas = 0; commas <= 60; ++commas) {
        const LineKind kind = ClassifyLine("Sample" + Record(commas));
        EXPECT_EQ(kind, commas == 54 ? CorvaneVerboseTimed : Other) << commas;
    }
}

TEST(ClassifyLine, TextAndDamage) {
    EXPECT_EQ(ClassifyLine(""), Other);
    EXPECT_EQ(ClassifyLine("*"), Other);
    EXPECT_EQ(ClassifyLine("Starting in 30 seconds"), Other);
    EXPECT_EQ(ClassifyLine("+.-1,1,1,1,1,1"), TidalShort);
    EXPECT_EQ(ClassifyLine(" 1,1,1,1,1,1"), Other);
    EXPECT_EQ(ClassifyLine(std::string(100000, '*')), Other);
    EXPECT_EQ(ClassifyLine(std::string("\0,,,,,", 6)), Other);
}

TEST(ClassifyLine, BadChecksumIsTextWhateverItsCommas) {
    EXPECT_EQ(ClassifyLine("*" + Record(54)), Other);
    EXPECT_EQ(ClassifyLine("*" + Record(5)), Other);
}

TEST(LineChecksum, WithAndWithoutTheStar) {
    // "D12": 68 + 49 + 50 = 167 = hexadecimal A7; with "*" (42) 209 = D1.
    EXPECT_TRUE(LineChecksumOk("*D12A7"));
    EXPECT_TRUE(LineChecksumOk("*D12a7"));
    EXPECT_TRUE(LineChecksumOk("*D12D1"));
    EXPECT_FALSE(LineChecksumOk("*D12A8"));
    EXPECT_FALSE(LineChecksumOk("*D12A"));
    EXPECT_FALSE(LineChecksumOk("*D12"));
}

TEST(LineChecksum, ShortLines) {
    EXPECT_FALSE(LineChecksumOk(""));
    EXPECT_FALSE(LineChecksumOk("*"));
    EXPECT_TRUE(LineChecksumOk("*00"));  // an empty sum
    EXPECT_TRUE(LineChecksumOk("*2A"));  // only the "*"
    EXPECT_FALSE(LineChecksumOk("*01"));
}

TEST(LineChecksum, BytesAreUnsignedAndTheSumWraps) {
    // Two bytes FF: 510 = 256 + 254, hexadecimal FE.
    EXPECT_TRUE(
        LineChecksumOk("*\xFF\xFF"
                       "FE"));
    // 1000 times "0" (48): 48000 = 187 x 256 + 128, hexadecimal 80.
    EXPECT_TRUE(LineChecksumOk("*" + std::string(1000, '0') + "80"));
}

TEST(LineChecksum, EveryChangeOfOneCharacterIsSeen) {
    const std::string good = WithChecksum(lines::kSample);
    // A change by 42 would pass for the other way of counting the "*".
    for (std::size_t i = 1; i + 2 < good.size(); ++i) {
        for (int bit = 0; bit < 8; ++bit) {
            std::string bad = good;
            bad[i] = static_cast<char>(bad[i] ^ (1 << bit));
            EXPECT_FALSE(LineChecksumOk(bad)) << i << " " << bit;
        }
    }
}

TEST(CommaCount, CountsTheWholeLine) {
    EXPECT_EQ(CommaCount(""), 0);
    EXPECT_EQ(CommaCount(",a,,b"), 3);
    EXPECT_EQ(CommaCount(std::string_view(",\0,", 3)), 2);
}

// --- the model told from one line -----------------------------------------------------------------------

TEST(InstTypeFromLine, ByKindAlone) {
    EXPECT_EQ(InstTypeFromLine(WithChecksum("*A0")), InstTypeCode::LTidal);
    EXPECT_EQ(InstTypeFromLine(WithChecksum("*C0")), InstTypeCode::NTidal);
    EXPECT_EQ(InstTypeFromLine(WithChecksum("*I0")), InstTypeCode::XTidal);
    EXPECT_EQ(InstTypeFromLine(Record(5)), InstTypeCode::XTidal);
    EXPECT_EQ(InstTypeFromLine(Record(11)), InstTypeCode::XTidal);
    EXPECT_EQ(InstTypeFromLine(Record(12)), InstTypeCode::XTidal);
    EXPECT_EQ(InstTypeFromLine(Record(15)), InstTypeCode::Fathom2);
    EXPECT_EQ(InstTypeFromLine(Record(8)), InstTypeCode::Fathom2);
    for (const int commas : {0, 6, 13, 16, 19, 21})
        EXPECT_EQ(InstTypeFromLine(Record(commas)), InstTypeCode::Unknown) << commas;
    EXPECT_EQ(InstTypeFromLine(WithChecksum(lines::kHousekeeping)), InstTypeCode::Unknown);
    EXPECT_EQ(InstTypeFromLine("Ready"), InstTypeCode::Unknown);
    EXPECT_EQ(InstTypeFromLine(""), InstTypeCode::Unknown);
}

std::string SampleWith(std::string_view counts, std::string_view gains) {
    return WithChecksum("*D4960A5F8" + std::string(counts) + std::string(gains) + "1F403C02");
}

TEST(InstTypeFromLine, SampleByItsGains) {
    const std::string counts(32, '1');
    EXPECT_EQ(InstTypeFromLine(SampleWith(counts, "33333333")), InstTypeCode::Corvane6);
    EXPECT_EQ(InstTypeFromLine(SampleWith(counts, "33333300")), InstTypeCode::Corvane6);
    EXPECT_EQ(InstTypeFromLine(SampleWith(counts, "33330000")), InstTypeCode::Corvane4);
    EXPECT_EQ(InstTypeFromLine(SampleWith(counts, "33300000")), InstTypeCode::Corvane2);
}

TEST(InstTypeFromLine, SampleWithoutTellingGainsByItsCounts) {
    const std::pair<std::string_view, InstTypeCode> rows[] = {
        {"00000000000000000000000000000000", InstTypeCode::Unknown},
        {"00010001000000000000000000000000", InstTypeCode::Unknown},   // slot 1
        {"00010001000100000000000000000000", InstTypeCode::Corvane2},  // slot 2
        {"00010001000100010000000000000000", InstTypeCode::Corvane4},  // slot 3
        {"00010001000100010001000000000000", InstTypeCode::Unknown},   // slot 4
        {"00010001000100010001000100000000", InstTypeCode::Corvane6},  // slot 5
        {"00000000000000010000000000010001", InstTypeCode::Corvane4},  // slots 6 and 7 are not looked at
    };
    for (const auto& [counts, model] : rows) {
        EXPECT_EQ(InstTypeFromLine(SampleWith(counts, "33000000")), model) << counts;
        EXPECT_EQ(InstTypeFromLine(SampleWith(counts, "00000000")), model) << counts;
    }
}

TEST(InstTypeFromLine, HundredthsByTheirPlaces) {
    const auto line = [](std::string_view counts, std::string_view gains) {
        return WithChecksum("*T4960A5F832" + std::string(counts) + std::string(gains) + "1F403C02");
    };
    // The counts stand at 13 to 44, the gains at 45 to 52. Looked at: 14 to 21, then 48 to 50, then 49
    // and 50.
    const std::string counts(32, '1');
    EXPECT_EQ(InstTypeFromLine(line(counts, "33333300")), InstTypeCode::Corvane6);
    EXPECT_EQ(InstTypeFromLine(line(counts, "33330000")), InstTypeCode::Corvane4);
    EXPECT_EQ(InstTypeFromLine(line(counts, "33300000")), InstTypeCode::Corvane2);
    const std::string thirdSlot =
        "000000000"
        "003" +
        std::string(20, '0');
    EXPECT_EQ(InstTypeFromLine(line(thirdSlot, "33333300")), InstTypeCode::Corvane2);
    const std::string sixthSlot = std::string(20, '0') + "0001" + std::string(8, '0');
    EXPECT_EQ(InstTypeFromLine(line(sixthSlot, "33333300")), InstTypeCode::Corvane6);
}

TEST(InstTypeFromLine, VerboseByTheLastGain) {
    const InstTypeCode byLastSlot[] = {InstTypeCode::Unknown,  InstTypeCode::Unknown, InstTypeCode::Corvane2,
                                       InstTypeCode::Corvane4, InstTypeCode::Unknown, InstTypeCode::Corvane6,
                                       InstTypeCode::Corvane6, InstTypeCode::Corvane6};
    for (std::size_t last = 0; last < 8; ++last) {
        std::string hex = lines::kVerbose;
        std::string decimal = "360000";
        for (int i = 0; i < 40; ++i) decimal += ",7";
        for (std::size_t slot = 0; slot < 8; ++slot) {
            hex[154 + slot] = slot == last ? '3' : '0';
            decimal += slot == last ? ",3" : ",0";
        }
        decimal += ",60,8000,118,120,";
        EXPECT_EQ(InstTypeFromLine(WithChecksum(hex)), byLastSlot[last]) << last;
        EXPECT_EQ(InstTypeFromLine(decimal), byLastSlot[last]) << last;
        EXPECT_EQ(InstTypeFromLine("12.5," + decimal), byLastSlot[last]) << last;
    }
}

TEST(InstTypeFromLine, VerboseWithoutAnyGainTellsNothing) {
    std::string hex = lines::kVerbose;
    hex.replace(154, 8, "00000000");
    EXPECT_EQ(InstTypeFromLine(WithChecksum(hex)), InstTypeCode::Unknown);
}

}  // namespace
}  // namespace marisonde
