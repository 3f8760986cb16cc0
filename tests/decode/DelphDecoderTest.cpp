#include <gtest/gtest.h>

#include "Lines.h"
#include "decode/Decoders.h"

namespace marisonde {
namespace {

void ExpectCommonFields(const RawSample& sample) {
    EXPECT_EQ(sample.Hundredths, 0);
    EXPECT_EQ(sample.Sig[0], 1000);
    EXPECT_EQ(sample.Sig[1], 1100);
    EXPECT_EQ(sample.Ref[0], 2000);
    EXPECT_EQ(sample.Ref[1], 2100);
    EXPECT_EQ(sample.Pressure, 8000);
    EXPECT_EQ(sample.Temp, 12.5F);  // hundredths of a degree
    EXPECT_EQ(sample.Temp2, 20.1F);
    EXPECT_EQ(sample.Temp3, -20.2F);
}

TEST(Delph, WorkedExample) {
    RawSample sample;
    sample.Hundredths = 5;
    sample.Voltage = 9;
    ASSERT_TRUE(ParseRawLine(lines::kDelph, InstTypeCode::Delph4, sample));
    ExpectCommonFields(sample);
    EXPECT_EQ(sample.Time, 1231070712);
    EXPECT_EQ(sample.Voltage, 9);  // not in the short record
}

TEST(Delph, TheModelInUseDoesNotMatter) {
    RawSample delph;
    RawSample corvane;
    ASSERT_TRUE(ParseRawLine(lines::kDelph, InstTypeCode::Fathom2, delph));
    ASSERT_TRUE(ParseRawLine(lines::kDelph, InstTypeCode::Corvane6, corvane));
    EXPECT_EQ(delph, corvane);
}

TEST(DelphFull, WorkedExampleWithFractionOfTime) {
    RawSample sample;
    std::string line = lines::kDelph;
    line.insert(line.find(','), ".75");
    ASSERT_TRUE(ParseRawLine(line + ",1190,7,1,2,3,4,5", InstTypeCode::Delph2, sample));
    ExpectCommonFields(sample);
    EXPECT_EQ(sample.Time, 1231070712.75);
    EXPECT_EQ(sample.Voltage, 11.9F);
}

TEST(DelphFull, SupplyInTheSmallerUnit) {
    const std::pair<std::string_view, float> rows[] = {
        {"8000", 8},   // 80, above 75, so 8.0
        {"7500", 75},  // 75 is not above it
        {"7501", 7.501F}, {"1190", 11.9F}, {"", 0},
    };
    for (const auto& [field, volts] : rows) {
        RawSample sample;
        ASSERT_TRUE(ParseRawLine(lines::kDelph + "," + std::string(field) + ",7,1,2,3,4,5",
                                 InstTypeCode::Delph2, sample));
        EXPECT_EQ(sample.Voltage, volts) << field;
    }
}

}  // namespace
}  // namespace marisonde
