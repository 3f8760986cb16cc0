#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <string>

#include "common/ShortNumbers.h"

namespace marisonde {
namespace {

using Reading = std::optional<double> (*)(const char* first, const char* last);

std::optional<double> Scientific(const char* first, const char* last) {
    Quotient number{};
    if (!ReadScientific(first, last, number)) return std::nullopt;
    return number.mantissa / number.power;
}
std::optional<double> Plain(const char* first, const char* last) {
    double number = 0;
    return ReadPlain(first, last, number) ? std::optional(number) : std::nullopt;
}
std::optional<double> Long(const char* first, const char* last) {
    double number = 0;
    return ReadLong(first, last, number) ? std::optional(number) : std::nullopt;
}

/// Reads the text as a value in a line, with `around` before and behind it.
std::optional<double> Read(Reading reading, const std::string& number,
                           const std::string& around = "9.9E-9,9") {
    const std::string line = around + "," + number + "," + around + around;
    const char* const first = line.data() + around.size() + 1;
    return reading(first, first + number.size());
}

/// As the C library reads the same text, with the sign of a zero.
void ExpectLikeTheCLibrary(Reading reading, const std::string& number) {
    const std::optional<double> read = Read(reading, number);
    ASSERT_TRUE(read) << number;
    const double expected = std::strtod(number.c_str(), nullptr);
    ASSERT_EQ(*read, expected) << number;
    ASSERT_EQ(std::signbit(*read), std::signbit(expected)) << number;
}

class Digits {
  public:
    std::string Some(std::size_t least, std::size_t most) {
        std::string text(least + random_() % (most - least + 1), '0');
        for (char& c : text) c = static_cast<char>('0' + random_() % 10);
        return text;
    }
    std::string Sign() { return random_() % 2 == 0 ? "-" : ""; }

  private:
    std::mt19937 random_{5};
};

TEST(ReadScientificTest, AgreesWithTheCLibrary) {
    Digits digits;
    for (int i = 0; i < 300000; ++i) {
        const std::string number = digits.Sign() + digits.Some(1, 1) + "." + digits.Some(1, 8);
        ExpectLikeTheCLibrary(Scientific, i % 2 == 0 ? number : number + "E-0" + digits.Some(1, 1));
    }
}

TEST(ReadScientificTest, LeavesOtherShapes) {
    for (const char* other : {"",
                              "-",
                              "0",
                              "7",
                              ".5",
                              "5.",
                              "12.5",
                              "-.5",
                              "+1.5",
                              " 1.5",
                              "1.5 ",
                              "1,5",
                              "--1.5",
                              "1.5-",
                              "1.123456789",
                              "1.5E-10",
                              "1.5E-1",
                              "1.5E-001",
                              "1.5E+00",
                              "1.5e-03",
                              "1.5E-0",
                              "1.5E-0x",
                              "1.5E-0:",
                              "1.5E-0/",
                              "1.E-03",
                              "E-03",
                              ".E-03",
                              "1E-03",
                              "1E+308",
                              "1.5.5",
                              "1.5x",
                              "x.5",
                              ":.5",
                              "/.5",
                              "1.5:",
                              "1.5/",
                              "1..5",
                              "1.\x80",
                              "1.\xB5",
                              "\xB1.5",
                              "nan",
                              "inf",
                              "&H1F",
                              "1.12345678E-03x",
                              "-1.123456789E-03",
                              "1234567.12345678"})
        for (const char* around : {"9.9E-9,9", "00000000", "1.5E-03,"})
            EXPECT_FALSE(Read(Scientific, other, around)) << other << " in " << around;
    EXPECT_FALSE(Read(Scientific, std::string("1.\0", 3)));
    EXPECT_FALSE(Read(Scientific, std::string("1.5\0", 4)));
}

TEST(ReadPlainTest, AgreesWithTheCLibrary) {
    Digits digits;
    for (int i = 0; i < 300000; ++i)
        ExpectLikeTheCLibrary(Plain, digits.Sign() + digits.Some(1, 7) + "." + digits.Some(1, 8));
}

TEST(ReadPlainTest, LeavesOtherShapes) {
    for (const char* other :
         {"",        "-",      "7",      "7.",   ".7",   "-.7",  "12345678.5", "12345678", "1.123456789",
          "1.5E-03", "+1.5",   " 1.5",   "1.5 ", "1:.5", "1.5:", "1/.5",       "1.5/",     "1.-5",
          "1.5.5",   "\xB1.5", "1.\xB5", "12,5"})
        for (const char* around : {"9.9E-9,9", "00000000", ".5.5.5.5"})
            EXPECT_FALSE(Read(Plain, other, around)) << other << " in " << around;
}

/// Where the sum of whole part and fraction may be rounded the other way, the number is left; that must be
/// rare for dates.
TEST(ReadLongTest, AgreesWithTheCLibraryOrLeaves) {
    Digits digits;
    int left = 0;
    constexpr int kNumbers = 300000;
    for (int i = 0; i < kNumbers; ++i) {
        const std::string number = "45" + digits.Some(3, 3) + "." + digits.Some(9, 15);
        if (Read(Long, number))
            ExpectLikeTheCLibrary(Long, number);
        else
            ++left;
    }
    EXPECT_LT(left, kNumbers / 1000);
    for (int i = 0; i < kNumbers; ++i) {
        const std::string number = digits.Some(1, 7) + "." + digits.Some(9, 15);
        if (Read(Long, number)) ExpectLikeTheCLibrary(Long, number);
    }
}

/// About the middle between two doubles, with as many decimals as are read: the rounding goes to either side.
TEST(ReadLongTest, AgreesAboutTheMiddleBetweenTwoDoubles) {
    std::mt19937 random(9);
    for (int i = 0; i < 20000; ++i) {
        const double whole = i % 2 == 0 ? 2 + random() % 100 : 32766 + random() % 4;
        const double below = whole + static_cast<double>(random()) / 0x1p32;
        const double half = (std::nextafter(below, 1e9) - below) / 2;
        std::array<char, 64> text{};
        std::snprintf(text.data(), text.size(), "%.15Lf", static_cast<long double>(below) + half);
        std::string number = text.data();
        for (const char last : {number.back(), '0', '9'}) {
            number.back() = last;
            if (Read(Long, number)) ExpectLikeTheCLibrary(Long, number);
        }
    }
}

/// Below a power of two the doubles are twice as close as above. The middle between the last two here is
/// 32768 - 2^-39 = 32767.99999999999818101...; the fraction alone is rounded past it.
TEST(ReadLongTest, AgreesBelowAPowerOfTwo) {
    for (const char* number : {"32767.999999999998181", "32767.999999999998182", "32767.999999999998180"})
        if (Read(Long, number)) ExpectLikeTheCLibrary(Long, number);
}

TEST(ReadLongTest, LeavesOtherShapes) {
    for (const char* other : {"", "45000", "45000.25", "45000.12345678", "45000.1234567890123456",
                              "12345678.123456789", ".123456789", "-45000.123456789", "45000.1234:6789",
                              "45000.12345678:", "4500/.123456789", "45000.123456789E1", "45000.12345 789"})
        EXPECT_FALSE(Read(Long, other)) << other;
}

}  // namespace
}  // namespace marisonde
