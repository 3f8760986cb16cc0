#include "app/CheckDataFile.h"
#include "app/FilesFixture.h"
#include "app/LoadStored.h"
#include "app/OpenFile.h"

namespace marisonde {
namespace {

using simulator::Model;
namespace fs = std::filesystem;

constexpr const char* kNothing = "The selected file contains no recognizable data, or could not be opened.";

class OpenFileTest : public FilesFixture {
  protected:
    ShowNewWindow NewWindow() {
        return [this]() -> DataWindow* {
            if (app.FirstFreeWindow() == kMaxWindows) return nullptr;
            return &Empty();
        };
    }
    /// Chooses the file in the dialog.
    void OpenByMenu(DataWindow& window, const std::string& path) {
        dialogs.chosen.push_front({path, 0});
        Do(window, [&](Operation& operation) { return OpenFileCommand(operation, window, NewWindow()); });
    }
    void Give(DataWindow& window, const std::vector<std::string>& paths) {
        Do(window,
           [&](Operation& operation) { return OpenGivenFiles(operation, window, paths, NewWindow()); });
    }
    /// A raw file of so many samples, all the same.
    std::string RawOf(int samples, const std::string& name = "many.raw") {
        const Cast cast = Record(Model::Corvane6, "one", {}, std::chrono::seconds(5));
        const std::string text = TestFolder::Read(cast.raw);
        const std::string data = BehindHeader(text, "[EndHeader]");
        const std::size_t begin = data.find("*T");
        const std::string line = data.substr(begin, data.find("\r\n", begin) + 2 - begin);
        std::string many = text.substr(0, text.size() - data.size());
        for (int i = 0; i < samples; ++i) many += line;
        TestFolder::Write(folder / name, many);
        return (folder / name).string();
    }
    std::string DatOf(int samples) {
        std::string text =
            "[Header]\r\nFileType=dat\r\nDeviceType=Fathom-2\r\n[Channels]\r\n\"k(532)\"\r\n"
            "\"k(650)\"\r\n[Data]\r\n";
        for (int i = 1; i <= samples; ++i) text += std::to_string(40000 + i) + ",1,0.5,0.25,20\r\n";
        TestFolder::Write(folder / "many.dat", text);
        return (folder / "many.dat").string();
    }
};

TEST_F(OpenFileTest, DialogBeginsInTheLastFolderWhichIsKept) {
    app.prefs.OpenPath = "/before/";
    DataWindow& window = Empty();
    OpenByMenu(window, DatOf(3));
    EXPECT_EQ(dialogs.filesAsked.at(0).title, "Select Data File");
    EXPECT_EQ(dialogs.filesAsked.at(0).path, "/before/");
    EXPECT_EQ(app.prefs.OpenPath, folder.Path().string() + "/");
    EXPECT_EQ(window.Plot.PlotIndex(), 4);
}

TEST_F(OpenFileTest, CancelledDialogDoesNothing) {
    DataWindow& window = Empty();
    OpenByMenu(window, "");
    EXPECT_FALSE(window.Stored.IsShown());
    EXPECT_TRUE(dialogs.asked.empty());
}

TEST_F(OpenFileTest, FilesWithoutDataAreRefused) {
    TestFolder::Write(folder / "empty.raw", "");
    TestFolder::Write(folder / "notes.txt", "It rained.\r\n");
    DataWindow& window = Empty();
    dialogs.answers = {Choice::Third, Choice::Third, Choice::Third, Choice::Third};
    for (const fs::path& path :
         {folder / "empty.raw", folder / "notes.txt", folder / "gone.raw", folder.Path()})
        OpenByMenu(window, path.string());
    EXPECT_EQ(Asked(), std::vector<std::string>(4, kNothing));
    EXPECT_EQ(Buttons(0), "||Cancel");
    EXPECT_FALSE(window.Stored.IsShown());
}

TEST_F(OpenFileTest, RawFileOfAnotherModelAsksForItsCalibration) {
    const Cast cast = Record(Model::Corvane6, "cast");
    DataWindow& window = WithCal(Model::NTidal);
    app.prefs.OpenCalPath = "/cals/";
    dialogs.answers = {Choice::First};
    dialogs.chosen = {{CalOf(Model::Corvane6), 0}};
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(Asked(), std::vector<std::string>{
                           "The data file you selected contains raw Corvane-6 data, but the calibration file "
                           "type is n-Tidal.  Would you like to select a matching calibration?"});
    EXPECT_EQ(Buttons(0), "Select Cal||Cancel");
    EXPECT_EQ(dialogs.filesAsked.at(1).title, "Select Calibration File");
    EXPECT_EQ(dialogs.filesAsked.at(1).path, "/cals/");
    // The window holds a calibration of another model: it is not used again.
    EXPECT_FALSE(window.Stored.IsShown());
    ASSERT_EQ(held.size(), 2U);
    DataWindow& other = *held[1].window;
    EXPECT_EQ(other.Stored.path, cast.raw);
    EXPECT_EQ(other.Link.CalData.InstType, InstTypeCode::Corvane6);
    EXPECT_EQ(PointsOf(other), PointsOf(*cast.live));
}

TEST_F(OpenFileTest, NotSelectingACalibrationOpensNothing) {
    const Cast cast = Record(Model::Corvane6, "cast");
    DataWindow& window = Empty();
    dialogs.answers = {Choice::Third, Choice::First};
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(dialogs.asked.at(0).message,
              "The data file you selected contains raw Corvane-6 data, but the calibration file type is "
              "unknown.  Would you like to select a matching calibration?");
    // The dialog of the calibration may be cancelled too.
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(dialogs.asked.size(), 2U);
    EXPECT_FALSE(window.Stored.IsShown());
    EXPECT_EQ(held.size(), 1U);
}

TEST_F(OpenFileTest, CalibrationThatDoesNotFitEitherIsAskedAboutAgain) {
    const Cast cast = Record(Model::Corvane6, "cast");
    DataWindow& window = Empty();
    dialogs.answers = {Choice::First, Choice::First};
    dialogs.chosen = {{CalOf(Model::LTidal), 0}, {CalOf(Model::Corvane6), 0}};
    OpenByMenu(window, cast.raw);
    ASSERT_EQ(dialogs.asked.size(), 2U);
    EXPECT_NE(dialogs.asked[1].message.find("file type is l-Tidal."), std::string::npos);
    EXPECT_EQ(window.Stored.path, cast.raw);
}

TEST_F(OpenFileTest, OtherSerialMayBeReplacedUsedOrCancelled) {
    const Cast cast = Record(Model::Corvane6, "cast");
    const std::string serial = cast.live->Link.CalData.Serial;
    DataWindow& window = Empty();
    ASSERT_TRUE(window.LoadCalIntoWindow(CalOf(Model::Corvane6, "CV999999")));
    dialogs.answers = {Choice::Third};
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(Asked(), std::vector<std::string>{
                           "The serial number of the data file (" + serial +
                           ") and the current calibration file (CV999999) do not match.  Would you like to "
                           "select a different calibration?"});
    EXPECT_EQ(Buttons(0), "Select Cal|Use Current|Cancel");
    EXPECT_FALSE(window.Stored.IsShown());

    dialogs.answers = {Choice::First};
    dialogs.chosen = {{CalOf(Model::Corvane6), 0}};
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(window.Stored.path, cast.raw);
    EXPECT_EQ(window.Link.CalData.Serial, serial);

    DataWindow& second = Empty();
    ASSERT_TRUE(second.LoadCalIntoWindow(CalOf(Model::Corvane6, "CV999999")));
    dialogs.answers = {Choice::Second};
    OpenByMenu(second, cast.raw);
    EXPECT_EQ(second.Stored.path, cast.raw);
    EXPECT_EQ(second.Link.CalData.Serial, "CV999999");
}

TEST_F(OpenFileTest, OtherModelCannotBeOpenedWhileConnected) {
    const Cast cast = Record(Model::NTidal, "cast");
    DataWindow& window = Keep(Simulated(Model::Corvane6, {}));
    dialogs.answers = {Choice::Third};
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(Asked(), std::vector<std::string>{
                           "The data file you selected contains raw n-Tidal data, and requires a calibration "
                           "file that cannot be loaded while the Corvane-6 is connected. Either disconnect "
                           "the Corvane-6 or open a new window."});
    EXPECT_EQ(Buttons(0), "||Cancel");
    EXPECT_EQ(held.size(), 1U);
}

TEST_F(OpenFileTest, FreshWindowIsUsedAndTheNextFileGetsAWindowLikeIt) {
    const Cast first = Record(Model::Corvane6, "first");
    DataWindow& window = WithCal(Model::Corvane6);
    OpenByMenu(window, first.raw);
    EXPECT_EQ(held.size(), 1U);
    EXPECT_EQ(window.Stored.path, first.raw);
    window.Plot.VsDepthCommand();
    window.Plot.ChangeDepthUnits(false);
    window.Plot.AutoDataMax = false;
    window.Chart.Axes(AxisName::Y).SetMax(0.125);
    OpenByMenu(window, first.raw);
    ASSERT_EQ(held.size(), 2U);
    DataWindow& second = *held[1].window;
    EXPECT_EQ(second.Stored.path, first.raw);
    EXPECT_EQ(second.Plot.View(), PlotView::Vs_Depth);
    EXPECT_FALSE(second.Plot.DepthInMeters());
    EXPECT_FALSE(second.Plot.AutoDataMax);
    EXPECT_EQ(second.Chart.Axes(AxisName::Y).Max(), 0.125);
    EXPECT_TRUE(Asked().empty());
}

TEST_F(OpenFileTest, SampledDataAreNeverReplaced) {
    const Cast cast = Record(Model::Corvane6, "cast");
    DataWindow& window = Keep(Simulated(Model::Corvane6, {}));
    OpenByMenu(window, cast.raw);
    ASSERT_EQ(held.size(), 2U);
    EXPECT_FALSE(window.Stored.IsShown());
    EXPECT_TRUE(window.Files.AnyOpen());
    EXPECT_EQ(held[1].window->Stored.path, cast.raw);
}

TEST_F(OpenFileTest, ForcedNewWindowLeavesAnEmptyOneAlone) {
    const std::string dat = DatOf(2);
    DataWindow& window = Empty();
    Do(window, [&](Operation& operation) {
        return OpenFile(operation, window, {{dat, "dat", InstTypeCode::Fathom2, ""}, ""}, true, NewWindow());
    });
    ASSERT_EQ(held.size(), 2U);
    EXPECT_FALSE(window.Stored.IsShown());
    EXPECT_EQ(held[1].window->Stored.path, dat);
}

TEST_F(OpenFileTest, NoMoreThanSixWindows) {
    const std::string dat = DatOf(2);
    for (int i = 0; i < kMaxWindows; ++i) OpenByMenu(i == 0 ? Empty() : *held[0].window, dat);
    ASSERT_EQ(held.size(), 6U);
    EXPECT_TRUE(dialogs.errors.empty());
    OpenByMenu(*held[0].window, dat);
    EXPECT_EQ(held.size(), 6U);
    EXPECT_EQ(dialogs.errors, std::vector<std::string>{"Cannot open more than 6 windows."});
}

class ModifiedCalTest : public OpenFileTest {
  protected:
    ModifiedCalTest() : cast(Record(Model::Corvane6, "cast")) {}
    /// A window that holds a file and an edited calibration.
    DataWindow& Edited() {
        DataWindow& window = WithCal(Model::Corvane6);
        OpenByMenu(window, cast.raw);
        window.Link.CalData.SetMu(0, 12345);
        window.Link.CalData.ChangedItems = CalItems::Mu;
        return window;
    }
    Cast cast;
};

constexpr const char* kModified =
    "You have modified the calibration data associated with this window.  To open a new window with the "
    "modified calibration you must first save the changes.  Save the changes now?";

TEST_F(ModifiedCalTest, CancelOpensNothing) {
    DataWindow& window = Edited();
    dialogs.answers = {Choice::Third};
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(Asked(), std::vector<std::string>{kModified});
    EXPECT_EQ(Buttons(0), "Save As...|Don'tSave|Cancel");
    EXPECT_EQ(held.size(), 1U);
}

TEST_F(ModifiedCalTest, SavedChangesGoToTheNewWindow) {
    DataWindow& window = Edited();
    dialogs.answers = {Choice::First};
    dialogs.saveBase = (folder / "edited.cal").string();
    OpenByMenu(window, cast.raw);
    ASSERT_EQ(held.size(), 2U);
    EXPECT_EQ(held[1].window->Link.CalData.Channel(0).Mu, 12345);
    EXPECT_EQ(window.Link.CalData.ChangedItems, 0);
    EXPECT_TRUE(fs::exists(folder / "edited.cal"));
}

TEST_F(ModifiedCalTest, CancelledSaveOpensNothing) {
    DataWindow& window = Edited();
    dialogs.answers = {Choice::First};
    dialogs.saveBase = "";
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(held.size(), 1U);
    EXPECT_EQ(window.Link.CalData.ChangedItems, CalItems::Mu);
}

TEST_F(ModifiedCalTest, UnsavedChangesStayInTheirWindow) {
    DataWindow& window = Edited();
    dialogs.answers = {Choice::Second};
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(dialogs.notices, std::vector<std::string>{"The new window will be opened with the unmodified "
                                                        "version of " +
                                                        CalOf(Model::Corvane6)});
    ASSERT_EQ(held.size(), 2U);
    EXPECT_NE(held[1].window->Link.CalData.Channel(0).Mu, 12345);
    EXPECT_EQ(held[1].window->Link.CalData.ChangedItems, 0);
    EXPECT_EQ(window.Link.CalData.Channel(0).Mu, 12345);
}

TEST_F(ModifiedCalTest, InAFreshWindowChangesMayBeSavedFirst) {
    DataWindow& window = WithCal(Model::Corvane6);
    window.Link.CalData.ChangedItems = CalItems::Comment;
    dialogs.answers = {Choice::Third};
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(Asked(), std::vector<std::string>{"The current calibration data have changed. Save changes to "
                                                "the file before closing?"});
    EXPECT_EQ(Buttons(0), "Save As...|Don't Save|Cancel");
    EXPECT_FALSE(window.Stored.IsShown());
    dialogs.answers = {Choice::First};
    dialogs.saveBase = (folder / "kept.cal").string();
    OpenByMenu(window, cast.raw);
    EXPECT_TRUE(fs::exists(folder / "kept.cal"));
    EXPECT_EQ(window.Stored.path, cast.raw);
}

TEST_F(ModifiedCalTest, ChangesNobodyWantsAreNotSaved) {
    DataWindow& window = WithCal(Model::Corvane6);
    window.Link.CalData.ChangedItems = CalItems::Comment;
    dialogs.answers = {Choice::Second};
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(window.Stored.path, cast.raw);
}

TEST_F(OpenFileTest, ExactlyAsManyPointsAsFitAskNothing) {
    const std::string raw = RawOf(1000);
    DataWindow& window = WithCal(Model::Corvane6);
    window.Plot.MaxGraphPoints = 1000;
    OpenByMenu(window, raw);
    EXPECT_TRUE(Asked().empty());
    EXPECT_EQ(window.Plot.PlotIndex(), 1001);
    EXPECT_EQ(window.Chart.ChartGroups(1).LastPoint(), 1000);
    EXPECT_EQ(window.StatusLine, "many.raw: 1000 points");
}

TEST_F(OpenFileTest, StopAtTheFirstGroupKeepsItAndTheFile) {
    const std::string raw = RawOf(1001);
    DataWindow& window = WithCal(Model::Corvane6);
    window.Plot.MaxGraphPoints = 1000;
    dialogs.answers = {Choice::Second};
    OpenByMenu(window, raw);
    EXPECT_EQ(Asked(),
              std::vector<std::string>{"This file contains more points than can be displayed at one time. "
                                       "Would you like to stop now and display this group of 1000 points, or "
                                       "load then next group?"});
    EXPECT_EQ(Buttons(0), "Next|Stop|");
    EXPECT_EQ(window.Chart.ChartGroups(1).LastPoint(), 1000);
    EXPECT_EQ(window.Stored.path, raw);
    EXPECT_EQ(window.StatusLine, "many.raw: more points follow.  1000 points");
}

TEST_F(OpenFileTest, NextLeavesOnlyTheLastGroup) {
    const std::string dat = DatOf(2500);
    DataWindow& window = Empty();
    window.Plot.MaxGraphPoints = 1000;
    dialogs.answers = {Choice::First, Choice::First};
    OpenByMenu(window, dat);
    EXPECT_EQ(Asked(), std::vector<std::string>(
                           2,
                           "This file contains more points than can be displayed at one time. Would you "
                           "like to stop now and display this group of 1000 points, or load the next "
                           "group?"));
    EXPECT_EQ(window.Chart.ChartGroups(1).LastPoint(), 500);
    EXPECT_EQ(window.Stored.group, 2);
    EXPECT_EQ(window.Link.State.CurrentSample.Time, 42500);
}

TEST_F(OpenFileTest, CalibratedFileBringsModelAndNames) {
    DataWindow& window = Empty();
    OpenByMenu(window, DatOf(3));
    EXPECT_EQ(window.Link.State.InstType, InstTypeCode::Fathom2);
    EXPECT_EQ(window.Link.CalData.Channel(0).name, "k(532)");
    EXPECT_EQ(window.Link.CalData.Channel(1).name, "k(650)");
    EXPECT_FALSE(window.Link.State.CalReady);
    EXPECT_EQ(PointsOf(window).at(1), std::vector<double>(3, 0.5));
    EXPECT_EQ(PointsOf(window).at(2), std::vector<double>(3, 0.25));
    EXPECT_EQ(window.Title(), "many.dat - Marisonde");
    EXPECT_EQ(window.WhereDataAre(), (folder / "many.dat").string());
}

TEST_F(OpenFileTest, CalibratedFileOfTheSameModelKeepsTheCalibration) {
    const Cast cast = Record(Model::LTidal, "cast");
    DataWindow& window = WithCal(Model::LTidal);
    OpenByMenu(window, cast.dat);
    EXPECT_TRUE(window.Link.State.CalReady);
    EXPECT_NE(window.Link.CalData.Channel(0).Mu, 0);
    EXPECT_TRUE(Asked().empty());
    for (std::size_t box = 0; box < 3; ++box)
        EXPECT_NE(window.Plot.Readouts().DataBox[box].View(), kNoData) << box;
}

TEST_F(OpenFileTest, FileWithoutHeaderLoadsByItsLines) {
    const Cast cast = Record(Model::Corvane6, "cast");
    const std::string data = BehindHeader(TestFolder::Read(cast.raw), "[EndHeader]");
    TestFolder::Write(folder / "bare.raw", data);
    DataWindow& window = WithCal(Model::Corvane6);
    OpenByMenu(window, (folder / "bare.raw").string());
    EXPECT_EQ(PointsOf(window), PointsOf(*cast.live));
}

TEST_F(OpenFileTest, LinesPassedOverAreToldWithTheirReasons) {
    const Cast cast = Record(Model::Corvane6, "cast");
    const std::string points = std::to_string(cast.live->Link.State.Counted.samples);
    TestFolder::Write(
        cast.raw, TestFolder::Read(cast.raw) + "*T00\r\nIt rained\r\n" + std::string(1 << 20, 'x') + "\r\n");
    DataWindow& window = WithCal(Model::Corvane6);
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(window.StatusLine,
              "cast.raw: " + points + " points, 3 lines passed over: 1 bad checksum, 2 text");
    EXPECT_EQ(PointsOf(window), PointsOf(*cast.live));
}

TEST_F(OpenFileTest, AnyLineEndAndAnyNameWillDo) {
    const Cast cast = Record(Model::NTidal, "cast");
    const std::string text = TestFolder::Read(cast.raw);
    std::string lf = text;
    std::erase(lf, '\r');
    std::string cr = text;
    std::erase(cr, '\n');
    const std::string names[] = {
        "gr\xC3\xB6\xC3\x9F"
        "er als drei.raw",
        "gr\xF6\xDF"
        "er.raw"};
    TestFolder::Write(folder / names[0], lf);
    TestFolder::Write(folder / names[1], cr);
    for (const std::string& name : names) {
        DataWindow& window = WithCal(Model::NTidal);
        OpenByMenu(window, (folder / name).string());
        EXPECT_EQ(PointsOf(window), PointsOf(*cast.live)) << name;
        EXPECT_EQ(window.Title(), name + " - Marisonde");
    }
}

TEST_F(OpenFileTest, OpeningNeverAltersTheSource) {
    const Cast cast = Record(Model::Corvane6, "cast");
    const std::string before = TestFolder::Read(cast.raw);
    const auto written = fs::last_write_time(cast.raw);
    DataWindow& window = WithCal(Model::Corvane6);
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(TestFolder::Read(cast.raw), before);
    EXPECT_EQ(fs::last_write_time(cast.raw), written);
}

TEST_F(OpenFileTest, WindowShowsAFileWithoutTakingLiveSamples) {
    const Cast cast = Record(Model::Corvane6, "cast");
    auto owned = Scripted(Model::Corvane6);
    DataWindow& window = Keep(std::move(owned));
    window.Link.ClosePort();
    window.Files.CloseDataFiles(false);
    StartLoad(window, {cast.raw, "raw", InstTypeCode::Corvane6, ""});
    Settle();
    const auto shown = PointsOf(window);
    const std::string data = BehindHeader(TestFolder::Read(cast.raw), "[EndHeader]");
    EXPECT_EQ(window.OpenWithoutQuery(1, 19200, InstTypeCode::Corvane6), "");
    port->Queue(data);
    Tick();
    Tick();
    EXPECT_EQ(PointsOf(window), shown);
    EXPECT_GT(window.Link.DataLineQueue.size(), 0);
}

TEST_F(OpenFileTest, StoppingALoadKeepsWhatWasRead) {
    const std::string raw = RawOf(90000);
    DataWindow& window = WithCal(Model::Corvane6);
    window.Plot.MaxGraphPoints = 100000;
    StartLoad(window, {raw, "raw", InstTypeCode::Corvane6, ""});
    ASSERT_TRUE(window.LoadProgress);
    EXPECT_GT(window.LoadProgress->done, 0U);
    EXPECT_LT(window.LoadProgress->done, window.LoadProgress->size);
    const int read = window.Plot.PlotIndex() - 1;
    ASSERT_GT(read, 0);
    OperationsOf(window).Cancel(kLoadOperation);
    Settle();
    EXPECT_FALSE(window.LoadProgress);
    EXPECT_EQ(window.Chart.ChartGroups(1).LastPoint(), read);
    EXPECT_EQ(window.StatusLine, "many.raw: loading was stopped.  " + std::to_string(read) + " points");
    EXPECT_EQ(window.Stored.path, raw);
}

TEST_F(OpenFileTest, FileThatGrowsWhileItIsReadIsReadToItsEnd) {
    const std::string raw = RawOf(70000);
    DataWindow& window = WithCal(Model::Corvane6);
    window.Plot.MaxGraphPoints = 100000;
    StartLoad(window, {raw, "raw", InstTypeCode::Corvane6, ""});
    ASSERT_TRUE(window.LoadProgress);
    const std::string data = BehindHeader(TestFolder::Read(raw), "[EndHeader]");
    std::ofstream(raw, std::ios::binary | std::ios::app) << data.substr(0, 2 * data.find("*T", 1));
    Settle();
    EXPECT_EQ(window.Chart.ChartGroups(1).LastPoint(), 70002);
}

TEST_F(OpenFileTest, FileThatVanishesWhileItIsReadIsStillRead) {
    const std::string raw = RawOf(70000);
    DataWindow& window = WithCal(Model::Corvane6);
    window.Plot.MaxGraphPoints = 100000;
    StartLoad(window, {raw, "raw", InstTypeCode::Corvane6, ""});
    fs::remove(raw);
    Settle();
    EXPECT_FALSE(window.LoadProgress);
    EXPECT_GT(window.Chart.ChartGroups(1).LastPoint(), 0);
}

TEST_F(OpenFileTest, FileThatIsGoneLeavesTheWindowAsItWas) {
    const Cast cast = Record(Model::Corvane6, "cast");
    DataWindow& window = WithCal(Model::Corvane6);
    OpenByMenu(window, cast.raw);
    const auto shown = PointsOf(window);
    fs::remove(cast.raw);
    StartReload(window);
    Settle();
    EXPECT_EQ(dialogs.errors,
              std::vector<std::string>{"Error opening " + cast.raw + ": No such file or directory."});
    EXPECT_EQ(PointsOf(window), shown);
    EXPECT_EQ(window.Stored.path, cast.raw);
    EXPECT_EQ(window.StatusLine, "cast.raw: could not be opened.");
}

TEST_F(OpenFileTest, DroppedFilesOpenWithTheCalibrationAmongThem) {
    const Cast cast = Record(Model::Corvane6, "cast");
    const std::string dat = DatOf(2);
    DataWindow& window = Empty();
    Give(window, {cast.raw, dat, CalOf(Model::Corvane6)});
    EXPECT_TRUE(Asked().empty());
    ASSERT_EQ(held.size(), 2U);
    EXPECT_EQ(window.Stored.path, cast.raw);
    EXPECT_EQ(held[1].window->Stored.path, dat);
}

/// What a window shows of a recorded run when it opens its files is what it showed live.
class ReopenTest : public OpenFileTest,
                   public testing::WithParamInterface<std::pair<Model, simulator::LineForm>> {};

TEST_P(ReopenTest, RawFileShowsTheLivePoints) {
    const auto& [model, form] = GetParam();
    simulator::Options options;
    options.form = form;
    const Cast cast = Record(model, "cast", options);
    ASSERT_GT(cast.live->Link.State.Counted.samples, 20);
    ASSERT_GT(cast.live->Link.State.CurrentSample.Time, 1);
    DataWindow& window = WithCal(model);
    OpenByMenu(window, cast.raw);
    EXPECT_TRUE(Asked().empty());
    EXPECT_EQ(window.Link.State.CurrentSample, cast.live->Link.State.CurrentSample);
    EXPECT_EQ(PointsOf(window), PointsOf(*cast.live));
    for (std::size_t box = 0; box < kChannelSlots; ++box)
        EXPECT_EQ(window.Plot.Readouts().DataBox[box].View(), cast.live->Plot.Readouts().DataBox[box].View());
}

TEST_P(ReopenTest, CalibratedFileShowsThemAsItHasThem) {
    const auto& [model, form] = GetParam();
    simulator::Options options;
    options.form = form;
    const Cast cast = Record(model, "cast", options);
    DataWindow& window = Empty();
    OpenByMenu(window, cast.dat);
    EXPECT_TRUE(Asked().empty());
    EXPECT_EQ(window.Plot.PlotIndex() - 1, cast.live->Link.State.Counted.samples);
    const auto shown = PointsOf(window);
    const auto live = PointsOf(*cast.live);
    ASSERT_EQ(shown.size(), live.size());
    for (std::size_t series = 0; series < shown.size(); ++series)
        for (std::size_t i = 0; i < shown[series].size(); ++i)
            EXPECT_EQ(static_cast<float>(shown[series][i]), static_cast<float>(live[series][i]))
                << series << " " << i;
}

/// The decimal lines of a Corvane have no clock: their live dates are the computer's.
std::vector<std::pair<Model, simulator::LineForm>> EveryFormWithAClock() {
    using simulator::LineForm;
    std::vector<std::pair<Model, LineForm>> forms;
    for (int model = 0; model < 10; ++model)
        for (const LineForm form : {LineForm::Natural, LineForm::Hex, LineForm::HexHundredths,
                                    LineForm::HexVerbose, LineForm::Decimal, LineForm::DecimalShort})
            if (simulator::OffersForm(static_cast<Model>(model), form) &&
                (model > 2 || form != LineForm::Decimal))
                forms.emplace_back(static_cast<Model>(model), form);
    return forms;
}

TEST_F(OpenFileTest, SamplesWithoutAClockAreShownByTheirRunningCount) {
    simulator::Options options;
    options.form = simulator::LineForm::Decimal;
    const Cast cast = Record(Model::Corvane6, "cast", options);
    DataWindow& window = WithCal(Model::Corvane6);
    OpenByMenu(window, cast.raw);
    const auto shown = PointsOf(window);
    const auto live = PointsOf(*cast.live);
    ASSERT_EQ(shown.at(0).size(), live.at(0).size());
    // Live samples are dated when they come, to a tick of 50 ms; the count is in hundredths of a second.
    for (std::size_t i = 0; i < shown[0].size(); ++i) EXPECT_NEAR(shown[0][i], live[0][i], 0.11 / 60) << i;
    for (std::size_t series = 1; series < shown.size(); ++series) EXPECT_EQ(shown[series], live[series]);
    // The header says 11 July 2011, 09:15:22: day 40735.
    EXPECT_NEAR(window.Link.State.CurrentSample.Time, 40735.3857, 0.002);
}

INSTANTIATE_TEST_SUITE_P(EveryModel, ReopenTest, testing::ValuesIn(EveryFormWithAClock()),
                         [](const auto& info) {
                             std::string name(InstTypeName(static_cast<InstTypeCode>(info.param.first)));
                             std::erase(name, '-');
                             return name + "Form" + std::to_string(static_cast<int>(info.param.second));
                         });

}  // namespace
}  // namespace marisonde
