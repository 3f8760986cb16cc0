#include "app/forms/MainForm.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>
#include <utility>

#include "app/PlottedChannels.h"
#include "app/Shutdown.h"
#include "app/forms/ChannelPanel.h"
#include "app/forms/FormHelpers.h"
#include "app/forms/GraphCommands.h"
#include "app/forms/HelpCommands.h"
#include "app/forms/InstrumentCommands.h"
#include "app/forms/ParameterCommands.h"
#include "app/forms/ProcessFilesForm.h"
#include "app/forms/Shell.h"
#include "app/forms/TerminalCommands.h"
#include "common/ConversionUtils.h"
#include "common/Numbers.h"
#include "graphs/forms/ChartView.h"
#include "platform/Paths.h"

namespace marisonde {

namespace {

constexpr QPoint kDesignCorner{200, 200};
constexpr QSize kDesignSize{1024, 680};
constexpr QSize kMinimumSize{640, 420};
constexpr int kCascade = 28;  ///< pixels between windows that would else cover each other

/// A label of the status bar, as wide as the longest text it will show.
QLabel* StatusPanel(QStatusBar* bar, const char* name, const QString& meaning, const QString& longest) {
    auto* label = new QLabel(bar);
    label->setObjectName(name);
    label->setAccessibleName(meaning);
    label->setToolTip(meaning);
    label->setTextFormat(Qt::PlainText);
    label->setFixedWidth(label->fontMetrics().horizontalAdvance(longest) + 12);
    bar->addWidget(label);
    return label;
}

void Show(QLabel* label, const QString& text) {
    if (label->text() != text) label->setText(text);
}

QString WithUnit(double value, int decimals, const char* unit) {
    return QString::fromStdString(FixedText(value, decimals)) + " " + unit;
}

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
      operations_(shell.Waiting(), [this](const std::string& name, const std::string& reason) {
          dialogs_.ShowError(name + " failed: " + reason);
      }) {
    setObjectName("MainForm");
    setMinimumSize(kMinimumSize);
    auto* middle = new QWidget(this);
    commands_ = std::make_unique<InstrumentCommands>(shell_, *this, operations_);
    terminal_ = std::make_unique<TerminalCommands>(*this, operations_);
    auto* column = new QVBoxLayout(middle);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(commands_->MakeNextStep(middle));
    auto* row = new QHBoxLayout;
    column->addLayout(row, 1);
    row->addWidget(chart_, 1);
    row->addWidget(channels_);
    setCentralWidget(middle);
    MakeMenus();
    MakeStatusBar();
    RestorePlace();
    InstrumentChanged();
    commands_->Update();
    graph_->Update();
    timer_->setObjectName("ProcessSerialInputTimer");
    timer_->setTimerType(Qt::PreciseTimer);
    connect(timer_, &QTimer::timeout, this, &MainForm::Tick);
    timer_->start(kTickMillis);
}

MainForm::~MainForm() = default;

void MainForm::MakeMenus() {
    QMenu* file = menuBar()->addMenu("&File");
    file->setObjectName("File_menu");
    QAction* process = file->addAction("&Process Files...", this, &MainForm::ShowProcessFiles);
    process->setObjectName("ProcessFilesItem");
    file->addSeparator();
    parameters_->AddTo(file);
    file->addSeparator();
    QAction* close = file->addAction("&Close Window", QKeySequence::Close, this, &QWidget::close);
    close->setObjectName("CloseWindowItem");
    QAction* exit = file->addAction("E&xit", QKeySequence::Quit, this, [this] { shell_.ExitCommand(this); });
    exit->setObjectName("ExitItem");

    commands_->MakeMenu(menuBar());
    terminal_->MakeMenu(menuBar()->findChild<QMenu*>("Inst_menu"));
    auto* bar = new QToolBar(this);
    commands_->MakeToolBar(bar);
    terminal_->MakeToolBar(bar);
    addToolBar(bar);
    graph_->MakeMenu(menuBar());
    auto* scales = new QToolBar(this);
    graph_->MakeToolBar(scales);
    addToolBar(scales);

    QMenu* view = menuBar()->addMenu("&View");
    view->setObjectName("View_menu");
    channelView_ = view->addAction("&Channel Panel");
    channelView_->setObjectName("ChannelViewItem");
    channelView_->setCheckable(true);
    channelView_->setShortcut(Qt::Key_F4);
    connect(channelView_, &QAction::toggled, this, &MainForm::SetChannelView);
    channelView_->setChecked(FlagFromText(shell_.App().settings.GetSetting("App", "ChannelViewOpen", "1")));
    SetChannelView(channelView_->isChecked());

    (new HelpCommands(*this))->MakeMenu(menuBar());
}

void MainForm::ShowProcessFiles() {
    if (processFiles_ == nullptr) processFiles_ = new ProcessFilesForm(shell_.App(), operations_, this);
    processFiles_->Show();
}

void MainForm::MakeStatusBar() {
    QStatusBar* bar = statusBar();
    bar->setObjectName("StatusBar");
    bar->setContentsMargins(8, 0, 4, 0);
    panels_.state = StatusPanel(bar, "Status_Box", "State of the instrument", "Starting: 000 s");
    panels_.elapsed = StatusPanel(bar, "ElapsedPanel", "Time since the first sample", "00000.0 min");
    panels_.depth = StatusPanel(bar, "DepthPanel", "Depth", "-0000.00 m");
    panels_.temperature = StatusPanel(bar, "TemperaturePanel", "Water temperature", "-00.00 C");
    panels_.voltage = StatusPanel(bar, "VoltagePanel", "Supply of the instrument", "00.0 V");
    panels_.files = new QLabel(bar);
    panels_.files->setObjectName("DataPath");
    panels_.files->setAccessibleName("Where the data are recorded");
    panels_.files->setTextFormat(Qt::RichText);
    panels_.files->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    connect(panels_.files, &QLabel::linkActivated, this,
            [](const QString& link) { QDesktopServices::openUrl(QUrl(link)); });
    bar->addPermanentWidget(panels_.files);
}

void MainForm::Tick() {
    window_.Tick();
    ShowReadouts();
    ShowStatus();
    commands_->Update();
    graph_->Update();
    terminal_->Update();
    shell_.Waiting().ResumeReady();
}

void MainForm::ShowReadouts() {
    const PlotReadouts& shown = window_.Plot.Readouts();
    for (std::size_t box = 0; box < shown.DataBox.size(); ++box)
        channels_->SetValue(static_cast<int>(box), shown.DataBox[box].View());
    const std::string_view elapsed = shown.Elapsed.View();
    Show(panels_.elapsed, QString::fromLatin1(elapsed.data(), static_cast<qsizetype>(elapsed.size())));
    const DataWindowState& state = window_.Link.State;
    if (!state.HasSample) return;
    const CalibratedSample& sample = state.CurrentSample;
    const bool metres = window_.Plot.DepthInMeters();
    const double depth = metres ? sample.Depth : sample.Depth * 39.37 / 12;
    Show(panels_.depth, WithUnit(depth, 2, metres ? "m" : "ft"));
    Show(panels_.temperature, WithUnit(sample.Temp, 2, "C"));
    Show(panels_.voltage, state.SupplyVoltage ? WithUnit(*state.SupplyVoltage, 1, "V") : QString("---"));
}

void MainForm::ShowStatus() {
    Show(panels_.state, FromText(window_.StatusText()));
    const QString title = FromText(window_.Title());
    if (windowTitle() != title) setWindowTitle(title);
    const QString where = FromText(window_.WhereDataAre());
    if (panels_.files->toolTip() == where) return;
    panels_.files->setToolTip(where);
    const QString folder =
        where.isEmpty() ? QString() : TextFromPath(PathFromText(where.section('\n', 0, 0)).parent_path());
    const QString link = QUrl::fromLocalFile(folder).toString().toHtmlEscaped();
    panels_.files->setText(
        where.isEmpty() ? QString()
                        : QString("<a href=\"%1\">Recording in %2</a>").arg(link, folder.toHtmlEscaped()));
}

void MainForm::InstrumentChanged() {
    std::vector<ChannelRow> rows;
    graph_->ShowCurves();
    for (const PlottedChannel& channel : PlottedChannels(window_.Plot, window_.Link.CalData)) {
        if (!channel.calibrated) continue;
        const CurveSample curve = chart_->SampleOf(channel.group, channel.series);
        rows.push_back({channel.box, FromText(channel.name), FromText(channel.unit), curve.color});
    }
    channels_->SetChannels(rows);
    ShowStatus();
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
    co_await operation.Until(ended, Millis::max());
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
