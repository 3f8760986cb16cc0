#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "common/ConversionUtils.h"

namespace marisonde {
namespace {

TEST(ConversionUtils, NumberTexts) {
    EXPECT_EQ(NumberTextTrimmed("  12.50 "), "12.5");
    EXPECT_EQ(NumberTextTrimmed("12.5x"), "0");
    EXPECT_EQ(NumberTextTrimmed(""), "0");
    EXPECT_EQ(SingleText(0.1F), "0.1");
    EXPECT_EQ(DoubleText(0.1), "0.1");
    EXPECT_EQ(DoubleText(static_cast<double>(0.1F)), "0.10000000149011612");
}

TEST(ConversionUtils, IsDigitChar) {
    EXPECT_TRUE(IsDigitChar("5x"));
    EXPECT_FALSE(IsDigitChar("x5"));
    EXPECT_FALSE(IsDigitChar("-5"));
    EXPECT_FALSE(IsDigitChar(""));
    EXPECT_FALSE(IsDigitChar("\xB2"));  // a superscript two in Latin-1
}

TEST(ConversionUtils, HasNumberChars) {
    for (const auto text : {"5", "-.5", "+.-1,2", "--..++7x"}) EXPECT_TRUE(HasNumberChars(text)) << text;
    for (const auto text : {"", "-", "+.-", " 5", "a5", "-a5", "e5"})
        EXPECT_FALSE(HasNumberChars(text)) << text;
}

TEST(ConversionUtils, IsNumericText) {
    for (const auto text : {"", "   ", "5", " 5 ", "e-.+", "1E+5", "-.5"})
        EXPECT_TRUE(IsNumericText(text)) << text;
    for (const auto text : {"1 2", "5x", "1,5", "&H5", "\t5"}) EXPECT_FALSE(IsNumericText(text)) << text;
}

TEST(ConversionUtils, NumericTail) {
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"t=-.5V", "-.5V"}, {"a-5", "-5"},  {"v1.01", "1.01"}, {"-5", "-5"},     {".5", ".5"},
        {"-.5", "-.5"},     {"x.-5", "-5"}, {"+5", "5"},       {"no digit", ""}, {"", ""},
        {"a -5", "-5"},     {"a-.b5", "5"}, {"5", "5"},        {"--5", "-5"},    {"..5", ".5"},
    };
    for (const auto& [text, tail] : rows) EXPECT_EQ(NumericTail(text), tail) << text;
}

TEST(ConversionUtils, FirstNumber) {
    const std::pair<std::string_view, double> rows[] = {
        {"v1.01", 1.01},  {"Firmware 2.5 of 2009", 2.5},
        {"t=-.5V", -0.5}, {"no digit", 0},
        {"", 0},          {"1 2", 1},
        {"x12e2y", 1200}, {"7,8", 7},
    };
    for (const auto& [text, value] : rows) EXPECT_EQ(FirstNumber(text), value) << text;
}

TEST(ConversionUtils, LastNumber) {
    const std::pair<std::string_view, double> rows[] = {
        {"a 5 6", 6},   {"5 6 ", 5},  // a blank at the end: the whole text
        {" 7", 7},                    // the only blank is the first character
        {"12.5", 12.5}, {"a 5x", 5}, {"5 x", 0}, {"", 0}, {" ", 0},
    };
    for (const auto& [text, value] : rows) EXPECT_EQ(LastNumber(text), value) << text;
}

TEST(ConversionUtils, FirstInteger) {
    const std::pair<std::string_view, int> rows[] = {
        {"abc12def", 12}, {"-7", 7},     // the sign is not a digit
        {"12.5", 12},     {"13.5", 14},  // what follows the run of digits counts, halves to even
        {"99999", 32767}, {"none", 0},  {"", 0}, {"05/06", 5}, {"05 06", 5},
    };
    for (const auto& [text, value] : rows) EXPECT_EQ(FirstInteger(text), value) << text;
}

TEST(ConversionUtils, TextInBrackets) {
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"Backscattering Coefficient (/m)", "/m"},
        {"Depth (m)", "m"},
        {"a (b) (c)", "c"},
        {"()", ""},
        {"(", ""},
        {")", ""},
        {")a(", ""},
        {"a (b", ""},
        {"a b)", ""},
        {"", ""},
        {"(a)b)", "a)b"},
    };
    for (const auto& [text, inner] : rows) EXPECT_EQ(TextInBrackets(text), inner) << text;
}

TEST(ConversionUtils, RoundToDigits) {
    EXPECT_EQ(RoundToDigits(0, 3), 0);
    EXPECT_EQ(RoundToDigits(1234.5, 3), 1230);            // Round(0.12345, 3) x 10^4: three digits
    EXPECT_EQ(RoundToDigits(0.5123, 3), 0.5123);          // Round(5.123, 3) / 10: four
    EXPECT_DOUBLE_EQ(RoundToDigits(0.05123, 3), 0.0512);  // Round(0.5123, 3) / 100: three
    EXPECT_DOUBLE_EQ(RoundToDigits(-1234.5, 3), -1230);
    EXPECT_EQ(RoundToDigits(1, 3), 1);               // Round(0.1, 3) x 10
    EXPECT_EQ(RoundToDigits(0.1, 3), 0.1);           // Round(1, 3) / 10
    EXPECT_DOUBLE_EQ(RoundToDigits(1e60, 3), 1e60);  // after 50 steps 10^10, which has no decimals
    EXPECT_EQ(RoundToDigits(1e-60, 3), 0);           // after 50 steps 10^-10
}

