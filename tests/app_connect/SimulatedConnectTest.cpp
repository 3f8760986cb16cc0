#include "app/Connect.h"
#include "app/ConnectAgain.h"
#include "app/WindowFixture.h"
#include "link/Commands.h"
#include "link/SimulatedPorts.h"

namespace marisonde {
namespace {

using namespace std::chrono_literals;
using simulator::Model;
using simulator::Options;
using simulator::PowerOn;

/// The connect dialog on simulated instruments, in virtual time.
class SimulatedConnect : public WindowFixture {
  protected:
    SimulatedConnect() { app.ports = &ports; }

    void Connect(Model model, const Options& options, bool search = false) {
        const int port = ports.Add(simulator::MakeInstrument(model, options));
        window = std::make_unique<DataWindow>(app, dialogs, ports.MakeLine());
        connector = std::make_unique<Connector>(*window);
        connector->Visible = true;
        connector->Form_Load();
        connector->SelectPort(port);
        connector->SelectBaud(19200);
        operations.Start("Connect", [this, search](Operation& operation) -> QCoro::Task<> {
            if (search)
                co_await connector->AutoDetect_Click(operation);
            else
                co_await connector->OK_Click(operation);
        });
        for (int tick = 0; tick < 4000 && operations.Count() > 0; ++tick) Tick();
        ASSERT_EQ(operations.Count(), 0u);
    }
    void Tick() {
        clock.AdvanceBy(kTick);
        window->Tick();
        pump.ResumeReady();
    }
    std::string Told() const {
        std::string all;
        for (const std::string& text : dialogs.errors) all += text + "|";
        for (const Question& question : dialogs.asked) all += question.message + "|";
        return all;
    }
    void ExpectConnected(Model model) {
        const DataWindowState& state = window->Link.State;
        EXPECT_EQ(Told(), "");
        EXPECT_TRUE(state.Connected);
        EXPECT_TRUE(state.CalReady);
        EXPECT_EQ(static_cast<int>(state.InstType), static_cast<int>(model));
        EXPECT_EQ(window->Link.CalData.Serial, state.InstSerial);
    }
    /// The instrument samples on command, and its samples become values.
    void ExpectItSamples() {
        SendCommand("START", window->Link);
        for (int tick = 0; tick < 400; ++tick) Tick();
        EXPECT_EQ(window->Link.State.InstState, InstStateCode::Sampling);
        EXPECT_GT(window->Link.State.Counted.samples, 3);
        EXPECT_TRUE(window->Files.AnyOpen());
    }

