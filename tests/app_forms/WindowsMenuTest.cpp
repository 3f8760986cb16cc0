#include <QAction>
#include <QMenu>
#include <QPushButton>

#include "app/forms/NoticeStrip.h"
#include "app/forms/ShowStartNotices.h"
#include "app_forms/Browser.h"
#include "app_forms/FormsFixture.h"
#include "common/Version.h"
#include "link/SimulatedPorts.h"

namespace marisonde {
namespace {

class WindowsMenuTest : public FormsFixture {
  protected:
    static QStringList Entries(const MainForm* form) {
        QStringList texts;
        for (const QAction* action : form->findChild<QMenu*>("Window_menu")->actions())
            if (action->objectName().startsWith("WindowItem"))
                texts.push_back((action->isChecked() ? "*" : "") + action->text());
        return texts;
    }
    static QAction* Entry(const MainForm* form, int index) {
        return form->findChild<QAction*>(QString("WindowItem(%1)").arg(index));
    }
};

TEST_F(WindowsMenuTest, SixWindowsAllShowTheSameList) {
    for (int i = 0; i < kMaxWindows; ++i) Empty();
    for (const MainForm* form : shell->Windows()) {
        QStringList expected;
        for (int i = 0; i < kMaxWindows; ++i)
            expected.push_back(QString("%1&%2 No connection")
                                   .arg(i == const_cast<MainForm*>(form)->Window().Index() ? "*" : "")
                                   .arg(i + 1));
        EXPECT_EQ(Entries(form), expected);
    }
    shell->Windows()[1]->close();
    Run(2 * kTick);
    EXPECT_EQ(Entries(shell->Windows()[0]).size(), 5);
}

TEST_F(WindowsMenuTest, AnEntryIsCalledAsItsWindow) {
    const MainForm* const first = Empty();
    Sampling();
    Run(2 * kTick);
    EXPECT_EQ(Entries(first), QStringList({"*&1 No connection", "&2 untitled1"}));
}

TEST_F(WindowsMenuTest, ChoosingAnEntryRaisesItsWindow) {
    const MainForm* const first = Empty();
    MainForm* const second = Empty();
    second->showMinimized();
    Entry(first, 1)->trigger();
    EXPECT_FALSE(second->isMinimized());
    EXPECT_TRUE(QTest::qWaitForWindowActive(second));
    EXPECT_FALSE(Entry(first, 1)->isChecked());
    EXPECT_TRUE(Entry(first, 0)->isChecked());
}

TEST_F(WindowsMenuTest, TheKeysOfTheWindowsAreTheirNumbers) {
    MainForm* const first = Empty();
    MainForm* const second = Empty();
    first->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(first));
    QTest::keyClick(first, Qt::Key_2, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitForWindowActive(second));
    QTest::keyClick(second, Qt::Key_1, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitForWindowActive(first));
}

TEST_F(WindowsMenuTest, AChildIsListedWhileItIsOpen) {
    MainForm* const form = Empty();
    bool open = true;
    int shown = 0;
    form->Window().Children.push_back({"Term",
                                       [] { return std::string("No connection Terminal - Marisonde"); },
                                       [&open] { return open; }, [&shown] { ++shown; }});
    auto* const menu = form->findChild<QMenu*>("Window_menu");
    QMetaObject::invokeMethod(menu, "aboutToShow");
    EXPECT_EQ(Entries(form), QStringList({"*&1 No connection", "   No connection Terminal"}));
    EXPECT_EQ(Entry(form, 1)->data().toString(), "Term");
    Entry(form, 1)->trigger();
    EXPECT_EQ(shown, 1);
    open = false;
    QMetaObject::invokeMethod(menu, "aboutToShow");
    EXPECT_EQ(Entries(form).size(), 1);
}

TEST_F(WindowsMenuTest, NewWindowUpToSix) {
    SimulatedPorts ports{clock};
    app.ports = &ports;
    MainForm* const form = Empty();
    auto* const item = form->findChild<QAction*>("NewWindowItem");
    for (std::size_t windows = 1; windows < kMaxWindows; ++windows) {
        item->trigger();
        ASSERT_EQ(shell->Windows().size(), windows + 1);
        EXPECT_TRUE(shell->Windows().back()->isVisible());
    }
    EXPECT_EQ(Message(form, "ErrorForm"), "no ErrorForm");
    item->trigger();
    EXPECT_EQ(shell->Windows().size(), 6U);
    EXPECT_EQ(Message(form, "ErrorForm"), "Cannot open more than 6 windows.");
}

// --- notices of the start -----------------------------------------------------------------------------

class StartNoticesTest : public FormsFixture {
  protected:
    static QWidget* Strip(const MainForm* form) { return form->findChild<QWidget*>("NoticeStrip"); }
    static std::string Notice(const MainForm* form) {
        return Strip(form)->isVisible() ? Strip(form)->findChild<QLabel*>("Message")->text().toStdString()
                                        : "none";
    }
    static void Click(const MainForm* form, const char* button) {
        auto* const found = Strip(form)->findChild<QPushButton*>(button);
        ASSERT_NE(found, nullptr) << button;
        QTest::mouseClick(found, Qt::LeftButton);
        Settle();
    }
    std::string Seen() const { return settings.GetSetting("App", kVersion, "-"); }
};

TEST_F(StartNoticesTest, NoticesComeOneAfterTheOtherAndHoldUpNothing) {
    MainForm* const form = Sampling();
    StartFacts facts;
    facts.newUser = true;
    facts.problems = {"Data were recovered."};
    facts.offerReleaseNotes = false;
    ShowStartNotices(*form, settings, StartNotices(facts, settings));
    EXPECT_EQ(Notice(form), NewUserNotice());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    const auto before = form->Window().Link.State.Counted.samples;
    Run(std::chrono::seconds(3));
    EXPECT_GT(form->Window().Link.State.Counted.samples, before);
    form->findChild<QAction*>("Start_Stop_menu")->trigger();
    EXPECT_EQ(form->Window().Link.State.CurrentCommand, "STOP") << "the window can be used";
    Click(form, "OKButton");
    EXPECT_EQ(Notice(form), "Data were recovered.");
    Click(form, "OKButton");
    EXPECT_EQ(Notice(form), "none");
}

TEST_F(StartNoticesTest, YesOpensTheReleaseNotesAndAsksNoMore) {
    Browser browser;
    MainForm* const form = Empty();
    ShowStartNotices(*form, settings, StartNotices({}, settings));
    EXPECT_NE(Notice(form).find("Would you like to view the release notes"), std::string::npos);
    EXPECT_EQ(Seen(), "-") << "an unanswered question comes again";
    Click(form, "YesButton");
    ASSERT_EQ(browser.shown.size(), 1);
    EXPECT_TRUE(browser.shown[0].path().endsWith("releasenotes.htm"));
    EXPECT_EQ(Seen(), "TRUE");
    EXPECT_EQ(Notice(form), "none");
    EXPECT_TRUE(StartNotices({}, settings).empty());
}

TEST_F(StartNoticesTest, NoOpensNothingAndAsksNoMore) {
    Browser browser;
    MainForm* const form = Empty();
    ShowStartNotices(*form, settings, StartNotices({}, settings));
    Click(form, "NoButton");
    EXPECT_TRUE(browser.shown.empty());
    EXPECT_EQ(Seen(), "TRUE");
    EXPECT_EQ(Notice(form), "none");
}

TEST_F(StartNoticesTest, MissingSigmaFilesLeadToTheirParameters) {
    MainForm* const form = Empty();
    StartFacts facts;
    facts.missingSigmaFiles = 1;
    facts.offerReleaseNotes = false;
    ShowStartNotices(*form, settings, StartNotices(facts, settings));
    EXPECT_EQ(Open(form, "SigmaParamsFormNew"), nullptr) << "first the message is read";
    Click(form, "OKButton");
    EXPECT_NE(Open(form, "SigmaParamsFormNew"), nullptr);
}

TEST_F(StartNoticesTest, ALongNoticeLeavesTheGraphItsRoom) {
    MainForm* const form = Empty();
    QString text("Marisonde did not end properly the last time.  The data it had recorded are safe in:");
    for (int i = 0; i < 60; ++i) text += QString("\n/home/user/recovered/%1.raw").arg(i);
    form->Notices().AddNotice(text);
    Settle();
    EXPECT_LT(Strip(form)->height(), form->height() / 4);
    EXPECT_EQ(Notice(form), text.toStdString()) << "all of it is there, below the edge";
}

}  // namespace
}  // namespace marisonde
