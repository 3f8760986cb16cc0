#include "app/forms/FileCommands.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QToolBar>
#include <QUrl>
#include <utility>

#include "app/DataWindow.h"
#include "app/NewFile.h"
#include "app/RecentFiles.h"
#include "app/SaveFile.h"
#include "app/Shutdown.h"
#include "app/forms/FormHelpers.h"
#include "app/forms/MainForm.h"
#include "app/forms/ProcessFilesForm.h"
#include "app/forms/ProgressBar.h"
#include "app/forms/Shell.h"
#include "app/forms/ToolIcons.h"

namespace marisonde {

namespace {

constexpr int kProgressWidth = 220;  ///< pixels

QCoro::Task<> New(Operation& operation, DataWindow& window, const ShowNewWindow& /*newWindow*/) {
    return NewFileCommand(operation, window);
}

QCoro::Task<> Open(Operation& operation, DataWindow& window, const ShowNewWindow& newWindow) {
    return OpenFileCommand(operation, window, newWindow);
}

QCoro::Task<> Save(Operation& operation, DataWindow& window, const ShowNewWindow& /*newWindow*/) {
    co_await SaveFileMenuCommand(operation, window);
}

QCoro::Task<> SaveAs(Operation& operation, DataWindow& window, const ShowNewWindow& /*newWindow*/) {
    co_await SaveAsMenuCommand(operation, window);
}

QCoro::Task<> CloseFile(Operation& operation, DataWindow& window, const ShowNewWindow& /*newWindow*/) {
    co_await CloseDataFiles(operation, window, true);
}

/// A name of other bytes than UTF-8 has no text that leads back to the file.
std::string LocalPath(const QUrl& url) {
    const QString text = url.toLocalFile();
    if (!text.contains(QChar::ReplacementCharacter)) return text.toStdString();
    return QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString();
}

std::vector<std::string> LocalFiles(const QMimeData* data) {
    std::vector<std::string> paths;
    for (const QUrl& url : data->urls())
        if (url.isLocalFile()) paths.push_back(LocalPath(url));
    return paths;
}

}  // namespace

FileCommands::FileCommands(Shell& shell, MainForm& form, Operations& operations)
    : QObject(&form),
      shell_(shell),
      form_(form),
      operations_(operations),
      new_(MakeAction("New_File_Menu", "&New File", "Begin new files for what the instrument sends", New)),
      open_(MakeAction("Open_File_menu", "&Open...", "Open a raw or calibrated data file", Open)),
      save_(MakeAction("SaveFileItem", "&Save", "Save the recorded data under their name", Save)),
      saveAs_(MakeAction("SaveAsItem", "Save &As...", "Save the data of this window", SaveAs)),
      closeFile_(
          MakeAction("CloseFile_menu", "C&lose File", "Close the data files of this window", CloseFile)) {
    new_->setShortcut(QKeySequence::New);
    open_->setShortcut(QKeySequence::Open);
    open_->setIcon(MakeToolIcon(ToolIcon::Open));
    open_->setIconText("Open");
    save_->setShortcut(QKeySequence::Save);
    saveAs_->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_S);
    saveAs_->setIcon(MakeToolIcon(ToolIcon::Save));
    saveAs_->setIconText("Save");
    closeFile_->setIcon(MakeToolIcon(ToolIcon::Close));
    closeFile_->setIconText("Close File");
    form.setAcceptDrops(true);
    form.installEventFilter(this);
    Window().Running = &operations;
    Window().OnFilesToName = [this] {
        operations_.StartUnlessRunning("NameFiles", [this](Operation& operation) -> QCoro::Task<> {
            co_await NameFilesCommand(operation, Window());
        });
    };
}

DataWindow& FileCommands::Window() {
    return form_.Window();
}

QAction* FileCommands::MakeAction(const char* name, const QString& text, const QString& tip,
                                  Command command) {
    auto* action = new QAction(text, this);
    action->setObjectName(name);
    action->setToolTip(tip);
    connect(action, &QAction::triggered, this, [this, command] { Run(command); });
    return action;
}

/// One of these at a time: each may ask about what the other is changing.
void FileCommands::Run(Command command) {
    operations_.StartUnlessRunning(kFilesOperation, [this, command](Operation& operation) -> QCoro::Task<> {
        const ShowNewWindow newWindow = NewWindow();
        co_await command(operation, Window(), newWindow);
    });
}

ShowNewWindow FileCommands::NewWindow() {
    return [this]() -> DataWindow* {
        MainForm* const other = shell_.NewWindow();
        if (other == nullptr) return nullptr;
        other->show();
        return &other->Window();
    };
}

void FileCommands::OpenGiven(std::vector<std::string> paths) {
    if (paths.empty()) return;
    operations_.Start("OpenGiven", [this, paths](Operation& operation) -> QCoro::Task<> {
        const auto idle = [this] { return !operations_.Running(kFilesOperation); };
        co_await operation.Until(idle);
        const ShowNewWindow newWindow = NewWindow();
        co_await OpenGivenFiles(operation, Window(), paths, newWindow);
    });
}

