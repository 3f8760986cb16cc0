#include <QAction>
#include <QClipboard>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScrollBar>
#include <QSplitter>
#include <QToolButton>

#include "app/forms/TermulatorForm.h"
#include "app_forms/FormsFixture.h"

namespace marisonde {
namespace {

using simulator::Model;

constexpr const char* kNotConnected =
    "No commands can be sent because no connection is active. Use the Connect command to open a connection";

class TermulatorFormTest : public FormsFixture {
  protected:
    /// A window on a line whose other end is the test, with its port open.
    MainForm* Scripted() {
        auto line = std::make_unique<ScriptedLine>();
        port = line.get();
        MainForm* const form = shell->NewWindow(std::move(line));
        form->findChild<QTimer*>("ProcessSerialInputTimer")->stop();
        form->show();
        form->Window().OpenWithoutQuery(1, 19200, InstTypeCode::Corvane4);
        if (QWidget* notice = Open(form, "ErrorForm")) notice->close();
        Run(kTick);
        return form;
    }
    TermulatorForm* Terminal(MainForm* form) {
        form->findChild<QAction*>("Terminal_menu")->trigger();
        Settle();
        return form->findChild<TermulatorForm*>();
    }
    void Arrive(const char* bytes) {
        port->Queue(bytes);
        Run(kTick);
    }
    template <class Control>
    static Control* The(QWidget* form, const char* name) {
        auto* const found = form->findChild<Control*>(name);
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    static std::string Box(QWidget* form, const char* name) {
        return The<QPlainTextEdit>(form, name)->toPlainText().toStdString();
    }
    ScriptedLine* port = nullptr;
};

TEST_F(TermulatorFormTest, OpensByItemButtonAndKeyWhileAPortIsOpen) {
    MainForm* const form = Scripted();
    auto* const item = The<QAction>(form, "Terminal_menu");
    EXPECT_TRUE(item->isEnabled());
    EXPECT_EQ(item->shortcut(), QKeySequence(Qt::Key_F6));
    QTest::mouseClick(The<QToolButton>(form, "Termulator_Button"), Qt::LeftButton);
    auto* const terminal = form->findChild<TermulatorForm*>();
    ASSERT_NE(terminal, nullptr);
    EXPECT_TRUE(terminal->isVisible());
    terminal->close();
    EXPECT_FALSE(terminal->isVisible());
    EXPECT_EQ(Terminal(form), terminal) << "closing only hides it";
    EXPECT_TRUE(terminal->isVisible());

    form->Window().Link.State.InstState = InstStateCode::Downloading;
    form->Window().Link.State.LastInputTime = clock.Steady();
    Run(kTick);
    EXPECT_FALSE(item->isEnabled());
    form->Window().Link.ClosePort();
    Run(kTick);
    EXPECT_FALSE(item->isEnabled());
    EXPECT_TRUE(terminal->isVisible()) << "what was said stays readable";
}

TEST_F(TermulatorFormTest, CaptionFollowsTheWindow) {
    MainForm* const form = Scripted();
    const TermulatorForm* const terminal = Terminal(form);
    form->Window().Link.State.InstSerial = "CV041207";
    Run(kTick);
    EXPECT_EQ(terminal->windowTitle(), "CV041207 Terminal - Marisonde");
    form->Window().Link.ClosePort();
    Run(kTick);
    EXPECT_EQ(terminal->windowTitle(), "No connection Terminal - Marisonde");
}

TEST_F(TermulatorFormTest, StandsInTheListOfWindowsWhileOpen) {
    MainForm* const form = Scripted();
    ASSERT_EQ(form->Window().Children.size(), 1U);
    const ChildWindow& child = form->Window().Children.front();
    EXPECT_EQ(child.tag, "Term");
    EXPECT_FALSE(child.isOpen());
    child.show();
    EXPECT_TRUE(child.isOpen());
    EXPECT_EQ(child.caption(), form->findChild<TermulatorForm*>()->windowTitle().toStdString());
    form->findChild<TermulatorForm*>()->close();
    EXPECT_FALSE(child.isOpen());
}

TEST_F(TermulatorFormTest, KeysCountWhereverTheyAreTyped) {
    MainForm* const form = Scripted();
    TermulatorForm* const terminal = Terminal(form);
    port->TakeWritten();
    QTest::keyClicks(The<QLineEdit>(terminal, "Command_Box"), "v");
    QTest::keyClicks(The<QPlainTextEdit>(terminal, "Response_Box"), "e");
    QTest::keyClicks(The<QPlainTextEdit>(terminal, "Data_Box"), "R");
    QTest::keyClicks(The<QRadioButton>(terminal, "ASCII_Option"), ",");
    QTest::keyClicks(terminal, "x");
    QTest::keyClick(terminal, Qt::Key_Backspace);
    EXPECT_EQ(The<QLineEdit>(terminal, "Command_Box")->text(), "veR,");
    EXPECT_EQ(port->TakeWritten(), "veR,x\b");
    QTest::keyClick(The<QPlainTextEdit>(terminal, "Data_Box"), Qt::Key_Enter);
    EXPECT_EQ(The<QLineEdit>(terminal, "Command_Box")->text(), "");
    EXPECT_EQ(form->Window().Link.State.CurrentCommand, "VER,");
    Run(kTick);
    EXPECT_EQ(port->TakeWritten(), "\r");
}

TEST_F(TermulatorFormTest, ArrowsRecallWhatWasTyped) {
    MainForm* const form = Scripted();
    TermulatorForm* const terminal = Terminal(form);
    auto* const box = The<QLineEdit>(terminal, "Command_Box");
    QTest::keyClicks(box, "DIR\r");
    QTest::keyClicks(box, "VER\r");
    Run(kTick);
    port->TakeWritten();
    QTest::keyClick(box, Qt::Key_Up);
    QTest::keyClick(box, Qt::Key_Up);
    EXPECT_EQ(box->text(), "DIR");
    QTest::keyClick(box, Qt::Key_Down);
    EXPECT_EQ(box->text(), "VER");
    QTest::keyClick(box, Qt::Key_Return);
    Run(kTick);
    EXPECT_EQ(port->TakeWritten(), "VER\r");
}

TEST_F(TermulatorFormTest, ControlKeysAreNotTyped) {
    MainForm* const form = Scripted();
    TermulatorForm* const terminal = Terminal(form);
    port->TakeWritten();
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_D}) QTest::keyClick(terminal, key, Qt::ControlModifier);
    QTest::keyClick(terminal, Qt::Key_Q, Qt::AltModifier);
    QTest::keyClick(terminal, Qt::Key_Home);
    EXPECT_EQ(port->TakeWritten(), "");
    QTest::keyClick(terminal, Qt::Key_Escape);
    EXPECT_EQ(port->TakeWritten(), "\x1b");
    EXPECT_TRUE(terminal->isVisible());
}

TEST_F(TermulatorFormTest, WithoutAPortAKeyGivesTheMessageAndNothingElse) {
    MainForm* const form = Scripted();
    TermulatorForm* const terminal = Terminal(form);
    port->Vanish();
    port->TakeWritten();
    QTest::keyClicks(terminal, "I");
    const auto* const notice = terminal->findChild<QDialog*>("ErrorForm");
    ASSERT_NE(notice, nullptr);
    bool told = false;
    for (const auto* text : notice->findChildren<QPlainTextEdit*>())
        told = told || text->toPlainText() == kNotConnected;
    for (const auto* text : notice->findChildren<QLabel*>()) told = told || text->text() == kNotConnected;
    EXPECT_TRUE(told);
    EXPECT_EQ(The<QLineEdit>(terminal, "Command_Box")->text(), "");
}

TEST_F(TermulatorFormTest, RepliesAndDataAreShownApart) {
    MainForm* const form = Scripted();
    TermulatorForm* const terminal = Terminal(form);
    Arrive("ready\r\n1,2,3,4,5,6\r\nYes to er");
    EXPECT_EQ(Box(terminal, "Response_Box"), "ready\nYes to er");
    EXPECT_EQ(Box(terminal, "Data_Box"), "1,2,3,4,5,6\n");
    Arrive("ase?\r\n\x01\xe9\r\n");
    EXPECT_EQ(Box(terminal, "Response_Box"), "ready\nYes to erase?\n\xc2\xb7\xc3\xa9");
}

TEST_F(TermulatorFormTest, OpensAtTheEndOfWhatHasCome) {
    MainForm* const form = Scripted();
    for (int i = 0; i < 300; ++i) Arrive("reply\r\n1,2,3,4,5,6\r\n");
    TermulatorForm* const terminal = Terminal(form);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(terminal));
    Arrive("reply\r\n1,2,3,4,5,6\r\n");
    for (const char* name : {"Response_Box", "Data_Box"}) {
        const auto* const bar = The<QPlainTextEdit>(terminal, name)->verticalScrollBar();
        EXPECT_GT(bar->maximum(), 0) << name;
        EXPECT_EQ(bar->value(), bar->maximum()) << name;
    }
}

