#include "app/forms/InstrumentCommands.h"

#include <QAction>
#include <QLabel>
#include <QMenuBar>
#include <QStyle>
#include <QToolBar>
#include <QToolButton>
#include <utility>

#include "app/ConnectAgain.h"
#include "app/ConnectCommand.h"
#include "app/Shutdown.h"
#include "app/forms/MainForm.h"
#include "app/forms/Shell.h"
#include "link/Commands.h"

namespace marisonde {

namespace {

void NameButton(QToolBar* bar, QAction* action, const char* name) {
    bar->addAction(action);
    if (auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(action))) {
        button->setObjectName(name);
        button->setAccessibleName(action->toolTip());
    }
}

void Caption(QAction* action, const QString& text) {
    if (action->text() != text) action->setText(text);
}

}  // namespace

InstrumentCommands::InstrumentCommands(Shell& shell, MainForm& form, Operations& operations)
    : QObject(&form),
      shell_(shell),
      form_(form),
      operations_(operations),
      connector_(form.Window()),
      dialog_(new ConnectForm(connector_, operations, shell.App().settings, &form)),
      connect_(new QAction("&Connect...", this)),
      disconnect_(new QAction("&Disconnect", this)),
      startStop_(new QAction("&Start", this)) {
    const QStyle* style = form.style();
    connect_->setObjectName("Connect_menu");
    connect_->setIconText("Connect");
    connect_->setIcon(QIcon::fromTheme("network-connect", style->standardIcon(QStyle::SP_DriveNetIcon)));
    connect_->setToolTip("Connect an instrument");
    connect_->setShortcut(Qt::Key_F2);
    disconnect_->setObjectName("Disconnect_menu");
    startStop_->setObjectName("Start_Stop_menu");
    startStop_->setToolTip("Start or stop sampling");
    startStop_->setShortcut(Qt::Key_F5);
    connect(connect_, &QAction::triggered, this, &InstrumentCommands::ConnectCommand);
    connect(disconnect_, &QAction::triggered, this, &InstrumentCommands::DisconnectCommand);
    connect(startStop_, &QAction::triggered, this, &InstrumentCommands::StartStopCommand);
    Window().Link.ShowConnectForm = [this](std::function<void()> closed) {
        ShowConnectForm(std::move(closed));
    };
    Window().OnInstrumentChanged = [this] { form_.InstrumentChanged(); };
    Window().OnLineLost = [this] { LineLost(); };
}

InstrumentCommands::~InstrumentCommands() {
    delete dialog_.data();
}

DataWindow& InstrumentCommands::Window() {
    return form_.Window();
}

void InstrumentCommands::MakeMenu(QMenuBar* bar) {
    QMenu* menu = bar->addMenu("&Instrument");
    menu->setObjectName("Inst_menu");
    menu->addAction(connect_);
    menu->addAction(disconnect_);
    menu->addSeparator();
    menu->addAction(startStop_);
}

void InstrumentCommands::MakeToolBar(QToolBar* bar) {
    bar->setObjectName("Toolbar");
    bar->setWindowTitle("Instrument");
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    NameButton(bar, connect_, "Connect_Button");
    NameButton(bar, startStop_, "Start_Button");
}

QLabel* InstrumentCommands::MakeNextStep(QWidget* parent) {
    nextStep_ = new QLabel(
        "Plug in your instrument's cable, press Connect (F2) and then Search: the program finds the port, "
        "the "
        "model and its calibration.",
        parent);
    nextStep_->setObjectName("NextStep");
    nextStep_->setTextFormat(Qt::PlainText);
    nextStep_->setWordWrap(true);
    nextStep_->setMargin(10);
    nextStep_->setAutoFillBackground(true);
    nextStep_->setBackgroundRole(QPalette::ToolTipBase);
    nextStep_->setForegroundRole(QPalette::ToolTipText);
    return nextStep_;
}

/// The instrument samples, or is about to.
bool InstrumentCommands::Runs() {
    switch (Window().Link.State.InstState) {
        case InstStateCode::Starting:
        case InstStateCode::Sampling:
        case InstStateCode::StartSent:
            return true;
        default:
            return false;
    }
}

