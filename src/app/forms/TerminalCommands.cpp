#include "app/forms/TerminalCommands.h"

#include <QAction>
#include <QMenu>
#include <vector>

#include "app/WindowTitle.h"
#include "app/forms/FormHelpers.h"
#include "app/forms/MainForm.h"
#include "app/forms/TermulatorForm.h"
#include "app/forms/ToolIcons.h"

namespace marisonde {

TerminalCommands::TerminalCommands(MainForm& form, Operations& operations)
    : QObject(&form), form_(form), operations_(operations), terminal_(new QAction("&Terminal...", this)) {
    terminal_->setObjectName("Terminal_menu");
    terminal_->setIconText("Terminal");
    terminal_->setIcon(MakeToolIcon(ToolIcon::Terminal));
    terminal_->setToolTip("Talk to the instrument by hand");
    terminal_->setShortcut(Qt::Key_F6);
    connect(terminal_, &QAction::triggered, this, &TerminalCommands::ShowTermulator);
    DataWindow& window = form_.Window();
    window.Children.push_back({"Term", [&window] { return TerminalTitle(window); },
                               [this] { return termulator_ && termulator_->isVisible(); },
                               [this] { ShowTermulator(); }});
}

TerminalCommands::~TerminalCommands() {
    if (termulator_ && termulator_->isVisible()) termulator_->SavePlace();
    delete termulator_.data();
    std::erase_if(form_.Window().Children, [](const ChildWindow& child) { return child.tag == "Term"; });
}

void TerminalCommands::MakeMenu(QMenu* instrument) {
    instrument->addSeparator();
    instrument->addAction(terminal_);
}

void TerminalCommands::MakeToolBar(QToolBar* bar) {
    AddToolButton(bar, terminal_, "Termulator_Button");
}

void TerminalCommands::Update() {
    if (termulator_) termulator_->Refresh();
}

void TerminalCommands::ShowTermulator() {
    if (!termulator_) termulator_ = new TermulatorForm(form_.Window(), operations_, form_);
    termulator_->ShowForm();
}

}  // namespace marisonde