TEST_F(TermulatorFormTest, WhatCameWhileItWasHiddenIsThere) {
    MainForm* const form = Scripted();
    Arrive("before\r\n");
    TermulatorForm* const terminal = Terminal(form);
    EXPECT_EQ(Box(terminal, "Response_Box"), "before");
    terminal->close();
    for (int i = 0; i < 200; ++i) Arrive("1,2,3,4,5,6\r\n7,8,9,10,11,12\r\n");
    Arrive("after\r\n");
    Terminal(form);
    EXPECT_EQ(Box(terminal, "Response_Box"), "before\nafter");
    std::string data = form->Window().Terminal.Data_Box().Text();
    std::erase(data, '\r');
    EXPECT_EQ(Box(terminal, "Data_Box"), data);
    const auto* const bar = The<QPlainTextEdit>(terminal, "Data_Box")->verticalScrollBar();
    EXPECT_GT(bar->maximum(), 0);
    EXPECT_EQ(bar->value(), bar->maximum());
}

TEST_F(TermulatorFormTest, FollowsTheBoxesAtTheirLimits) {
    MainForm* const form = Scripted();
    TermulatorForm* const terminal = Terminal(form);
    for (int i = 0; i < 600; ++i)
        Arrive(("reply number " + std::to_string(i) + " with a tail to make it long, as help texts are\r\n" +
                "1,2,3,4,5," + std::to_string(i) + "\r\n")
                   .c_str());
    for (const auto& [name, box] : {std::pair{"Response_Box", &form->Window().Terminal.Response_Box()},
                                    std::pair{"Data_Box", &form->Window().Terminal.Data_Box()}}) {
        std::string text = box->Text();
        std::erase(text, '\r');
        EXPECT_EQ(Box(terminal, name), text);
        const auto* const bar = The<QPlainTextEdit>(terminal, name)->verticalScrollBar();
        EXPECT_EQ(bar->value(), bar->maximum()) << name;
    }
}

