#include <cmath>
#include <functional>

#include "ConnectFixture.h"
#include "common/ConversionUtils.h"
#include "link/Commands.h"

namespace marisonde {
namespace {

const std::string kNoCalibration =
    "No calibration file is loaded.  Load an appropriate calibration file, or select the 'Load Calibration "
    "from Instrument' option.";
const std::string kTryAgain = "Some calibration information did not load properly.  Try again?";

// --- the dialog ------------------------------------------------------------------------------------------

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

// --- connecting ------------------------------------------------------------------------------------------

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

// --- instruments that are not identified -----------------------------------------------------------------

/// An instrument on port 3 that gives itself a name which identifications do not have, and a silent port 2.
class Unidentified : public ConnectFixture {
  protected:
    Talker& OpenWith(const std::string& name) {
        ports.Add(2);
        Talker& talker = Teach(Model::LTidal);
        talker.replies["ID"][1] = "Model: " + name;
        Open();
        return talker;
    }
    static std::string Told(const std::string& name) {
        return "  On port 3 at 19200 baud an instrument answers that calls itself " + name +
               ".  It can be opened without identifying it";
    }
};

TEST_F(Unidentified, OfAModelThatCanBeChosenNeedsOnlyConnectAfterASearch) {
    Talker& talker = OpenWith("X-Tidal");
    TestFolder::Write(folder / "x.cal", simulator::MakeInstrument(Model::XTidal)->CalText());
    ASSERT_TRUE(window->LoadCalIntoWindow((folder / "x.cal").string()));
    PressSearch();
    ASSERT_TRUE(Finish());
    EXPECT_EQ(dialogs.errors,
              std::vector<std::string>{"No instrument was detected." + Told("X-Tidal") +
                                       ": its port, rate and model are chosen now, so press Connect."});
    EXPECT_EQ(connector->Controls().Port, 3);
    EXPECT_EQ(connector->Controls().Baud, 19200);
    EXPECT_EQ(connector->Controls().Instrument_Box, InstTypeCode::XTidal);
    EXPECT_TRUE(connector->Controls().NoQueryCheck);
    talker.heard.clear();
    ASSERT_TRUE(ConnectAndFinish());
    EXPECT_TRUE(State().Connected);
    EXPECT_TRUE(State().CalReady);
    EXPECT_EQ(State().InstType, InstTypeCode::XTidal);
    EXPECT_EQ(State().PortNumber, 3);
    EXPECT_EQ(State().BaudRate, 19200);
    EXPECT_EQ(talker.heard, "");
    EXPECT_EQ(dialogs.errors.size(), 1u);
}

TEST_F(Unidentified, ItsChoiceHoldsForThatPortAndRateOnly) {
    OpenWith("X-Tidal");
    const std::vector<std::function<void()>> otherwise{[this] { connector->SelectPort(2); },
                                                       [this] { connector->SelectBaud(4800); },
                                                       [this] {
                                                           connector->SelectPort(2);
                                                           connector->SelectBaud(4800);
                                                           PressOk();
                                                           Tick();
                                                           connector->Cancel_Click();
                                                           Finish();
                                                       }};
    for (const auto& choose : otherwise) {
        PressSearch();
        ASSERT_TRUE(Finish());
        ASSERT_TRUE(connector->Controls().NoQueryCheck);
        choose();
        EXPECT_FALSE(connector->Controls().NoQueryCheck);
    }
    // What the user has ticked stays ticked.
    connector->CheckNoQuery(true);
    PressSearch();
    ASSERT_TRUE(Finish());
    connector->SelectPort(2);
    EXPECT_TRUE(connector->Controls().NoQueryCheck);
}

TEST_F(Unidentified, OfAModelThatCannotBeChosenLeavesTheModelToTheUser) {
    OpenWith("Orca-9");
    connector->SelectPort(3);
    connector->SelectBaud(19200);
    connector->SelectInstrument(InstTypeCode::NTidal);
    ASSERT_TRUE(ConnectAndFinish());
    ASSERT_EQ(dialogs.errors.size(), 1u);
    EXPECT_TRUE(dialogs.errors[0].ends_with(
        "be sure the port and baud rate are correct." + Told("Orca-9") +
        ": choose its model, tick \"Open port without identifying instrument\" and press Connect."));
    EXPECT_EQ(connector->Controls().Port, 3);
    EXPECT_EQ(connector->Controls().Instrument_Box, InstTypeCode::NTidal);
    EXPECT_FALSE(connector->Controls().NoQueryCheck);
    // At a rate at which nothing answers there is nothing of the kind to say.
    connector->SelectBaud(4800);
    ASSERT_TRUE(ConnectAndFinish());
    EXPECT_TRUE(dialogs.errors[1].ends_with("be sure the port and baud rate are correct."));
}

TEST_F(Unidentified, WithoutTheDialogThereIsNoButtonToName) {
    OpenWith("X-Tidal");
    connector->Visible = false;
    PressSearch();
    ASSERT_TRUE(Finish());
    EXPECT_EQ(dialogs.errors,
              std::vector<std::string>{"No instrument was detected." + Told("X-Tidal") + "."});
}

TEST_F(Unidentified, WithoutItsCalibrationTheWayToOneIsTold) {
    OpenWith("X-Tidal");
    PressSearch();
    ASSERT_TRUE(Finish());
    ASSERT_TRUE(ConnectAndFinish());
    EXPECT_TRUE(State().Connected);
    EXPECT_FALSE(State().CalReady);
    ASSERT_EQ(dialogs.errors.size(), 2u);
    EXPECT_EQ(
        dialogs.errors[1],
        "No calibration file is loaded.  Use the Select Calibration File command under the File menu to "
        "load a suitable calibration.");
}

// --- failures --------------------------------------------------------------------------------------------

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

TEST_F(ConnectFixture, OpenWithoutIdentifyingAsksNothing) {
    Talker& talker = ports.Add(2);
    Open();
    connector->CheckNoQuery(true);
    connector->SelectInstrument(InstTypeCode::NTidal);
    ConnectAndFinish();
    EXPECT_TRUE(State().Connected);
    EXPECT_EQ(State().InstType, InstTypeCode::NTidal);
    EXPECT_EQ(State().InstSerial, "");
    EXPECT_EQ(State().PortNumber, 2);
    EXPECT_EQ(connector->Controls().StatusBox, "n-Tidal connected");
    TickFor(5s);
    EXPECT_EQ(talker.heard, "");
}

TEST_F(ConnectFixture, OpenWithoutIdentifyingTellsWhyNot) {
    Talker& talker = ports.Add(2);
    Open();
    talker.openFailsWith = {LineError::Kind::Other, "Input/output error"};
    connector->CheckNoQuery(true);
    ConnectAndFinish();
    EXPECT_EQ(dialogs.errors, std::vector<std::string>{"Port 2 can not be opened. Input/output error."});
    EXPECT_FALSE(State().Connected);
}

TEST_F(ConnectFixture, APortThatDoesNotOpenNeverLeavesTheWindowConnected) {
    Teach(Model::Delph4);
    Talker& other = ports.Add(2);
    Open();
    connector->SelectPort(3);
    connector->SelectBaud(19200);
    ASSERT_TRUE(ConnectAndFinish());
    ASSERT_TRUE(State().Connected);
    connector->Form_Load();
    other.openFailsWith = {LineError::Kind::Other, "Input/output error"};
    connector->SelectPort(2);
    connector->CheckNoQuery(true);
    ASSERT_TRUE(ConnectAndFinish());
    EXPECT_FALSE(State().Connected);
    EXPECT_EQ(connector->Controls().StatusBox, " No Connection");
    TickFor(1s);
    EXPECT_EQ(dialogs.errors, std::vector<std::string>{"Port 2 can not be opened. Input/output error."});
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

TEST_F(ConnectFixture, AConnectionThatWasGivenUpIsNotRemembered) {
    ports.Add(2);
    ports.Add(5);
    Open();
    connector->SelectPort(2);
    connector->CheckNoQuery(true);
    ASSERT_TRUE(ConnectAndFinish());
    ASSERT_TRUE(State().Connected);
    connector->SelectPort(5);
    connector->CheckNoQuery(false);
    ASSERT_TRUE(ConnectAndFinish());
    ASSERT_FALSE(State().Connected);
    connector->Cancel_Click();
    EXPECT_FALSE(connector->Controls().Open);
    EXPECT_EQ(settings.GetSetting("Connection", "Port", "none"), "none");
}

// --- shutter ---------------------------------------------------------------------------------------------

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

// --- calibration -----------------------------------------------------------------------------------------

TEST_F(ConnectFixture, ALoadedCalibrationOfAnotherModelIsRefused) {
    Teach(Model::Delph4);
    Open();
    TestFolder::Write(folder / "other.cal", simulator::MakeInstrument(Model::Corvane2)->CalText());
    window->LoadCalIntoWindow((folder / "other.cal").string());
    connector->SelectBaud(19200);
    connector->CheckUploadCal(false);
    ConnectAndFinish();
    EXPECT_EQ(dialogs.errors,
              std::vector<std::string>{
                  "The current calibration file type (Corvane-2) does not match the detected instrument "
                  "(Delph-4).  Load an appropriate calibration file, or select the 'Load Calibration from "
                  "Instrument' option."});
    ExpectNotConnected();
}

class LoadedCalibration : public ConnectFixture {
  protected:
    void OpenWithFileOf(const std::string& serial) {
        talker = &Teach(Model::Delph4);
        Open();
        std::string text = simulator::MakeInstrument(Model::Delph4)->CalText();
        const std::string own(simulator::InfoOf(Model::Delph4).serial);
        for (std::size_t at = text.find(own); at != std::string::npos; at = text.find(own, at + 1))
            text.replace(at, own.size(), serial);
        TestFolder::Write(folder / "mine.cal", text);
        ASSERT_TRUE(window->LoadCalIntoWindow((folder / "mine.cal").string()));
        connector->SelectBaud(19200);
        connector->CheckUploadCal(false);
    }
    Talker* talker = nullptr;
};

TEST_F(LoadedCalibration, OfTheSameSerialIsUsedWithoutAsking) {
    OpenWithFileOf("D4080102");
    ConnectAndFinish();
    EXPECT_TRUE(State().Connected);
    EXPECT_TRUE(dialogs.asked.empty());
    EXPECT_EQ(talker->heard.find("sendcal"), std::string::npos);
    EXPECT_EQ(settings.GetSetting("Connection", "LoadCal", ""), "0");
}

TEST_F(LoadedCalibration, OfAnotherSerialIsAskedAbout) {
    OpenWithFileOf("D4990177");
    dialogs.answers = {Choice::Second};
    ConnectAndFinish();
    ASSERT_EQ(dialogs.asked.size(), 1u);
    EXPECT_EQ(dialogs.asked[0].message,
              "The connected instrument's serial number (D4080102) does not match the currently loaded "
              "calibration (D4990177).  Do you wish to select a different calibration?");
    EXPECT_EQ(dialogs.asked[0].first, "Select Cal");
    EXPECT_EQ(dialogs.asked[0].second, "Use Current");
    EXPECT_EQ(dialogs.asked[0].third, "");
    EXPECT_TRUE(State().Connected);
}

TEST_F(LoadedCalibration, AnotherOneSelectedEndsTheConnection) {
    OpenWithFileOf("D4990177");
    TestFolder::Write(folder / "right.cal", simulator::MakeInstrument(Model::Delph4)->CalText());
    dialogs.answers = {Choice::First};
    dialogs.saveBase = (folder / "right.cal").string();
    ConnectAndFinish();
    EXPECT_EQ(window->Link.CalData.Serial, "D4080102");
    ASSERT_EQ(dialogs.errors.size(), 1u);
    EXPECT_EQ(dialogs.errors[0].substr(0, 27), "No instrument was detected.");
    ExpectNotConnected();
}

TEST_F(LoadedCalibration, ACancelledSelectionEndsQuietly) {
    OpenWithFileOf("D4990177");
    dialogs.answers = {Choice::First};
    ConnectAndFinish();
    EXPECT_EQ(window->Link.CalData.Serial, "D4990177");
    EXPECT_TRUE(dialogs.errors.empty());
    EXPECT_EQ(State().CancelRequest, kCancelStop);
    ExpectNotConnected();
}

TEST_F(LoadedCalibration, ACommandFollowsTheConnectionAfterACancelledSelection) {
    OpenWithFileOf("D4990177");
    std::function<void()> closed;
    window->Link.ShowConnectForm = [&](std::function<void()> whenClosed) { closed = std::move(whenClosed); };
    EXPECT_FALSE(SendCommand("VER", window->Link));
    dialogs.answers = {Choice::First};
    ConnectAndFinish();
    ExpectNotConnected();
    dialogs.answers = {Choice::Second};
    ConnectAndFinish();
    ASSERT_TRUE(State().Connected);
    talker->heard.clear();
    closed();
    TickFor(1s);
    EXPECT_EQ(talker->heard, "VER\r");
}

TEST_F(ConnectFixture, OldTidalFirmwareStoresNoCalibration) {
    Talker& talker = Teach(Model::LTidal);
    talker.replies["ID"][2] = "S/N: LT0407";
    Open();
    connector->SelectBaud(19200);
    ConnectAndFinish();
    EXPECT_EQ(
        dialogs.errors,
        std::vector<std::string>{
            "The detected instrument has older firmware that does not support internal calibration data.  "
            "Use the Select Calibration File command under the File menu to load a suitable "
            "calibration."});
    EXPECT_FALSE(connector->Controls().UploadCal_Check);
    ExpectNotConnected();
}

TEST_F(ConnectFixture, ASerialOfSevenCharactersIsLongEnough) {
    Teach(Model::LTidal).replies["ID"][2] = "S/N: LT04071";
    Open();
    connector->SelectBaud(19200);
    ConnectAndFinish();
    EXPECT_TRUE(State().Connected);
}

TEST_F(ConnectFixture, ACalibrationThatDoesNotComeMayBeTriedAgain) {
    Talker& talker = Teach(Model::Delph4);
    talker.replies.erase("sendcal");
    Open();
    int beeps = 0;
    connector->OnBeep = [&] { ++beeps; };
    connector->SelectBaud(19200);
    PressOk();
    TickFor(20s);
    EXPECT_EQ(Questions(), std::vector<std::string>{kTryAgain});
    EXPECT_EQ(dialogs.asked[0].first, "Yes");
    EXPECT_EQ(dialogs.asked[0].second, "Cancel");
    EXPECT_EQ(beeps, 1);
    TeachModel(talker, Model::Delph4);
    dialogs.answers = {Choice::First};
    ASSERT_TRUE(Finish());
    EXPECT_TRUE(State().Connected);
    EXPECT_EQ(dialogs.asked.size(), 1u);
}

TEST_F(ConnectFixture, ACalibrationThatDoesNotComeMayBeGivenUp) {
    Teach(Model::Delph4).replies.erase("sendcal");
    Open();
    connector->SelectBaud(19200);
    dialogs.answers = {Choice::Second};
    ConnectAndFinish();
    EXPECT_TRUE(dialogs.errors.empty());
    EXPECT_FALSE(State().CalReady);
    ExpectNotConnected();
}

// --- age reminder ----------------------------------------------------------------------------------------

class AgeReminder : public ConnectFixture {
  protected:
    /// The instrument's calibration is this old, in days, when it arrives.
    void ConnectWithCalOfAge(double days) {
        Teach(Model::Delph4);
        Open();
        const double made =
            simulator::MakeInstrument(Model::Delph4)->Settings().startDate.time_since_epoch().count() /
                86400.0 +
            kDay1970 - 45;
        clock.SetDate(made + days);
        connector->SelectBaud(19200);
        ConnectAndFinish();
    }
};

TEST_F(AgeReminder, TellsTheAgeInWholeDays) {
    ConnectWithCalOfAge(182.2);
    ASSERT_EQ(dialogs.reminders.size(), 1u);
    EXPECT_EQ(dialogs.reminders[0],
              "D4080102: The calibration stored in this instrument is 182 days old.  Venmark recommends "
              "calibration every six months or 200 hours of operation.");
    EXPECT_TRUE(State().Connected);
}

TEST_F(AgeReminder, ComesBehind180Days) {
    // Connecting takes some seconds.
    ConnectWithCalOfAge(180);
    EXPECT_EQ(dialogs.reminders.size(), 1u);
    EXPECT_TRUE(State().Connected);
}

TEST_F(AgeReminder, DoesNotComeBefore) {
    ConnectWithCalOfAge(180 - 1.0 / 1440);
    EXPECT_TRUE(dialogs.reminders.empty());
    EXPECT_TRUE(State().Connected);
}

TEST_F(AgeReminder, KeepsQuietUntilTheDayTheUserChose) {
    dialogs.reminderDays = 30;
    ConnectWithCalOfAge(200);
    EXPECT_EQ(dialogs.reminders.size(), 1u);
    const double until = RemindDate(settings, "D4080102");
    // The day alone is kept: 30 days from now, from midnight on.
    EXPECT_EQ(until, std::floor(clock.Now() + 30));
    connector->Form_Load();
    ConnectAndFinish();
    EXPECT_EQ(dialogs.reminders.size(), 1u);
    clock.SetDate(until + 0.5);
    connector->Form_Load();
    ConnectAndFinish();
    EXPECT_EQ(dialogs.reminders.size(), 2u);
}

TEST_F(AgeReminder, ConnectingGoesOnBehindIt) {
    dialogs.reminderDays = -1;
    Teach(Model::Delph4);
    Open();
    clock.SetDate(50000);
    connector->SelectBaud(19200);
    PressOk();
    TickFor(60s);
    EXPECT_EQ(dialogs.reminders.size(), 1u);
    EXPECT_EQ(operations->Count(), 1u);
    dialogs.reminderDays = 0;
    ASSERT_TRUE(Finish());
    EXPECT_TRUE(State().Connected);
    EXPECT_EQ(RemindDate(settings, "D4080102"), 0);
}

}  // namespace
}  // namespace marisonde
