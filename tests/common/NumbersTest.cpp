#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <random>

#include "common/Numbers.h"

namespace marisonde {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
const double kNan = std::nan("");

struct Reading {
    std::string_view text;
    double val;      // leading number
    double safeVal;  // whole text
};

TEST(Val, LeadingNumberAndSafeValTheWholeText) {
    const Reading readings[] = {
        {"", 0, 0},
        {"12", 12, 12},
        {"  12", 12, 12},
        {"\t7", 7, 7},
        {"12  ", 12, 12},
        {"+3.5", 3.5, 3.5},
        {"-.5", -0.5, -0.5},
        {"5.", 5, 5},
        {".", 0, 0},
        {"-", 0, 0},
        {"+-5", 0, 0},
        {"- 5", 0, 0},
        {"1 2", 1, 0},
        {"12abc", 12, 0},
        {"abc", 0, 0},
        {"1e3", 1000, 1000},
        {"1E-3", 0.001, 0.001},
        {"1.5e+2x", 150, 0},
        {"1e", 1, 0},
        {"1e+", 1, 0},
        {"1d3", 1, 0},
        {"1,5", 1, 0},
        {"inf", 0, 0},
        {"-inf", 0, 0},
        {"nan", 0, 0},
        {"infinity", 0, 0},
        {"1e999", 0, 0},
        {"-1e999", 0, 0},
        {"1E+308", 1e308, 1e308},
        {"0.1", 0.1, 0.1},
        {"123456789012345678", 123456789012345678.0, 123456789012345678.0},
        {"0.30000000000000004", 0.30000000000000004, 0.30000000000000004},
        {"9007199254740993", 9007199254740992.0, 9007199254740992.0},  // 2^53 + 1: halves to even
        {"00000000000000000000012.5", 12.5, 12.5},
        {"&H1A", 26, 26},
        {"&hffff", 65535, 65535},
        {"&HFFFFFFFF", 4294967295.0, 4294967295.0},
        {"&HG1", 0, 0},
        {"&H1G", 1, 0},
        {"&", 0, 0},
        {"&H", 0, 0},
    };
    for (const Reading& reading : readings) {
        EXPECT_EQ(Val(reading.text), reading.val) << reading.text;
        EXPECT_EQ(SafeVal(reading.text), reading.safeVal) << reading.text;
    }
}

TEST(Val, StopsAtAnEmbeddedNul) {
    EXPECT_EQ(Val(std::string_view("12\0003", 4)), 12);
    EXPECT_EQ(SafeVal(std::string_view("12\0003", 4)), 0);
}

TEST(ReadNumber, TellsWhereTheNumberEnds) {
    const std::string_view text = " 12.5,7";
    const auto number = ReadNumber(text.data(), text.data() + text.size());
    EXPECT_EQ(number.value, 12.5);
    EXPECT_EQ(number.end - text.data(), 5);
    const std::string_view bad = " x";
    EXPECT_EQ(ReadNumber(bad.data(), bad.data() + bad.size()).end, bad.data());
}

TEST(HexVal, LeadingDigits) {
    EXPECT_EQ(HexVal(""), 0u);
    EXPECT_EQ(HexVal("0"), 0u);
    EXPECT_EQ(HexVal("fF"), 255u);
    EXPECT_EQ(HexVal("1G"), 1u);
    EXPECT_EQ(HexVal("G1"), 0u);
    EXPECT_EQ(HexVal(" 1"), 0u);
    EXPECT_EQ(HexVal("ABCDEF01"), 0xABCDEF01u);
    EXPECT_EQ(HexVal("123456789"), 0x12345678u);
    EXPECT_EQ(HexVal(std::string_view("1\0002", 3)), 1u);
}

TEST(Rounding, HalvesGoToEven) {
    EXPECT_EQ(RoundHalfEven(0.5), 0);
    EXPECT_EQ(RoundHalfEven(1.5), 2);
    EXPECT_EQ(RoundHalfEven(2.5), 2);
    EXPECT_EQ(RoundHalfEven(-0.5), 0);
    EXPECT_EQ(RoundHalfEven(-1.5), -2);
    EXPECT_EQ(RoundHalfEven(0.49999999999999994), 0);
    EXPECT_EQ(RoundHalfEven(4503599627370495.5), 4503599627370496.0);
    EXPECT_EQ(RoundHalfEven(1e300), 1e300);
    EXPECT_EQ(RoundHalfEven(kInf), kInf);
    EXPECT_TRUE(std::isnan(RoundHalfEven(kNan)));
}

TEST(Rounding, AgreesWithTheProcessorsRounding) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 100000; ++i) {
        const double value = std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 80) - 70);
        EXPECT_EQ(RoundHalfEven(value), std::nearbyint(value));
        EXPECT_EQ(RoundHalfEven(-value), std::nearbyint(-value));
    }
}