TEST(ConversionUtils, NulPadding) {
    EXPECT_EQ(PadWithNul("ab", 4), std::string("ab\0\0", 4));
    EXPECT_EQ(PadWithNul("abc", 2), "abc");
    EXPECT_EQ(AddNul("a"), std::string("a\0", 2));
    EXPECT_EQ(CutAtNul(std::string_view("a\0b", 3)), "a");
    EXPECT_EQ(CutAtNul("ab"), "ab");
    EXPECT_EQ(CutAtNul(""), "");
}

TEST(ConversionUtils, CaseAndBlanks) {
    EXPECT_EQ(Trim("  a b "), "a b");
    EXPECT_EQ(Trim("   "), "");
    EXPECT_EQ(Trim("\ta"), "\ta");
    EXPECT_EQ(LowerCase("AbZ\xC4"), "abz\xC4");
    EXPECT_EQ(UpperCase("aBz\xE4"), "ABZ\xE4");
    EXPECT_TRUE(EqualIgnoringCase("Corvane-6", "CORVANE-6"));
    EXPECT_FALSE(EqualIgnoringCase("Corvane-6", "Corvane-"));
    EXPECT_FALSE(EqualIgnoringCase("[", "{"));
}

TEST(ConversionUtils, HoldsIgnoringCase) {
    for (const auto text : {"ready", "CV6 READY", "already on"})
        EXPECT_TRUE(HoldsIgnoringCase(text, "ready")) << text;
    for (const auto text : {"", "read", "r eady"}) EXPECT_FALSE(HoldsIgnoringCase(text, "ready")) << text;
    EXPECT_FALSE(HoldsIgnoringCase("{DONE", "[done"));
}

TEST(ConversionUtils, SignedToByteClampsTheCallersValueToo) {
    struct Row {
        std::int16_t value, clamped;
        int byte;
    };
    const Row rows[] = {{200, 127, 127}, {-1, -1, 255}, {-200, -128, 128}, {0, 0, 0}, {127, 127, 127}};
    for (const Row& row : rows) {
        std::int16_t value = row.value;
        EXPECT_EQ(SignedToByte(value), row.byte);
        EXPECT_EQ(value, row.clamped);
    }
}

TEST(ConversionUtils, WordToLong) {
    EXPECT_EQ(WordToLong(-1), 65535);
    EXPECT_EQ(WordToLong(-32768), 32768);
    EXPECT_EQ(WordToLong(32767), 32767);
}

TEST(ScaledWords, Encode) {
    // Exponent 0 is stored as 3, so a mantissa of 1000 (hexadecimal 3E8) gives 33E8.
    EXPECT_EQ(EncodeScaled(1000), 0x33E8);
    EXPECT_EQ(EncodeScaled(4095), 0x3FFF);
    EXPECT_EQ(EncodeScaled(4096), 0x219A);     // 409.6 -> 410 = 19A, exponent -1
    EXPECT_EQ(EncodeScaled(409.5), 0x4FFF);    // 4095, exponent 1
    EXPECT_EQ(EncodeScaled(40950), 0x2FFF);    // 4095, exponent -1
    EXPECT_EQ(EncodeScaled(4095000), 0x0FFF);  // 4095, exponent -3, the largest
    // Exponent 12 is stored as 15: F000 as a signed word is -4096.
    EXPECT_EQ(EncodeScaled(0), -4096);
    EXPECT_EQ(EncodeScaled(1), static_cast<std::int16_t>(0x6000 | 1000));  // 1000, exponent 3
    EXPECT_EQ(EncodeScaled(0.00001), static_cast<std::int16_t>(0xB000 | 1000));
}

TEST(ScaledWords, EncodeEndsForAnyValue) {
    for (const double value : {1e308, -1e308, -5.0, std::nan(""), std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity()})
        EncodeScaled(value);
}

TEST(ScaledWords, Decode) {
    EXPECT_EQ(DecodeScaled(0x33E8), 1000);
    EXPECT_EQ(DecodeScaled(0x0FFF), 4095000);
    EXPECT_EQ(DecodeScaled(-4096), 0);
    EXPECT_EQ(DecodeScaled(static_cast<std::int16_t>(0xF001)), 1e-12F);
    EXPECT_EQ(DecodeScaled(0x4FFF), 409.5F);
}

TEST(ScaledWords, EveryNormalWordSurvivesTheRoundTrip) {
    // Without 4095: as a float it may lie just above 409.5 x 10^n, from where a mantissa of 410 is taken.
    for (int exponent = 0; exponent <= 15; ++exponent) {
        for (int mantissa = 410; mantissa < 4095; ++mantissa) {
            const auto word =
                static_cast<std::int16_t>(static_cast<std::uint16_t>(exponent << 12 | mantissa));
            EXPECT_EQ(EncodeScaled(static_cast<double>(DecodeScaled(word))), word);
        }
    }
}

}  // namespace
}  // namespace marisonde
