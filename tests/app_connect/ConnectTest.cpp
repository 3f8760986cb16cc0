// The dialog, and what becomes of a connection: found, silent, refused, behind a shutter.
#include "ConnectFixture.h"

namespace marisonde {
namespace {

const std::string kNoCalibration =
    "No calibration file is loaded.  Load an appropriate calibration file, or select the 'Load Calibration "
    "from Instrument' option.";

// --- the dialog ---------------------------------------------------------------------------------------

TEST_F(ConnectFixture, ListsThePortsWithTheLastGoodOneFirst) {
    ports.Add(2);
    ports.Add(5);
    ports.Add(7).openFailsWith = {LineError::Kind::Busy, ""};
    ports.Add(8).openFailsWith = {LineError::Kind::Denied, ""};
    ports.Add(9).openFailsWith = {LineError::Kind::Other, ""};
    app.prefs.Port = 5;
    app.prefs.Baud = 38400;
    app.prefs.LoadCal = false;
    Open();
    const ConnectControls& shown = connector->Controls();
    ASSERT_EQ(shown.CommPort_Box.size(), 4u);
    EXPECT_EQ(shown.CommPort_Box[0].text, "Com 5 - /dev/tty5, Adapter, A5");
    EXPECT_EQ(shown.CommPort_Box[1].number, 2);
    EXPECT_EQ(shown.CommPort_Box[2].number, 7);
    EXPECT_EQ(shown.CommPort_Box[3].number, 8);
    EXPECT_EQ(shown.Port, 5);
    EXPECT_EQ(shown.Baud, 38400);
    EXPECT_FALSE(shown.UploadCal_Check);
    EXPECT_EQ(shown.CancelCaption, "Cancel");
    EXPECT_EQ(State().ConnectStage, kConnectEnded);
}

TEST_F(ConnectFixture, WithoutAPortOrRateItAsksForThem) {
    ports.Add(2);
    ports.Add(3);
    Open();
    ConnectAndFinish();
    EXPECT_EQ(dialogs.errors,
              std::vector<std::string>{"Please select a Com Port and Baud Rate, or click Search"});
    connector->SelectPort(2);
    connector->SelectBaud(0);
    ConnectAndFinish();
    EXPECT_EQ(dialogs.errors.size(), 2u);
}

TEST_F(ConnectFixture, WithoutCalibrationFileItMustComeFromTheInstrument) {
    Teach(Model::Delph4);
    Open();
    connector->CheckUploadCal(false);
    ConnectAndFinish();
    EXPECT_EQ(dialogs.errors, std::vector<std::string>{kNoCalibration});
}

TEST_F(ConnectFixture, WhileItRunsOnlyStopCanBePressed) {
    Teach(Model::Delph4);
    Open();
    connector->SelectBaud(19200);
    PressOk();
    EXPECT_FALSE(connector->Controls().Enabled);
    EXPECT_EQ(connector->Controls().CancelCaption, "Stop");
    connector->Cancel_Click();
    EXPECT_EQ(connector->Controls().CancelCaption, "Close");
    EXPECT_TRUE(connector->Controls().Open);
    Tick();
    EXPECT_EQ(operations->Count(), 0u);
    ExpectNotConnected();
    EXPECT_TRUE(dialogs.errors.empty());
    connector->Cancel_Click();
    EXPECT_FALSE(connector->Controls().Open);
}

TEST_F(ConnectFixture, ADialogThatOnlyOpensAndClosesLeavesTheConnectionAsItWas) {
    Teach(Model::Delph4);
    Open();
    connector->SelectBaud(19200);
    ASSERT_TRUE(ConnectAndFinish());
    settings.SaveSetting("Connection", "LoadCal", "untouched");
    connector->Form_Load();
    EXPECT_EQ(connector->Controls().StatusBox, "Delph-4 connected");
    connector->CheckUploadCal(false);
    connector->Cancel_Click();
    EXPECT_TRUE(State().Connected);
    EXPECT_EQ(settings.GetSetting("Connection", "LoadCal", ""), "untouched");
}

// --- connecting ---------------------------------------------------------------------------------------

class EveryModelConnects : public ConnectFixture, public testing::WithParamInterface<Model> {};

TEST_P(EveryModelConnects, WithItsCalibration) {
    const Model model = GetParam();
    Talker& talker = Teach(model);
    Open();
    connector->SelectBaud(19200);
    ASSERT_TRUE(ConnectAndFinish());
    EXPECT_TRUE(dialogs.errors.empty()) << dialogs.errors.front();
    EXPECT_TRUE(dialogs.asked.empty()) << dialogs.asked.front().message;
    EXPECT_TRUE(State().Connected);
    EXPECT_TRUE(State().CalReady);
    EXPECT_EQ(static_cast<int>(State().InstType), static_cast<int>(model));
    EXPECT_EQ(State().ConnectStage, 0);
    EXPECT_FALSE(connector->Controls().Open);
    const simulator::ModelInfo& info = simulator::InfoOf(model);
    EXPECT_EQ(window->Link.CalData.Serial, info.serial);
    EXPECT_EQ(window->Link.CalData.Label, "bench");
    EXPECT_EQ(window->Link.CalData.SourceFile(), (folder / "temp1.cal").string());
    EXPECT_EQ(app.prefs.CalFile, (folder / "temp1.cal").string());
    EXPECT_TRUE(std::filesystem::exists(folder / "temp1.cal"));
    EXPECT_EQ(settings.GetSetting("Connection", "Port", ""), "3");
    EXPECT_EQ(settings.GetSetting("Connection", "Baud", ""), "19200");
    EXPECT_EQ(settings.GetSetting("Connection", "LoadCal", ""), "1");
    EXPECT_NE(talker.heard.find("STOP\r"), std::string::npos);
    EXPECT_EQ(window->Plot.Model(), State().InstType);
}
INSTANTIATE_TEST_SUITE_P(Models, EveryModelConnects,
                         testing::Values(Model::Corvane6, Model::Corvane4, Model::Corvane2, Model::LTidal,
                                         Model::NTidal, Model::Fathom2, Model::Delph2, Model::Delph4,
                                         Model::Delph6));

TEST_F(ConnectFixture, AsleepItAnswersTheSecondQuestion) {
    Teach(Model::Delph4).asleep = true;
    Open();
    connector->SelectBaud(19200);
    ASSERT_TRUE(ConnectAndFinish());
    EXPECT_TRUE(State().Connected);
}

TEST_F(ConnectFixture, SamplingItIsStoppedFirst) {
    Talker& talker = Teach(Model::Delph4);
    talker.sampling = true;
    Open();
    connector->SelectBaud(19200);
    PressOk();
    for (int tick = 0; tick < 18; ++tick) {
        talker.Say(Lines{"1,2,3,4,5,6,7,8,9"});
        Tick();
    }
    ASSERT_TRUE(Finish());
    EXPECT_TRUE(State().Connected);
}

TEST_F(ConnectFixture, SearchFindsPortAndRate) {
    ports.Add(1).openFailsWith = {LineError::Kind::Busy, "Device or resource busy"};
    ports.Add(2).baud = 4800;
    Teach(Model::Delph4).baud = 38400;
    Open();
    PressSearch();
    ASSERT_TRUE(Finish());
    EXPECT_TRUE(State().Connected);
    EXPECT_EQ(State().PortNumber, 3);
    EXPECT_EQ(State().BaudRate, 38400);
    const auto& list = connector->Controls().SearchList;
    ASSERT_EQ(list.size(), 13u);
    EXPECT_EQ(list[0], "Com 1, 19200: busy, another program or window uses it");
    EXPECT_EQ(list[5], "Com 2, 19200: silent");
    EXPECT_EQ(list[12], "Com 3, 38400: Delph-4 found");
    EXPECT_EQ(connector->Controls().Instrument_Box, InstTypeCode::Delph4);
}

TEST_F(ConnectFixture, ASearchBeginsWithTheLastGoodPort) {
    for (const int port : {2, 3, 5}) ports.Add(port);
    app.prefs.Port = 5;
    Open();
    PressSearch();
    ASSERT_TRUE(Finish());
    const auto& list = connector->Controls().SearchList;
    ASSERT_EQ(list.size(), 15u);
    EXPECT_EQ(list[0], "Com 5, 19200: silent");
    EXPECT_EQ(list[5], "Com 2, 19200: silent");
    EXPECT_EQ(list[14], "Com 3, 4800: silent");
}

// --- failures -----------------------------------------------------------------------------------------

TEST_F(ConnectFixture, SearchWithoutSuccessSaysSo) {
    ports.Add(2);
    Open();
    PressSearch();
    ASSERT_TRUE(Finish());
    EXPECT_EQ(dialogs.errors, std::vector<std::string>{"No instrument was detected."});
    ExpectNotConnected();
}

TEST_F(ConnectFixture, SilenceAtAFixedPortHasItsAdvice) {
    ports.Add(2);
    Open();
    bool focused = false;
    connector->OnFocusOk = [&] { focused = true; };
    ConnectAndFinish();
    EXPECT_EQ(
        dialogs.errors,
        std::vector<std::string>{
            "No instrument was detected.  If an instrument is connected but asleep, it may connect on a "
            "second attempt.  If not, check your connections and be sure the port and baud rate are "
            "correct."});
    EXPECT_TRUE(focused);
    ExpectNotConnected();
    EXPECT_EQ(settings.GetSetting("Connection", "Port", "none"), "none");
}

TEST_F(ConnectFixture, WithoutItsFormItIsQuietAboutSilence) {
    ports.Add(2);
    Open();
    connector->Visible = false;
    ConnectAndFinish();
    EXPECT_TRUE(dialogs.errors.empty());
    ExpectNotConnected();
}

TEST_F(ConnectFixture, APortThatDoesNotOpenComesWithItsRemedy) {
    Talker& talker = ports.Add(2);
    Open();
    talker.openFailsWith = {LineError::Kind::Busy, "Device or resource busy"};
    ConnectAndFinish();
    EXPECT_EQ(dialogs.errors, std::vector<std::string>{
                                  "Port 2 could not be opened. Device or resource busy  Another program, "
                                  "or another window of Marisonde, is using it.  Close the connection "
                                  "there first."});
    ExpectNotConnected();
}

// --- shutter ------------------------------------------------------------------------------------------

TEST_F(ConnectFixture, AMovingShutterIsWaitedFor) {
    Talker& talker = Teach(Model::Corvane2);
    talker.replies["ID"][3] = "Config: T1";
    Open();
    connector->SelectBaud(19200);
    PressOk();
    TickFor(1000ms);
    ASSERT_EQ(connector->Controls().StatusBox, " Connecting to Corvane-2");
    TickFor(100ms);
    talker.Say(std::string("Closing shutter"));
    TickFor(1000ms);
    EXPECT_EQ(connector->Controls().StatusBox, "Waiting for shutter");
    const std::string heardBefore = talker.heard;
    TickFor(8s);
    EXPECT_EQ(connector->Controls().StatusBox, "Waiting for shutter");
    EXPECT_EQ(talker.heard, heardBefore);
    talker.Say(std::string("..done\r\n"));
    Tick();
    Tick();
    EXPECT_EQ(connector->Controls().StatusBox, "Checking global data");
    ASSERT_TRUE(Finish());
    EXPECT_TRUE(State().Connected);
}

TEST_F(ConnectFixture, AShutterHasASecondToSayThatItMoves) {
    // The first look ends at 1 s, the notice at 2 s; a word counts in the tick in which it arrives.
    for (const auto& [after, waits] : {std::pair{1950ms, true}, std::pair{2000ms, false}}) {
        // What is connected ends before its instrument does.
        operations = MakeOperations();
        window.reset();
        Talker& talker = Teach(Model::Corvane2);
        talker.replies["ID"][3] = "Config: T1";
        Open();
        connector->SelectBaud(19200);
        PressOk();
        TickFor(after);
        talker.Say(std::string("Closing shutter"));
        TickFor(200ms);
        const std::string expected = waits ? "Waiting for shutter" : "Checking global data";
        EXPECT_EQ(connector->Controls().StatusBox, expected) << after.count();
    }
}

TEST_F(ConnectFixture, WithoutAShutterThereIsNoSecondToWait) {
    Teach(Model::Corvane2);
    Open();
    connector->SelectBaud(19200);
    PressOk();
    TickFor(1100ms);
    EXPECT_EQ(connector->Controls().StatusBox, "Checking global data");
}

}  // namespace
}  // namespace marisonde
