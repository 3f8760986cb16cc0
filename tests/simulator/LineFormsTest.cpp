#include <algorithm>
#include <gtest/gtest.h>

#include "simulator/HostSide.h"

namespace marisonde::simulator {
namespace {

using namespace std::chrono_literals;
using host::ChecksumFits;
using host::Commas;
using host::HexAt;
using host::LinesOf;

struct FormCase {
    Model model;
    LineForm form;
    const char* prefix;  ///< of hexadecimal lines; empty for decimal ones
    std::size_t length;  ///< of hexadecimal lines
    long commas;
};

std::string CaseName(const testing::TestParamInfo<FormCase>& info) {
    std::string name(InfoOf(info.param.model).name);
    name.erase(std::remove(name.begin(), name.end(), '-'), name.end());
    return name + "Form" + std::to_string(static_cast<int>(info.param.form));
}

class LineForms : public testing::TestWithParam<FormCase> {};

constexpr auto kForms = [] {
    using enum Model;
    using enum LineForm;
    return std::array{
        FormCase{Corvane6, Natural, "*T", 62, 0},       FormCase{Corvane6, Hex, "*D", 60, 0},
        FormCase{Corvane6, HexHundredths, "*T", 62, 0}, FormCase{Corvane6, HexVerbose, "*V", 176, 0},
        FormCase{Corvane6, Decimal, "", 0, 53},         FormCase{Corvane6, DecimalTimed, "", 0, 54},
        FormCase{Corvane4, Hex, "*D", 60, 0},           FormCase{Corvane4, HexVerbose, "*V", 176, 0},
        FormCase{Corvane4, Decimal, "", 0, 53},         FormCase{Corvane2, Natural, "*T", 62, 0},
        FormCase{Corvane2, DecimalTimed, "", 0, 54},    FormCase{LTidal, Natural, "*A", 32, 0},
        FormCase{LTidal, Decimal, "", 0, 11},           FormCase{LTidal, DecimalTimed, "", 0, 13},
        FormCase{LTidal, DecimalShort, "", 0, 5},       FormCase{LTidal, DecimalShortTimed, "", 0, 6},
        FormCase{NTidal, Natural, "*C", 32, 0},         FormCase{NTidal, Decimal, "", 0, 11},
        FormCase{XTidal, Natural, "", 0, 11},           FormCase{XTidal, Hex, "*C", 32, 0},
        FormCase{XTidal, DecimalShort, "", 0, 5},       FormCase{XTidal, DecimalShortTimed, "", 0, 6},
        FormCase{Fathom2, Natural, "", 0, 15},          FormCase{Fathom2, DecimalShort, "", 0, 8},
        FormCase{Delph2, Natural, "", 0, 15},           FormCase{Delph2, DecimalShort, "", 0, 8},
        FormCase{Delph4, Natural, "", 0, 15},           FormCase{Delph4, DecimalShort, "", 0, 8},
        FormCase{Delph6, Natural, "", 0, 15},           FormCase{Delph6, DecimalShort, "", 0, 8},
    };
}();

TEST_P(LineForms, HaveTheirLengthCommasAndChecksum) {
    for (const ChecksumStyle style : {ChecksumStyle::WithoutStar, ChecksumStyle::WithStar}) {
        const auto instrument =
            MakeInstrument(GetParam().model, {.form = GetParam().form, .checksum = style, .extraEvery = 0});
        ASSERT_TRUE(instrument);
        const auto lines = LinesOf(*instrument, 30s);
        ASSERT_GE(lines.size(), 50U);
        for (const std::string& line : lines) {
            const bool hex = GetParam().length > 0;
            ASSERT_EQ(line.substr(0, 1) == "*", hex) << line;
            ASSERT_EQ(Commas(line), GetParam().commas) << line;
            if (!hex) {
                ASSERT_EQ(line.find_first_not_of("0123456789.,-"), std::string::npos) << line;
                continue;
            }
            ASSERT_EQ(line.substr(0, 2), GetParam().prefix) << line;
            ASSERT_EQ(line.size(), GetParam().length) << line;
            ASSERT_EQ(line.find_first_not_of("0123456789ABCDEF", 2), std::string::npos) << line;
            ASSERT_TRUE(ChecksumFits(line, style == ChecksumStyle::WithStar)) << line;
            ASSERT_FALSE(ChecksumFits(line, style != ChecksumStyle::WithStar)) << line;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, LineForms, testing::ValuesIn(kForms), CaseName);

TEST(LineFormsOfModels, AreRefusedWhereTheModelLacksThem) {
    EXPECT_FALSE(MakeInstrument(Model::Corvane6, {.form = LineForm::DecimalShort}));
    EXPECT_FALSE(MakeInstrument(Model::LTidal, {.form = LineForm::HexVerbose}));
    EXPECT_FALSE(MakeInstrument(Model::LTidal, {.form = LineForm::HexHundredths}));
    EXPECT_FALSE(MakeInstrument(Model::Delph2, {.form = LineForm::Hex}));
    EXPECT_FALSE(MakeInstrument(Model::Fathom2, {.form = LineForm::DecimalTimed}));
    EXPECT_FALSE(MakeInstrument("Corvane-5"));
    EXPECT_TRUE(MakeInstrument("DELPH-6"));
    EXPECT_EQ(MakeInstrument("5")->Info().name, "x-Tidal");
}

/// Samples each second from the second `first` after 1 January 1970 on, so that times can be told by hand.
std::vector<std::string> TwoSeconds(Model model, LineForm form, int extraEvery = 0) {
    Options options{.form = form, .samplesPerSecond = 1, .extraEvery = extraEvery};
    options.startDate = std::chrono::sys_seconds{std::chrono::seconds{0x4E000000}};
    return LinesOf(*MakeInstrument(model, options), 3s);
}

TEST(LineTimes, CountFrom1970WithHundredths) {
    // The first sample comes one second after power-on: 0x4E000000 + 1.
    const auto plain = TwoSeconds(Model::Corvane6, LineForm::Hex);
    EXPECT_EQ(plain[0].substr(0, 10), "*D4E000001");
    EXPECT_EQ(plain[1].substr(0, 10), "*D4E000002");
    Options fast{.form = LineForm::HexHundredths, .samplesPerSecond = 4, .extraEvery = 0};
    fast.startDate = std::chrono::sys_seconds{std::chrono::seconds{0x4E000000}};
    const auto lines = LinesOf(*MakeInstrument(Model::Corvane2, fast), 2s);
    EXPECT_EQ(lines[0].substr(0, 12), "*T4E00000019");  // 0.25 s: 25 hundredths are 0x19
    EXPECT_EQ(lines[2].substr(0, 12), "*T4E0000004B");  // 0.75 s: 75 are 0x4B
    EXPECT_EQ(lines[3].substr(0, 12), "*T4E00000100");
}

TEST(LineTimes, OfTidalsCountFrom1980) {
    // From 1970 to 1980 are 3652 days, 315532800 s or 0x12CEA600; 0x4E000001 less that is 0x3B315A01.
    EXPECT_EQ(TwoSeconds(Model::LTidal, LineForm::Hex)[0].substr(0, 12), "*A3B315A0100");
    // 0x3B315A01 is 993090049.
    EXPECT_EQ(TwoSeconds(Model::NTidal, LineForm::DecimalShort)[0].substr(0, 13), "993090049.00,");
    EXPECT_EQ(TwoSeconds(Model::NTidal, LineForm::DecimalShortTimed)[0].substr(0, 18), "1.00,993090049.00,");
}

TEST(LineTimes, OfDelphsCountFrom1970) {
    // 0x4E000001 is 1308622849.
    EXPECT_EQ(TwoSeconds(Model::Delph4, LineForm::Natural)[0].substr(0, 14), "1308622849.00,");
}

TEST(LineTimes, OfDecimalCorvanesRunFromPowerOn) {
    EXPECT_EQ(TwoSeconds(Model::Corvane6, LineForm::Decimal)[1].substr(0, 4), "200,");
    EXPECT_EQ(TwoSeconds(Model::Corvane6, LineForm::DecimalTimed)[1].substr(0, 9), "2.00,200,");
}

TEST(LineFields, OfSlotsThatAModelLacksAreZero) {
    const std::string four = TwoSeconds(Model::Corvane4, LineForm::Hex)[0];
    EXPECT_EQ(four.substr(26, 16), std::string(16, '0'));  // Snorm of slots 4 to 7, from position 27
    EXPECT_EQ(four.substr(46, 4), "0000");                 // their gains, from position 47
    EXPECT_EQ(four.substr(42, 4).find('0'), std::string::npos);
    const std::string two = TwoSeconds(Model::Corvane2, LineForm::HexHundredths)[0];
    EXPECT_EQ(two.substr(47, 5), "00000");  // gains of slots 3 to 7 of "*T", from position 48
    const std::string six = TwoSeconds(Model::Corvane6, LineForm::Hex)[0];
    EXPECT_EQ(six.substr(42, 8).find_first_not_of("12345"), std::string::npos);
}

TEST(LineFields, OfHousekeepingStandBeforeTheSample) {
    const auto lines = TwoSeconds(Model::Corvane6, LineForm::Hex, 1);
    ASSERT_GE(lines.size(), 4U);
    ASSERT_EQ(lines[0].substr(0, 10), "*H4E000001");
    EXPECT_EQ(lines[1].substr(0, 10), "*D4E000001");
    EXPECT_EQ(lines[0].size(), 134U);
    EXPECT_TRUE(ChecksumFits(lines[0], false));
    EXPECT_EQ(HexAt(lines[0], 123, 2), 126);  // a fresh battery has 12.6 V
    EXPECT_EQ(HexAt(lines[0], 125, 2), 31);
    // At the surface the water has 18 deg C within 0.1, the bench had 20.3: -2 is FE.
    EXPECT_EQ(lines[0].substr(22, 2), "FE");
}

TEST(LineFields, OfTheTidalExtraLine) {
    const auto lines = TwoSeconds(Model::NTidal, LineForm::Hex, 1);
    ASSERT_GE(lines.size(), 4U);
    EXPECT_EQ(lines[0].size(), 22U);
    EXPECT_TRUE(ChecksumFits(lines[0], false));
    // 11.8 V are 118 or 0x76; 2.65 V are 2.65 / 0.00382 = 693.7, so 694 or 0x02B6.
    EXPECT_EQ(lines[0].substr(0, 8), "*I7602B6");
    EXPECT_NEAR(static_cast<double>(HexAt(lines[0], 13, 4)) * 0.00382 - 50, 18 + 1.2, 0.2);
}

TEST(LineFields, OfDelphsBeyondTheStatusAreZero) {
    const auto numbers = host::Numbers(TwoSeconds(Model::Delph6, LineForm::Natural)[0]);
    ASSERT_EQ(numbers.size(), 16U);
    EXPECT_EQ(numbers[9], 1184);  // 11.84 V
    for (std::size_t i = 10; i < 16; ++i) EXPECT_EQ(numbers[i], 0);
}

}  // namespace
}  // namespace marisonde::simulator
