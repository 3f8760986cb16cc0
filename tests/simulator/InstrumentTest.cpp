#include <chrono>
#include <gtest/gtest.h>

#include "simulator/HostSide.h"

namespace marisonde::simulator {
namespace {

using namespace std::chrono_literals;

/// Everything that has come by `now`, step by step as a host would ask.
std::string Hear(Instrument& instrument, Millis from, Millis until) {
    std::string text;
    for (Millis now = from; now <= until; now += 10ms) text += instrument.TakeOutput(now);
    return text;
}

Options Awake() {
    Options options{.samplesPerSecond = 1, .extraEvery = 0, .powerOn = PowerOn::Stopped};
    return options;
}

TEST(States, CountDownFromStartToTheFirstSample) {
    const auto instrument = MakeInstrument(Model::Corvane4, Awake());
    EXPECT_EQ(Hear(*instrument, 0ms, 1000ms), "");
    instrument->Receive("START,0\r", 1000ms);
    EXPECT_EQ(Hear(*instrument, 1000ms, 1500ms), "START,0\r\nStarting in 5\r\n");
    EXPECT_EQ(Hear(*instrument, 1500ms, 5900ms),
              "Starting in 4\r\nStarting in 3\r\nStarting in 2\r\nStarting in 1\r\n");
    EXPECT_FALSE(instrument->Sampling());
    EXPECT_EQ(Hear(*instrument, 5900ms, 6500ms).substr(0, 2), "*T");
    EXPECT_TRUE(instrument->Sampling());
    EXPECT_EQ(instrument->SampleCount(), 1);
}

TEST(States, StopEndsSamplingWithoutAnEcho) {
    const auto instrument = MakeInstrument(Model::Delph2);
    Hear(*instrument, 0ms, 1990ms);
    instrument->Receive("STOP\r", 2100ms);
    EXPECT_EQ(Hear(*instrument, 2100ms, 9000ms).find("STOP"), std::string::npos);
    EXPECT_FALSE(instrument->Sampling());
    EXPECT_EQ(instrument->SampleCount(), 8);  // at 0.25, 0.5, ... 2 s
}

TEST(States, StopDuringTheCountdownAborts) {
    const auto instrument = MakeInstrument(Model::LTidal, Awake());
    instrument->Receive("start\r", 0ms);
    Hear(*instrument, 0ms, 1500ms);
    instrument->Receive("stop\r", 1500ms);
    EXPECT_EQ(Hear(*instrument, 1500ms, 60s), "stop\r\nStart aborted\r\n");
    EXPECT_EQ(instrument->SampleCount(), 0);
}

TEST(States, TheShutterOpensBeforeAndClosesAfterSampling) {
    const auto instrument = MakeInstrument(Model::Corvane6, Awake());
    ASSERT_TRUE(instrument->HasShutter());
    instrument->Receive("START,0\r", 0ms);
    // No line end before the shutter is open.
    EXPECT_EQ(Hear(*instrument, 0ms, 2490ms), "START,0\r\nOpening shutter");
    EXPECT_EQ(Hear(*instrument, 2500ms, 2600ms), "..done\r\nStarting in 5\r\n");
    Hear(*instrument, 2600ms, 9300ms);
    ASSERT_TRUE(instrument->Sampling());
    Hear(*instrument, 9300ms, 9400ms);
    instrument->Receive("STOP\r", 9400ms);
    EXPECT_EQ(Hear(*instrument, 9400ms, 11000ms), "Stopped\r\nClosing shutter");
    EXPECT_EQ(Hear(*instrument, 11000ms, 13000ms), "..done\r\n");
}

TEST(States, CommandsWaitWhileTheShutterMoves) {
    const auto instrument = MakeInstrument(Model::Corvane6, Awake());
    instrument->Receive("START\r", 0ms);
    instrument->Receive("STOP\r", 100ms);
    EXPECT_EQ(Hear(*instrument, 0ms, 2400ms), "START\r\nOpening shutter");
    EXPECT_EQ(Hear(*instrument, 2400ms, 3000ms),
              "..done\r\nStarting in 5\r\nSTOP\r\nStart aborted\r\nClosing shutter");
}

TEST(States, ASleeperWakesOnAnyCharacterAndLosesWhatComesMeanwhile) {
    const auto instrument = MakeInstrument(Model::Corvane6, Awake());
    instrument->Receive("SLEEP\r", 0ms);
    EXPECT_EQ(Hear(*instrument, 0ms, 100ms), "SLEEP\r\nSleeping\r\n");
    EXPECT_TRUE(instrument->Asleep());
    EXPECT_EQ(Hear(*instrument, 100ms, 60s), "");
    instrument->Receive("\r", 60s);
    instrument->Receive("START\r", 60100ms);
    EXPECT_EQ(Hear(*instrument, 60s, 60390ms), "Turning on\r\n");
    EXPECT_EQ(Hear(*instrument, 60400ms, 70s), "CV6 ready\r\n");
    EXPECT_FALSE(instrument->Sampling());
}

TEST(States, PowerOnMayFindItAsleep) {
    const auto instrument = MakeInstrument(Model::Delph4, {.powerOn = PowerOn::Sleeping});
    EXPECT_EQ(Hear(*instrument, 0ms, 10s), "");
    instrument->Receive("x", 10s);
    EXPECT_EQ(Hear(*instrument, 10s, 11s), "Turning on\r\nDELPH-4 ready\r\n");
}

TEST(States, UnknownCommandsSaySo) {
    const auto instrument = MakeInstrument(Model::NTidal, Awake());
    instrument->Receive("\r\nFROBNICATE 3\r", 0ms);
    EXPECT_EQ(Hear(*instrument, 0ms, 1s), "\r\nFROBNICATE 3\r\nUnknown command\r\n");
}

TEST(States, WarningsBeginWithABang) {
    const auto instrument = MakeInstrument(Model::Corvane2, Awake());
    instrument->Warn("Battery low", 5s);
    EXPECT_EQ(Hear(*instrument, 5s, 6s), "!Battery low\r\n");
}

TEST(States, LinesMayEndInACarriageReturnAlone) {
    Options options = Awake();
    options.lineFeed = false;
    const auto instrument = MakeInstrument(Model::Corvane2, options);
    instrument->Warn("Battery low", 5s);
    EXPECT_EQ(Hear(*instrument, 5s, 6s), "!Battery low\r");
}

TEST(Rates, TheLineHoldsWhatItsBaudAllows) {
    // "*D" with CR is 61 bytes of 10 bits: 115200 / 610 = 188.9 lines a second. The 180 or so of "*T" with
    // CR LF are 115200 / 640.
    Options options{.form = LineForm::Hex, .samplesPerSecond = 500, .extraEvery = 0, .baud = 115200};
    options.lineFeed = false;
    const auto plain = MakeInstrument(Model::Corvane6, options);
    plain->RunUntil(60s);
    EXPECT_NEAR(static_cast<double>(plain->SampleCount()) / 60, 188.9, 1);
    options.form = LineForm::HexHundredths;
    options.lineFeed = true;
    const auto hundredths = MakeInstrument(Model::Corvane6, options);
    hundredths->RunUntil(60s);
    EXPECT_NEAR(static_cast<double>(hundredths->SampleCount()) / 60, 180, 1);
}

TEST(Rates, BytesComeAtTenBitsEach) {
    const auto instrument = MakeInstrument(Model::Corvane2, {.baud = 4800, .powerOn = PowerOn::Stopped});
    instrument->Warn("0123456789012345678901234567890123456789", 0ms);  // 43 bytes with "!" and CR LF
    EXPECT_EQ(instrument->TakeOutput(50ms).size(), 24U);                // 480 a second
    EXPECT_EQ(instrument->TakeOutput(50ms).size(), 0U);
    EXPECT_EQ(instrument->TakeOutput(100ms).size(), 19U);
}

TEST(Rates, SamplesComeAtThePeriodAsked) {
    const auto instrument = MakeInstrument(Model::NTidal, {.samplesPerSecond = 4, .extraEvery = 10});
    EXPECT_EQ(host::LinesOf(*instrument, 100s).size(), 400U + 40U - 1U);  // the 400th is still on the line
    EXPECT_EQ(instrument->SampleCount(), 400);
}

TEST(Rates, AnHourOfSamplingTakesAboutASecond) {
    const auto begin = std::chrono::steady_clock::now();
    for (int model = 0; model < kModelCount; ++model) {
        const auto instrument = MakeInstrument(static_cast<Model>(model));
        std::size_t bytes = 0;
        for (Millis now{0}; now <= 1h; now += 50ms) bytes += instrument->TakeOutput(now).size();
        EXPECT_GE(instrument->SampleCount(), 7200);
        EXPECT_GT(bytes, 7000U * 34U);
    }
    // Ten models; the allowance is for slow and instrumented builds.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 30s);
}

TEST(Repetition, TheSameSeedGivesTheSameBytesHoweverTimeIsCut) {
    for (int model = 0; model < kModelCount; ++model) {
        const Options options{.seed = 42};
        const auto one = MakeInstrument(static_cast<Model>(model), options);
        const auto two = MakeInstrument(static_cast<Model>(model), options);
        std::string steps;
        for (Millis now{0}; now <= 60s; now += 7ms) steps += one->TakeOutput(now);
        steps += one->TakeOutput(60s);
        EXPECT_EQ(steps, two->TakeOutput(60s));
        const auto other = MakeInstrument(static_cast<Model>(model), {.seed = 43});
        EXPECT_NE(steps, other->TakeOutput(60s));
    }
}

TEST(Repetition, TimeThatRunsBackwardCountsAsTheLatest) {
    const auto instrument = MakeInstrument(Model::Delph2);
    instrument->RunUntil(10s);
    const long samples = instrument->SampleCount();
    EXPECT_FALSE(instrument->TakeOutput(1s).empty());
    EXPECT_EQ(instrument->SampleCount(), samples);
}

TEST(Reset, ABreakOfAMinuteRestartsTheInstrument) {
    const auto instrument = MakeInstrument(Model::Corvane4, {.extraEvery = 0});
    instrument->Break(true, 1s);
    instrument->Break(false, 60s);  // one second short
    EXPECT_TRUE(instrument->Sampling());
    instrument->Break(true, 100s);
    instrument->Break(true, 150s);  // it goes on
    instrument->Break(false, 160s);
    EXPECT_FALSE(instrument->Sampling());
    instrument->TakeOutput(161s);  // the last sample was on its way
    // It scans its memory and hears nothing.
    instrument->Receive("VER\r", 165s);
    EXPECT_EQ(instrument->TakeOutput(169900ms), "");
    EXPECT_EQ(instrument->TakeOutput(171s), "CV4 ready\r\n");
    instrument->Receive("VER\r", 171s);
    EXPECT_EQ(instrument->TakeOutput(172s), "VER\r\nFirmware version 1.85\r\n");
}

}  // namespace
}  // namespace marisonde::simulator
