#include "app/Shutdown.h"
#include "app/WindowFixture.h"
#include "link/Commands.h"

namespace marisonde {
namespace {

using simulator::Model;

class ShutdownTest : public WindowFixture {
  protected:
    ShutdownTest()
        : pump(clock), operations(pump, [](const std::string&, const std::string& why) { FAIL() << why; }) {}

    /// Runs the gate of closing with these answers, in virtual time, while the instrument's ticks go on.
    /// nullopt: it still waits.
    std::optional<bool> Close(DataWindow& window, std::deque<Choice> answers) {
        dialogs.answers = std::move(answers);
        result.reset();
        operations.Start("Close", [this, &window](Operation& operation) -> QCoro::Task<> {
            const bool closed = co_await PrepToCloseForm(operation, window);
            result = closed;
        });
        for (int tick = 0; tick < 200 && !result; ++tick) {
            Run(window, kTick);
            pump.ResumeReady();
        }
        return result;
    }

    std::unique_ptr<DataWindow> Sampling() {
        auto window = Simulated(Model::Corvane6, {});
        Run(*window, std::chrono::seconds(5));
        return window;
    }

    std::vector<std::string> Asked() const {
        std::vector<std::string> texts;
        for (const Question& question : dialogs.asked) texts.push_back(question.message);
        return texts;
    }

