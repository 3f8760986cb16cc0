#include <QAction>
#include <QMenuBar>
#include <QSplitter>
#include <array>
#include <span>

#include "app/TerminalText.h"
#include "app/forms/TerminalBoxView.h"
#include "app/forms/TermulatorForm.h"

namespace marisonde {

namespace {

// Items of the main window that stand in the terminal's menus too.
constexpr std::array<const char*, 4> kFileItems{"New_File_Menu", "CloseFile_menu", "SaveFileItem",
                                                "SaveAsItem"};
constexpr std::array<const char*, 5> kInstrumentItems{"Connect_menu", "Disconnect_menu", "Start_Stop_menu",
                                                      "Sleep_menu", "Transfer_menu"};

constexpr int kDividerLines = 3;  ///< of text, that the divider moves by

/// The very same items: they do the same, and are enabled and checked alike.
void AddItemsOf(const QWidget& main, QMenu* menu, std::span<const char* const> names) {
    for (const char* name : names)
        if (auto* item = main.findChild<QAction*>(name)) menu->addAction(item);
}

}  // namespace

void TermulatorForm::MakeMenus() {
    QMenu* file = menuBar()->addMenu("&File");
    file->setObjectName("TermFile_menu");
    AddItemsOf(main_, file, kFileItems);
    if (!file->isEmpty()) file->addSeparator();
    QAction* save = file->addAction("Save Terminal &Text...", this, &TermulatorForm::SaveText);
    save->setObjectName("SaveTextItem");
    file->addSeparator();
    QAction* close = file->addAction("Close Te&rminal", QKeySequence::Close, this, &QWidget::close);
    close->setObjectName("CloseTerminalItem");
    MakeEditMenu();
    MakeViewMenu();
    instrument_ = menuBar()->addMenu("&Instrument");
    instrument_->setObjectName("TermInst_menu");
    instrument_->setToolTipsVisible(true);
    AddItemsOf(main_, instrument_, kInstrumentItems);
    instrumentOfMain_ = main_.findChild<QMenu*>("Inst_menu");
    for (const char* name : {"Window_menu", "Help_menu"})
        if (auto* menu = main_.findChild<QMenu*>(name)) menuBar()->addMenu(menu);
}

/// The keys are named but not bound: without a selection Ctrl+C is a key for the instrument.
void TermulatorForm::MakeEditMenu() {
    QMenu* edit = menuBar()->addMenu("&Edit");
    edit->setObjectName("TermEdit_menu");
    QAction* copy = edit->addAction("&Copy\tCtrl+C", this, &TermulatorForm::CopySelection);
    copy->setObjectName("CopyItem");
    connect(edit, &QMenu::aboutToShow, copy, [this, copy] { copy->setEnabled(HasSelection()); });
    edit->addAction("&Paste as Command\tCtrl+V", this, &TermulatorForm::PasteText)
        ->setObjectName("PasteItem");
    edit->addSeparator();
    QAction* replies = edit->addAction("Clear &Replies", this, [this] {
        window_.Terminal.ResponseClear();
        Refresh();
    });
    replies->setObjectName("ClearRepliesItem");
    QAction* data = edit->addAction("Clear &Data", this, [this] {
        window_.Terminal.DataClear();
        Refresh();
    });
    data->setObjectName("ClearDataItem");
}

/// What the divider does for the mouse.
void TermulatorForm::MakeViewMenu() {
    QMenu* view = menuBar()->addMenu("&View");
    view->setObjectName("TermView_menu");
    const int step = kDividerLines * response_->fontMetrics().lineSpacing();
    QAction* replies = view->addAction("More Room for &Replies", QKeySequence(Qt::CTRL | Qt::Key_Down), this,
                                       [this, step] { MoveDivider(step); });
    replies->setObjectName("MoreRepliesItem");
    QAction* data = view->addAction("More Room for &Data", QKeySequence(Qt::CTRL | Qt::Key_Up), this,
                                    [this, step] { MoveDivider(-step); });
    data->setObjectName("MoreDataItem");
}

void TermulatorForm::MoveDivider(int pixels) {
    const QList<int> now = divider_->sizes();
    divider_->setSizes({now[0] + pixels, now[1] - pixels});
}

void TermulatorForm::SaveText() {
    operations_.StartUnlessRunning("SaveTerminalText", [this](Operation& operation) -> QCoro::Task<> {
        const std::string text = window_.Terminal.TextToSave();
        const std::string proposed =
            window_.App().prefs.SavePath + window_.DefaultFileName() + " terminal.txt";
        co_await SaveTerminalText(operation, dialogs_, text, proposed);
    });
}

}  // namespace marisonde
