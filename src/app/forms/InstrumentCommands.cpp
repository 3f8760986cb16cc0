#include "app/forms/InstrumentCommands.h"

#include <QAction>
#include <QActionGroup>
#include <QLabel>
#include <QMenuBar>
#include <QShortcut>
#include <QToolBar>
#include <array>
#include <utility>

#include "app/ConnectAgain.h"
#include "app/ConnectCommand.h"
#include "app/Shutdown.h"
#include "app/forms/FormHelpers.h"
#include "app/forms/InstStatusForm.h"
#include "app/forms/MainForm.h"
#include "app/forms/Shell.h"
#include "app/forms/ToolIcons.h"
#include "link/Commands.h"

namespace marisonde {

namespace {

/// What an instrument can do and this version does not offer yet: shown, so that nobody looks for it in vain.
struct LaterItem {
    const char* name;
    const char* caption;
    const char* tip;
};
constexpr std::array kLaterItems{
    LaterItem{"Transfer_menu", "Logged &Data...",
              "Fetching casts from the instrument's memory is not part of this version yet"},
    LaterItem{"Reset_menu", "&Reset...", "Resetting an instrument is not part of this version yet"},
};

void Caption(QAction* action, std::string_view caption) {
    const QLatin1StringView text(caption.data(), static_cast<qsizetype>(caption.size()));
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
      startStop_(new QAction("&Start", this)),
      startButton_(new QAction("Start", this)),
      sleep_(new QAction("S&leep", this)),
      status_(new QAction("&Instrument Status...", this)),
      items_(form) {
    MakeActions();
    Window().Link.ShowConnectForm = [this](std::function<void()> closed) {
        ShowConnectForm(std::move(closed));
    };
    Window().OnInstrumentChanged = [this] { form_.InstrumentChanged(); };
    Window().OnLineLost = [this] { LineLost(); };
}

void InstrumentCommands::MakeActions() {
    connect_->setObjectName("Connect_menu");
    connect_->setIconText("Connect");
    connect_->setIcon(MakeToolIcon(ToolIcon::Connect));
    connect_->setToolTip("Connect an instrument");
    connect_->setShortcut(Qt::Key_F2);
    disconnect_->setObjectName("Disconnect_menu");
    disconnect_->setToolTip("Close the connection, and put the instrument to sleep if you like");
    startStop_->setObjectName("Start_Stop_menu");
    startStop_->setShortcut(Qt::Key_F5);
    startStop_->setToolTip("Start or stop sampling");
    startButton_->setObjectName("Start_Button_action");
    startButton_->setToolTip("Start or stop sampling (F5)");
    startButton_->setIcon(MakeToolIcon(ToolIcon::Start));
    startStop_->setIcon(startButton_->icon());
    sleep_->setObjectName("Sleep_menu");
    sleep_->setToolTip("Put the instrument to sleep to save its battery, or wake it");
    status_->setObjectName("InstStatusItem");
    status_->setToolTip("What is known of the instrument");
    connect(connect_, &QAction::triggered, this, &InstrumentCommands::ConnectCommand);
    connect(disconnect_, &QAction::triggered, this, &InstrumentCommands::DisconnectCommand);
    connect(startStop_, &QAction::triggered, this, &InstrumentCommands::StartStopCommand);
    connect(startButton_, &QAction::triggered, this, &InstrumentCommands::StartStopCommand);
    connect(sleep_, &QAction::triggered, this, &InstrumentCommands::SleepCommand);
    connect(status_, &QAction::triggered, this, &InstrumentCommands::ShowInstStatus);
}

/// A disabled group overrules what the instrument's state allows.
void InstrumentCommands::MakeLaterItems() {
    auto* const later = new QActionGroup(this);
    later->setExclusionPolicy(QActionGroup::ExclusionPolicy::None);
    later->setEnabled(false);
    for (const LaterItem& row : kLaterItems) {
        QAction* const item = later->addAction(row.caption);
        item->setObjectName(row.name);
        item->setToolTip(row.tip);
        menu_->addAction(item);
    }
}

InstrumentCommands::~InstrumentCommands() {
    delete dialog_.data();
}

DataWindow& InstrumentCommands::Window() {
    return form_.Window();
}

void InstrumentCommands::MakeMenu(QMenuBar* bar) {
    menu_ = bar->addMenu("&Instrument");
    menu_->setObjectName("Inst_menu");
    menu_->setToolTipsVisible(true);
    menu_->addAction(connect_);
    menu_->addAction(disconnect_);
    menu_->addSeparator();
    menu_->addAction(startStop_);
    menu_->addAction(sleep_);
    menu_->addSeparator();
    MakeLaterItems();
    menu_->addSeparator();
    menu_->addAction(status_);
    // Called after its model the menu has no letter of its own; its key stays.
    menuKey_ = new QShortcut(QKeySequence("Alt+I"), &form_);
    connect(menuKey_, &QShortcut::activated, this,
            [this, bar] { bar->setActiveAction(menu_->menuAction()); });
}

void InstrumentCommands::MakeToolBar(QToolBar* bar, const std::function<void()>& addFurther) {
    AddToolButton(bar, connect_, "Connect_Button");
    addFurther();
    AddToolButton(bar, startButton_, "Start_Button");
    // The longest caption sets the width: what stands beside it stays where it is. Last, so that the room for
    // it is no gap between buttons.
    if (QWidget* button = bar->widgetForAction(startButton_)) {
        startButton_->setIconText("Close Shutter");
        button->setMinimumWidth(button->sizeHint().width());
    }
}

QLabel* InstrumentCommands::MakeNextStep(QWidget* parent) {
    nextStep_ = new QLabel(
        "Plug in your instrument's cable, press Connect (F2) and then Search: the program finds the port, "
        "the model and its calibration.",
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

void InstrumentCommands::Update() {
    const DataWindowState& state = Window().Link.State;
    const StatusFacts facts = StatusFactsOf(Window().Link);
    items_.Show(facts, Connecting());
    // A connection that has been lost and is being tried again can be given up.
    const bool tried = operations_.Running("ConnectAgain") && !Connecting();
    if (tried && !disconnect_->isEnabled()) disconnect_->setEnabled(true);
    if (!tried && !facts.portOpen && disconnect_->isEnabled()) disconnect_->setEnabled(false);
    startButton_->setEnabled(startStop_->isEnabled());
    ShowCaptions();
    ShowInstrumentMenu();
    if (statusForm_ != nullptr) statusForm_->Refresh();
    if (nextStep_) nextStep_->setVisible(!state.Connected && !state.HasSample && state.PortNumber == 0);
}

void InstrumentCommands::ShowCaptions() {
    const InstStateCode shown = Window().Link.State.PrevInstState;
    Caption(startStop_, StartStopCaption(shown));
    Caption(sleep_, SleepCaption(shown));
    const QString button = FromText(StartButtonCaption(shown));
    if (startButton_->iconText() != button) startButton_->setIconText(button);
    const bool stops = OffersStop(shown);
    if (stops == startButton_->data().toBool()) return;
    startButton_->setData(stops);
    startButton_->setIcon(MakeToolIcon(stops ? ToolIcon::Stop : ToolIcon::Start));
    startStop_->setIcon(startButton_->icon());
}

void InstrumentCommands::ShowInstrumentMenu() {
    const QString caption = FromText(InstrumentMenuCaption(StatusFactsOf(Window().Link)));
    if (menu_ == nullptr || (menu_->title() == caption && menuKey_->isEnabled() != caption.startsWith('&')))
        return;
    menu_->setTitle(caption);
    menuKey_->setEnabled(!caption.startsWith('&'));
}

void InstrumentCommands::ConnectCommand() {
    if (Connecting()) return;
    operations_.StartUnlessRunning("ConnectCommand", [this](Operation& operation) -> QCoro::Task<> {
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
    operations_.Cancel("ConnectAgain");
    operations_.StartUnlessRunning("Disconnect", [this](Operation& operation) -> QCoro::Task<> {
        co_await marisonde::DisconnectCommand(operation, Window());
    });
}

void InstrumentCommands::StartStopCommand() {
    if (OffersStop(Window().Link.State.PrevInstState))
        StopCommand();
    else
        StartCommand();
}

void InstrumentCommands::StartCommand() {
    SendCommand("START", Window().Link);
}

void InstrumentCommands::StopCommand() {
    SendCommand("STOP", Window().Link);
}

void InstrumentCommands::SleepCommand() {
    SendCommand("SETSLEEP", Window().Link);
}

void InstrumentCommands::ShowInstStatus() {
    if (statusForm_ == nullptr) statusForm_ = new InstStatusForm(Window(), shell_.App().settings, &form_);
    statusForm_->Show();
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
        co_await operation.Until(done);
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
    if (shell_.App().ports == nullptr) return;
    operations_.StartUnlessRunning("ConnectAgain", [this](Operation& operation) -> QCoro::Task<> {
        co_await ConnectAgain(operation, Window());
    });
}

}  // namespace marisonde
