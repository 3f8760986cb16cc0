// Where the calibration of a connected instrument comes from, and how old it is.
#include <cmath>
#include <functional>

#include "ConnectFixture.h"
#include "common/ConversionUtils.h"
#include "link/Commands.h"

namespace marisonde {
namespace {

const std::string kTryAgain = "Some calibration information did not load properly.  Try again?";

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

// --- age reminder -------------------------------------------------------------------------------------

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
