// Instruments that cannot be identified, and ports that are opened without asking who is there.
#include <functional>

#include "ConnectFixture.h"

namespace marisonde {
namespace {

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

// --- open port without identifying --------------------------------------------------------------------

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

}  // namespace
}  // namespace marisonde
