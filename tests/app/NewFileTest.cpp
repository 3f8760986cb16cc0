#include "app/NewFile.h"
#include "app/SaveFixture.h"

namespace marisonde {
namespace {

using simulator::Model;
namespace fs = std::filesystem;

class NewFileTest : public SaveFixture {
  protected:
    void New(DataWindow& window, std::deque<Choice> answers = {}) {
        dialogs.answers = std::move(answers);
        Do(window, [&](Operation& operation) { return NewFileCommand(operation, window); });
    }
};

TEST_F(NewFileTest, ConnectedWindowBeginsNewFiles) {
    DataWindow& window = Sampling();
    const int before = window.Plot.PlotIndex();
    ASSERT_GT(before, 5);
    // Do not save the data before, and close their files while data come.
    New(window, {Choice::Second, Choice::First});
    EXPECT_TRUE(window.Files.AnyOpen());
    EXPECT_LT(window.Plot.PlotIndex(), before);
}

TEST_F(NewFileTest, WithoutACalibrationThereIsNoCalibratedFile) {
    DataWindow& window = Keep(Scripted(Model::Corvane6));
    window.Link.State.CalReady = false;
    New(window);
    EXPECT_TRUE(window.Files.IsOpen(DataFileKind::Raw));
    EXPECT_FALSE(window.Files.IsOpen(DataFileKind::Dat));
}

TEST_F(NewFileTest, RefusedCloseKeepsTheFiles) {
    DataWindow& window = Sampling();
    const int before = window.Plot.PlotIndex();
    New(window, {Choice::Third});
    EXPECT_GE(window.Plot.PlotIndex(), before);
    EXPECT_TRUE(window.Files.HasUnsavedData());
}

TEST_F(NewFileTest, WithoutAConnectionOneIsAskedFor) {
    DataWindow& window = WithCal(Model::Corvane6);
    std::function<void()> closed;
    window.Link.ShowConnectForm = [&](std::function<void()> whenClosed) { closed = std::move(whenClosed); };
    New(window);
    ASSERT_TRUE(closed);
    closed();  // the user has cancelled it
    Settle();
    EXPECT_FALSE(window.Files.AnyOpen());
    New(window);
    EXPECT_EQ(window.OpenWithoutQuery(1, 19200, InstTypeCode::Corvane6), "");
    closed();
    Settle();
    EXPECT_TRUE(window.Files.IsOpen(DataFileKind::Raw));
    EXPECT_TRUE(window.Files.IsOpen(DataFileKind::Dat));
}

TEST_F(NewFileTest, OpenedFileGivesWayToNewData) {
    const Cast cast = Record(Model::Corvane6, "cast");
    DataWindow& window = Showing(cast.raw, "raw");
    EXPECT_EQ(window.OpenWithoutQuery(1, 19200, InstTypeCode::Corvane6), "");
    New(window);
    EXPECT_FALSE(window.Stored.IsShown());
    EXPECT_EQ(window.Plot.PlotIndex(), 1);
    EXPECT_TRUE(fs::exists(cast.raw));
}

TEST_F(NewFileTest, FilesThatCannotBeBegunAreToldInTheStatusLineToo) {
    app.temporaryFolder = folder / "nowhere";
    DataWindow& window = Keep(Scripted(Model::Corvane6));
    const std::string begin = "Error opening " + (folder / "nowhere/0").string();
    EXPECT_EQ(dialogs.errors, (std::vector<std::string>{begin + ".raw: No such file or directory.",
                                                        begin + ".dat: No such file or directory."}));
    EXPECT_EQ(window.StatusLine, dialogs.errors.back());
}

TEST_F(NewFileTest, NamesAreAskedForWhenTheUserWantsIt) {
    DataWindow& window = Keep(Scripted(Model::Corvane6));
    int asked = 0;
    window.OnFilesToName = [&] { ++asked; };
    window.OpenDataFiles("raw", true);
    EXPECT_EQ(asked, 0);
    app.prefs.NameFilesOnOpen = true;
    window.OpenDataFiles("rmu", true);
    EXPECT_EQ(asked, 0);
    window.OpenDataFiles("raw", true, (folder / "named").string());
    EXPECT_EQ(asked, 0);
    window.OpenDataFiles("raw", true);
    EXPECT_EQ(asked, 1);
    window.OpenDataFiles("", true);
    EXPECT_EQ(asked, 2);
}

TEST_F(NewFileTest, NamedFilesAreSavedWithoutAsking) {
    DataWindow& window = Sampling();
    app.prefs.SavePath = "/before/";
    dialogs.chosen = {{(folder / "cast one").string(), 0}};
    Do(window, [&](Operation& operation) { return NameFilesCommand(operation, window); });
    EXPECT_EQ(window.Files.State().rawFinal, folder / "cast one.raw");
    EXPECT_EQ(window.Files.State().datFinal, folder / "cast one.dat");
    EXPECT_FALSE(window.Files.State().stillToBeNamed);
    EXPECT_FALSE(fs::exists(folder / "cast one.raw"));
    EXPECT_EQ(app.prefs.SavePath, folder.Path().string() + "/");
    EXPECT_EQ(Save(window, SaveFileMenuCommand), true);
    EXPECT_TRUE(fs::exists(folder / "cast one.raw"));
    EXPECT_TRUE(fs::exists(folder / "cast one.dat"));
    EXPECT_EQ(dialogs.filesAsked.size(), 1U);
}

TEST_F(NewFileTest, NamingDoesNotUndoASaveMadeMeanwhile) {
    DataWindow& window = Sampling();
    TestFolder::Write(folder / "cast.raw", "older");
    dialogs.chosen = {{(folder / "cast").string(), 0}};
    Do(window, [&](Operation& operation) { return NameFilesCommand(operation, window); });
    ASSERT_EQ(dialogs.asked.size(), 1U);  // whether to replace the older one
    ASSERT_FALSE(window.Files.SaveCopy(DataFileKind::Raw, folder / "other.raw"));
    dialogs.answers = {Choice::First};
    Settle();
    EXPECT_EQ(window.Files.State().rawFinal, folder / "other.raw");
    EXPECT_EQ(TestFolder::Read(folder / "cast.raw"), "older");
}

TEST_F(NewFileTest, CancelledNamingLeavesThemUnnamed) {
    DataWindow& window = Sampling();
    dialogs.chosen = {{"", 0}};
    Do(window, [&](Operation& operation) { return NameFilesCommand(operation, window); });
    EXPECT_TRUE(window.Files.State().stillToBeNamed);
    EXPECT_TRUE(window.Files.AnyOpen());
}

}  // namespace
}  // namespace marisonde