TEST(Rounding, Decimals) {
    EXPECT_EQ(RoundDecimals(0.125, 2), 0.12);  // 12.5 -> 12
    EXPECT_EQ(RoundDecimals(0.375, 2), 0.38);  // 37.5 -> 38
    EXPECT_EQ(RoundDecimals(-1.25, 1), -1.2);
    EXPECT_EQ(RoundDecimals(1234, -2), 1200);
    EXPECT_EQ(RoundDecimals(1250, -2), 1200);  // 12.5 -> 12
    EXPECT_EQ(RoundDecimals(1e300, 20), 1e300);
    EXPECT_EQ(RoundDecimals(1.5, 400), 1.5);
    EXPECT_EQ(RoundDecimals(kInf, 2), kInf);
}

TEST(Rounding, SignificantDigits) {
    EXPECT_EQ(RoundSignificant(0, 6), 0);
    EXPECT_EQ(RoundSignificant(1234567, 6), 1234570);
    EXPECT_EQ(RoundSignificant(123.4565, 6), 123.456);  // 123456.5 -> 123456
    EXPECT_EQ(RoundSignificant(0.001234567, 6), 0.00123457);
    EXPECT_EQ(RoundSignificant(-9.999999, 6), -10);
    EXPECT_EQ(RoundSignificant(1000, 1), 1000);
    EXPECT_EQ(RoundSignificant(999.9, 3), 1000);
    EXPECT_EQ(RoundSignificant(1.23456789e-30, 6), 1.23457e-30);
    EXPECT_EQ(RoundSignificant(1.23456789e200, 6), 1.23457e200);
    EXPECT_EQ(RoundSignificant(5e-324, 6), 5e-324);
    EXPECT_EQ(RoundSignificant(1e308, 6), 1e308);
    EXPECT_EQ(RoundSignificant(kInf, 6), kInf);
}

TEST(Rounding, IntegersStayWithinTheirType) {
    EXPECT_EQ(ToInt16(2.5), 2);
    EXPECT_EQ(ToInt16(32767.4), 32767);
    EXPECT_EQ(ToInt16(40000), 32767);
    EXPECT_EQ(ToInt16(-40000), -32768);
    EXPECT_EQ(ToInt16(kNan), 0);
    EXPECT_EQ(ToInt32(-3.5), -4);
    EXPECT_EQ(ToInt32(1e300), 2147483647);
    EXPECT_EQ(ToInt32(-kInf), -2147483647 - 1);
    EXPECT_EQ(ToInt32(kNan), 0);
}

TEST(WriteNumber, Floats) {
    const std::pair<float, std::string_view> rows[] = {
        {0.0f, "0"},
        {-0.0f, "0"},
        {1.0f, "1"},
        {-1.5f, "-1.5"},
        {0.1f, "0.1"},
        {0.5f, "0.5"},
        {0.12345678f, "0.12345678"},    // 0.1 and above: any number of decimals
        {0.05f, "0.05"},                // two decimals
        {0.0123456f, "0.0123456"},      // seven decimals, the most
        {0.01234567f, "1.234567E-02"},  // eight
        {0.001234568f, "1.234568E-03"},
        {0.0000001f, "0.0000001"},  // seven decimals
        {0.00000001f, "1E-08"},
        {9999999.0f, "9999999"},  // seven digits, the most
        {10000000.0f, "1E+07"},
        {1234567.5f, "1234567.5"},  // eight digits, but the whole part has seven
        {16777216.0f, "1.6777216E+07"},
        {3.4028235e38f, "3.4028235E+38"},
        {1e-45f, "1E-45"},
        {std::numeric_limits<float>::infinity(), "1E+308"},
        {-std::numeric_limits<float>::infinity(), "1E+308"},
        {std::nanf(""), "1E+308"},
    };
    for (const auto& [value, text] : rows) EXPECT_EQ(NumberText(value), text);
}

