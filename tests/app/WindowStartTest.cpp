#include "app/ChannelDetails.h"
#include "app/InstStatus.h"
#include "app/PlottedChannels.h"
#include "app/WindowFixture.h"
#include "app/WindowStart.h"
#include "common/ConversionUtils.h"
#include "common/Version.h"

namespace marisonde {
namespace {

using simulator::Model;
using testing::Test;

class WindowStartTest : public WindowFixture {
  protected:
    std::string WriteCal(const std::string& name) {
        const auto path = folder / name;
        TestFolder::Write(path, simulator::MakeInstrument(Model::NTidal)->CalText());
        return path.string();
    }
    /// Whether a new window has a calibration after its start.
    bool Recalled() {
        DataWindow window(app, dialogs, std::make_unique<ScriptedLine>());
        LoadRecalledCalibration(window);
        return window.Link.State.CalReady && window.Link.CalData.InstType == InstTypeCode::NTidal;
    }
};

TEST_F(WindowStartTest, EveryWindowRecallsTheLastCalibration) {
    app.prefs.CalFile = WriteCal("last.cal");
    DataWindow first(app, dialogs, std::make_unique<ScriptedLine>());
    EXPECT_TRUE(Recalled()) << "a later window as well as the first";
    app.prefs.RecallLastCal = false;
    EXPECT_FALSE(Recalled());
}

TEST_F(WindowStartTest, AMissingCalibrationIsPassedOver) {
    app.prefs.CalFile = (folder / "gone.cal").string();
    EXPECT_FALSE(Recalled());
    app.prefs.CalFile.clear();
    EXPECT_FALSE(Recalled());
    EXPECT_TRUE(dialogs.errors.empty());
}

TEST_F(WindowStartTest, AStoredNumberOfPointsIsHeldToItsRange) {
    for (const auto& [stored, held] : {std::pair{0, 1000}, {-7, 1000}, {2000, 2000}, {200000, 100000}}) {
        app.prefs.MaxGraphPoints = stored;
        const DataWindow window(app, dialogs, std::make_unique<ScriptedLine>());
        EXPECT_EQ(window.Plot.MaxGraphPoints, held) << stored;
    }
}

TEST(StartNoticesTest, TheNewUserComesFirstAndTheQuestionLast) {
    MapSettings settings;
    StartFacts facts;
    facts.newUser = true;
    facts.problems = {"Data were recovered.", "No room."};
    facts.missingSigmaFiles = 2;
    const auto notices = StartNotices(facts, settings);
    ASSERT_EQ(notices.size(), 5U);
    EXPECT_EQ(notices[0].text,
              "The current user profile does not yet have Marisonde preferences.  This is OK, but note that "
              "each user's Marisonde settings are independent.  This user's settings will be set to their "
              "defaults.");
    EXPECT_EQ(notices[1].text, "Data were recovered.");
    EXPECT_EQ(notices[2].text, "No room.");
    EXPECT_EQ(notices[3].text,
              "Files needed for sigma correction were not found.  Please check the parameter settings.");
    EXPECT_EQ(notices[3].after, AfterNotice::CheckSigmaParams);
    EXPECT_EQ(notices[4].text,
              "This appears to be the first time you have run Marisonde version " + std::string(kVersion) +
                  " on this computer.  Would you like to view the release notes (will open a browser "
                  "window)?");
    EXPECT_EQ(notices[4].after, AfterNotice::OfferReleaseNotes);
}

TEST(StartNoticesTest, TheQuestionComesOncePerVersion) {
    MapSettings settings;
    EXPECT_EQ(StartNotices({}, settings).size(), 1U);
    NoteVersionSeen(settings);
    EXPECT_TRUE(StartNotices({}, settings).empty());
    EXPECT_EQ(settings.GetSetting("App", kVersion, "-"), "TRUE");
    EXPECT_EQ(settings.GetSetting("App", "Version", "-"), kVersion);
    MapSettings older;
    older.SaveSetting("App", "1.0", "TRUE");
    EXPECT_EQ(StartNotices({}, older).size(), 1U) << "another version was seen";
    StartFacts quiet;
    quiet.offerReleaseNotes = false;
    EXPECT_TRUE(StartNotices(quiet, older).empty());
}

std::string ValueOf(const DataWindow& window, std::string_view box) {
    for (const InstStatusRow& row : InstStatus(window))
        if (row.box == box) return row.value;
    return "no " + std::string(box);
}

TEST_F(WindowStartTest, TheStatusOfAConnectedInstrument) {
    const auto window = Scripted(Model::Corvane6);
    DataWindowState& state = window->Link.State;
    state.InstSerial = "CV6120345";
    state.FirmwareVersion = "2.50";
    state.InstState = InstStateCode::Stopped;
    window->Link.CalData.MaxDepth = 300;
    Run(*window, kTick);
    EXPECT_EQ(ValueOf(*window, "Device_Box"), "Corvane-6");
    EXPECT_EQ(ValueOf(*window, "Serial_Box"), "CV6120345");
    EXPECT_EQ(ValueOf(*window, "Firmware_Box"), "2.5");
    EXPECT_EQ(ValueOf(*window, "Status_Box"), "Stopped");
    EXPECT_EQ(ValueOf(*window, "Com_Port_Box"), "1");
    EXPECT_EQ(ValueOf(*window, "BAUD_Rate_Box"), "19200");
    EXPECT_EQ(ValueOf(*window, "MaxDepth_box"), "300");
    EXPECT_EQ(ValueOf(*window, "Nonvolatile_Box"), "Yes");
    window->Link.CalData.CalTime = 0;
    EXPECT_EQ(ValueOf(*window, "CalDateBox"), "unknown");
    window->Link.CalData.CalTime = DateFromCivil(2011, 7, 11);
    EXPECT_NE(ValueOf(*window, "CalDateBox").find("11"), std::string::npos);
    EXPECT_EQ(ValueOf(*window, "CalSource_Box"), "Detected");
}

TEST_F(WindowStartTest, TheCalibrationOfAnInstrumentThatWasNotIdentifiedComesFromItsFile) {
    const auto window = Scripted(Model::Corvane6);
    EXPECT_EQ(ValueOf(*window, "CalSource_Box"), (folder / "window0.cal").string());
}

TEST_F(WindowStartTest, TheStatusWithoutAnInstrument) {
    const DataWindow window(app, dialogs, std::make_unique<ScriptedLine>());
    EXPECT_EQ(ValueOf(window, "Device_Box"), "unknown");
    EXPECT_EQ(ValueOf(window, "Com_Port_Box"), "");
    EXPECT_EQ(ValueOf(window, "MaxDepth_box"), "unknown");
    EXPECT_EQ(ValueOf(window, "CalDateBox"), "unknown");
    EXPECT_EQ(ValueOf(window, "CalSource_Box"), "unknown");
    EXPECT_EQ(ValueOf(window, "Status_Box"), "No Connection");
    EXPECT_EQ(ValueOf(window, "Nonvolatile_Box"), "No");
}

TEST_F(WindowStartTest, ATidalOfTheFirstSeriesKeepsNoCalibration) {
    const auto window = Scripted(Model::LTidal);
    window->Link.State.InstSerial = "LT0123";
    EXPECT_EQ(ValueOf(*window, "Nonvolatile_Box"), "No");
    window->Link.State.InstSerial = "LT00123";
    EXPECT_EQ(ValueOf(*window, "Nonvolatile_Box"), "Yes");
}

TEST_F(WindowStartTest, DetailsOfAChannelComeFromItsPointsAndItsNewestSample) {
    const auto window = Scripted(Model::Corvane2);
    const PlottedChannel channel = PlottedChannels(InstTypeCode::Corvane2, window->Link.CalData)[1];
    const ChannelDetails empty = DetailsOf(*window, channel);
    EXPECT_EQ(empty.minimum + " " + empty.maximum + " " + empty.counts + " " + empty.gain, "--- --- --- ---");
    ChartGroup& group = window->Chart.ChartGroups(1);
    for (int point = 1; point <= 4; ++point)
        group.SetY(channel.series, point, point == 3 ? 1e308 : 0.5 / point);
    group.SetY(channel.series, 5, 99);
    group.SetLastPoint(4);
    window->Link.State.HasSample = true;
    window->Link.State.CurrentRaw.Sig[1] = 1234;
    window->Link.State.CurrentRaw.Ref[1] = 567;
    window->Link.State.CurrentRaw.Gain[1] = 4;
    const ChannelDetails details = DetailsOf(*window, channel);
    EXPECT_EQ(details.minimum, "0.125") << "of the points that are drawn, without values that failed";
    EXPECT_EQ(details.maximum, "0.5");
    EXPECT_EQ(details.counts, "1234");
    EXPECT_EQ(details.reference, "567");
    EXPECT_EQ(details.gain, "4");
    window->Link.State.CurrentRaw.Ref[1] = 0;
    window->Link.State.CurrentRaw.Snorm[1] = 4321;
    EXPECT_EQ(DetailsOf(*window, channel).counts, "4321") << "a line with the relative signal alone";
    EXPECT_EQ(DetailsOf(*window, channel).reference, "");
}

TEST_F(WindowStartTest, DetailsThatAModelDoesNotHaveAreEmpty) {
    const auto delph = Scripted(Model::Delph2);
    const ChannelDetails beam =
        DetailsOf(*delph, PlottedChannels(InstTypeCode::Delph2, delph->Link.CalData)[0]);
    EXPECT_EQ(beam.gain, "");
    EXPECT_EQ(beam.reference, "---");
    const auto tidal = Scripted(Model::LTidal);
    tidal->Link.State.HasSample = true;
    tidal->Link.State.CurrentRaw.Trans = 4321;
    const auto channels = PlottedChannels(InstTypeCode::LTidal, tidal->Link.CalData);
    EXPECT_EQ(DetailsOf(*tidal, channels[2]).counts, "4321");
    EXPECT_EQ(DetailsOf(*tidal, channels[2]).gain, "");
}

}  // namespace
}  // namespace marisonde
