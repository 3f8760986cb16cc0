#include "app/forms/MainForm.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>
#include <utility>

#include "app/Shutdown.h"
#include "app/forms/CalibrationCommands.h"
#include "app/forms/ChannelCommands.h"
#include "app/forms/ChannelPanel.h"
#include "app/forms/FileCommands.h"
#include "app/forms/FormHelpers.h"
#include "app/forms/GraphCommands.h"
#include "app/forms/HelpCommands.h"
#include "app/forms/InstrumentCommands.h"
#include "app/forms/NoticeStrip.h"
#include "app/forms/ParameterCommands.h"
#include "app/forms/Shell.h"
#include "app/forms/StatusPanels.h"
#include "app/forms/TerminalCommands.h"
#include "app/forms/WindowsMenu.h"
#include "graphs/forms/ChartView.h"

namespace marisonde {

namespace {

constexpr QPoint kDesignCorner{200, 200};
constexpr QSize kDesignSize{1024, 680};
constexpr QSize kMinimumSize{640, 420};
constexpr int kCascade = 28;  ///< pixels between windows that would else cover each other

}  // namespace

MainForm::MainForm(Shell& shell, std::unique_ptr<SerialLine> line)
    : shell_(shell),
      dialogs_(this),
      window_(shell.App(), dialogs_, std::move(line)),
      chart_(new ChartView(window_.Chart, this)),
      graph_(new GraphCommands(*this, *chart_)),
      channels_(new ChannelPanel(this)),
      timer_(new QTimer(this)),
      parameters_(new ParameterCommands(shell, *this)),
      notices_(new NoticeStrip(this)),
      panels_(new StatusPanels(statusBar())),
      channelCommands_(new ChannelCommands(window_, *chart_, *channels_)),
      windowsMenu_(new WindowsMenu(shell, *this)),
      operations_(shell.Waiting(), [this](const std::string& name, const std::string& reason) {
          dialogs_.ShowError(name + " failed: " + reason);
      }) {
    setObjectName("MainForm");
    setMinimumSize(kMinimumSize);
    commands_ = std::make_unique<InstrumentCommands>(shell_, *this, operations_);
    terminal_ = std::make_unique<TerminalCommands>(*this, operations_);
    files_ = new FileCommands(shell_, *this, operations_);
    calibration_ = new CalibrationCommands(*this, operations_);
    LayOut();
    MakeMenus();
    RestorePlace();
    InstrumentChanged();
    window_.OnShow = [this] { BringToFront(); };
    commands_->Update();
    files_->Update();
    graph_->Update();
    timer_->setObjectName("ProcessSerialInputTimer");
    timer_->setTimerType(Qt::PreciseTimer);
    connect(timer_, &QTimer::timeout, this, &MainForm::Tick);
    timer_->start(kTickMillis);
}

MainForm::~MainForm() = default;

void MainForm::LayOut() {
    auto* middle = new QWidget(this);
    auto* column = new QVBoxLayout(middle);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(notices_);
    column->addWidget(commands_->MakeNextStep(middle));
    auto* row = new QHBoxLayout;
    row->setSpacing(0);
    column->addLayout(row, 1);
    row->addWidget(chart_, 1);
    row->addWidget(channels_);
    statusLine_ = files_->MakeStatusLine(middle);
    column->addWidget(statusLine_);
    setCentralWidget(middle);
}

void MainForm::MakeMenus() {
    files_->MakeMenu(menuBar(), [this](QMenu* menu) {
        calibration_->AddTo(menu);
        parameters_->AddTo(menu);
    });
    commands_->MakeMenu(menuBar());
    terminal_->MakeMenu(menuBar()->findChild<QMenu*>("Inst_menu"));
    calibration_->MakeMenu(menuBar());
    auto* bar = new QToolBar(this);
    bar->setObjectName("Toolbar");
    bar->setWindowTitle("Tool Bar");
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    files_->MakeToolBar(bar);
    commands_->MakeToolBar(bar, [this, bar] { terminal_->MakeToolBar(bar); });
    addToolBar(bar);
    graph_->MakeMenu(menuBar());
    auto* scales = new QToolBar(this);
    graph_->MakeToolBar(scales);
    addToolBar(scales);
    MakeChannelViewItem(menuBar()->findChild<QMenu*>("Graph_menu"));
    windowsMenu_->MakeMenu(menuBar());
    (new HelpCommands(*this))->MakeMenu(menuBar());
    // As the eye goes; the keys of the graph work at once.
    OrderTabs({bar, scales, notices_, chart_, channels_, statusLine_, statusBar()});
    chart_->setFocus();
}

void MainForm::MakeChannelViewItem(QMenu* menu) {
    menu->addSeparator();
    channelView_ = menu->addAction("C&hannel Panel");
    channelView_->setObjectName("ChannelViewItem");
    channelView_->setCheckable(true);
    channelView_->setShortcut(Qt::Key_F4);
    connect(channelView_, &QAction::toggled, this, &MainForm::SetChannelView);
    channelView_->setChecked(FlagFromText(shell_.App().settings.GetSetting("App", "ChannelViewOpen", "1")));
    SetChannelView(channelView_->isChecked());
}

void MainForm::Tick() {
    window_.Tick();
    channelCommands_->Update();
    panels_->Show(window_);
    ShowTitle();
    ShowBusy();
    commands_->Update();
    files_->Update();
    calibration_->Update();
    graph_->Update();
    terminal_->Update();
    shell_.WatchSleep();
    shell_.Waiting().ResumeReady();
}

void MainForm::ShowTitle() {
    const QString title = FromText(window_.Title());
    if (windowTitle() == title) return;
    setWindowTitle(title);
    shell_.BuildWindowMenu();
}

void MainForm::ShowBusy() {
    const bool busy = window_.Busy || window_.SaveProgress;
    if (busy == testAttribute(Qt::WA_SetCursor)) return;
    if (busy)
        setCursor(Qt::WaitCursor);
    else
        unsetCursor();
}

void MainForm::BuildWindowMenu() {
    windowsMenu_->BuildWindowMenu();
}

void MainForm::BringToFront() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void MainForm::InstrumentChanged() {
    graph_->ShowCurves();
    channelCommands_->InstrumentChanged();
    panels_->Show(window_);
    ShowTitle();
    commands_->Update();
}

void MainForm::SetChannelView(bool open) {
    channels_->setVisible(open);
    shell_.App().settings.SaveSetting("App", "ChannelViewOpen", open ? "1" : "0");
}

void MainForm::CloseWithoutAsking() {
    mayClose_ = true;
    close();
}

void MainForm::closeEvent(QCloseEvent* event) {
    if (insteadOfAsking_) {
        timer_->stop();
        std::exchange(insteadOfAsking_, nullptr)();
        mayClose_ = true;
    }
    if (!mayClose_) {
        event->ignore();
        AskToClose();
        return;
    }
    timer_->stop();
    SavePlace();
    setAttribute(Qt::WA_DeleteOnClose);
    event->accept();
    shell_.WindowClosed(this);
}

void MainForm::AskToClose() {
    if (AsksToClose() || shell_.Exiting()) return;
    operations_.Start("Close", [this](Operation& operation) -> QCoro::Task<> {
        const bool mayClose = co_await PrepToClose(operation);
        if (!mayClose) co_return;
        // The form must not die inside its own operation.
        QTimer::singleShot(0, this, &MainForm::CloseWithoutAsking);
    });
}

QCoro::Task<bool> MainForm::PrepToClose(Operation& operation) {
    commands_->EndConnecting();
    const auto ended = [this] { return !commands_->Connecting(); };
    co_await operation.Until(ended);
    const bool mayClose = co_await PrepToCloseForm(operation, window_);
    co_return mayClose;
}

QPixmap MainForm::Picture() {
    chart_->RefreshNow();
    return grab();
}

void MainForm::SavePlace() const {
    SaveFormGeometry(shell_.App().settings, *this, "App");
}

void MainForm::RestorePlace() {
    const QPoint cascade(kCascade * window_.Index(), kCascade * window_.Index());
    RestoreFormGeometry(shell_.App().settings, *this, "App", QRect(kDesignCorner, kDesignSize));
    PlaceOnScreen(*this, geometry().translated(cascade));
}

}  // namespace marisonde
