#include "app/LoadStored.h"
#include "app/OpenFileFixture.h"
#include "app/PreferencesEntry.h"
#include "app/Shutdown.h"
#include "support/ReadOnlyFolder.h"

namespace marisonde {
namespace {

using simulator::Model;
namespace fs = std::filesystem;

/// How a stored file is read into a window: in groups, whatever its lines are like, whatever becomes of it
/// meanwhile.
class StoredFileTest : public OpenFileFixture {
  protected:
    /// A window that has begun to read this file, which takes more than one slice.
    DataWindow& Loading(const std::string& raw) {
        DataWindow& window = WithCal(Model::Corvane6);
        window.Plot.MaxGraphPoints = 100000;
        StartLoad(window, {raw, "raw", InstTypeCode::Corvane6, ""});
        EXPECT_TRUE(window.LoadProgress);
        return window;
    }
    std::optional<bool> Closed(DataWindow& window) {
        std::optional<bool> closed;
        Do(window, [&](Operation& operation) -> QCoro::Task<> {
            const bool done = co_await CloseDataFiles(operation, window, true);
            closed = done;
        });
        return closed;
    }
};

TEST_F(StoredFileTest, ExactlyAsManyPointsAsFitAskNothing) {
    const std::string raw = RawOf(1000);
    DataWindow& window = WithCal(Model::Corvane6);
    window.Plot.MaxGraphPoints = 1000;
    OpenByMenu(window, raw);
    EXPECT_TRUE(Asked().empty());
    EXPECT_EQ(window.Plot.PlotIndex(), 1001);
    EXPECT_EQ(window.Chart.ChartGroups(1).LastPoint(), 1000);
    EXPECT_EQ(window.StatusLine, "many.raw: 1000 points");
}

TEST_F(StoredFileTest, StopAtTheFirstGroupKeepsItAndTheFile) {
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

TEST_F(StoredFileTest, NextLeavesOnlyTheLastGroup) {
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

TEST_F(StoredFileTest, CalibratedFileBringsModelAndNames) {
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

TEST_F(StoredFileTest, ScaleOfAnOpenedFileFollowsWhereItsFlagsSay) {
    const Cast cast = Record(Model::Corvane6, "cast");
    DataWindow& window = WithCal(Model::Corvane6);
    const ChartAxis& x = window.Chart.Axes(AxisName::X);
    const ChartAxis& y = window.Chart.Axes(AxisName::Y);
    SetAxisRange(window.Chart, AxisName::X, -50, 500);
    SetAxisRange(window.Chart, AxisName::Y, -3, 9);
    window.Plot.UpdateCurrentPlotInfo();
    window.Plot.AutoTimeMin = false;
    window.Plot.AutoDataMax = false;
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(x.Min(), -50);
    EXPECT_LT(x.Max(), 500);
    EXPECT_GE(x.Max(), 0.9) << "nearly a minute of samples";
    EXPECT_GT(y.Min(), -3);
    EXPECT_EQ(y.Max(), 9);
    EXPECT_EQ(window.Plot.PrevTimeMax, 500);
    EXPECT_EQ(window.Plot.PrevTimeMin, 0) << "it did not follow, so that it was not stored";
    EXPECT_EQ(window.Plot.CurrentTimeMax, x.Max());
    // Read again, the file leaves the scale that its user has made meanwhile.
    window.Plot.Z_Out_Button_Click();
    const double zoomedOut = x.Max();
    StartReload(window);
    Settle();
    EXPECT_EQ(x.Max(), zoomedOut);
}

TEST_F(StoredFileTest, ClosedFileLeavesNothingToTheNext) {
    DataWindow& window = Empty();
    OpenByMenu(window, DatOf(3));
    ASSERT_TRUE(window.Link.State.HasSample);
    EXPECT_EQ(Closed(window), true);
    EXPECT_FALSE(window.Link.State.HasSample);
    EXPECT_EQ(window.Plot.PlotIndex(), 1);
    EXPECT_EQ(window.Title(), "No connection - Marisonde");
    TestFolder::Write(folder / "bare.dat",
                      "[Header]\r\nFileType=dat\r\nDeviceType=Fathom-2\r\n[Data]\r\n40001,1,2,3,20\r\n");
    OpenByMenu(window, (folder / "bare.dat").string());
    EXPECT_EQ(held.size(), 1U);
    EXPECT_EQ(window.Link.CalData.Channel(0).name, "");
}

TEST_F(StoredFileTest, FileClosedWhileItIsReadSaysNothingMore) {
    DataWindow& window = Loading(RawOf(90000));
    EXPECT_EQ(Closed(window), true);
    EXPECT_FALSE(window.LoadProgress);
    EXPECT_EQ(window.StatusLine, "");
    EXPECT_EQ(window.Plot.PlotIndex(), 1);
}

TEST_F(StoredFileTest, CalibratedFileOfTheSameModelKeepsTheCalibration) {
    const Cast cast = Record(Model::LTidal, "cast");
    DataWindow& window = WithCal(Model::LTidal);
    OpenByMenu(window, cast.dat);
    EXPECT_TRUE(window.Link.State.CalReady);
    EXPECT_NE(window.Link.CalData.Channel(0).Mu, 0);
    EXPECT_TRUE(Asked().empty());
    for (std::size_t box = 0; box < 3; ++box)
        EXPECT_NE(window.Plot.Readouts().DataBox[box].View(), kNoData) << box;
}

TEST_F(StoredFileTest, CalibratedFileOfAnLTidalBringsItsVisibility) {
    TestFolder::Write(folder / "l.dat",
                      "[Header]\r\nFileType=dat\r\nDeviceType=l-Tidal\r\n[Data]\r\n"
                      "40001,1,0.01,0.02,0.5,0.3\r\n40002,2,0.01,0.02,0,0.3\r\n");
    app.prefs.OrcaX = 10;
    DataWindow& window = Empty();
    OpenByMenu(window, (folder / "l.dat").string());
    const ChartGroup& group = window.Chart.ChartGroups(1);
    ASSERT_EQ(group.LastPoint(), 2);
    EXPECT_NEAR(group.Y(3, 1), 4.60517, 0.00001);  // ln 10 / 0.5
    EXPECT_EQ(group.Y(3, 2), 1E+308);
    EXPECT_EQ(group.Display(3), SeriesDisplay::Kept);
    EXPECT_LT(window.Chart.Axes(AxisName::Y).Max(), 1);
}

TEST_F(StoredFileTest, FileWithoutHeaderLoadsByItsLines) {
    const Cast cast = Record(Model::Corvane6, "cast");
    const std::string data = BehindHeader(TestFolder::Read(cast.raw), "[EndHeader]");
    TestFolder::Write(folder / "bare.raw", data);
    DataWindow& window = WithCal(Model::Corvane6);
    OpenByMenu(window, (folder / "bare.raw").string());
    EXPECT_EQ(PointsOf(window), PointsOf(*cast.live));
}

TEST_F(StoredFileTest, LinesPassedOverAreToldWithTheirReasons) {
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

TEST_F(StoredFileTest, AnyLineEndAndAnyNameWillDo) {
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

TEST_F(StoredFileTest, OpeningNeverAltersTheSource) {
    const Cast cast = Record(Model::Corvane6, "cast");
    const std::string before = TestFolder::Read(cast.raw);
    const auto written = fs::last_write_time(cast.raw);
    DataWindow& window = WithCal(Model::Corvane6);
    OpenByMenu(window, cast.raw);
    EXPECT_EQ(TestFolder::Read(cast.raw), before);
    EXPECT_EQ(fs::last_write_time(cast.raw), written);
}

TEST_F(StoredFileTest, WindowShowsAFileWithoutTakingLiveSamples) {
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

TEST_F(StoredFileTest, AnotherLimitOfPointsHoldsForAFileThatIsBeingRead) {
    DataWindow& window = Loading(RawOf(70000));
    PreferencesEntry entry = EntryOf(app.prefs);
    entry.MaxGraphPoints = "1000";
    dialogs.answers = {Choice::Second};
    TakePreferences(app, entry);
    Settle();
    ASSERT_EQ(dialogs.asked.size(), 1U);
    EXPECT_EQ(dialogs.asked[0].message, NextGroupQuestion(1000, true).message);
    EXPECT_EQ(window.StatusLine, "many.raw: more points follow.  1000 points");
    EXPECT_EQ(window.Chart.ChartGroups(1).LastPoint(), 1000);
}

TEST_F(StoredFileTest, StoppingALoadKeepsWhatWasRead) {
    const std::string raw = RawOf(90000);
    DataWindow& window = Loading(raw);
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

TEST_F(StoredFileTest, FileThatGrowsWhileItIsReadIsReadToItsEnd) {
    const std::string raw = RawOf(70000);
    DataWindow& window = Loading(raw);
    const std::string data = BehindHeader(TestFolder::Read(raw), "[EndHeader]");
    std::ofstream(raw, std::ios::binary | std::ios::app) << data.substr(0, 2 * data.find("*T", 1));
    Settle();
    EXPECT_EQ(window.Chart.ChartGroups(1).LastPoint(), 70002);
}

TEST_F(StoredFileTest, FileThatVanishesWhileItIsReadIsStillRead) {
    const std::string raw = RawOf(70000);
    DataWindow& window = Loading(raw);
    fs::remove(raw);
    Settle();
    EXPECT_FALSE(window.LoadProgress);
    EXPECT_EQ(window.Chart.ChartGroups(1).LastPoint(), 70000);
    EXPECT_EQ(window.StatusLine, "many.raw: 70000 points");
}

TEST_F(StoredFileTest, FileOnADiscThatCannotBeWrittenIsRead) {
    const Cast cast = Record(Model::Corvane6, "cast");
    DataWindow& window = WithCal(Model::Corvane6);
    ReadOnlyFolder disc(folder.Path());
    if (!disc.Refuses()) GTEST_SKIP() << "nothing is refused here";
    disc.Fill([&] { fs::copy_file(cast.raw, disc / "cast.raw"); });
    OpenByMenu(window, (disc / "cast.raw").string());
    EXPECT_EQ(PointsOf(window), PointsOf(*cast.live));
    EXPECT_EQ(window.Stored.path, disc / "cast.raw");
}

TEST_F(StoredFileTest, FileThatMayNotBeReadIsTold) {
    const Cast cast = Record(Model::Corvane6, "cast");
    DataWindow& window = WithCal(Model::Corvane6);
    fs::permissions(cast.raw, fs::perms::none);
    const ReadOnlyFolder disc(folder.Path());  // no superuser reads it
    if (!disc.Refuses()) GTEST_SKIP() << "nothing is refused here";
    StartLoad(window, {cast.raw, "raw", InstTypeCode::Corvane6, ""});
    Settle();
    EXPECT_EQ(window.StatusLine, "Error opening " + cast.raw + ": Permission denied.");
    EXPECT_EQ(dialogs.errors, std::vector<std::string>{window.StatusLine});
    EXPECT_FALSE(window.Stored.IsShown());
}

TEST_F(StoredFileTest, FileThatIsGoneLeavesTheWindowAsItWas) {
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
    EXPECT_EQ(window.StatusLine, dialogs.errors[0]);
}

}  // namespace
}  // namespace marisonde