TEST_F(TermulatorFormTest, AUserWhoReadsIsNotCarriedAway) {
    MainForm* const form = Scripted();
    TermulatorForm* const terminal = Terminal(form);
    for (int i = 0; i < 100; ++i) Arrive("reply\r\n");
    auto* const box = The<QPlainTextEdit>(terminal, "Response_Box");
    box->verticalScrollBar()->setValue(10);
    Arrive("reply\r\n");
    EXPECT_EQ(box->verticalScrollBar()->value(), 10);
}

TEST_F(TermulatorFormTest, ValuesAreChosenAndRemembered) {
    MainForm* const form = Sampling(Model::LTidal);
    TermulatorForm* const terminal = Terminal(form);
    Run(std::chrono::seconds(3));
    EXPECT_EQ(Box(terminal, "Data_Box").find("Beta140"), std::string::npos);
    The<QRadioButton>(terminal, "Numerical")->click();
    Run(std::chrono::seconds(3));
    EXPECT_NE(Box(terminal, "Data_Box").find("Beta140 = "), std::string::npos);
    terminal->setGeometry(50, 60, 700, 480);
    terminal->close();
    EXPECT_EQ(settings.GetSetting("TermulatorForm", "Numerical", ""), "True");
    MainForm* const other = Scripted();
    TermulatorForm* const second = Terminal(other);
    EXPECT_TRUE(The<QRadioButton>(second, "Numerical")->isChecked());
    EXPECT_EQ(second->geometry(), QRect(50, 60, 700, 480));
}