    SimulatedPorts ports{clock};
    Pump pump{clock};
    std::unique_ptr<DataWindow> window;
    std::unique_ptr<Connector> connector;
    Operations operations{pump, [](const std::string&, const std::string& why) { FAIL() << why; }};
};

constexpr std::array kIdentified{Model::Corvane6, Model::Corvane4, Model::Corvane2,
                                 Model::LTidal,   Model::NTidal,   Model::Fathom2,
                                 Model::Delph2,   Model::Delph4,   Model::Delph6};

class EveryModelAndState : public SimulatedConnect,
                           public testing::WithParamInterface<std::tuple<Model, PowerOn>> {};

TEST_P(EveryModelAndState, ConnectsFetchesAndSamples) {
    const auto [model, power] = GetParam();
    Options options;
    options.powerOn = power;
    Connect(model, options);
    ExpectConnected(model);
    ExpectItSamples();
}
INSTANTIATE_TEST_SUITE_P(All, EveryModelAndState,
                         testing::Combine(testing::ValuesIn(kIdentified),
                                          testing::Values(PowerOn::Stopped, PowerOn::Sleeping,
                                                          PowerOn::Sampling)));

TEST_F(SimulatedConnect, ASearchFindsTheRateOfTheInstrument) {
    Options options;
    options.powerOn = PowerOn::Stopped;
    options.baud = 57600;
    Connect(Model::LTidal, options, true);
    ExpectConnected(Model::LTidal);
    EXPECT_EQ(window->Link.State.BaudRate, 57600);
}

TEST_F(SimulatedConnect, ATidalMayTellItsSerialAlone) {
    for (const Model model : {Model::LTidal, Model::NTidal}) {
        Options options;
        options.shortId = true;
        options.powerOn = PowerOn::Stopped;
        Connect(model, options);
        ExpectConnected(model);
    }
}

TEST_F(SimulatedConnect, OldFirmwareIsHeardAtItsPace) {
    Options options;
    options.firmware = "1.01";
    options.powerOn = PowerOn::Stopped;
    Connect(Model::Delph4, options);
    ExpectConnected(Model::Delph4);
    EXPECT_EQ(window->Link.State.FirmwareVersion, "1.01");
}

TEST_F(SimulatedConnect, ATidalWithAShortSerialKeepsNoCalibration) {
    Options options;
    options.serial = "LT0407";
    options.powerOn = PowerOn::Stopped;
    Connect(Model::LTidal, options);
    EXPECT_FALSE(window->Link.State.Connected);
    EXPECT_NE(Told().find("older firmware"), std::string::npos);
}

TEST_F(SimulatedConnect, ATidalMayAnswerWithText) {
    Options options;
    options.dumpAsText = true;
    options.powerOn = PowerOn::Stopped;
    Connect(Model::LTidal, options);
    ExpectConnected(Model::LTidal);
}

TEST_F(SimulatedConnect, AnOldCalibrationIsRemindedOf) {
    Options options;
    options.calAgeDays = 300;
    options.powerOn = PowerOn::Stopped;
    Connect(Model::Delph4, options);
    EXPECT_EQ(dialogs.reminders.size(), 1u);
    EXPECT_TRUE(window->Link.State.Connected);
}

TEST_F(SimulatedConnect, AnInstrumentThatComesBackUnderAnotherNumberGoesOn) {
    Options options;
    options.powerOn = PowerOn::Stopped;
    options.faults.vanishAt = 20s;
    Connect(Model::Delph4, options);
    ExpectConnected(Model::Delph4);
    ASSERT_LT(clock.Steady(), 20s);
    window->OnLineLost = [this] {
        operations.Start("ConnectAgain", [this](Operation& operation) -> QCoro::Task<> {
            co_await ConnectAgain(operation, *window);
        });
    };
    while (clock.Steady() < 25s) Tick();
    EXPECT_FALSE(window->Link.State.Connected);
    options.faults = {};
    options.serial = "D4080199";
    ports.Add(simulator::MakeInstrument(Model::Delph4, options));
    for (int tick = 0; tick < 200; ++tick) Tick();
    EXPECT_FALSE(window->Link.State.Connected) << "another one of the model";
    options.serial.clear();
    const int port = ports.Add(simulator::MakeInstrument(Model::Delph4, options));
    for (int tick = 0; tick < 200 && operations.Count() > 0; ++tick) Tick();
    EXPECT_TRUE(window->Link.State.Connected);
    EXPECT_EQ(window->Link.State.PortNumber, port);
    EXPECT_EQ(window->Link.State.InstSerial, "D4080102");
    EXPECT_EQ(dialogs.errors.size(), 1u);
}

TEST_F(SimulatedConnect, AMuteInstrumentIsSilent) {
    Options options;
    options.replies.mute = true;
    options.powerOn = PowerOn::Stopped;
    Connect(Model::Delph4, options);
    EXPECT_FALSE(window->Link.State.Connected);
    EXPECT_NE(Told().find("No instrument was detected."), std::string::npos);
}

class CutReplies : public SimulatedConnect, public testing::WithParamInterface<int> {};

TEST_P(CutReplies, AreNeverTakenForAWholeCalibrationWithoutAMessage) {
    for (const Model model : {Model::Corvane2, Model::LTidal, Model::Delph4}) {
        dialogs.answers.assign(10, Choice::Second);
        dialogs.asked.clear();
        dialogs.errors.clear();
        Options options;
        options.powerOn = PowerOn::Stopped;
        options.replies.cutAfterLines = GetParam();
        Connect(model, options);
        if (!Told().empty()) {
            EXPECT_FALSE(window->Link.State.Connected);
            continue;
        }
        const CalibrationDataClass cut = window->Link.CalData;
        options.replies.cutAfterLines = -1;
        Connect(model, options);
        EXPECT_EQ(cut.Compare(window->Link.CalData, CalItems::All), 0) << GetParam();
    }
}
INSTANTIATE_TEST_SUITE_P(Lines, CutReplies, testing::Range(0, 30));

}  // namespace
}  // namespace marisonde