TEST(WriteNumber, Doubles) {
    const std::pair<double, std::string_view> rows[] = {
        {0.0, "0"},
        {-0.0, "0"},
        {40179.5, "40179.5"},
        {0.1, "0.1"},
        {0.30000000000000004, "0.30000000000000004"},
        {0.000000000000001, "0.000000000000001"},  // fifteen decimals
        {0.0000000000000001, "1E-16"},
        {0.01234567890123456, "1.234567890123456E-02"},  // 17 decimals
        {999999999999999.0, "999999999999999"},
        {1e15, "1E+15"},
        {-1e308, "-1E+308"},
        {1e308, "1E+308"},
        {1.7976931348623157e308, "1.7976931348623157E+308"},
        {5e-324, "5E-324"},
        {2.2250738585072014e-308, "2.2250738585072014E-308"},
        {kInf, "1E+308"},
        {kNan, "1E+308"},
    };
    for (const auto& [value, text] : rows) EXPECT_EQ(NumberText(value), text);
}

template <typename Float, typename Bits>
void ExpectEveryTextReadsBack(int count) {
    std::mt19937_64 random(7);
    for (int i = 0; i < count; ++i) {
        const auto bits = static_cast<Bits>(random());
        Float value;
        std::memcpy(&value, &bits, sizeof value);
        if (!std::isfinite(value)) continue;
        char text[kMaxNumberText];
        char* end = WriteNumber(text, value);
        ASSERT_LE(end - text, 24);
        const std::string_view written(text, static_cast<std::size_t>(end - text));
        ASSERT_EQ(static_cast<Float>(Val(written)), value) << written;
        ASSERT_EQ(static_cast<Float>(SafeVal(written)), value) << written;
    }
}

TEST(WriteNumber, EveryTextReadsBackToTheSameValue) {
    ExpectEveryTextReadsBack<float, std::uint32_t>(300000);
    ExpectEveryTextReadsBack<double, std::uint64_t>(300000);
}

TEST(WriteNumber, NoShorterTextReadsBack) {
    std::mt19937_64 random(11);
    for (int i = 0; i < 20000; ++i) {
        const auto value = static_cast<float>(static_cast<double>(random() % 2000000) / 997.0);
        std::string digits;
        const std::string written = NumberText(value);
        for (const char c : written.substr(0, written.find('E')))
            if (c >= '0' && c <= '9') digits += c;
        digits.erase(0, digits.find_first_not_of('0'));
        digits.erase(digits.find_last_not_of('0') + 1);
        const std::size_t significant = digits.size();
        if (significant < 2) continue;
        char shorter[64];
        std::snprintf(shorter, sizeof shorter, "%.*e", static_cast<int>(significant) - 2,
                      static_cast<double>(value));
        EXPECT_NE(std::strtof(shorter, nullptr), value) << shorter;
    }
}

TEST(AppendNumber, AddsToTheText) {
    std::string text = "x=";
    AppendNumber(text, 2.5);
    text += ',';
    AppendNumber(text, 0.1f);
    EXPECT_EQ(text, "x=2.5,0.1");
}

TEST(FixedText, RoundsTheDecimalValue) {
    EXPECT_EQ(FixedText(3.14159, 2), "3.14");
    EXPECT_EQ(FixedText(0.125, 2), "0.12");
    EXPECT_EQ(FixedText(0.375, 2), "0.38");
    EXPECT_EQ(FixedText(2.675, 2), "2.68");  // half of the decimal text, though the double lies below it
    EXPECT_EQ(FixedText(1.005, 2), "1.00");
    EXPECT_EQ(FixedText(0.5, 0), "0");
    EXPECT_EQ(FixedText(1.5, 0), "2");
    EXPECT_EQ(FixedText(0.51, 0), "1");
    EXPECT_EQ(FixedText(9.996, 2), "10.00");
    EXPECT_EQ(FixedText(-0.001, 2), "0.00");
    EXPECT_EQ(FixedText(-1.234, 1), "-1.2");
    EXPECT_EQ(FixedText(0, 3), "0.000");
    EXPECT_EQ(FixedText(12, 1), "12.0");
    EXPECT_EQ(FixedText(1e21, 1), "1000000000000000000000.0");
    EXPECT_EQ(FixedText(1e-9, 3), "0.000");
    EXPECT_EQ(FixedText(0.0006, 3), "0.001");
    EXPECT_EQ(FixedText(kInf, 2), "1E+308");
}

