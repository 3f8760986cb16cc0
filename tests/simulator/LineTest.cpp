#include <gtest/gtest.h>
#include <numeric>

#include "simulator/FieldText.h"
#include "simulator/HostSide.h"
#include "simulator/SeenAtRate.h"

namespace marisonde::simulator {
namespace {

using namespace std::chrono_literals;

TEST(FieldText, HexadecimalFieldsClampToTheirWidth) {
    std::string out;
    AppendHex(out, 0x1AF, 4);
    AppendHex(out, 70000, 4);
    AppendHex(out, -1, 2);
    EXPECT_EQ(out, "01AFFFFF00");
}

TEST(FieldText, SignedFieldsAreTwosComplement) {
    std::string out;
    AppendSignedHex(out, -1, 6);
    AppendSignedHex(out, -2, 2);
    AppendSignedHex(out, 300, 2);
    EXPECT_EQ(out, "FFFFFFFE7F");
}

TEST(FieldText, ChecksumsSumTheLineWithOrWithoutItsStar) {
    // 'D' 44 + '1' 31 + '2' 32 = A7 hexadecimal; with '*' 2A it is D1.
    std::string without = "*D12";
    AppendChecksum(without, 0, ChecksumStyle::WithoutStar);
    EXPECT_EQ(without, "*D12A7");
    std::string with = "*D12";
    AppendChecksum(with, 0, ChecksumStyle::WithStar);
    EXPECT_EQ(with, "*D12D1");
    // Twelve 'F' of 46 hexadecimal each are 348; with 'T' 54 that is 39C, of which 9C stays.
    std::string wraps = "xx*TFFFFFFFFFFFF";
    AppendChecksum(wraps, 2, ChecksumStyle::WithoutStar);
    EXPECT_EQ(wraps.substr(16), "9C");
}

TEST(FieldText, NumbersAreShortWithAnUpperCaseExponent) {
    EXPECT_EQ(SixDigits(12150), "12150");
    EXPECT_EQ(SixDigits(0.99816749), "0.998167");
    EXPECT_EQ(SixDigits(1.883e-5), "1.883E-05");
    EXPECT_EQ(SixDigits(0), "0");
    EXPECT_EQ(AllDigits(0.1F), "0.1");
    EXPECT_EQ(AllDigits(-0.00052), "-0.00052");
    EXPECT_EQ(AllDigits(3.1e-06), "3.1E-06");
    EXPECT_EQ(AllDigits(36000.0F), "36000");
}

TEST(OutputLine, KeepsBytesOnTheirWay) {
    OutputLine line(9600);  // 960 bytes a second
    line.Send(std::string(96, 'a'), 0ns);
    EXPECT_EQ(line.BusyUntil(), 100ms);
    EXPECT_EQ(line.Take(50ms).size(), 48U);
    line.Send("b", 60ms);
    EXPECT_EQ(line.Take(100ms), std::string(48, 'a'));
    EXPECT_EQ(line.Take(101ms), "");
    EXPECT_EQ(line.Take(102ms), "b");
    line.Send("c", 1s);
    EXPECT_EQ(line.Take(1s), "");
    EXPECT_EQ(line.Take(1002ms), "c");
}

TEST(OutputLine, ChangesItsRateBehindWhatWasSent) {
    OutputLine line(4800);
    line.Send(std::string(48, 'a'), 0ns);  // 100 ms
    line.SetRate(9600);
    line.Send(std::string(96, 'b'), 0ns);  // another 100 ms
    EXPECT_EQ(line.BusyUntil(), 200ms);
    EXPECT_EQ(line.Take(100ms), std::string(48, 'a'));
    EXPECT_EQ(line.Take(150ms), std::string(48, 'b'));
}

TEST(SeenAtRate, IsWhatWasSentAtTheSameRate) {
    std::string all(256, '\0');
    std::iota(all.begin(), all.end(), '\0');
    EXPECT_EQ(SeenAtRate(all, 19200, 19200), all);
}

TEST(SeenAtRate, IsGarbageAtAnother) {
    const std::string sent = "*T4E1184D2001B6028F328592CFE13DA0BFB53F00C8D35344443141D5B0004\r\n";
    for (const int rate : {4800, 9600, 38400, 57600, 115200}) {
        const std::string seen = SeenAtRate(sent, 19200, rate);
        EXPECT_FALSE(seen.empty()) << rate;
        EXPECT_EQ(seen.find("*T"), std::string::npos) << rate;
        EXPECT_EQ(seen, SeenAtRate(sent, 19200, rate)) << rate;
    }
    // At half of the receiver's rate each bit counts twice. 'U' at 9600 is low, then 1010 1010 from the
    // lowest bit, then high; at 19200: 00 11 00 11 00, so start bit 0 and bits 0 1 1 0 0 1 1 0 are 0x66.
    EXPECT_EQ(SeenAtRate("U", 9600, 19200).substr(0, 1), "\x66");
}

class Faults : public testing::Test {
  protected:
    static std::string Through(const FaultOptions& options, std::uint64_t seed, std::size_t chunk) {
        FaultLayer layer(options, seed);
        const std::string sent(100000, 'a');
        std::string out;
        for (std::size_t at = 0; at < sent.size(); at += chunk)
            out += layer.Pass(std::string_view(sent).substr(at, chunk), 0ms);
        return out;
    }
};

TEST_F(Faults, AreOffByDefault) {
    EXPECT_EQ(Through({}, 1, 1000), std::string(100000, 'a'));
}

TEST_F(Faults, FlipOneBitOfOneByteInN) {
    const std::string out = Through({.flipOneIn = 100}, 1, 1000);
    ASSERT_EQ(out.size(), 100000U);
    long flipped = 0;
    for (const char byte : out) {
        const unsigned difference = static_cast<unsigned char>(byte) ^ static_cast<unsigned char>('a');
        ASSERT_EQ(difference & (difference - 1), 0U);
        flipped += difference != 0 ? 1 : 0;
    }
    EXPECT_NEAR(static_cast<double>(flipped), 1000,
                120);  // about four standard deviations of a Poisson count
}

TEST_F(Faults, DropAndBabbleAtTheirRates) {
    EXPECT_NEAR(static_cast<double>(Through({.dropOneIn = 100}, 1, 1000).size()), 99000, 120);
    // 100 bursts of 20.5 bytes on average.
    EXPECT_NEAR(static_cast<double>(Through({.babbleOneIn = 1000}, 1, 1000).size()), 102050, 900);
    EXPECT_EQ(Through({.dropOneIn = 1}, 1, 1000), "");
}

TEST_F(Faults, DependOnTheSeedAndNotOnThePieces) {
    const FaultOptions options{.flipOneIn = 50, .dropOneIn = 70, .babbleOneIn = 500};
    const std::string out = Through(options, 7, 1000);
    EXPECT_EQ(out, Through(options, 7, 1));
    EXPECT_EQ(out, Through(options, 7, 777));
    EXPECT_NE(out, Through(options, 8, 1000));
}

TEST_F(Faults, SplittingLosesAndReordersNothing) {
    FaultLayer layer({.splitWrites = true}, 3);
    std::string sent, seen;
    bool nothingCame = false;
    for (int i = 0; i < 1000; ++i) {
        const std::string piece = std::to_string(i) + ",";
        sent += piece;
        const std::string out = layer.Pass(piece, 0ms);
        nothingCame = nothingCame || out.empty();
        seen += out;
    }
    for (int i = 0; i < 100; ++i) seen += layer.Pass("", 0ms);
    EXPECT_EQ(seen, sent);
    EXPECT_TRUE(nothingCame);
}

TEST_F(Faults, StallHoldsBackAndThenDeliversAtOnce) {
    FaultLayer layer({.stallEvery = 10s, .stallFor = 2s}, 1);
    EXPECT_EQ(layer.Pass("a", 7999ms), "a");
    EXPECT_EQ(layer.Pass("b", 8000ms), "");
    EXPECT_EQ(layer.Pass("c", 9999ms), "");
    EXPECT_EQ(layer.Pass("d", 10000ms), "bcd");
}

TEST_F(Faults, AVanishedInstrumentNeitherSpeaksNorHears) {
    const auto instrument = MakeInstrument(Model::Corvane4, {.faults = {.vanishAt = 10s}});
    EXPECT_FALSE(instrument->TakeOutput(9999ms).empty());
    EXPECT_FALSE(instrument->Vanished(9999ms));
    EXPECT_TRUE(instrument->Vanished(10s));
    EXPECT_EQ(instrument->TakeOutput(20s), "");
    instrument->Receive("STOP\r", 20s);
    EXPECT_TRUE(instrument->Sampling());
}

TEST_F(Faults, OfAnInstrumentAreRepeatedByItsSeed) {
    const Options options{.seed = 9, .faults = {.flipOneIn = 200, .dropOneIn = 300, .splitWrites = true}};
    const auto hear = [&] {
        const auto instrument = MakeInstrument(Model::Corvane6, options);
        std::string text;
        for (Millis now{0}; now < 60s; now += 50ms) text += instrument->TakeOutput(now);
        return text;
    };
    EXPECT_EQ(hear(), hear());
}

TEST(Models, AreFoundByNameInAnyCaseAndByNumber) {
    const std::array<const char*, 10> names{"Corvane-6", "Corvane-4", "Corvane-2", "l-Tidal", "n-Tidal",
                                            "x-Tidal",   "Fathom-2",  "Delph-2",   "Delph-4", "Delph-6"};
    for (int i = 0; i < kModelCount; ++i) {
        std::string upper(names[static_cast<std::size_t>(i)]);
        for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        EXPECT_EQ(ModelFromText(names[static_cast<std::size_t>(i)]), static_cast<Model>(i));
        EXPECT_EQ(ModelFromText(upper), static_cast<Model>(i));
        EXPECT_EQ(ModelFromText(std::to_string(i)), static_cast<Model>(i));
        EXPECT_EQ(InfoOf(static_cast<Model>(i)).name, names[static_cast<std::size_t>(i)]);
    }
    EXPECT_EQ(ModelFromText("Corvane"), std::nullopt);
    EXPECT_EQ(ModelFromText("10"), std::nullopt);
    EXPECT_EQ(ModelFromText(""), std::nullopt);
}

}  // namespace
}  // namespace marisonde::simulator
