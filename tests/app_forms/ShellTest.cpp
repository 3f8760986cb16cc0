#include <QAction>

#include "app/forms/Shell.h"
#include "app_forms/FormsFixture.h"

namespace marisonde {
namespace {

using simulator::Model;

class ShellTest : public FormsFixture {
  protected:
    MainForm* AfterSomeData(Model model = Model::Corvane6) {
        MainForm* const form = Sampling(model);
        Run(std::chrono::seconds(3));
        return form;
    }
    static std::string Unsaved(const std::string& model) {
        return "The graph contains unsaved data from " + model + " .  Save the data before proceeding?";
    }
    static std::string Receiving(const std::string& model) {
        return "You are receiving data from the " + model + ". Is it OK to close the files now?";
    }
    static std::string Sleep(const std::string& model) {
        return "Put the " + model + " to sleep before disconnecting?";
    }
    /// Answers the three questions of a window so that it may close: data are dropped, nothing is sent.
    void LetClose(MainForm* form) {
        Press(form, "NoButton");
        Press(form, "YesButton");
        Press(form, "NoButton");
    }
};

TEST_F(ShellTest, AWindowWithoutDataClosesAtOnce) {
    Empty()->close();
    Run(2 * kTick);
    EXPECT_TRUE(shell->Windows().empty());
    EXPECT_FALSE(app.WindowInUse(0));
}

TEST_F(ShellTest, ClosingAsksAboutDataThenFilesThenSleep) {
    MainForm* const form = AfterSomeData();
    form->close();
    EXPECT_TRUE(form->isVisible());
    EXPECT_EQ(Message(form), Unsaved("Corvane-6"));
    Press(form, "NoButton");
    EXPECT_EQ(Message(form), Receiving("Corvane-6"));
    Press(form, "YesButton");
    EXPECT_EQ(Message(form), Sleep("Corvane-6"));
    Press(form, "NoButton");
    EXPECT_TRUE(shell->Windows().empty());
}

TEST_F(ShellTest, ClosingAndExitNeverCross) {
    MainForm* const first = AfterSomeData();
    MainForm* const second = AfterSomeData();
    second->close();
    ASSERT_EQ(Message(second), Unsaved("Corvane-6"));
    shell->ExitCommand(first);
    EXPECT_FALSE(shell->Exiting()) << "the question of the second window comes first";
    Press(second, "Cancel_Button");
    shell->ExitCommand(first);
    EXPECT_TRUE(shell->Exiting());
    second->close();
    EXPECT_FALSE(second->AsksToClose());
    EXPECT_TRUE(second->isVisible());
    Press(first, "Cancel_Button");
    EXPECT_FALSE(shell->Exiting());
    EXPECT_EQ(shell->Windows().size(), 2U);
}

TEST_F(ShellTest, CancelAtAnyQuestionLeavesTheWindowOpen) {
    const std::vector<std::vector<const char*>> ways{
        {"Cancel_Button"}, {"NoButton", "NoButton"}, {"NoButton", "YesButton", "Cancel_Button"}};
    for (const auto& way : ways) {
        MainForm* const form = AfterSomeData();
        form->close();
        for (const char* button : way) Press(form, button);
        EXPECT_TRUE(form->isVisible());
        EXPECT_EQ(Open(form, "YesNoCancelForm"), nullptr);
        EXPECT_TRUE(form->Window().Link.Line().IsOpen());
        form->CloseWithoutAsking();
        Run(kTick);
    }
}

TEST_F(ShellTest, ClosingTwiceAsksOnce) {
    MainForm* const form = AfterSomeData();
    form->close();
    form->close();
    Run(4 * kTick);
    EXPECT_EQ(form->findChildren<QDialog*>("YesNoCancelForm").size(), 1);
}

TEST_F(ShellTest, EscapeIsTheRefusal) {
    MainForm* const form = AfterSomeData();
    form->close();
    QTest::keyClick(Open(form, "YesNoCancelForm"), Qt::Key_Escape);
    Run(2 * kTick);
    EXPECT_TRUE(form->isVisible());
    EXPECT_TRUE(form->Window().Files.AnyOpen());
}

TEST_F(ShellTest, AQuestionInOneWindowDoesNotHoldUpAnother) {
    MainForm* const asking = AfterSomeData();
    MainForm* const other = AfterSomeData(Model::Delph2);
    asking->close();
    ASSERT_NE(Open(asking, "YesNoCancelForm"), nullptr);
    const auto samples = [](MainForm* form) { return form->Window().Link.State.Counted.samples; };
    const auto before = std::pair{samples(asking), samples(other)};
    Run(std::chrono::seconds(5));
    EXPECT_GT(samples(other), before.second + 3);
    EXPECT_GT(samples(asking), before.first + 3) << "its own instrument is not held up either";
    EXPECT_EQ(Open(asking, "YesNoCancelForm")->windowModality(), Qt::WindowModal);
    auto* const panel = other->findChild<QWidget*>("ChannelPanel");
    const bool shown = panel->isVisible();
    other->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(other));
    QTest::keyClick(other, Qt::Key_F4);
    EXPECT_NE(panel->isVisible(), shown) << "the other window can be used";
}

TEST_F(ShellTest, ARefusalInOneOfThreeWindowsStopsTheExit) {
    MainForm* const first = AfterSomeData(Model::Corvane6);
    MainForm* const second = AfterSomeData(Model::Delph2);
    MainForm* const third = AfterSomeData(Model::XTidal);
    second->findChild<QAction*>("ExitItem")->trigger();
    // The window where Exit was chosen is asked first, then the others in their order.
    EXPECT_EQ(Message(second), Unsaved("Delph-2"));
    EXPECT_EQ(Message(first), "no YesNoCancelForm");
    LetClose(second);
    EXPECT_EQ(Message(first), Unsaved("Corvane-6"));
    Press(first, "Cancel_Button");
    EXPECT_EQ(Message(third), "no YesNoCancelForm");
    EXPECT_EQ(shell->Windows().size(), 3U);
    for (const MainForm* form : {first, second, third}) EXPECT_TRUE(form->isVisible());
}

TEST_F(ShellTest, ExitClosesAllWindowsWhenNoneRefuses) {
    app.prefs.UserHeader = "RV Tern";
    MainForm* const first = AfterSomeData(Model::Corvane6);
    Empty();
    first->findChild<QAction*>("ExitItem")->trigger();
    LetClose(first);
    Run(2 * kTick);
    EXPECT_TRUE(shell->Windows().empty());
    EXPECT_EQ(settings.GetSetting("App", "UserHeader", "-"), "RV Tern");
}

TEST_F(ShellTest, TheLastWindowSavesThePreferences) {
    app.prefs.MaxGraphPoints = 7000;
    MainForm* const first = Empty();
    MainForm* const second = Empty();
    first->close();
    Run(2 * kTick);
    EXPECT_EQ(settings.GetSetting("App", "MaxGraphPoints", "-"), "-");
    second->close();
    Run(2 * kTick);
    EXPECT_EQ(settings.GetSetting("App", "MaxGraphPoints", "-"), "7000");
    EXPECT_EQ(settings.GetSetting("Sigma", "ad400", "-"), "0.01");
    EXPECT_NE(settings.GetSetting("bbPrefs", "chi", "-"), "-");
}

TEST_F(ShellTest, SixWindowsAreAllThereAre) {
    for (int slot = 0; slot < kMaxWindows; ++slot) EXPECT_EQ(Empty()->Window().Index(), slot);
    EXPECT_EQ(shell->NewWindow(std::make_unique<ScriptedLine>()), nullptr);
    MainForm* const third = shell->Windows()[2];
    third->close();
    Run(2 * kTick);
    EXPECT_EQ(Empty()->Window().Index(), 2) << "the lowest free slot";
}

TEST_F(ShellTest, ClosingInTheMidstOfAQuestionEndsIt) {
    MainForm* const form = AfterSomeData();
    form->close();
    ASSERT_NE(Open(form, "YesNoCancelForm"), nullptr);
    form->CloseWithoutAsking();
    Run(2 * kTick);
    EXPECT_TRUE(shell->Windows().empty());
}

}  // namespace
}  // namespace marisonde
