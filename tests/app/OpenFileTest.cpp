#include "app/CheckDataFile.h"
#include "app/LoadStored.h"
#include "app/OpenFileFixture.h"
#include "app/RecentFiles.h"
#include "decode/Lines.h"

namespace marisonde {
namespace {

using simulator::Model;
namespace fs = std::filesystem;

constexpr const char* kNothing = "The selected file contains no recognizable data, or could not be opened.";

class OpenFileTest : public OpenFileFixture {};

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
    EXPECT_EQ(app.prefs.CalFile, CalOf(Model::Corvane6));
    EXPECT_EQ(PointsOf(other), PointsOf(*cast.live));
}

/// Files of the factory procedures, and those that tell no model, open like other raw ones.
TEST_F(OpenFileTest, RawFilesOfEveryKindOpen) {
    const Cast cast = Record(Model::Corvane6, "cast");
    const std::string text = TestFolder::Read(cast.raw);
    std::string factory = text;
    factory.replace(text.find("FileType=raw"), 12, "FileType=rmu");
    TestFolder::Write(folder / "factory.raw", factory);
    TestFolder::Write(
        folder / "unknown.raw",
        "[Header]\r\nFileType=raw\r\nDeviceType=unknown\r\n[EndHeader]\r\n" + lines::Record(19) + "\r\n");
    for (const char* name : {"factory.raw", "unknown.raw"}) {
        DataWindow& window = WithCal(Model::Corvane6);
        OpenByMenu(window, (folder / name).string());
        EXPECT_EQ(window.Stored.path, folder / name);
        EXPECT_EQ(window.Link.State.InstType, InstTypeCode::Corvane6);
    }
    EXPECT_EQ(PointsOf(*held[0].window), PointsOf(*cast.live));
    EXPECT_TRUE(Asked().empty());
}

TEST_F(OpenFileTest, FileThatTellsNoModelNeedsSomeCalibration) {
    TestFolder::Write(folder / "unknown.raw", lines::Record(19) + "\r\n");
    DataWindow& window = Empty();
    dialogs.answers = {Choice::Third};
    OpenByMenu(window, (folder / "unknown.raw").string());
    EXPECT_EQ(dialogs.asked.size(), 1U);
    EXPECT_FALSE(window.Stored.IsShown());
}

TEST_F(OpenFileTest, NameGivenFromAnotherFolderIsKeptWhole) {
    const fs::path dat = DatOf(3);
    const fs::path before = fs::current_path();
    fs::current_path(folder.Path());
    DataWindow& window = Empty();
    Give(window, {"many.dat"});
    fs::current_path(before);
    EXPECT_EQ(window.Stored.path, dat);
    EXPECT_EQ(RecentFiles(settings), std::vector<std::string>{dat.string()});
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

TEST_F(OpenFileTest, ConnectedWindowWithoutFilesIsNotUsed) {
    const Cast cast = Record(Model::Corvane6, "cast");
    DataWindow& window = Keep(Scripted(Model::Corvane6));
    window.Files.CloseDataFiles(false);
    OpenByMenu(window, cast.raw);
    ASSERT_EQ(held.size(), 2U);
    EXPECT_FALSE(window.Stored.IsShown());
    EXPECT_EQ(held[1].window->Stored.path, cast.raw);
}

TEST_F(OpenFileTest, DataThatAFullDiskHasEndedAreNotReplacedEither) {
    const Cast cast = Record(Model::Corvane6, "cast");
    DataWindow& window = Keep(Scripted(Model::Corvane6));
    window.Files.WriteRaw("some data\r\n", clock.Steady());
    window.Files.SetAside([](const auto&) { return false; });  // off, and not saved
    window.Link.ClosePort();
    ASSERT_FALSE(window.Files.AnyOpen());
    OpenByMenu(window, cast.raw);
    ASSERT_EQ(held.size(), 2U);
    EXPECT_FALSE(window.Stored.IsShown());
    EXPECT_TRUE(window.Files.HasUnsavedData());
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

}  // namespace
}  // namespace marisonde