void FileCommands::MakeMenu(QMenuBar* bar, const std::function<void(QMenu*)>& addFurther) {
    QMenu* menu = bar->addMenu("&File");
    menu->setObjectName("File_menu");
    menu->setToolTipsVisible(true);
    menu->addActions({new_, open_});
    MakeRecentMenu(menu);
    menu->addSeparator();
    menu->addActions({save_, saveAs_});
    menu->addSeparator();
    QAction* process = menu->addAction("&Process Files...", this, &FileCommands::ShowProcessFiles);
    process->setObjectName("ProcessFilesItem");
    process->setToolTip("Convert many raw files at once");
    menu->addSeparator();
    addFurther(menu);
    menu->addSeparator();
    menu->addAction(closeFile_);
    QAction* close = menu->addAction("&Close Window", Qt::CTRL | Qt::Key_W, &form_, &QWidget::close);
    close->setObjectName("CloseWindowItem");
    QAction* exit =
        menu->addAction("E&xit", QKeySequence::Quit, this, [this] { shell_.ExitCommand(&form_); });
    exit->setObjectName("ExitItem");
}

void FileCommands::MakeToolBar(QToolBar* bar) {
    const std::pair<QAction*, const char*> buttons[] = {
        {open_, "Load_Button"}, {saveAs_, "Save_Button"}, {closeFile_, "CloseFileButton"}};
    for (const auto& [action, name] : buttons) AddToolButton(bar, action, name);
    bar->addSeparator();
}

void FileCommands::MakeRecentMenu(QMenu* file) {
    recent_ = file->addMenu("Open &Recent");
    recent_->setObjectName("Recent_menu");
    connect(recent_, &QMenu::aboutToShow, this, &FileCommands::FillRecentMenu);
    connect(file, &QMenu::aboutToShow, this,
            [this] { recent_->setEnabled(!RecentFiles(shell_.App().settings).empty()); });
}

void FileCommands::FillRecentMenu() {
    recent_->clear();
    int number = 1;
    for (const std::string& path : RecentFiles(shell_.App().settings)) {
        QString text = FromText(path);
        text.replace('&', "&&");
        recent_->addAction(QString("&%1  %2").arg(number++).arg(text), this,
                           [this, path] { OpenGiven({path}); });
    }
}

void FileCommands::ShowProcessFiles() {
    if (processFiles_ == nullptr) processFiles_ = new ProcessFilesForm(shell_.App(), operations_, &form_);
    processFiles_->Show();
}

QWidget* FileCommands::MakeStatusLine(QWidget* parent) {
    line_ = new QWidget(parent);
    auto* row = new QHBoxLayout(line_);
    row->setContentsMargins(8, 2, 8, 2);
    text_ = new QLabel(line_);
    text_->setObjectName("StatusLine");
    text_->setAccessibleName("News about the data");
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    text_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    row->addWidget(text_, 1);
    progress_ = new ProgressBar(line_, "LoadProgress", "Progress of loading or saving");
    progress_->setFixedWidth(kProgressWidth);
    row->addWidget(progress_);
    stop_ = new QPushButton("S&top", line_);
    stop_->setObjectName("StopLoading");
    stop_->setShortcut(Qt::Key_Escape);
    connect(stop_, &QPushButton::clicked, this, &FileCommands::StopWork);
    row->addWidget(stop_);
    dismiss_ = new QPushButton("Hi&de", line_);
    dismiss_->setObjectName("HideStatusLine");
    dismiss_->setFlat(true);
    connect(dismiss_, &QPushButton::clicked, this, [this] { Window().StatusLine.clear(); });
    row->addWidget(dismiss_);
    line_->hide();
    return line_;
}

/// What was read stays on the graph; of what was being saved nothing is left.
void FileCommands::StopWork() {
    DataWindow& window = Window();
    if (window.SaveProgress)
        window.StopSaving = true;
    else if (window.Stored.IsShown())
        operations_.Cancel(kLoadOperation);
}

void FileCommands::Update() {
    const DataWindow& window = Window();
    const bool holds = window.Stored.IsShown() || !window.WhereDataAre().empty();
    save_->setEnabled(holds);
    saveAs_->setEnabled(holds);
    closeFile_->setEnabled(holds);
    UpdateProgress();
}

void FileCommands::UpdateProgress() {
    const DataWindow& window = Window();
    const bool saving = window.SaveProgress.has_value();
    const std::optional<ReadProgress>& progress = saving ? window.SaveProgress : window.LoadProgress;
    const bool working = progress.has_value();
    if (working) {
        const std::string_view title = saving ? window.SaveTitle : kLoadingTitle;
        text_->setText(QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size())));
        progress_->ShowShare(ShareDone(*progress));
    } else if (text_->text() != FromText(window.StatusLine)) {
        text_->setText(FromText(window.StatusLine));
    }
    progress_->setVisible(working);
    stop_->setVisible(saving || (working && window.Stored.IsShown()));
    stop_->setToolTip(saving ? "Save nothing more" : "Show what has been read so far");
    dismiss_->setVisible(!working);
    line_->setVisible(working || !window.StatusLine.empty());
}

bool FileCommands::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &form_ && event->type() == QEvent::DragEnter) {
        auto* drag = static_cast<QDragEnterEvent*>(event);
        if (!LocalFiles(drag->mimeData()).empty()) drag->acceptProposedAction();
        return true;
    }
    if (watched == &form_ && event->type() == QEvent::Drop) {
        auto* drop = static_cast<QDropEvent*>(event);
        drop->acceptProposedAction();
        OpenGiven(LocalFiles(drop->mimeData()));
        return true;
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace marisonde