    Pump pump;
    std::optional<bool> result;
    Operations operations;
};

constexpr const char* kUnsaved =
    "The graph contains unsaved data from Corvane-6 .  Save the data before proceeding?";
constexpr const char* kReceiving =
    "You are receiving data from the Corvane-6. Is it OK to close the files now?";
constexpr const char* kSleep = "Put the Corvane-6 to sleep before disconnecting?";
constexpr const char* kNotConfirmed = "The instrument did not confirm the sleep command.  Disconnect anyway?";

TEST_F(ShutdownTest, DiscardCloseAndSleep) {
    const auto window = Sampling();
    SendCommandNow("STOP", window->Link);
    Run(*window, std::chrono::seconds(1));
    const auto raw = window->Files.State().rawTemporary;
    EXPECT_EQ(Close(*window, {Choice::Second, Choice::First}), true);
    EXPECT_EQ(Asked(), (std::vector<std::string>{kUnsaved, kSleep}));
    EXPECT_FALSE(std::filesystem::exists(raw));
    EXPECT_FALSE(window->Link.Line().IsOpen());
}

TEST_F(ShutdownTest, SamplingInstrumentThatHeedsOnlyStopDoesNotConfirm) {
    const auto window = Sampling();
    EXPECT_EQ(Close(*window, {Choice::Second, Choice::First, Choice::First, Choice::First}), true);
    EXPECT_EQ(Asked(), (std::vector<std::string>{kUnsaved, kReceiving, kSleep, kNotConfirmed}));
    EXPECT_FALSE(window->Link.Line().IsOpen());
}

TEST_F(ShutdownTest, ButtonsOfTheQuestions) {
    const auto window = Sampling();
    Close(*window, {Choice::Second, Choice::First, Choice::Third});
    ASSERT_EQ(dialogs.asked.size(), 3U);
    EXPECT_EQ(dialogs.asked[0].first + "|" + dialogs.asked[0].second + "|" + dialogs.asked[0].third,
              "Yes|No|Cancel");
    EXPECT_EQ(dialogs.asked[1].first + "|" + dialogs.asked[1].second + "|" + dialogs.asked[1].third,
              "Yes|Cancel|");
    EXPECT_EQ(dialogs.asked[2].first + "|" + dialogs.asked[2].second + "|" + dialogs.asked[2].third,
              "Yes|No|Cancel");
}

TEST_F(ShutdownTest, CancelOfUnsavedDataLeavesEverythingOpen) {
    const auto window = Sampling();
    EXPECT_EQ(Close(*window, {Choice::Third}), false);
    EXPECT_TRUE(window->Files.AnyOpen());
    EXPECT_TRUE(window->Link.Line().IsOpen());
}

TEST_F(ShutdownTest, SavingCopiesBothFilesToTheUsersName) {
    const auto window = Sampling();
    dialogs.saveBase = (folder / "cast.one").string();
    EXPECT_EQ(Close(*window, {Choice::First, Choice::First, Choice::Second}), true);
    ASSERT_EQ(dialogs.proposedBases.size(), 1U);
    EXPECT_TRUE(std::filesystem::exists(folder / "cast.raw"));
    EXPECT_TRUE(std::filesystem::exists(folder / "cast.dat"));
    EXPECT_EQ(app.prefs.SavePath, folder.Path().string() + "/");
}

TEST_F(ShutdownTest, CancelledSaveLeavesEverythingOpen) {
    const auto window = Sampling();
    dialogs.saveBase = "";
    EXPECT_EQ(Close(*window, {Choice::First}), false);
    EXPECT_TRUE(window->Files.AnyOpen());
}

TEST_F(ShutdownTest, FailedSaveSaysWhereTheDataAreAndLeavesEverythingOpen) {
    const auto window = Sampling();
    dialogs.saveBase = "/nowhere/at/all/cast.raw";
    EXPECT_EQ(Close(*window, {Choice::First}), false);
    EXPECT_TRUE(window->Files.AnyOpen());
    EXPECT_EQ(dialogs.notices, std::vector<std::string>{"Error2 (No such file or directory) occurred while "
                                                        "saving /nowhere/at/all/cast.dat"});
    ASSERT_EQ(dialogs.errors.size(), 1U);
    EXPECT_NE(dialogs.errors[0].find(window->Files.State().datTemporary.string()), std::string::npos);
}

TEST_F(ShutdownTest, FilesInUseMayBeKept) {
    const auto window = Sampling();
    EXPECT_EQ(Close(*window, {Choice::Second, Choice::Second}), false);
    EXPECT_TRUE(window->Files.AnyOpen());
}

TEST_F(ShutdownTest, NoToSleepClosesAtOnceWithoutACommand) {
    const auto window = Scripted(Model::Corvane6);
    window->Link.State.InstState = InstStateCode::Stopped;
    EXPECT_EQ(Close(*window, {Choice::Second}), true);
    EXPECT_EQ(Asked(), std::vector<std::string>{kSleep});
    EXPECT_EQ(port->TakeWritten(), "");
}

TEST_F(ShutdownTest, CancelOfSleepStaysConnected) {
    const auto window = Scripted(Model::Corvane6);
    window->Link.State.InstState = InstStateCode::Stopped;
    EXPECT_EQ(Close(*window, {Choice::Third}), false);
    EXPECT_TRUE(port->IsOpen());
}

TEST_F(ShutdownTest, SleepingInstrumentIsNotAskedAbout) {
    const auto window = Scripted(Model::Corvane6);
    window->Link.State.InstState = InstStateCode::Sleeping;
    EXPECT_EQ(Close(*window, {}), true);
    EXPECT_TRUE(dialogs.asked.empty());
}

TEST_F(ShutdownTest, WindowWithoutConnectionClosesInSilence) {
    DataWindow window(app, dialogs, std::make_unique<ScriptedLine>());
    EXPECT_EQ(Close(window, {}), true);
    EXPECT_TRUE(dialogs.asked.empty());
}

TEST_F(ShutdownTest, UnconfirmedSleepIsAskedAboutAfterThreeSeconds) {
    const auto window = Scripted(Model::Corvane6);
    window->Link.State.InstState = InstStateCode::Stopped;
    const Millis before = clock.Steady();
    EXPECT_EQ(Close(*window, {Choice::First, Choice::First}), true);
    EXPECT_EQ(Asked(), (std::vector<std::string>{kSleep, kNotConfirmed}));
    EXPECT_EQ(port->TakeWritten(), "SLEEP\r");
    const Millis taken = clock.Steady() - before;
    EXPECT_GE(taken, std::chrono::seconds(3));
    EXPECT_LE(taken, std::chrono::seconds(3) + 4 * kTick);
}

TEST_F(ShutdownTest, TheUserSeesThatTheInstrumentIsWaitedFor) {
    const auto window = Scripted(Model::Corvane6);
    window->Link.State.InstState = InstStateCode::Stopped;
    operations.Start("Disconnect", [&](Operation& operation) -> QCoro::Task<> {
        co_await DisconnectCommand(operation, *window);
    });
    EXPECT_FALSE(window->Busy) << "a question is nothing to wait for";
    dialogs.answers = {Choice::First};
    const auto turn = [&](Millis time) {
        for (Millis passed{0}; passed < time; passed += kTick) {
            Run(*window, kTick);
            pump.ResumeReady();
        }
    };
    turn(kTick);
    EXPECT_TRUE(window->Busy);
    turn(std::chrono::seconds(4));
    EXPECT_EQ(Asked().back(), kNotConfirmed);
    EXPECT_FALSE(window->Busy);
}

TEST_F(ShutdownTest, UnconfirmedSleepMayStayConnected) {
    for (const Choice stay : {Choice::Second, Choice::Third}) {
        const auto window = Scripted(Model::Corvane6);
        window->Link.State.InstState = InstStateCode::Stopped;
        EXPECT_EQ(Close(*window, {Choice::First, stay}), false);
        EXPECT_TRUE(port->IsOpen());
    }
}

TEST_F(ShutdownTest, ConfirmedSleepIsNotAskedAbout) {
    const auto window = Scripted(Model::Corvane6);
    window->Link.State.InstState = InstStateCode::Stopped;
    port->Queue("Sleeping\r");
    EXPECT_EQ(Close(*window, {Choice::First}), true);
    EXPECT_EQ(Asked(), std::vector<std::string>{kSleep});
}

TEST_F(ShutdownTest, SleepIsACommandWhoseSilenceIsCountedFromNow) {
    const auto window = Scripted(Model::Corvane6);
    window->Link.State.InstState = InstStateCode::Stopped;
    clock.AdvanceBy(std::chrono::seconds(10));
    const Millis before = clock.Steady();
    Close(*window, {Choice::First, Choice::First});
    EXPECT_GE(window->Link.State.LastInputTime, before);
}

TEST_F(ShutdownTest, InstrumentThatFellAsleepDuringTheQuestionIsNotWoken) {
    const auto window = Scripted(Model::Corvane6);
    window->Link.State.InstState = InstStateCode::Stopped;
    EXPECT_EQ(Close(*window, {}), std::nullopt);
    window->Link.State.InstState = InstStateCode::Sleeping;
    dialogs.answers = {Choice::First};
    for (int tick = 0; tick < 5; ++tick) {
        Run(*window, kTick);
        pump.ResumeReady();
    }
    EXPECT_EQ(result, true);
    EXPECT_EQ(Asked(), std::vector<std::string>{kSleep});
    EXPECT_EQ(port->TakeWritten(), "");
}

TEST_F(ShutdownTest, EndingTheOperationEndsItsQuestion) {
    const auto window = Sampling();
    EXPECT_EQ(Close(*window, {}), std::nullopt);
    operations.CancelAll();
    EXPECT_TRUE(operations.TurnUntilEnded());
    EXPECT_EQ(result, false);
    EXPECT_TRUE(window->Files.AnyOpen());
}

}  // namespace
}  // namespace marisonde