/// Digits, point, exponent and what follows in every length, beside the C library's reader. Numbers that fit
/// the short road and those that do not meet the same rounding.
TEST(ReadNumber, AgreesWithTheCLibrary) {
    std::mt19937 random(11);
    const auto digits = [&](std::size_t most) {
        std::string text(random() % (most + 1), '0');
        for (char& c : text) c = static_cast<char>('0' + random() % 10);
        return text;
    };
    for (int i = 0; i < 200000; ++i) {
        std::string number = random() % 2 == 0 ? "-" : "";
        number += "1" + digits(i % 3 == 0 ? 20 : 3);
        if (random() % 4 != 0) number += "." + digits(i % 5 == 0 ? 20 : 9);
        if (random() % 2 == 0)
            number += (random() % 2 == 0 ? "E-" : "e+") + std::to_string(random() % (i % 7 == 0 ? 300 : 26));
        const std::string text = number + std::string(",\xB8x:/ ,9").substr(0, random() % 9);
        const LeadingNumber read = ReadNumber(text.data(), text.data() + text.size());
        const double expected = std::strtod(number.c_str(), nullptr);
        ASSERT_EQ(read.value, std::isfinite(expected) ? expected : 0) << text;
        ASSERT_EQ(read.end - text.data(), static_cast<std::ptrdiff_t>(number.size())) << text;
    }
}

TEST(ReadNumber, StopsAtEveryCharacterThatIsNoDigit) {
    for (int c = 1; c < 256; ++c) {
        const char other = static_cast<char>(c);
        if (other >= '0' && other <= '9') continue;
        std::string text = "0.1234";
        text += other;
        text += "567890123";
        if (other == 'e' || other == 'E') continue;
        const LeadingNumber read = ReadNumber(text.data(), text.data() + text.size());
        EXPECT_EQ(read.value, 0.1234) << c;
        EXPECT_EQ(read.end - text.data(), 6) << c;
    }
}

TEST(ScientificText, HasOneDigitBeforeThePoint) {
    EXPECT_EQ(ScientificText(0.000166879789, 2), "1.67E-04");
    EXPECT_EQ(ScientificText(0.0010358, 2), "1.04E-03");
    EXPECT_EQ(ScientificText(525, 2), "5.25E+02");
    EXPECT_EQ(ScientificText(0, 2), "0.00E+00");
    EXPECT_EQ(ScientificText(-1.5, 2), "-1.50E+00");
    EXPECT_EQ(ScientificText(9.996, 2), "1.00E+01");
    EXPECT_EQ(ScientificText(0.9996, 2), "1.00E+00");
    EXPECT_EQ(ScientificText(1.25, 1), "1.2E+00");
    EXPECT_EQ(ScientificText(7, 0), "7E+00");
    EXPECT_EQ(ScientificText(1e-300, 2), "1.00E-300");
    EXPECT_EQ(ScientificText(kInf, 2), "1E+308");
}

TEST(StrictNumber, WantsTheWholeText) {
    EXPECT_EQ(StrictNumber(" 1.5E-2 "), 0.015);
    EXPECT_EQ(StrictNumber("-3"), -3);
    for (const char* zero : {"0", "-0.00", "0E5", "&H0"}) EXPECT_EQ(StrictNumber(zero), 0) << zero;
    for (const char* text : {"", "  ", "1,5", "1-2", "5 m", "abc", "-", ".", "e5"})
        EXPECT_EQ(StrictNumber(text), std::nullopt) << text;
}

TEST(StrictNumber, RefusesWhatNoDoubleCanHold) {
    for (const char* text : {"1e309", "-2E999", "1e-400"})
        EXPECT_EQ(StrictNumber(text), std::nullopt) << text;
    EXPECT_EQ(StrictNumber("1E308"), 1e308);
    EXPECT_EQ(StrictNumber("5E-324"), 5e-324);
}

}  // namespace
}  // namespace marisonde
