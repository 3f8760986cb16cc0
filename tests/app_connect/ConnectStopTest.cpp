#include <array>
#include <optional>
#include <set>

#include "ConnectFixture.h"
#include "app/ConnectCommand.h"

namespace marisonde {
namespace {

/// A connection that goes through every wait there is: it wakes, samples, has a shutter, sends its
/// calibration slowly, and that is old.
class EveryWait : public ConnectFixture, public testing::WithParamInterface<int> {
  protected:
    void RunTo(int ticks) {
        Talker& talker = Teach(Model::Corvane2);
        talker.asleep = true;
        talker.replies["ID"][3] = "Config: T1";
        const Lines file = talker.replies["sendcal"];
        talker.replies["sendcal"] = {};
        dialogs.reminderDays = -1;
        Open();
        clock.SetDate(60000);
        connector->SelectBaud(19200);
        PressOk();
        for (int tick = 0; tick < ticks; ++tick) {
            if (tick == 40) talker.Say(std::string("Closing shutter"));
            if (tick == 80) talker.Say(std::string("..done\r\n"));
            if (tick >= 200 && tick < 200 + static_cast<int>(file.size()))
                talker.Say(Lines{file[static_cast<std::size_t>(tick - 200)]});
            Tick();
        }
    }
    void ExpectTidy() {
        EXPECT_TRUE(pump.Idle());
        EXPECT_EQ(State().DumpStage, 0);
        EXPECT_FALSE(State().DumpActive);
        EXPECT_EQ(window->Link.ReplyCalData, nullptr);
        EXPECT_EQ(window->Link.PendingOutput, "");
        ExpectNotConnected();
    }
};

TEST_P(EveryWait, StopEndsItWithinOneTick) {
    RunTo(GetParam());
    ASSERT_EQ(operations->Count(), 1u) << "the connection takes longer than that";
    const std::size_t questions = dialogs.asked.size() + dialogs.reminders.size();
    if (questions > 0) return;  // a question covers the dialog; its own buttons end it
    connector->Cancel_Click();
    Tick();
    EXPECT_EQ(operations->Count(), 0u);
    EXPECT_TRUE(dialogs.errors.empty());
    ExpectTidy();
}

TEST_P(EveryWait, TheEndOfTheWindowEndsIt) {
    RunTo(GetParam());
    ASSERT_EQ(operations->Count(), 1u);
    operations.reset();
    EXPECT_TRUE(dialogs.errors.empty());
    ExpectTidy();
}

TEST_P(EveryWait, AnExitOfTheProgramEndsItAndThenAsksNothing) {
    RunTo(GetParam());
    ASSERT_EQ(operations->Count(), 1u);
    const std::size_t questions = dialogs.asked.size();
    operations->Cancel("Connect");
    ASSERT_TRUE(Finish());
    connector->Form_Unload();
    EXPECT_EQ(dialogs.asked.size(), questions);
    EXPECT_EQ(settings.GetSetting("Connection", "Port", "none"), "none");
    ExpectNotConnected();
}

TEST_P(EveryWait, AVanishedDeviceIsToldOnceAndHangsNothing) {
    RunTo(GetParam());
    ASSERT_EQ(operations->Count(), 1u);
    ports.talkers[3]->gone = true;
    dialogs.reminderDays = 0;
    dialogs.answers = {Choice::Second};
    ASSERT_TRUE(Finish());
    EXPECT_FALSE(State().Connected && window->Link.Line().IsOpen());
    // What was lost on the way to the calibration is asked about instead: once, either way.
    const bool connectedBefore = State().CalReady && State().Connected;
    TickFor(std::chrono::seconds(5));
    EXPECT_EQ(dialogs.errors.size() + dialogs.asked.size(), 1u) << connectedBefore;
}
INSTANTIATE_TEST_SUITE_P(Ticks, EveryWait, testing::Range(0, 380, 3));

// --- questions on the way --------------------------------------------------------------------------------

/// A connection that stands at a question, and its text's beginning.
struct Halt {
    const char* question;
    void (*prepare)(DataWindow& window, Talker& talker, Connector& connector);
};
void ForgetFile(DataWindow& /*window*/, Talker& talker, Connector& /*connector*/) {
    talker.replies.erase("sendcal");
}
void LoadAnothers(DataWindow& window, Talker& /*talker*/, Connector& connector) {
    simulator::Options options;
    options.calSerial = "D4990177";
    const auto path = window.App().temporaryFolder / "another.cal";
    TestFolder::Write(path, simulator::MakeInstrument(Model::Delph4, options)->CalText());
    ASSERT_TRUE(window.LoadCalIntoWindow(path.string()));
    connector.CheckUploadCal(false);
}
constexpr std::array kHalts{
    Halt{"Some calibration information did not load properly.", ForgetFile},
    Halt{"The connected instrument's serial number (D4080102) does not match", LoadAnothers}};

class EveryQuestion : public ConnectFixture, public testing::WithParamInterface<Halt> {
  protected:
    void RunToTheQuestion() {
        Talker& talker = Teach(Model::Delph4);
        Open();
        GetParam().prepare(*window, talker, *connector);
        connector->SelectBaud(19200);
        PressOk();
        for (int tick = 0; tick < 1000 && dialogs.asked.empty(); ++tick) Tick();
        ASSERT_EQ(dialogs.asked.size(), 1u);
        ASSERT_EQ(dialogs.asked[0].message.find(GetParam().question), 0u) << dialogs.asked[0].message;
        ASSERT_EQ(operations->Count(), 1u);
    }
    void ExpectEnded() {
        EXPECT_TRUE(pump.Idle());
        EXPECT_TRUE(dialogs.errors.empty());
        EXPECT_EQ(dialogs.asked.size(), 1u);
        ExpectNotConnected();
    }
};

TEST_P(EveryQuestion, StandsAsLongAsTheUserLikesWhileTheWindowGoesOn) {
    RunToTheQuestion();
    TickFor(1h);
    EXPECT_EQ(operations->Count(), 1u);
    EXPECT_TRUE(window->Link.Line().IsOpen());
    EXPECT_EQ(dialogs.asked.size(), 1u);
}

TEST_P(EveryQuestion, IsTakenAwayWhenTheConnectionIsCancelled) {
    RunToTheQuestion();
    operations->Cancel("Connect");
    Tick();
    EXPECT_EQ(operations->Count(), 0u);
    ExpectEnded();
}

TEST_P(EveryQuestion, IsTakenAwayWithItsWindow) {
    RunToTheQuestion();
    operations.reset();
    ExpectEnded();
}
INSTANTIATE_TEST_SUITE_P(All, EveryQuestion, testing::ValuesIn(kHalts));

TEST_F(ConnectFixture, WithoutAnAnswerToWhereToConnectItIsNowhere) {
    for (const bool closed : {false, true}) {
        operations = MakeOperations();
        window.reset();
        Open();
        State().Connected = true;
        std::optional<ConnectIn> where;
        operations->Start("ConnectCommand", [&](Operation& operation) -> QCoro::Task<> {
            where = co_await AskWhereToConnect(operation, *window);
        });
        TickFor(1min);
        EXPECT_FALSE(where);
        if (closed) operations.reset();
        if (!closed) operations->Cancel("ConnectCommand");
        if (!closed) Tick();
        EXPECT_EQ(where, ConnectIn::Nowhere) << closed;
        EXPECT_TRUE(pump.Idle());
    }
}

// --- six at once -----------------------------------------------------------------------------------------

struct Seat {
    std::unique_ptr<DataWindow> window;
    std::unique_ptr<Connector> connector;
};

class SixWindows : public ConnectFixture {
  protected:
    static constexpr std::array kModels{Model::Corvane6, Model::Delph4,  Model::LTidal,
                                        Model::NTidal,   Model::Fathom2, Model::Corvane2};

