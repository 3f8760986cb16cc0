#include <cerrno>

#include "app/FilesFixture.h"
#include "app/SaveFile.h"
#include "app/Shutdown.h"
#include "link/Commands.h"

namespace marisonde {
namespace {

using simulator::Model;

class ShutdownTest : public FilesFixture {
  protected:
    /// Runs the gate of closing with these answers, in virtual time, while the instrument's ticks go on.
    /// nullopt: it still waits.
    std::optional<bool> Close(DataWindow& window, std::deque<Choice> answers) {
        dialogs.answers = std::move(answers);
        result.reset();
        Do(window, [this, &window](Operation& operation) -> QCoro::Task<> {
            const bool closed = co_await PrepToCloseForm(operation, window);
            result = closed;
        });
        return result;
    }

    DataWindow& Sampling() {
        auto window = Simulated(Model::Corvane6, {});
        Run(*window, std::chrono::seconds(5));
        return Keep(std::move(window));
    }
    /// A window on a scripted instrument in this state.
    DataWindow& In(InstStateCode state) {
        DataWindow& window = Keep(Scripted(Model::Corvane6));
        window.Link.State.InstState = state;
        return window;
    }

    std::optional<bool> result;
};

constexpr const char* kUnsaved =
    "The graph contains unsaved data from Corvane-6 .  Save the data before proceeding?";
constexpr const char* kReceiving =
    "You are receiving data from the Corvane-6. Is it OK to close the files now?";
constexpr const char* kSleep = "Put the Corvane-6 to sleep before disconnecting?";
constexpr const char* kNotConfirmed = "The instrument did not confirm the sleep command.  Disconnect anyway?";

TEST_F(ShutdownTest, DiscardCloseAndSleep) {
    DataWindow& window = Sampling();
    SendCommandNow("STOP", window.Link);
    Run(window, std::chrono::seconds(1));
    const auto raw = window.Files.State().rawTemporary;
    EXPECT_EQ(Close(window, {Choice::Second, Choice::First}), true);
    EXPECT_EQ(Asked(), (std::vector<std::string>{kUnsaved, kSleep}));
    EXPECT_FALSE(std::filesystem::exists(raw));
    EXPECT_FALSE(window.Link.Line().IsOpen());
}

TEST_F(ShutdownTest, SamplingInstrumentThatHeedsOnlyStopDoesNotConfirm) {
    DataWindow& window = Sampling();
    EXPECT_EQ(Close(window, {Choice::Second, Choice::First, Choice::First, Choice::First}), true);
    EXPECT_EQ(Asked(), (std::vector<std::string>{kUnsaved, kReceiving, kSleep, kNotConfirmed}));
    EXPECT_FALSE(window.Link.Line().IsOpen());
}

TEST_F(ShutdownTest, ButtonsOfTheQuestions) {
    DataWindow& window = Sampling();
    Close(window, {Choice::Second, Choice::First, Choice::Third});
    ASSERT_EQ(dialogs.asked.size(), 3U);
    EXPECT_EQ(Buttons(0), "Yes|No|Cancel");
    EXPECT_EQ(Buttons(1), "Yes|Cancel|");
    EXPECT_EQ(Buttons(2), "Yes|No|Cancel");
}

TEST_F(ShutdownTest, CancelOfUnsavedDataLeavesEverythingOpen) {
    DataWindow& window = Sampling();
    EXPECT_EQ(Close(window, {Choice::Third}), false);
    EXPECT_TRUE(window.Files.AnyOpen());
    EXPECT_TRUE(window.Link.Line().IsOpen());
}

TEST_F(ShutdownTest, SavingCopiesBothFilesToTheUsersName) {
    DataWindow& window = Sampling();
    dialogs.saveBase = (folder / "cast.one").string();
    EXPECT_EQ(Close(window, {Choice::First, Choice::First, Choice::Second}), true);
    ASSERT_EQ(dialogs.proposedBases.size(), 1U);
    EXPECT_TRUE(std::filesystem::exists(folder / "cast.raw"));
    EXPECT_TRUE(std::filesystem::exists(folder / "cast.dat"));
    EXPECT_EQ(app.prefs.SavePath, folder.Path().string() + "/");
}

TEST_F(ShutdownTest, UnsavedDataOfANamedFileAreAskedAboutByItsName) {
    DataWindow& window = Sampling();
    dialogs.chosen = {{(folder / "cast").string(), 0}};
    Do(window, [&](Operation& operation) -> QCoro::Task<> { co_await SaveAsMenuCommand(operation, window); });
    Run(window, std::chrono::seconds(5));
    EXPECT_EQ(Close(window, {Choice::Third}), false);
    EXPECT_EQ(Asked(), std::vector<std::string>{"The graph contains unsaved data from Corvane-6 " +
                                                (folder / "cast.raw").string() +
                                                ".  Save the data before proceeding?"});
}

TEST_F(ShutdownTest, ErrorsOfClosingAreTold) {
    std::vector<FailingOutputFile*> made;
    DataWindow& window = Keep(Scripted(Model::Corvane6, [&made] {
        auto file = std::make_unique<FailingOutputFile>();
        made.push_back(file.get());
        return file;
    }));
    window.Files.WriteRaw("some data\r\n", clock.Steady());
    made.at(0)->flushFailsWith = ENOSPC;
    EXPECT_EQ(Close(window, {Choice::Second, Choice::Second}), true);
    EXPECT_EQ(dialogs.errors, std::vector<std::string>{"Error closing files: No space left on device"});
    EXPECT_FALSE(window.Files.AnyOpen());
}

TEST_F(ShutdownTest, WithoutFilesNobodyIsAskedAboutClosingThem) {
    DataWindow& window = Sampling();
    window.Files.CloseDataFiles(false);
    EXPECT_EQ(Close(window, {Choice::Second}), true);
    EXPECT_EQ(Asked(), std::vector<std::string>{kSleep});
}

/// Only the calibrated file has a name yet: what the instrument sent must not go with its temporary file.
TEST_F(ShutdownTest, SavingAsksForTheNameThatIsMissing) {
    DataWindow& window = Sampling();
    dialogs.chosen = {{(folder / "values").string(), 2}};
    Do(window, [&](Operation& operation) -> QCoro::Task<> { co_await SaveAsMenuCommand(operation, window); });
    ASSERT_TRUE(std::filesystem::exists(folder / "values.dat"));
    ASSERT_FALSE(std::filesystem::exists(folder / "values.raw"));
    dialogs.chosen = {{(folder / "cast").string(), 0}};
    EXPECT_EQ(Close(window, {Choice::First, Choice::First, Choice::Second}), true);
    EXPECT_TRUE(std::filesystem::exists(folder / "cast.raw"));
    EXPECT_TRUE(std::filesystem::exists(folder / "cast.dat"));
    EXPECT_EQ(dialogs.proposedBases.at(1), (folder / "values.dat").string());
}

TEST_F(ShutdownTest, WhatComesWhileTheQuestionsStandIsSavedToo) {
    DataWindow& window = Sampling();
    dialogs.saveBase = (folder / "cast").string();
    EXPECT_EQ(Close(window, {Choice::First}), std::nullopt);
    EXPECT_EQ(Asked(), (std::vector<std::string>{kUnsaved, kReceiving}));
    const auto savedFirst = TestFolder::Read(folder / "cast.raw");
    Run(window, std::chrono::minutes(5));
    EXPECT_FALSE(window.Files.FlushNow(DataFileKind::Raw));
    const auto recorded = TestFolder::Read(window.Files.State().rawTemporary);
    ASSERT_GT(recorded.size(), savedFirst.size());
    dialogs.answers = {Choice::First, Choice::Second};
    Settle();
    EXPECT_EQ(result, true);
    EXPECT_EQ(dialogs.filesAsked.size(), 1U);  // the name is known by then
    EXPECT_TRUE(TestFolder::Read(folder / "cast.raw").starts_with(recorded));
}

TEST_F(ShutdownTest, CancelledSaveLeavesEverythingOpen) {
    DataWindow& window = Sampling();
    dialogs.saveBase = "";
    EXPECT_EQ(Close(window, {Choice::First}), false);
    EXPECT_TRUE(window.Files.AnyOpen());
}

TEST_F(ShutdownTest, FailedSaveSaysWhereTheDataAreAndLeavesEverythingOpen) {
    DataWindow& window = Sampling();
    dialogs.saveBase = "/nowhere/at/all/cast.raw";
    EXPECT_EQ(Close(window, {Choice::First}), false);
    EXPECT_TRUE(window.Files.AnyOpen());
    EXPECT_EQ(dialogs.notices, std::vector<std::string>{"Error2 (No such file or directory) occurred while "
                                                        "saving /nowhere/at/all/cast.dat"});
    ASSERT_EQ(dialogs.errors.size(), 1U);
    EXPECT_NE(dialogs.errors[0].find(window.Files.State().datTemporary.string()), std::string::npos);
}

TEST_F(ShutdownTest, FilesInUseMayBeKept) {
    DataWindow& window = Sampling();
    EXPECT_EQ(Close(window, {Choice::Second, Choice::Second}), false);
    EXPECT_TRUE(window.Files.AnyOpen());
}

TEST_F(ShutdownTest, NoToSleepClosesAtOnceWithoutACommand) {
    DataWindow& window = In(InstStateCode::Stopped);
    EXPECT_EQ(Close(window, {Choice::Second}), true);
    EXPECT_EQ(Asked(), std::vector<std::string>{kSleep});
    EXPECT_EQ(port->TakeWritten(), "");
}

TEST_F(ShutdownTest, CancelOfSleepStaysConnected) {
    DataWindow& window = In(InstStateCode::Stopped);
    EXPECT_EQ(Close(window, {Choice::Third}), false);
    EXPECT_TRUE(port->IsOpen());
}

TEST_F(ShutdownTest, SleepingInstrumentIsNotAskedAbout) {
    DataWindow& window = In(InstStateCode::Sleeping);
    EXPECT_EQ(Close(window, {}), true);
    EXPECT_TRUE(dialogs.asked.empty());
}

TEST_F(ShutdownTest, WindowWithoutConnectionClosesInSilence) {
    EXPECT_EQ(Close(Empty(), {}), true);
    EXPECT_TRUE(dialogs.asked.empty());
}

TEST_F(ShutdownTest, UnconfirmedSleepIsAskedAboutAfterThreeSeconds) {
    DataWindow& window = In(InstStateCode::Stopped);
    const Millis before = clock.Steady();
    EXPECT_EQ(Close(window, {Choice::First, Choice::First}), true);
    EXPECT_EQ(Asked(), (std::vector<std::string>{kSleep, kNotConfirmed}));
    EXPECT_EQ(port->TakeWritten(), "SLEEP\r");
    const Millis taken = clock.Steady() - before;
    EXPECT_GE(taken, std::chrono::seconds(3));
    EXPECT_LE(taken, std::chrono::seconds(3) + 4 * kTick);
}

TEST_F(ShutdownTest, TheUserSeesThatTheInstrumentIsWaitedFor) {
    DataWindow& window = In(InstStateCode::Stopped);
    OperationsOf(window).Start("Disconnect", [&](Operation& operation) -> QCoro::Task<> {
        co_await DisconnectCommand(operation, window);
    });
    EXPECT_FALSE(window.Busy) << "a question is nothing to wait for";
    dialogs.answers = {Choice::First};
    Tick();
    EXPECT_TRUE(window.Busy);
    Settle(80);
    EXPECT_EQ(Asked().back(), kNotConfirmed);
    EXPECT_FALSE(window.Busy);
}

TEST_F(ShutdownTest, UnconfirmedSleepMayStayConnected) {
    for (const Choice stay : {Choice::Second, Choice::Third}) {
        DataWindow& window = In(InstStateCode::Stopped);
        EXPECT_EQ(Close(window, {Choice::First, stay}), false);
        EXPECT_TRUE(port->IsOpen());
    }
}

TEST_F(ShutdownTest, ConfirmedSleepIsNotAskedAbout) {
    DataWindow& window = In(InstStateCode::Stopped);
    port->Queue("Sleeping\r");
    EXPECT_EQ(Close(window, {Choice::First}), true);
    EXPECT_EQ(Asked(), std::vector<std::string>{kSleep});
}

TEST_F(ShutdownTest, SleepIsACommandWhoseSilenceIsCountedFromNow) {
    DataWindow& window = In(InstStateCode::Stopped);
    clock.AdvanceBy(std::chrono::seconds(10));
    const Millis before = clock.Steady();
    Close(window, {Choice::First, Choice::First});
    EXPECT_GE(window.Link.State.LastInputTime, before);
}

TEST_F(ShutdownTest, InstrumentThatFellAsleepDuringTheQuestionIsNotWoken) {
    DataWindow& window = In(InstStateCode::Stopped);
    EXPECT_EQ(Close(window, {}), std::nullopt);
    window.Link.State.InstState = InstStateCode::Sleeping;
    dialogs.answers = {Choice::First};
    Settle();
    EXPECT_EQ(result, true);
    EXPECT_EQ(Asked(), std::vector<std::string>{kSleep});
    EXPECT_EQ(port->TakeWritten(), "");
}

TEST_F(ShutdownTest, EndingTheOperationEndsItsQuestion) {
    DataWindow& window = Sampling();
    EXPECT_EQ(Close(window, {}), std::nullopt);
    OperationsOf(window).CancelAll();
    EXPECT_TRUE(OperationsOf(window).TurnUntilEnded());
    EXPECT_EQ(result, false);
    EXPECT_TRUE(window.Files.AnyOpen());
}

}  // namespace
}  // namespace marisonde