TEST_F(TermulatorFormTest, HeadingsStandOverTheColumnsAndMoveWithThem) {
    MainForm* const form = Sampling(Model::Corvane6);
    TermulatorForm* const terminal = Terminal(form);
    auto* const headings = The<QWidget>(terminal, "Headings");
    Run(std::chrono::seconds(3));
    EXPECT_FALSE(headings->isVisible()) << "lines as they came have no columns";
    The<QRadioButton>(terminal, "Numerical")->click();
    terminal->resize(500, 500);
    Run(std::chrono::seconds(3));
    EXPECT_TRUE(headings->isVisible());
    const auto* const label = headings->findChild<QLabel*>();
    EXPECT_EQ(label->text().toStdString(), form->Window().Terminal.Headings());

    auto* const data = The<QPlainTextEdit>(terminal, "Data_Box");
    const auto leftOfText = [data] {
        QTextCursor behindLastLine(data->document());
        behindLastLine.movePosition(QTextCursor::End);
        return data->viewport()->mapToGlobal(data->cursorRect(behindLastLine).topLeft()).x();
    };
    EXPECT_NEAR(label->mapToGlobal(QPoint()).x(), leftOfText(), 1);
    ASSERT_GT(data->horizontalScrollBar()->maximum(), 50);
    data->horizontalScrollBar()->setValue(50);
    EXPECT_NEAR(label->mapToGlobal(QPoint()).x(), leftOfText(), 1);
    EXPECT_LT(label->x(), 0);
}

TEST_F(TermulatorFormTest, BeamSensorsHaveNoChoice) {
    MainForm* const form = Sampling(Model::Delph2);
    TermulatorForm* const terminal = Terminal(form);
    EXPECT_FALSE(The<QWidget>(terminal, "Frame1")->isVisible());
    EXPECT_TRUE(The<QWidget>(Terminal(Sampling(Model::Corvane2)), "Frame1")->isVisible());
}

TEST_F(TermulatorFormTest, TheDividerLeavesRoomForBoth) {
    TermulatorForm* const terminal = Terminal(Scripted());
    auto* const divider = terminal->findChild<QSplitter*>();
    for (const int wanted : {0, 10000}) {
        divider->setSizes({wanted, 10000 - wanted});
        EXPECT_GE(The<QWidget>(terminal, "Response_Box")->height(), 32);
        EXPECT_GE(divider->widget(1)->height(), 35);
    }
    divider->setSizes({200, 200});
    terminal->resize(700, 400);
    const QList<int> before = divider->sizes();
    terminal->resize(700, 700);
    EXPECT_GT(divider->sizes()[0], before[0] + 100);
    EXPECT_GT(divider->sizes()[1], before[1] + 100);
}

TEST_F(TermulatorFormTest, TheDividerIsMovedByKeysToo) {
    TermulatorForm* const terminal = Terminal(Scripted());
    terminal->resize(700, 600);
    const auto* const divider = terminal->findChild<QSplitter*>();
    const int before = divider->sizes()[0];
    The<QAction>(terminal, "MoreRepliesItem")->trigger();
    EXPECT_GT(divider->sizes()[0], before);
    The<QAction>(terminal, "MoreDataItem")->trigger();
    EXPECT_EQ(divider->sizes()[0], before);
    for (int i = 0; i < 100; ++i) The<QAction>(terminal, "MoreDataItem")->trigger();
    EXPECT_GE(The<QWidget>(terminal, "Response_Box")->height(), 32);
}

