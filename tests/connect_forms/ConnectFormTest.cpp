#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QPlainTextEdit>
#include <QToolButton>

#include "FormFixture.h"

namespace marisonde {
namespace {

class ConnectFormTest : public FormFixture {
  protected:
    void OpenDialog() {
        form = &NewForm();
        Find<QAction>(*form, "Connect_menu")->trigger();
        dialog = Find<QDialog>(*form, "ConnectForm");
    }
    QPushButton* Button(const char* name) { return Find<QPushButton>(*dialog, name); }
    QString Status() { return Find<QLabel>(*dialog, "StatusBox")->text(); }
    QString ErrorText() {
        const auto* error = form->findChild<QDialog*>("ErrorForm");
        const auto* text = error ? error->findChild<QLabel*>("Message") : nullptr;
        return text ? text->text() : QString();
    }
    void ChooseRate(const char* rate) {
        auto* box = Find<QComboBox>(*dialog, "BAUD_box");
        box->setCurrentText(rate);
        emit box->activated(box->currentIndex());
    }
    void TickUntilClosed() {
        for (int i = 0; i < 2000 && dialog->isVisible(); ++i) Tick();
    }

    /// Closes the window of port 2.
    void ExpectClosesCleanly() {
        const QPointer<MainForm> closing = form;
        form->close();
        for (int i = 0; i < 20 && closing; ++i) {
            Tick();
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        EXPECT_FALSE(closing);
        EXPECT_FALSE(ports.talkers[2]->open);
        EXPECT_TRUE(pump.Idle());
    }

    MainForm* form = nullptr;
    QDialog* dialog = nullptr;
};

TEST_F(ConnectFormTest, ShowsPortsRatesModelsAndOptions) {
    ports.Add(2);
    ports.Add(4);
    app.prefs.Port = 4;
    OpenDialog();
    ASSERT_TRUE(dialog->isVisible());
    EXPECT_EQ(dialog->windowModality(), Qt::WindowModal);
    const auto* port = Find<QComboBox>(*dialog, "CommPort_Box");
    EXPECT_EQ(port->count(), 2);
    EXPECT_EQ(port->currentText(), "Com 4 - /dev/tty4, Adapter, A5");
    EXPECT_EQ(port->currentIndex(), 0);
    const auto* baud = Find<QComboBox>(*dialog, "BAUD_box");
    QStringList rates;
    for (int i = 0; i < baud->count(); ++i) rates << baud->itemText(i);
    EXPECT_EQ(rates.join(' '), "4800 9600 19200 38400 57600 115200");
    EXPECT_EQ(baud->currentText(), "9600");
    const auto* model = Find<QComboBox>(*dialog, "Instrument_Box");
    EXPECT_EQ(model->count(), 10);
    EXPECT_EQ(model->itemText(0), "Corvane-6");
    EXPECT_EQ(model->itemText(9), "Delph-6");
    EXPECT_EQ(Find<QCheckBox>(*dialog, "UploadCal_Check")->text().remove('&'),
              "Load Calibration From Instrument");
    EXPECT_TRUE(Find<QCheckBox>(*dialog, "UploadCal_Check")->isChecked());
    EXPECT_EQ(Find<QCheckBox>(*dialog, "NoQueryCheck")->text().remove('&'),
              "Open port without identifying instrument");
    EXPECT_EQ(Button("OK")->text().remove('&'), " Connect");
    EXPECT_EQ(Button("AutoDetect")->text().remove('&'), "Search");
    EXPECT_EQ(Button("Cancel")->text(), "Cancel");
    EXPECT_EQ(Status(), " No Connection");
}

TEST_F(ConnectFormTest, ConnectsAndClosesItself) {
    TeachModel(ports.Add(2), Model::Delph4);
    OpenDialog();
    ChooseRate("19200");
    Button("OK")->click();
    EXPECT_FALSE(Button("OK")->isEnabled());
    EXPECT_FALSE(Button("AutoDetect")->isEnabled());
    EXPECT_FALSE(Find<QComboBox>(*dialog, "CommPort_Box")->isEnabled());
    EXPECT_EQ(Button("Cancel")->text(), "Stop");
    TickUntilClosed();
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_TRUE(form->Window().Link.State.Connected);
    EXPECT_EQ(ErrorText(), "");
    EXPECT_FALSE(Find<QLabel>(*form, "NextStep")->isVisible());
}

TEST_F(ConnectFormTest, EnterConnects) {
    ports.Add(2);
    OpenDialog();
    Press(Find<QComboBox>(*dialog, "CommPort_Box"), Qt::Key_Return);
    EXPECT_EQ(Button("Cancel")->text(), "Stop");
    EXPECT_EQ(Status(), " Searching");
}

TEST_F(ConnectFormTest, AModelThatIsNotIdentifiedIsOpenedWithASearchAndEnter) {
    TeachModel(ports.Add(2), Model::LTidal);
    ports.talkers[2]->replies["ID"][1] = "Model: X-Tidal";
    OpenDialog();
    Button("AutoDetect")->click();
    for (int i = 0; i < 2000 && ErrorText().isEmpty(); ++i) Tick();
    Press(Find<QDialog>(*form, "ErrorForm"), Qt::Key_Return);
    EXPECT_EQ(Find<QComboBox>(*dialog, "BAUD_box")->currentText(), "19200");
    EXPECT_EQ(Find<QComboBox>(*dialog, "Instrument_Box")->currentText(), "x-Tidal");
    auto* noQuery = Find<QCheckBox>(*dialog, "NoQueryCheck");
    EXPECT_TRUE(noQuery->isChecked());
    ChooseRate("9600");
    EXPECT_FALSE(noQuery->isChecked()) << "nothing was found there";
    ChooseRate("19200");
    noQuery->click();
    Press(Button("OK"), Qt::Key_Return);
    EXPECT_TRUE(form->Window().Link.State.Connected);
    EXPECT_EQ(form->Window().Link.State.InstType, InstTypeCode::XTidal);
    EXPECT_EQ(Status(), "x-Tidal connected");
}

TEST_F(ConnectFormTest, EscapeStopsAndThenCloses) {
    ports.Add(2);
    OpenDialog();
    Button("AutoDetect")->click();
    Tick(5);
    Press(dialog, Qt::Key_Escape);
    EXPECT_TRUE(dialog->isVisible());
    Tick();
    EXPECT_EQ(Button("Cancel")->text(), "Close");
    EXPECT_TRUE(Button("OK")->isEnabled());
    EXPECT_EQ(ErrorText(), "");
    Press(dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(ConnectFormTest, TheSearchIsToldLineByLine) {
    ports.Add(1).openFailsWith = {LineError::Kind::Denied, "Permission denied"};
    TeachModel(ports.Add(2), Model::Delph4);
    ports.talkers[2]->baud = 9600;
    ports.talkers[2]->replies.erase("sendcal");
    OpenDialog();
    Button("AutoDetect")->click();
    Tick(90);
    EXPECT_EQ(Find<QPlainTextEdit>(*dialog, "SearchList")->toPlainText(),
              "Com 1, 19200: permission denied\nCom 1, 9600: permission denied\n"
              "Com 1, 38400: permission denied\nCom 1, 57600: permission denied\n"
              "Com 1, 4800: permission denied\nCom 2, 19200: silent\nCom 2, 9600: Delph-4 found");
    EXPECT_EQ(Find<QComboBox>(*dialog, "Instrument_Box")->currentText(), "Delph-4");
}

TEST_F(ConnectFormTest, AQuestionIsAnsweredByItsButton) {
    TeachModel(ports.Add(2), Model::Delph4);
    ports.talkers[2]->replies.erase("sendcal");
    OpenDialog();
    ChooseRate("19200");
    Button("OK")->click();
    QDialog* question = nullptr;
    for (int i = 0; i < 600 && !question; ++i) {
        Tick();
        question = form->findChild<QDialog*>("YesNoCancelForm");
    }
    ASSERT_NE(question, nullptr);
    EXPECT_EQ(Find<QLabel>(*question, "Message")->text(),
              "Some calibration information did not load properly.  Try again?");
    Find<QPushButton>(*question, "NoButton")->click();
    Tick(2);
    EXPECT_EQ(Button("Cancel")->text(), "Close");
    EXPECT_FALSE(form->Window().Link.Line().IsOpen());
}

TEST_F(ConnectFormTest, RemembersItsPlaceAndTheLastGoodPort) {
    TeachModel(ports.Add(2), Model::Delph4);
    ports.Add(1);
    OpenDialog();
    dialog->resize(700, 500);
    const QSize kept = dialog->size();
    auto* port = Find<QComboBox>(*dialog, "CommPort_Box");
    port->setCurrentIndex(1);
    emit port->activated(1);
    ChooseRate("19200");
    Button("OK")->click();
    TickUntilClosed();
    EXPECT_EQ(settings.GetSetting("Connection", "Port", ""), "2");
    MainForm& second = NewForm();
    Find<QAction>(second, "Connect_menu")->trigger();
    auto* other = Find<QDialog>(second, "ConnectForm");
    EXPECT_EQ(other->size(), kept);
    EXPECT_EQ(Find<QComboBox>(*other, "CommPort_Box")->currentText().left(5), "Com 2");
    EXPECT_EQ(Find<QComboBox>(*other, "BAUD_box")->currentText(), "19200");
}

TEST_F(ConnectFormTest, ClosingTheWindowInAnyWaitEndsCleanly) {
    // The last ones stand at the question whether to try again.
    for (int ticks = 0; ticks < 260; ticks += 13) {
        ports.talkers.clear();
        TeachModel(ports.Add(2), Model::Delph4);
        ports.talkers[2]->replies.erase("sendcal");
        OpenDialog();
        ChooseRate("19200");
        Button("OK")->click();
        Tick(ticks);
        SCOPED_TRACE(ticks);
        ExpectClosesCleanly();
    }
}

TEST_F(ConnectFormTest, ClosingTheWindowWhileItConnectsAtTheStartEndsCleanly) {
    for (int ticks = 0; ticks < 130; ticks += 13) {
        ports.talkers.clear();
        ports.Add(2);
        form = &NewForm();
        form->Commands().ConnectOnStartup(2);
        Tick(ticks);
        ASSERT_TRUE(form->Running().Running("ConnectOnStartup"));
        SCOPED_TRACE(ticks);
        ExpectClosesCleanly();
    }
}

TEST_F(ConnectFormTest, WithSixWindowsThereIsNoSeventh) {
    TeachModel(ports.Add(2), Model::Delph4);
    OpenDialog();
    ChooseRate("19200");
    Button("OK")->click();
    TickUntilClosed();
    for (int i = 1; i < kMaxWindows; ++i) NewForm();
    Find<QAction>(*form, "Connect_menu")->trigger();
    auto* question = Find<QDialog>(*form, "YesNoCancelForm");
    EXPECT_EQ(Find<QLabel>(*question, "Message")->text(),
              "There is already an active connection in this window.  Do you wish to replace the current "
              "connection in this window, or keep this connection and open a new window?");
    EXPECT_EQ(Find<QPushButton>(*question, "YesButton")->text().remove('&'), "This Window");
    EXPECT_EQ(Find<QPushButton>(*question, "Cancel_Button")->text().remove('&'), "Cancel");
    Find<QPushButton>(*question, "NoButton")->click();
    Tick();
    bool told = false;
    for (const QDialog* notice : form->findChildren<QDialog*>("YesNoCancelForm"))
        told = told || notice->findChild<QLabel*>("Message")->text() == "Cannot open more than 6 windows.";
    EXPECT_TRUE(told);
}

TEST_F(ConnectFormTest, ANewWindowBringsItsOwnDialog) {
    TeachModel(ports.Add(2), Model::Delph4);
    OpenDialog();
    ChooseRate("19200");
    Button("OK")->click();
    TickUntilClosed();
    Find<QAction>(*form, "Connect_menu")->trigger();
    Find<QPushButton>(*Find<QDialog>(*form, "YesNoCancelForm"), "NoButton")->click();
    Tick();
    ASSERT_EQ(shell.Windows().size(), 2u);
    EXPECT_TRUE(Find<QDialog>(*shell.Windows()[1], "ConnectForm")->isVisible());
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_TRUE(form->Window().Link.State.Connected);
}

TEST_F(ConnectFormTest, StartAndStopFollowTheInstrument) {
    TeachModel(ports.Add(2), Model::Delph4);
    OpenDialog();
    auto* start = Find<QToolButton>(*form, "Start_Button");
    EXPECT_FALSE(start->isEnabled());
    ChooseRate("19200");
    Button("OK")->click();
    TickUntilClosed();
    Tick();
    EXPECT_TRUE(start->isEnabled());
    Find<QAction>(*form, "Start_Stop_menu")->trigger();
    Tick(10);
    EXPECT_TRUE(ports.talkers[2]->heard.ends_with("START\r"));
    EXPECT_TRUE(form->Window().Files.AnyOpen()) << "what is started is recorded";
    EXPECT_EQ(Find<QAction>(*form, "Start_Stop_menu")->text().remove('&'), "Stop");
    Find<QAction>(*form, "Start_Stop_menu")->trigger();
    Tick(10);
    EXPECT_TRUE(ports.talkers[2]->heard.ends_with("STOP\r"));
}

TEST_F(ConnectFormTest, AtTheStartASearchGoesAwayWhateverComesOfIt) {
    ports.Add(2);
    form = &NewForm();
    form->Commands().ConnectOnStartup(2);
    dialog = Find<QDialog>(*form, "ConnectForm");
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(Status(), " Searching");
    TickUntilClosed();
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(ErrorText(), "No instrument was detected.");
    Tick();
    EXPECT_EQ(form->Running().Count(), 0u);
}

TEST_F(ConnectFormTest, AtTheStartNothingIsConnectedUnlessTheUserHasSetIt) {
    Talker& talker = ports.Add(2);
    form = &NewForm();
    form->Commands().ConnectOnStartup(0);
    Tick(20);
    EXPECT_FALSE(Find<QDialog>(*form, "ConnectForm")->isVisible());
    EXPECT_TRUE(talker.openedPorts.empty());
}

TEST_F(ConnectFormTest, AtTheStartThePreviousConnectionIsRestored) {
    TeachModel(ports.Add(2), Model::Delph4);
    ports.Add(1);
    app.prefs.Port = 2;
    app.prefs.Baud = 19200;
    form = &NewForm();
    form->Commands().ConnectOnStartup(1);
    dialog = Find<QDialog>(*form, "ConnectForm");
    TickUntilClosed();
    EXPECT_TRUE(form->Window().Link.State.Connected);
    EXPECT_TRUE(form->Window().Link.State.CalReady);
    EXPECT_EQ(form->Window().Link.State.PortNumber, 2);
    EXPECT_EQ(ErrorText(), "");
}

TEST_F(ConnectFormTest, AtTheStartAPreviousConnectionThatFailsIsPassedOver) {
    ports.Add(2);
    form = &NewForm();
    form->Commands().ConnectOnStartup(1);
    dialog = Find<QDialog>(*form, "ConnectForm");
    EXPECT_TRUE(dialog->isVisible());
    TickUntilClosed();
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(ErrorText(), "");
    Tick();
    EXPECT_EQ(form->Running().Count(), 0u);
}

TEST_F(ConnectFormTest, ReadsWellAtTwiceTheTextSize) {
    ports.Add(2);
    const QFont usual = QApplication::font();
    QFont large = usual;
    large.setPointSizeF(usual.pointSizeF() * 2);
    QApplication::setFont(large);
    OpenDialog();
    dialog->adjustSize();
    for (const char* name : {"OK", "AutoDetect", "Cancel"}) {
        const QPushButton* button = Button(name);
        EXPECT_GE(button->width(), button->fontMetrics().horizontalAdvance(button->text().remove('&')))
            << name;
        EXPECT_GE(button->height(), button->fontMetrics().height()) << name;
    }
    const auto* check = Find<QCheckBox>(*dialog, "NoQueryCheck");
    EXPECT_GE(check->width(), check->fontMetrics().horizontalAdvance(check->text()));
    QApplication::setFont(usual);
}

TEST_F(ConnectFormTest, TabWalksFromTheInputsToTheButtons) {
    ports.Add(2);
    OpenDialog();
    QStringList order;
    const QWidget* widget = Find<QComboBox>(*dialog, "CommPort_Box");
    for (int i = 0; i < 100 && order.size() < 9; ++i, widget = widget->nextInFocusChain())
        if ((widget->focusPolicy() & Qt::TabFocus) != 0 && dialog->isAncestorOf(widget) &&
            !widget->objectName().startsWith("qt_"))
            order << widget->objectName();
    EXPECT_EQ(
        order.join(' ').toStdString(),
        "CommPort_Box BAUD_box Instrument_Box UploadCal_Check NoQueryCheck OK AutoDetect Cancel SearchList");
}

TEST_F(ConnectFormTest, TheKeyboardChoosesARateAndAModel) {
    ports.Add(2);
    OpenDialog();
    auto* baud = Find<QComboBox>(*dialog, "BAUD_box");
    for (const QChar digit : QString("5760")) Press(baud, Qt::Key(digit.unicode()), digit);
    EXPECT_EQ(baud->currentText(), "57600");
    auto* model = Find<QComboBox>(*dialog, "Instrument_Box");
    Press(model, Qt::Key_X, "x");
    EXPECT_EQ(model->currentText(), "x-Tidal");
    Find<QCheckBox>(*dialog, "NoQueryCheck")->click();
    Press(baud, Qt::Key_Return);
    Tick();
    EXPECT_TRUE(form->Window().Link.State.Connected);
    EXPECT_EQ(form->Window().Link.State.BaudRate, 57600);
    EXPECT_EQ(form->Window().Link.State.InstType, InstTypeCode::XTidal);
}

}  // namespace
}  // namespace marisonde