void InstrumentCommands::Update() {
    const DataWindowState& state = Window().Link.State;
    const bool open = Window().Link.Line().IsOpen();
    const bool idle = !Connecting();
    disconnect_->setEnabled((open || operations_.Running("ConnectAgain")) && idle);
    const bool listens = state.InstState != InstStateCode::Sleeping &&
                         state.InstState != InstStateCode::Downloading &&
                         state.InstState != InstStateCode::NoConnection;
    startStop_->setEnabled(open && idle && state.Connected && (listens || state.InstSerial.empty()));
    Caption(startStop_, Runs() ? "&Stop" : "&Start");
    if (startStop_->icon().isNull() || Runs() != startStop_->data().toBool()) {
        startStop_->setData(Runs());
        startStop_->setIcon(
            form_.style()->standardIcon(Runs() ? QStyle::SP_MediaStop : QStyle::SP_MediaPlay));
    }
    if (nextStep_) nextStep_->setVisible(!state.Connected && !state.HasSample && state.PortNumber == 0);
}

void InstrumentCommands::ConnectCommand() {
    if (operations_.Running("ConnectCommand") || Connecting()) return;
    operations_.Start("ConnectCommand", [this](Operation& operation) -> QCoro::Task<> {
        const ConnectIn where = co_await AskWhereToConnect(operation, Window());
        if (where == ConnectIn::ThisWindow) ShowConnectForm({});
        if (where != ConnectIn::NewWindow) co_return;
        MainForm* const other = shell_.NewWindow();
        if (other == nullptr) {
            const std::string text = WindowLimitText();
            co_await Window().Ask().ShowMessage(operation, text);
            co_return;
        }
        other->show();
        other->Commands().ConnectCommand();
    });
}

void InstrumentCommands::DisconnectCommand() {
    if (operations_.Running("Disconnect")) return;
    operations_.Cancel("ConnectAgain");
    operations_.Start("Disconnect", [this](Operation& operation) -> QCoro::Task<> {
        co_await marisonde::DisconnectCommand(operation, Window());
    });
}

void InstrumentCommands::StartStopCommand() {
    SendCommand(Runs() ? "STOP" : "START", Window().Link);
}

void InstrumentCommands::ShowConnectForm(std::function<void()> whenClosed) {
    if (whenClosed) whenClosed_.push_back(std::move(whenClosed));
    if (dialog_->isVisible()) return;
    operations_.Cancel("ConnectAgain");
    dialog_->Show([this] { AfterDialog(); });
}

void InstrumentCommands::AfterDialog() {
    for (const auto& closed : std::exchange(whenClosed_, {})) closed();
}

void InstrumentCommands::ConnectAt(int port, int baud, std::optional<InstTypeCode> assumed,
                                   std::function<void()> whenClosed) {
    ShowConnectForm(std::move(whenClosed));
    connector_.SelectPort(port);
    connector_.SelectBaud(baud);
    connector_.CheckUploadCal(true);
    connector_.CheckNoQuery(assumed.has_value());
    if (assumed) connector_.SelectInstrument(*assumed);
    dialog_->PressOk();
    // Without a question there is nothing to wait for; the dialog stays up to show what it opened.
    if (assumed && Window().Link.State.Connected) connector_.Cancel_Click();
}

void InstrumentCommands::ConnectOnStartup(int choice) {
    if (choice == 0) return;
    ShowConnectForm({});
    // What was not found at the start is no news to a user who did not ask for it just now.
    connector_.Visible = false;
    if (choice == 1)
        dialog_->PressOk();
    else
        dialog_->PressAutoDetect();
    UnloadWhenDone();
}

void InstrumentCommands::UnloadWhenDone() {
    operations_.Start("ConnectOnStartup", [this](Operation& operation) -> QCoro::Task<> {
        const auto done = [this] { return !operations_.Running("Connect"); };
        co_await operation.Until(done, Millis::max());
        if (!operation.Cancelled()) connector_.Form_Unload();
    });
}

void InstrumentCommands::EndConnecting() {
    for (const char* name : {"ConnectOnStartup", "ConnectCommand", "Connect", "ConnectAgain"})
        operations_.Cancel(name);
    dialog_->TakeAway();
}

bool InstrumentCommands::Connecting() const {
    return operations_.Running("Connect");
}

void InstrumentCommands::LineLost() {
    if (operations_.Running("ConnectAgain") || shell_.App().ports == nullptr) return;
    operations_.Start("ConnectAgain", [this](Operation& operation) -> QCoro::Task<> {
        co_await ConnectAgain(operation, Window());
    });
}

}  // namespace marisonde
