// Every route of a calibration, and every way in which it can end.
#include "FetchBench.h"

namespace marisonde {
namespace {

struct Route {
    const char* name;
    Fetch fetch;
    void (*prepare)(FetchBench& bench);
};
std::ostream& operator<<(std::ostream& out, const Route& route) {
    return out << route.name;
}

class Routes : public FetchBench, public testing::WithParamInterface<Route> {
  public:
    static void Store(FetchBench& bench) {
        auto& self = static_cast<Routes&>(bench);
        self.Use(InstTypeCode::Delph4);
        self.replies["sendcal"] = DelphFile();
    }
    static void Channels(FetchBench& bench) { static_cast<Routes&>(bench).UseCorvane6(); }
    static void Image(FetchBench& bench) { static_cast<Routes&>(bench).UseXmodem(FetchBench::Image()); }
    static void Text(FetchBench& bench) {
        auto& self = static_cast<Routes&>(bench);
        self.Use(InstTypeCode::LTidal);
        self.replies["DUMPCFG"] = TidalFile();
    }

  protected:
    Routes() { GetParam().prepare(*this); }
};

TEST_P(Routes, BelongsToTheFamily) {
    Begin(LoadCalFromInstrument);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_TRUE(state.CalReady);
}

TEST_P(Routes, AMuteInstrumentEndsItAfter10Seconds) {
    mute = 0;
    xmodem = false;
    Begin(LoadCalFromInstrument);
    const Millis begin = clock.Steady();
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Silent);
    // A Corvane is first given the 5 s for its other route.
    EXPECT_EQ(clock.Steady() - begin, IsCorvaneFamily(state.InstType) ? 15s : 10s);
    ExpectTidy();
}

TEST_P(Routes, AByteBefore10SecondsKeepsItWaiting) {
    mute = 0;
    xmodem = false;
    Begin(GetParam().fetch);
    if (IsCorvaneFamily(state.InstType)) TurnFor(5s);
    TurnFor(9900ms);
    line->Queue("\n");
    TurnFor(9950ms);
    EXPECT_FALSE(outcome);
    TurnFor(150ms);
    EXPECT_EQ(outcome, FetchOutcome::Silent);
}

TEST_P(Routes, CutAfterAnyLineItNeverArrives) {
    int lines = 0;
    {
        Begin(GetParam().fetch);
        ASSERT_TRUE(Finish());
        lines = spoken;
    }
    for (int cut = 0; cut < lines; ++cut) {
        GetParam().prepare(*this);
        commands.clear();
        spoken = 0;
        mute = cut;
        if (xmodem) frame.clear();
        Begin(GetParam().fetch);
        ASSERT_TRUE(Finish()) << cut;
        EXPECT_EQ(outcome, FetchOutcome::Silent) << cut;
        ExpectTidy();
    }
}

TEST_P(Routes, DoubledLinesDoNoHarm) {
    Begin(GetParam().fetch);
    ASSERT_TRUE(Finish());
    const CalibrationDataClass once = window.CalData;
    GetParam().prepare(*this);
    twice = true;
    Begin(GetParam().fetch);
    ASSERT_TRUE(Finish());
    EXPECT_EQ(outcome, FetchOutcome::Arrived);
    EXPECT_TRUE(window.CalData == once);
}

TEST_P(Routes, CanBeStoppedAtAnyTick) {
    for (int how = 0; how < 3; ++how) {
        for (int ticks = 0; ticks < 40; ++ticks) {
            GetParam().prepare(*this);
            line->Open(3, 9600);
            Sent();
            state.ConnectStage = kConnecting;
            Begin(GetParam().fetch);
            for (int i = 0; i < ticks && !outcome; ++i) Turn();
            if (outcome) break;
            if (how == 0) state.ConnectStage = kConnectEnded;
            if (how == 1) operations.CancelAll();
            // What had come before the cable was pulled still counts.
            const bool whole = how == 2 && !state.CalLines.empty() && state.CalLines.back() == "[End]";
            if (how == 2) line->Vanish();
            Turn();
            ASSERT_TRUE(outcome) << ticks;
            const FetchOutcome broken = whole ? FetchOutcome::Arrived : FetchOutcome::BrokenLine;
            EXPECT_EQ(outcome, how == 2 ? broken : FetchOutcome::Cancelled) << ticks;
            ExpectTidy();
        }
    }
}

TEST_P(Routes, ClosingTheWindowEndsIt) {
    for (int ticks = 0; ticks < 10; ++ticks) {
        GetParam().prepare(*this);
        auto owner = std::make_unique<Operations>(
            pump,
            [this](const std::string& name, const std::string& why) { failures.push_back(name + why); });
        outcome.reset();
        Forget();
        owner->Start("fetch", [this](Operation& operation) -> QCoro::Task<> {
            outcome = co_await GetParam().fetch(operation, window, request);
        });
        for (int i = 0; i < ticks && !outcome; ++i) Turn();
        if (outcome) break;
        owner.reset();
        EXPECT_EQ(outcome, FetchOutcome::Cancelled);
        EXPECT_EQ(failures, Lines{});
        ExpectTidy();
    }
}

TEST_P(Routes, AStopFromBeforeEndsItAtOnce) {
    state.ConnectStage = kConnectEnded;
    Begin(GetParam().fetch);
    EXPECT_EQ(outcome, FetchOutcome::Cancelled);
    ExpectTidy();
}

INSTANTIATE_TEST_SUITE_P(All, Routes,
                         testing::Values(Route{"store", LoadCalMultiC, Routes::Store},
                                         Route{"channels", LoadCalGcfCcl, Routes::Channels},
                                         Route{"image", LoadCalDump, Routes::Image},
                                         Route{"text", LoadCalDump, Routes::Text}));

}  // namespace
}  // namespace marisonde