    void OpenAll() {
        for (std::size_t i = 0; i < kModels.size(); ++i)
            TeachModel(ports.Add(static_cast<int>(i) + 1), kModels[i]);
        for (std::size_t i = 0; i < kModels.size(); ++i) {
            Seat& seat = seats[i];
            seat.window = std::make_unique<DataWindow>(app, dialogs, ports.MakeLine());
            seat.window->Link.OnChunk = [this, i](std::string_view chunk) { received[i] += chunk; };
            seat.connector = std::make_unique<Connector>(*seat.window);
            seat.connector->Visible = true;
            seat.connector->Form_Load();
        }
    }
    void Start(std::size_t i, bool search) {
        seats[i].connector->SelectPort(static_cast<int>(i) + 1);
        seats[i].connector->SelectBaud(19200);
        operations->Start("Connect", [this, i, search](Operation& operation) -> QCoro::Task<> {
            if (search)
                co_await seats[i].connector->AutoDetect_Click(operation);
            else
                co_await seats[i].connector->OK_Click(operation);
        });
    }
    void TickAll() {
        clock.AdvanceBy(kTick);
        for (Seat& seat : seats) {
            seat.window->Tick();
            pump.ResumeReady();
        }
    }
    bool FinishAll() {
        for (int tick = 0; tick < 12000 && operations->Count() > 0; ++tick) TickAll();
        return operations->Count() == 0;
    }
    ~SixWindows() override { operations.reset(); }