TEST_F(TermulatorFormTest, CopyTakesTheSelectionAndElseInterrupts) {
    MainForm* const form = Scripted();
    TermulatorForm* const terminal = Terminal(form);
    Arrive("ready\r\n");
    port->TakeWritten();
    auto* const box = The<QPlainTextEdit>(terminal, "Response_Box");
    QTest::keyClick(box, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(port->TakeWritten(), "\x03");
    const auto mayCopy = [terminal] {
        emit The<QMenu>(terminal, "TermEdit_menu")->aboutToShow();
        return The<QAction>(terminal, "CopyItem")->isEnabled();
    };
    EXPECT_FALSE(mayCopy());
    box->selectAll();
    EXPECT_TRUE(mayCopy());
    QTest::keyClick(box, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(port->TakeWritten(), "");
    EXPECT_EQ(QApplication::clipboard()->text(), "ready");
    QTest::keyClick(box, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(The<QLineEdit>(terminal, "Command_Box")->text(), "ready");
    EXPECT_EQ(port->TakeWritten(), "");
}

TEST_F(TermulatorFormTest, BoxesAreClearedOneByOne) {
    MainForm* const form = Scripted();
    TermulatorForm* const terminal = Terminal(form);
    Arrive("ready\r\n1,2,3,4,5,6\r\n");
    The<QAction>(terminal, "ClearRepliesItem")->trigger();
    EXPECT_EQ(Box(terminal, "Response_Box"), "");
    EXPECT_NE(Box(terminal, "Data_Box"), "");
    The<QAction>(terminal, "ClearDataItem")->trigger();
    EXPECT_EQ(Box(terminal, "Data_Box"), "");
}

TEST_F(TermulatorFormTest, MenusHoldTheItemsOfTheWindow) {
    MainForm* const form = Scripted();
    TermulatorForm* const terminal = Terminal(form);
    auto* const menu = The<QMenu>(terminal, "TermInst_menu");
    EXPECT_TRUE(menu->actions().contains(The<QAction>(form, "Connect_menu")));
    EXPECT_TRUE(menu->actions().contains(The<QAction>(form, "Disconnect_menu")));
    EXPECT_TRUE(menu->actions().contains(The<QAction>(form, "Sleep_menu")));
    EXPECT_EQ(menu->title(), The<QMenu>(form, "Inst_menu")->title());
    EXPECT_NE(menu->title(), "&Instrument") << "the model's name";
    const QMenuBar* const bar = terminal->menuBar();
    for (const char* shared : {"Window_menu", "Help_menu"})
        EXPECT_TRUE(bar->actions().contains(The<QMenu>(form, shared)->menuAction())) << shared;
}

TEST_F(TermulatorFormTest, ReadoutsAreThoseOfTheWindow) {
    MainForm* const form = Sampling();
    TermulatorForm* const terminal = Terminal(form);
    Run(std::chrono::seconds(5));
    for (const char* name :
         {"Status_Box", "ElapsedPanel", "DepthPanel", "TemperaturePanel", "VoltagePanel"}) {
        EXPECT_EQ(The<QLabel>(terminal, name)->text(), The<QLabel>(form, name)->text()) << name;
        EXPECT_FALSE(The<QLabel>(terminal, name)->text().isEmpty()) << name;
    }
}

TEST_F(TermulatorFormTest, ClosesWithItsWindow) {
    MainForm* const form = Scripted();
    const QPointer<TermulatorForm> terminal = Terminal(form);
    terminal->setGeometry(70, 80, 650, 450);
    form->CloseWithoutAsking();
    Run(2 * kTick);
    EXPECT_TRUE(shell->Windows().empty());
    EXPECT_TRUE(terminal.isNull());
    EXPECT_EQ(settings.GetSetting("TermulatorForm", "Left", ""), "70") << "its place is kept all the same";
}

}  // namespace
}  // namespace marisonde
