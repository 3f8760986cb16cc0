#include "app/FilesFixture.h"
#include "app/LoadStored.h"
#include "app/SelectCal.h"
#include "link/Commands.h"

namespace marisonde {
namespace {

using simulator::Model;

constexpr const char* kFilesOpen =
    "Some data have already been collected using the current calibration file.  Before changing calibration "
    "files you must close the current data file.";

class SelectCalTest : public FilesFixture {
  protected:
    /// Chooses this calibration in the dialog. nullopt: it still waits.
    std::optional<bool> Select(DataWindow& window, const std::string& path, std::deque<Choice> answers = {}) {
        dialogs.answers = std::move(answers);
        dialogs.chosen = {{path, 0}};
        std::optional<bool> selected;
        Do(window, [&](Operation& operation) -> QCoro::Task<> {
            const bool done = co_await SelectCalCommand(operation, window);
            selected = done;
        });
        Settle();
        return selected;
    }
    /// A window that shows what such an instrument sent.
    DataWindow& Showing(Model model, bool calibrated = false) {
        const Cast cast = Record(model, "cast");
        DataWindow& window = WithCal(model);
        StartLoad(window, {calibrated ? cast.dat : cast.raw, calibrated ? "dat" : "raw",
                           static_cast<InstTypeCode>(model), cast.live->Link.CalData.Serial});
        Settle();
        EXPECT_GT(window.Plot.PlotIndex(), 1);
        return window;
    }
    /// A connected window without files.
    DataWindow& ConnectedWindow() {
        DataWindow& window = Keep(Scripted(Model::Corvane6));
        window.Files.CloseDataFiles(false);
        window.Link.State.InstSerial = window.Link.CalData.Serial;
        return window;
    }
    static std::string Path(const DataWindow& window) { return window.Link.CalData.SourceFile(); }
};

TEST_F(SelectCalTest, EmptyWindowTakesAnyCalibration) {
    DataWindow& window = Empty();
    const std::string cal = CalOf(Model::NTidal);
    app.prefs.OpenCalPath = "/cals/";
    EXPECT_EQ(Select(window, cal), true);
    EXPECT_EQ(dialogs.filesAsked.at(0).path, "/cals/");
    EXPECT_EQ(app.prefs.OpenCalPath, folder.Path().string() + "/");
    EXPECT_EQ(app.prefs.CalFile, cal);
    EXPECT_EQ(window.Plot.Model(), InstTypeCode::NTidal);
    EXPECT_TRUE(Asked().empty());
}

TEST_F(SelectCalTest, CancelledDialogKeepsTheCalibration) {
    DataWindow& window = WithCal(Model::Corvane6);
    EXPECT_EQ(Select(window, ""), false);
    EXPECT_EQ(Path(window), CalOf(Model::Corvane6));
    EXPECT_TRUE(dialogs.notices.empty());
}

TEST_F(SelectCalTest, FileThatIsNotThereIsTold) {
    DataWindow& window = WithCal(Model::Corvane6);
    EXPECT_EQ(Select(window, "/nowhere/x.cal"), false);
    EXPECT_EQ(dialogs.notices, std::vector<std::string>{"Could not find '/nowhere/x.cal'"});
    EXPECT_EQ(Path(window), CalOf(Model::Corvane6));
}

TEST_F(SelectCalTest, WindowWithoutDataTakesAnotherModelUnasked) {
    DataWindow& window = WithCal(Model::Corvane6);
    EXPECT_EQ(Select(window, CalOf(Model::LTidal)), true);
    EXPECT_TRUE(Asked().empty());
    EXPECT_EQ(window.Plot.Model(), InstTypeCode::LTidal);
}

TEST_F(SelectCalTest, CollectedDataAreClosedFirst) {
    DataWindow& window = Keep(Simulated(Model::Corvane6, {}));
    Run(window, std::chrono::seconds(3));
    window.Link.State.InstState = InstStateCode::Stopped;
    EXPECT_EQ(Select(window, CalOf(Model::Corvane6), {Choice::Third}), false);
    EXPECT_EQ(Asked(), std::vector<std::string>{kFilesOpen});
    EXPECT_EQ(Buttons(0), "|Close File|Cancel");
    EXPECT_TRUE(window.Files.AnyOpen());
}

TEST_F(SelectCalTest, CancellingTheCloseLeavesAllAsItWas) {
    DataWindow& window = Keep(Simulated(Model::Corvane6, {}));
    Run(window, std::chrono::seconds(3));
    const std::string before = Path(window);
    const int points = window.Plot.PlotIndex();
    EXPECT_EQ(Select(window, CalOf(Model::Corvane6, "CV999999"), {Choice::Second, Choice::Third}), false);
    EXPECT_EQ(Asked().size(), 2U);
    EXPECT_TRUE(window.Files.AnyOpen());
    EXPECT_EQ(Path(window), before);
    EXPECT_GE(window.Plot.PlotIndex(), points);
    EXPECT_TRUE(dialogs.filesAsked.empty());
}

TEST_F(SelectCalTest, ClosedFilesStayClosedWhenTheDialogIsCancelled) {
    DataWindow& window = Keep(Simulated(Model::Corvane6, {}));
    Run(window, std::chrono::seconds(3));
    // Close File, do not save, files may be closed while data come.
    EXPECT_EQ(Select(window, "", {Choice::Second, Choice::Second, Choice::First}), false);
    EXPECT_FALSE(window.Files.AnyOpen());
}

TEST_F(SelectCalTest, ChangedCalibrationMayBeSavedFirst) {
    DataWindow& window = WithCal(Model::Corvane6);
    window.Link.CalData.ChangedItems = CalItems::Mu;
    EXPECT_EQ(Select(window, CalOf(Model::LTidal), {Choice::Third}), false);
    EXPECT_EQ(window.Link.CalData.ChangedItems, CalItems::Mu);
    EXPECT_EQ(Select(window, CalOf(Model::LTidal), {Choice::Second}), true);
    EXPECT_EQ(window.Link.CalData.InstType, InstTypeCode::LTidal);
}

TEST_F(SelectCalTest, CalibratedFileIsNotTouched) {
    DataWindow& window = Showing(Model::Corvane6, true);
    const auto shown = PointsOf(window);
    EXPECT_EQ(Select(window, CalOf(Model::Corvane6), {Choice::Second}), false);
    EXPECT_EQ(Asked(), std::vector<std::string>{
                           "The currently displayed file is already calibrated.  You can select a new "
                           "calibration file but it will not be applied to this file.  "});
    EXPECT_EQ(Buttons(0), "Select|Cancel|");
    EXPECT_TRUE(dialogs.filesAsked.empty());
    EXPECT_EQ(Select(window, CalOf(Model::Corvane6, "CV999999"), {Choice::First, Choice::First}), true);
    EXPECT_EQ(window.Link.CalData.Serial, "CV999999");
    EXPECT_EQ(PointsOf(window), shown);
}

TEST_F(SelectCalTest, RawFileIsReadAgain) {
    DataWindow& window = Showing(Model::Corvane6);
    const auto before = PointsOf(window);
    CalibrationDataClass changed = window.Link.CalData;
    for (int ch = 0; ch < 6; ++ch) changed.SetMu(ch, 2 * changed.Channel(ch).Mu);
    const auto path = folder / "twice.cal";
    ASSERT_TRUE(changed.SaveCopyToFile(path, app.pureWater).ok);
    EXPECT_EQ(Select(window, path.string()), true);
    EXPECT_TRUE(Asked().empty());
    const auto after = PointsOf(window);
    EXPECT_EQ(after.at(0), before.at(0));
    EXPECT_EQ(after.at(1).size(), before.at(1).size());
    EXPECT_NE(after.at(1), before.at(1));
}

TEST_F(SelectCalTest, CalibrationOfAnotherModelMayCloseTheFile) {
    DataWindow& window = Showing(Model::Corvane6);
    const std::string other = CalOf(Model::NTidal);
    EXPECT_EQ(Select(window, other, {Choice::Second}), false);
    EXPECT_EQ(Asked(),
              std::vector<std::string>{
                  "You selected a n-Tidal calibration file, but the open data file contains Corvane-6 "
                  "data.  Do you wish to close the data file ?"});
    EXPECT_EQ(Buttons(0), "Close File|Cancel|");
    EXPECT_TRUE(window.Stored.IsShown());
    EXPECT_EQ(Select(window, other, {Choice::First}), true);
    EXPECT_FALSE(window.Stored.IsShown());
    EXPECT_EQ(window.Plot.PlotIndex(), 1);
    EXPECT_EQ(window.Link.CalData.InstType, InstTypeCode::NTidal);
}

TEST_F(SelectCalTest, OtherSerialThanTheFilesIsAskedAbout) {
    DataWindow& window = Showing(Model::Corvane6);
    const std::string serial = window.Link.CalData.Serial;
    const std::string other = CalOf(Model::Corvane6, "CV999999");
    EXPECT_EQ(Select(window, other, {Choice::Second}), false);
    EXPECT_EQ(Asked(), std::vector<std::string>{"The serial number of the calibration you selected "
                                                "(CV999999) does not match that of the loaded data file (" +
                                                serial + ").  Use it anyway?"});
    EXPECT_EQ(Buttons(0), "Yes|Cancel|");
    EXPECT_EQ(window.Link.CalData.Serial, serial);
    EXPECT_EQ(Select(window, other, {Choice::First}), true);
    EXPECT_EQ(window.Link.CalData.Serial, "CV999999");
    EXPECT_TRUE(window.Stored.IsShown());
}

TEST_F(SelectCalTest, OtherModelThanTheConnectedDisconnects) {
    DataWindow& window = ConnectedWindow();
    const std::string other = CalOf(Model::LTidal);
    EXPECT_EQ(Select(window, other, {Choice::Second}), false);
    EXPECT_EQ(Asked(),
              std::vector<std::string>{
                  "The selected calibration type is 'l-Tidal', but a Corvane-6 is connected.  Do you "
                  "wish to disconnect from the Corvane-6?"});
    EXPECT_EQ(Buttons(0), "Disconnect|Cancel|");
    EXPECT_TRUE(window.Link.State.Connected);
    EXPECT_EQ(Select(window, other, {Choice::First}), true);
    EXPECT_FALSE(window.Link.State.Connected);
    EXPECT_FALSE(port->IsOpen());
    EXPECT_EQ(window.Link.CalData.InstType, InstTypeCode::LTidal);
}

TEST_F(SelectCalTest, OtherSerialThanTheConnectedIsAskedAbout) {
    DataWindow& window = ConnectedWindow();
    const std::string serial = window.Link.CalData.Serial;
    const std::string other = CalOf(Model::Corvane6, "CV999999");
    EXPECT_EQ(Select(window, other, {Choice::Second}), false);
    EXPECT_EQ(Asked(),
              std::vector<std::string>{"The serial number of the file (CV999999) does not match that "
                                       "of the connected instrument (" +
                                       serial + ").  Use it anyway?"});
    EXPECT_EQ(window.Link.CalData.Serial, serial);
    EXPECT_EQ(Select(window, other, {Choice::First}), true);
    EXPECT_EQ(window.Link.CalData.Serial, "CV999999");
    EXPECT_TRUE(window.Link.State.Connected);
}

TEST_F(SelectCalTest, FittingCalibrationOfTheConnectedIsTakenUnasked) {
    DataWindow& window = ConnectedWindow();
    EXPECT_EQ(Select(window, CalOf(Model::Corvane6)), true);
    EXPECT_TRUE(Asked().empty());
    EXPECT_TRUE(window.Link.State.Connected);
}

}  // namespace
}  // namespace marisonde
