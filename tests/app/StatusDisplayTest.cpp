#include <algorithm>

#include "app/StatusDisplay.h"
#include "app/WindowFixture.h"
#include "link/Commands.h"

namespace marisonde {
namespace {

using simulator::Model;
using std::chrono::seconds;
using State = InstStateCode;

constexpr const char* kSample =
    "40735.385671,10.5,12.25,1,100,200,300,400";  // begins with a digit and has seven commas

class StatusDisplayTest : public WindowFixture {
  protected:
    StatusDisplayTest() : window(Scripted(Model::Corvane6)) { link().State.LastInputTime = clock.Steady(); }

    InstrumentLink& link() { return window->Link; }
    /// The instrument is in this state now, and that is shown.
    void Shown(State state) {
        link().State.LastInputTime = clock.Steady();
        link().State.InstState = state;
        UpdateStatusDisplay(link(), true);
        ASSERT_EQ(link().State.PrevInstState, state);
    }
    std::string After(Millis time) {
        clock.AdvanceBy(time);
        UpdateStatusDisplay(link(), false);
        return window->StatusText();
    }

    std::unique_ptr<DataWindow> window;
};

TEST_F(StatusDisplayTest, EveryStateHasItsWord) {
    const std::vector<std::pair<int, std::string>> words{
        {0, "unknown"},  {1, "No Connection"}, {2, "Starting: 5 s"}, {3, "Sampling"},      {4, "Stopped"},
        {5, "Sleeping"}, {6, "Waking"},        {7, "Downloading"},   {8, "Pending"},       {9, "Pending"},
        {10, "Pending"}, {11, "No Data"},      {12, "Open Shutter"}, {13, "Close Shutter"}};
    for (const auto& [code, word] : words) EXPECT_EQ(StateWord(static_cast<State>(code), 5), word) << code;
}

// --- time-outs -----------------------------------------------------------------------------------------

TEST_F(StatusDisplayTest, SilenceOfElevenSecondsShowsNoDataAndTheNextLineSampling) {
    port->Queue(std::string(kSample) + "\r");
    Run(*window, kTick);
    EXPECT_EQ(window->StatusText(), "Sampling");
    Run(*window, seconds(11));
    EXPECT_EQ(window->StatusText(), "Sampling");
    Run(*window, kTick);
    EXPECT_EQ(window->StatusText(), "No Data");
    EXPECT_EQ(link().State.InstState, State::NoData);
    EXPECT_TRUE(link().Line().IsOpen()) << "nothing is closed";
    port->Queue(std::string(kSample) + "\r");
    Run(*window, kTick);
    EXPECT_EQ(window->StatusText(), "Sampling");
}

TEST_F(StatusDisplayTest, OnlyNoConnectionAndSleepAreSilentByNature) {
    for (int code = 0; code <= 14; ++code) {
        const auto state = static_cast<State>(code);
        if (state == State::StartSent) continue;  // has a limit of its own
        Shown(state);
        clock.AdvanceBy(kNoDataTime);
        UpdateStatusDisplay(link(), false);
        EXPECT_EQ(link().State.InstState, state) << code << " at eleven seconds";
        clock.AdvanceBy(Millis(1));
        UpdateStatusDisplay(link(), false);
        const bool silent = state == State::NoConnection || state == State::Sleeping;
        EXPECT_EQ(link().State.InstState, silent ? state : State::NoData) << code;
    }
}

TEST_F(StatusDisplayTest, DataThatStillArriveAfterStopStayPendingForFourSeconds) {
    Shown(State::Sampling);
    SendCommand("STOP", link());
    EXPECT_EQ(window->StatusText(), "Pending") << "shown with the command, not only at the next tick";
    link().State.CommandTime = clock.Steady();
    link().State.InstState = State::Sampling;
    EXPECT_EQ(After(kStopHold - Millis(1)), "Pending");
    EXPECT_EQ(After(Millis(1)), "Sampling");
}

TEST_F(StatusDisplayTest, StoppedEndsThePendingOfStopAtOnce) {
    Shown(State::Sampling);
    SendCommand("STOP", link());
    link().State.InstState = State::Stopped;
    EXPECT_EQ(After(kTick), "Stopped");
}

TEST_F(StatusDisplayTest, StopWithDataStillArrivingAsItHappens) {
    port->Queue(std::string(kSample) + "\r");
    Run(*window, kTick);
    SendCommand("STOP", link());
    Run(*window, kTick);  // the text goes out in one tick, and the limit counts from there
    for (int second = 0; second < 4; ++second) {
        EXPECT_EQ(window->StatusText(), "Pending") << second;
        port->Queue(std::string(kSample) + "\r");
        Run(*window, seconds(1));
    }
    port->Queue(std::string(kSample) + "\r");
    Run(*window, kTick);
    EXPECT_EQ(window->StatusText(), "Sampling");
    port->Queue("stopped\r");
    Run(*window, kTick);
    EXPECT_EQ(window->StatusText(), "Stopped");
}

TEST_F(StatusDisplayTest, AStartThatIsNotAnsweredIsNoDataAtElevenSeconds) {
    for (const State answer : {State::StartSent, State::Stopped}) {
        Shown(State::Stopped);
        SendCommand("START", link());
        ASSERT_EQ(window->StatusText(), "Pending");
        link().State.InstState = answer;
        EXPECT_EQ(After(kNoDataTime - Millis(1)), "Pending") << static_cast<int>(answer);
        EXPECT_EQ(After(Millis(1)), "No Data") << static_cast<int>(answer);
        EXPECT_EQ(link().State.InstState, State::NoData);
    }
}

TEST_F(StatusDisplayTest, AStartThatIsAnsweredShowsIt) {
    Shown(State::Stopped);
    SendCommand("START", link());
    port->Queue("starting in 3\r");
    Run(*window, kTick);
    EXPECT_EQ(window->StatusText(), "Starting: 3 s");
}

TEST_F(StatusDisplayTest, TheCountOfStartingMovesWithEachMessage) {
    port->Queue("starting in 3\r");
    Run(*window, kTick);
    EXPECT_EQ(window->StatusText(), "Starting: 3 s");
    Run(*window, seconds(2));
    EXPECT_EQ(window->StatusText(), "Starting: 3 s");
    port->Queue("starting in 1\r");
    Run(*window, kTick);
    EXPECT_EQ(window->StatusText(), "Starting: 1 s");
}

TEST_F(StatusDisplayTest, ASleepingInstrumentMayBeSilent) {
    port->Queue("Sleeping\r");
    Run(*window, seconds(30));
    EXPECT_EQ(window->StatusText(), "Sleeping");
}

TEST_F(StatusDisplayTest, OnlyWhatChangesIsPaintedAgain) {
    Shown(State::Sampling);
    EXPECT_FALSE(UpdateStatusDisplay(link(), false));
    EXPECT_TRUE(UpdateStatusDisplay(link(), true));
    link().State.InstState = State::Stopped;
    EXPECT_TRUE(UpdateStatusDisplay(link(), false));
    EXPECT_FALSE(UpdateStatusDisplay(link(), false));
    link().State.InstState = State::Starting;
    EXPECT_TRUE(UpdateStatusDisplay(link(), false));
    EXPECT_TRUE(UpdateStatusDisplay(link(), false)) << "its count may have changed";
}

TEST_F(StatusDisplayTest, AClosedPortShowsNoConnectionAtOnce) {
    Shown(State::Sampling);
    link().ClosePort();
    EXPECT_EQ(window->StatusText(), "No Connection");
}

// --- what may be used ----------------------------------------------------------------------------------

/// What may be used in a state, by the letters of kLetters.
std::string Usable(State state, bool portOpen) {
    constexpr std::array<std::pair<std::string_view, char>, 10> kLetters{{{"Disconnect_menu", 'd'},
                                                                          {"Start_Stop_menu", 's'},
                                                                          {"Sleep_menu", 'z'},
                                                                          {"Transfer_menu", 't'},
                                                                          {"SamplingOptionsMenu", 'o'},
                                                                          {"Date_Time_menu", 'c'},
                                                                          {"Reset_menu", 'r'},
                                                                          {"Baud_menu", 'b'},
                                                                          {"Terminal_menu", 'm'},
                                                                          {"DoCalMenu", 'k'}}};
    std::string usable;
    for (const auto& [item, letter] : kLetters) {
        const auto rules = ItemRules();
        const auto rule =
            std::find_if(rules.begin(), rules.end(), [&](const ItemRule& r) { return r.item == item; });
        EXPECT_NE(rule, rules.end()) << item;
        if (rule != rules.end() && ItemEnabled(*rule, {state, portOpen})) usable += letter;
    }
    return usable;
}

TEST(StatusItemsTest, EveryStateSaysWhatMayBeUsed) {
    for (int code = 0; code <= 14; ++code) {
        const auto state = static_cast<State>(code);
        // Asleep: nothing but waking, the rate, the terminal and calibrating. In a download: nothing at all
        // but to disconnect.
        const std::string expected = state == State::Sleeping      ? "dzbmk"
                                     : state == State::Downloading ? "d"
                                                                   : "dsztocrbmk";
        EXPECT_EQ(Usable(state, true), expected) << code;
        EXPECT_EQ(Usable(state, false), state == State::Downloading ? "" : "k") << code << " without a port";
    }
    EXPECT_EQ(ItemRules().size(), 10U);
}

TEST(StatusItemsTest, TheStartButtonSaysWhatItDoes) {
    const std::vector<std::pair<State, std::string>> captions{
        {State::Unknown, "Start"},  {State::NoConnection, "Start"},  {State::Starting, "Stop"},
        {State::Sampling, "Stop"},  {State::Stopped, "Start"},       {State::Sleeping, "Start"},
        {State::Waking, "Start"},   {State::Downloading, "Start"},   {State::Pending, "Stop"},
        {State::StopSent, "Stop"},  {State::StartSent, "Stop"},      {State::NoData, "Start"},
        {State::Deleting, "Start"}, {State::OpeningShutter, "Stop"}, {State::ClosingShutter, "Start"}};
    ASSERT_EQ(captions.size(), 15U);
    for (const auto& [state, caption] : captions) {
        EXPECT_EQ(StartStopCaption(state), "&" + caption) << static_cast<int>(state);
        const bool shutter = state == State::OpeningShutter || state == State::ClosingShutter;
        EXPECT_EQ(StartButtonCaption(state), shutter ? StateWord(state, 0) : caption);
        EXPECT_EQ(SleepCaption(state), state == State::Sleeping ? "&Wake" : "S&leep");
    }
}

TEST(StatusItemsTest, TheMenuIsCalledAfterTheConnectedModel) {
    StatusFacts facts;
    facts.model = InstTypeCode::LTidal;
    EXPECT_EQ(InstrumentMenuCaption(facts), "&Instrument");
    facts.connected = true;
    EXPECT_EQ(InstrumentMenuCaption(facts), "l-Tidal&");
    facts.model = InstTypeCode::Unknown;
    EXPECT_EQ(InstrumentMenuCaption(facts), "&Instrument");
}

TEST_F(StatusDisplayTest, TheComputerStaysAwakeWhileDataArrive) {
    for (int code = 0; code <= 14; ++code) {
        link().State.InstState = static_cast<State>(code);
        const bool sends = code == 2 || code == 3 || code == 7;
        EXPECT_EQ(NeedsComputerAwake(link(), false), sends) << code;
        EXPECT_EQ(NeedsComputerAwake(link(), true), sends || code == 11) << code << " recorded";
    }
    link().State.InstState = State::Stopped;
    link().State.TransferActive = true;
    EXPECT_TRUE(NeedsComputerAwake(link(), false));
    link().State.InstState = State::Sampling;
    link().ClosePort();
    EXPECT_FALSE(NeedsComputerAwake(link(), true));
}

}  // namespace
}  // namespace marisonde