    std::array<Seat, 6> seats;
    std::array<std::string, 6> received;
};

TEST_F(SixWindows, ConnectAtOnceEachToItsOwn) {
    OpenAll();
    for (std::size_t i = 0; i < seats.size(); ++i) Start(i, false);
    EXPECT_EQ(operations->Count(), 6u);
    ASSERT_TRUE(FinishAll());
    EXPECT_TRUE(dialogs.errors.empty());
    for (std::size_t i = 0; i < seats.size(); ++i) {
        const DataWindowState& state = seats[i].window->Link.State;
        EXPECT_TRUE(state.Connected && state.CalReady) << i;
        EXPECT_EQ(static_cast<int>(state.InstType), static_cast<int>(kModels[i]));
        EXPECT_EQ(seats[i].window->Link.CalData.Serial, simulator::InfoOf(kModels[i]).serial);
        EXPECT_EQ(received[i], ports.talkers[static_cast<int>(i) + 1]->told) << "every byte arrived";
    }
}

TEST_F(SixWindows, SearchAtOnceAndShareThePortsOut) {
    OpenAll();
    for (std::size_t i = 0; i < seats.size(); ++i) Start(i, true);
    ASSERT_TRUE(FinishAll());
    std::set<int> found;
    for (const Seat& seat : seats) {
        EXPECT_TRUE(seat.window->Link.State.Connected);
        found.insert(seat.window->Link.State.PortNumber);
    }
    EXPECT_EQ(found.size(), 6u);
}

TEST_F(SixWindows, AQuestionInOneHoldsUpNoOther) {
    OpenAll();
    ports.talkers[2]->replies.erase("sendcal");
    for (std::size_t i = 0; i < seats.size(); ++i) Start(i, false);
    for (int tick = 0; tick < 1200; ++tick) TickAll();
    EXPECT_EQ(operations->Count(), 1u);
    EXPECT_EQ(dialogs.asked.size(), 1u);
    for (const std::size_t i : {0, 2, 3, 4, 5}) EXPECT_TRUE(seats[i].window->Link.State.Connected) << i;
    dialogs.answers = {Choice::Second};
    ASSERT_TRUE(FinishAll());
    EXPECT_FALSE(seats[1].window->Link.State.Connected);
}

TEST_F(SixWindows, StopInOneLeavesTheOthersAlone) {
    OpenAll();
    for (std::size_t i = 0; i < seats.size(); ++i) Start(i, false);
    for (int tick = 0; tick < 10; ++tick) TickAll();
    seats[3].connector->Cancel_Click();
    TickAll();
    EXPECT_EQ(operations->Count(), 5u);
    ASSERT_TRUE(FinishAll());
    for (std::size_t i = 0; i < seats.size(); ++i)
        EXPECT_EQ(seats[i].window->Link.State.Connected, i != 3) << i;
}

}  // namespace
}  // namespace marisonde
