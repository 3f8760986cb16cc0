#include "app/SaveFixture.h"
#include "app/Shutdown.h"
#include "decode/Lines.h"
#include "support/ReadOnlyFolder.h"

namespace marisonde {
namespace {

using simulator::Model;
namespace fs = std::filesystem;

using SaveFileTest = SaveFixture;

TEST_F(SaveFileTest, NothingToSave) {
    DataWindow& window = Empty();
    EXPECT_EQ(Save(window, SaveAsMenuCommand), false);
    EXPECT_EQ(Save(window, SaveFileMenuCommand), false);
    EXPECT_EQ(dialogs.notices, std::vector<std::string>(2, "No data loaded.  Cannot save any files."));
    EXPECT_TRUE(dialogs.filesAsked.empty());
}

TEST_F(SaveFileTest, RecordedDataGetTheNameAndRecordingGoesOn) {
    DataWindow& window = Sampling();
    app.prefs.SavePath = "/before/";
    EXPECT_EQ(SaveAs(window, (folder / "out/one").string()), false);  // the folder does not exist
    EXPECT_EQ(dialogs.filesAsked.at(0).path, "/before/" + window.DefaultFileName());
    fs::create_directories(folder / "out");
    EXPECT_EQ(SaveAs(window, (folder / "out/one").string()), true);
    EXPECT_EQ(app.prefs.SavePath, (folder / "out/").string());
    EXPECT_EQ(TestFolder::Names(folder / "out"), (std::set<std::string>{"one.raw", "one.dat"}));
    EXPECT_FALSE(window.Files.HasUnsavedData());
    const auto before = fs::file_size(folder / "out/one.raw");
    Run(window, std::chrono::seconds(10));
    EXPECT_TRUE(window.Files.HasUnsavedData());
    EXPECT_EQ(Save(window, SaveFileMenuCommand), true);
    EXPECT_GT(fs::file_size(folder / "out/one.raw"), before);
    EXPECT_EQ(TestFolder::Read(folder / "out/one.raw"), TestFolder::Read(window.Files.State().rawTemporary));
    EXPECT_EQ(dialogs.filesAsked.size(), 2U);
}

TEST_F(SaveFileTest, TypesNarrowWhatIsWritten) {
    DataWindow& window = Sampling();
    EXPECT_EQ(SaveAs(window, (folder / "raw only").string(), 1), true);
    EXPECT_EQ(SaveAs(window, (folder / "dat only").string(), 2), true);
    EXPECT_TRUE(fs::exists(folder / "raw only.raw"));
    EXPECT_FALSE(fs::exists(folder / "raw only.dat"));
    EXPECT_FALSE(fs::exists(folder / "dat only.raw"));
    EXPECT_TRUE(fs::exists(folder / "dat only.dat"));
}

TEST_F(SaveFileTest, CancelledDialogSavesNothing) {
    DataWindow& window = Sampling();
    EXPECT_EQ(SaveAs(window, ""), false);
    EXPECT_TRUE(window.Files.HasUnsavedData());
    EXPECT_TRUE(dialogs.notices.empty());
}

TEST_F(SaveFileTest, FailedCopyIsToldWithItsPlace) {
    DataWindow& window = Sampling();
    EXPECT_EQ(SaveAs(window, "/nowhere/one", 1), false);
    EXPECT_EQ(dialogs.notices,
              std::vector<std::string>{"Error2 (No such file or directory) occurred while saving "
                                       "/nowhere/one.raw"});
    ASSERT_EQ(dialogs.errors.size(), 1U);
    EXPECT_NE(dialogs.errors[0].find(window.Files.State().rawTemporary.string()), std::string::npos);
    EXPECT_TRUE(window.Files.AnyOpen());
}

TEST_F(SaveFileTest, FolderThatCannotBeWrittenInIsToldAndAnotherTakesTheData) {
    DataWindow& window = Sampling();
    const ReadOnlyFolder disc(folder.Path());
    if (!disc.Refuses()) GTEST_SKIP() << "nothing is refused here";
    EXPECT_EQ(SaveAs(window, (disc / "one").string(), 1), false);
    EXPECT_EQ(dialogs.notices, std::vector<std::string>{"Error13 (Permission denied) occurred while saving " +
                                                        (disc / "one.raw").string()});
    ASSERT_EQ(dialogs.errors.size(), 1U);
    EXPECT_NE(dialogs.errors[0].find(window.Files.State().rawTemporary.string()), std::string::npos);
    EXPECT_TRUE(TestFolder::Names(disc.Path()).empty());
    EXPECT_TRUE(window.Files.HasUnsavedData());
    EXPECT_EQ(SaveAs(window, (folder / "one").string(), 0), true);
    EXPECT_FALSE(window.Files.HasUnsavedData());
    EXPECT_TRUE(fs::exists(folder / "one.raw"));
}

TEST_F(SaveFileTest, WhereACopyOfTheProgramRecordsNothingIsSaved) {
    app.temporaryFolder = folder / "copies/1";
    fs::create_directories(app.temporaryFolder);
    TestFolder::Write(folder / "copies/2/0.raw", "another's");
    fs::create_directory_symlink(folder / "copies/2", folder / "shortcut");
    DataWindow& window = Sampling();
    const std::string own = (app.temporaryFolder / "0").string();
    const std::string others = (folder / "shortcut/0").string();
    dialogs.answers = {Choice::First, Choice::First};  // replace what is there
    EXPECT_EQ(SaveAs(window, own, 1), false);
    EXPECT_EQ(SaveAs(window, others, 1), false);
    const std::string reason =
        ".raw is a name that data are recorded under until they are saved.  Choose another folder.";
    EXPECT_EQ(dialogs.notices, (std::vector<std::string>{own + reason, others + reason}));
    EXPECT_EQ(TestFolder::Read(folder / "copies/2/0.raw"), "another's");
    EXPECT_TRUE(window.Files.HasUnsavedData());
    EXPECT_TRUE(window.Files.State().rawFinal.empty());
}

TEST_F(SaveFileTest, ALinkToTheRecordingIsNoCopyOfIt) {
    DataWindow& window = Sampling();
    fs::create_symlink(window.Files.State().rawTemporary, folder / "mine.raw");
    dialogs.answers = {Choice::First};
    EXPECT_EQ(SaveAs(window, (folder / "mine.raw").string(), 1), false);
    EXPECT_EQ(dialogs.notices,
              std::vector<std::string>{"Error16 (Device or resource busy) occurred while saving " +
                                       (folder / "mine.raw").string()});
    EXPECT_TRUE(window.Files.HasUnsavedData());
}

TEST_F(SaveFileTest, LongCopyLetsTheWindowLiveAndSavesWhatWasThereAtItsBegin) {
    DataWindow& window = Keep(Scripted(Model::Corvane6));
    const std::string block(1 << 20, 'x');
    for (int i = 0; i < 20; ++i) window.Files.WriteRaw(block, clock.Steady());
    dialogs.chosen = {{(folder / "long").string(), 1}};
    OperationsOf(window).Start("Test", [&](Operation& operation) -> QCoro::Task<> {
        co_await SaveAsMenuCommand(operation, window);
    });
    ASSERT_TRUE(window.SaveProgress);
    EXPECT_EQ(window.SaveTitle, "Saving Raw Data");
    EXPECT_GT(window.SaveProgress->done, 0U);
    EXPECT_LT(window.SaveProgress->done, window.SaveProgress->size);
    EXPECT_FALSE(fs::exists(folder / "long.raw"));
    port->Queue("meanwhile\r\n");
    Settle();
    EXPECT_FALSE(window.SaveProgress);
    const std::string saved = BehindHeader(TestFolder::Read(folder / "long.raw"), "[EndHeader]");
    EXPECT_EQ(saved.size(), 20 * block.size());
    EXPECT_TRUE(window.Files.HasUnsavedData());
    EXPECT_EQ(window.StatusLine, "Saved to " + folder.Path().string() + ".");
}

TEST_F(SaveFileTest, StoppedCopyLeavesNothingAndAllOpen) {
    DataWindow& window = Keep(Scripted(Model::Corvane6));
    for (int i = 0; i < 20; ++i) window.Files.WriteRaw(std::string(1 << 20, 'x'), clock.Steady());
    std::optional<bool> saved;
    dialogs.chosen = {{(folder / "long").string(), 1}};
    OperationsOf(window).Start("Test", [&](Operation& operation) -> QCoro::Task<> {
        const bool done = co_await SaveAsMenuCommand(operation, window);
        saved = done;
    });
    ASSERT_TRUE(window.SaveProgress);
    window.StopSaving = true;
    Settle();
    EXPECT_EQ(saved, false);
    EXPECT_FALSE(window.SaveProgress);
    EXPECT_EQ(window.StatusLine, "Saving was stopped.");
    EXPECT_FALSE(fs::exists(folder / "long.raw"));
    EXPECT_FALSE(fs::exists(folder / "long.raw.saving"));
    EXPECT_TRUE(window.Files.HasUnsavedData());
    EXPECT_TRUE(window.Files.AnyOpen());
    EXPECT_TRUE(dialogs.notices.empty());
    // The next save begins afresh.
    EXPECT_EQ(SaveAs(window, (folder / "long").string(), 1), true);
}

TEST_F(SaveFileTest, ClosingWaitsForTheCopy) {
    DataWindow& window = Keep(Scripted(Model::Corvane6));
    for (int i = 0; i < 20; ++i) window.Files.WriteRaw(std::string(1 << 20, 'x'), clock.Steady());
    dialogs.chosen = {{(folder / "long").string(), 1}};
    OperationsOf(window).Start("Test", [&](Operation& operation) -> QCoro::Task<> {
        co_await SaveAsMenuCommand(operation, window);
    });
    ASSERT_TRUE(window.SaveProgress);
    std::optional<bool> closed;
    OperationsOf(window).Start("Close", [&](Operation& operation) -> QCoro::Task<> {
        const bool done = co_await CloseDataFiles(operation, window, true);
        closed = done;
    });
    EXPECT_TRUE(window.Files.AnyOpen());
    Settle();
    EXPECT_EQ(closed, true);
    EXPECT_TRUE(Asked().empty());
    EXPECT_EQ(BehindHeader(TestFolder::Read(folder / "long.raw"), "[EndHeader]").size(), 20U << 20);
}

TEST_F(SaveFileTest, ConversionCanBeStoppedToo) {
    const std::string raw = RawOf(70000);
    DataWindow& window = WithCal(Model::Corvane6);
    window.Plot.MaxGraphPoints = 100000;
    StartLoad(window, {raw, "raw", InstTypeCode::Corvane6, ""});
    Settle();
    dialogs.chosen = {{(folder / "copy").string(), 2}};
    OperationsOf(window).Start("Test", [&](Operation& operation) -> QCoro::Task<> {
        co_await SaveAsMenuCommand(operation, window);
    });
    ASSERT_TRUE(window.SaveProgress);
    EXPECT_EQ(window.SaveTitle, "Saving Calibrated Data");
    EXPECT_FALSE(window.LoadProgress);
    window.StopSaving = true;
    Settle();
    EXPECT_EQ(window.StatusLine, "Saving was stopped.");
    EXPECT_FALSE(fs::exists(folder / "copy.dat"));
    EXPECT_TRUE(dialogs.notices.empty());
    EXPECT_TRUE(dialogs.errors.empty());
}

#ifdef __linux__
TEST_F(SaveFileTest, RecordingThatSomebodyRemovedBeginsAnew) {
    DataWindow& window = Sampling();
    ASSERT_EQ(SaveAs(window, (folder / "one").string()), true);
    const std::string before = TestFolder::Read(folder / "one.raw");
    const fs::path raw = window.Files.State().rawTemporary;
    fs::remove(raw);
    Run(window, std::chrono::seconds(5));
    EXPECT_FALSE(window.Files.IsOpen(DataFileKind::Raw));
    EXPECT_EQ(Save(window, SaveFileMenuCommand), false);
    EXPECT_EQ(window.StatusLine, raw.string() + " has been removed.  What comes is recorded in a new file.");
    EXPECT_TRUE(window.Files.IsOpen(DataFileKind::Raw));
    EXPECT_EQ(TestFolder::Read(raw).substr(0, 8), "[Header]");
    EXPECT_FALSE(window.CanReplot());
    Run(window, std::chrono::seconds(5));
    // What was saved before is all that is left of it: the rest gets a name of its own.
    EXPECT_EQ(SaveAs(window, (folder / "two").string()), true);
    EXPECT_EQ(TestFolder::Read(folder / "one.raw"), before);
    EXPECT_EQ(TestFolder::Read(folder / "two.raw"), TestFolder::Read(raw));
    EXPECT_NE(BehindHeader(TestFolder::Read(folder / "two.raw"), "[EndHeader]").find("*T"),
              std::string::npos);
    EXPECT_TRUE(dialogs.notices.empty());
}

/// The heading and the lines of the file that begins anew are of one mind about the columns.
TEST_F(SaveFileTest, CalibratedFileThatBeginsAnewHasTheColumnsOfItsHeading) {
    DataWindow& window = Sampling();
    app.pureWater.WriteBetaColumns = true;
    fs::remove(window.Files.State().datTemporary);
    Run(window, std::chrono::seconds(5));
    EXPECT_EQ(Save(window, SaveFileMenuCommand), false);
    Run(window, std::chrono::seconds(5));
    ASSERT_EQ(SaveAs(window, (folder / "anew").string(), 2), true);
    const std::string text = TestFolder::Read(folder / "anew.dat");
    EXPECT_NE(text.find(",beta"), std::string::npos);
    const std::string data = DataOf(folder / "anew.dat");
    const std::string line = data.substr(0, data.find("\r\n"));
    EXPECT_EQ(std::count(line.begin(), line.end(), ','),
              2 + 4 * 8);  // eight slots, each value with its comma
}

TEST_F(SaveFileTest, RecordingThatCannotBeginAnewIsTold) {
    app.temporaryFolder = folder / "temporary";
    fs::create_directory(app.temporaryFolder);
    DataWindow& window = Keep(Scripted(Model::Corvane6));
    const DataFileState files = window.Files.State();
    fs::remove_all(app.temporaryFolder);
    EXPECT_EQ(Save(window, SaveFileMenuCommand), false);
    const std::string begin = "Error 2 (No such file or directory) occured while attempting to open ";
    const std::string end = " for writing.  No new data will be saved.";
    EXPECT_EQ(dialogs.notices, (std::vector<std::string>{begin + files.rawTemporary.string() + end,
                                                         begin + files.datTemporary.string() + end}));
    EXPECT_EQ(window.StatusLine, dialogs.notices.back());
    EXPECT_FALSE(window.Files.AnyOpen());
}
#endif

TEST_F(SaveFileTest, SaveUnderANameThatIsGoneShowsWhereTheDataAre) {
    DataWindow& window = Sampling();
    fs::create_directories(folder / "stick");
    ASSERT_EQ(SaveAs(window, (folder / "stick/one").string()), true);
    fs::remove_all(folder / "stick");
    EXPECT_EQ(Save(window, SaveFileMenuCommand), false);
    ASSERT_EQ(dialogs.errors.size(), 1U);
    EXPECT_EQ(
        dialogs.errors[0],
        "Saving to \"" + (folder / "stick/one.raw").string() +
            "\" failed because of error (2)\nNo such file or directory).The data have been saved in the "
            "file \"" +
            window.Files.State().rawTemporary.string() +
            "\" in the temporary folder.  Either us \"Save As...\" to save the file to a different "
            "destination, or click on Open Temporary Folder and copy or rename the file there.  The "
            "temporary file will be deleted the next time Marisonde starts or you use the \"New File\" "
            "command.");
    EXPECT_TRUE(window.Files.AnyOpen());
}

TEST_F(SaveFileTest, RawFileIsSavedAsACopyAndAsCalibratedData) {
    const Cast cast = Record(Model::Corvane6, "cast");
    DataWindow& window = Showing(cast.raw, "raw");
    EXPECT_EQ(SaveAs(window, (folder / "copy").string()), true);
    EXPECT_EQ(dialogs.filesAsked.at(0).path, cast.raw);
    EXPECT_EQ(TestFolder::Read(folder / "copy.raw"), TestFolder::Read(cast.raw));
    EXPECT_EQ(DataOf(folder / "copy.dat"), DataOf(cast.dat));
    EXPECT_FALSE(window.LoadProgress);
}

/// A record of 15 commas cut off behind its 11th looks like another family's.
TEST_F(SaveFileTest, ALineThatIsStillComingIsNotConverted) {
    DataWindow& window = Keep(Scripted(Model::Delph2));
    window.OpenDataFiles("raw", false);
    port->Queue(lines::Record(15) + "\r\n" + lines::Record(15) + "\r\n" + lines::Record(11));
    Run(window, kTick);
    EXPECT_EQ(SaveAs(window, (folder / "copy").string()), true);
    const std::string data = DataOf(folder / "copy.dat");
    EXPECT_EQ(std::count(data.begin(), data.end(), '\n'), 2) << data;
    EXPECT_TRUE(TestFolder::Read(folder / "copy.raw").ends_with(lines::Record(11)));
}

TEST_F(SaveFileTest, RawFileUnderItsOwnNameStaysAsItIs) {
    const Cast cast = Record(Model::Corvane6, "cast");
    const std::string before = TestFolder::Read(cast.raw);
    fs::remove(cast.dat);
    DataWindow& window = Showing(cast.raw, "raw");
    dialogs.answers = {Choice::First};  // replace it
    EXPECT_EQ(SaveAs(window, cast.raw), true);
    EXPECT_EQ(TestFolder::Read(cast.raw), before);
    EXPECT_TRUE(fs::exists(cast.dat));
    EXPECT_TRUE(dialogs.notices.empty());
}

TEST_F(SaveFileTest, FailedConversionIsToldWithItsNumber) {
    const Cast cast = Record(Model::Corvane6, "cast");
    DataWindow& window = Showing(cast.raw, "raw");
    EXPECT_EQ(SaveAs(window, "/nowhere/one", 2), false);
    EXPECT_EQ(dialogs.notices, std::vector<std::string>{"Error 2 occurred while saving /nowhere/one.dat"});
    EXPECT_EQ(dialogs.errors,
              std::vector<std::string>{"Error opening /nowhere/one.dat: No such file or directory"});
}

TEST_F(SaveFileTest, CalibratedFileIsCopied) {
    const Cast cast = Record(Model::Corvane6, "cast");
    DataWindow& window = Showing(cast.dat, "dat");
    EXPECT_EQ(SaveAs(window, (folder / "copy").string()), true);
    EXPECT_EQ(dialogs.filesAsked.at(0).filters.size(), 1U);
    EXPECT_EQ(TestFolder::Read(folder / "copy.dat"), TestFolder::Read(cast.dat));
    EXPECT_EQ(SaveAs(window, "/nowhere/one"), false);
    EXPECT_EQ(dialogs.notices,
              std::vector<std::string>{"Error2 (No such file or directory) occurred while saving "
                                       "/nowhere/one.dat"});
}

TEST_F(SaveFileTest, OpenedFileHasNothingToSave) {
    const Cast cast = Record(Model::Corvane6, "cast");
    DataWindow& window = Showing(cast.raw, "raw");
    EXPECT_EQ(Save(window, SaveFileMenuCommand), true);
    EXPECT_TRUE(dialogs.filesAsked.empty());
    EXPECT_NE(window.StatusLine.find("cast.raw is as it was"), std::string::npos);
}

}  // namespace
}  // namespace marisonde
