#include "app/forms/WindowsMenu.h"

#include <QMenuBar>

#include "app/ConnectCommand.h"
#include "app/forms/FormHelpers.h"
#include "app/forms/MainForm.h"
#include "app/forms/Shell.h"

namespace marisonde {

WindowsMenu::WindowsMenu(Shell& shell, MainForm& form) : QObject(&form), shell_(shell), form_(form) {}

void WindowsMenu::MakeMenu(QMenuBar* bar) {
    menu_ = bar->addMenu("&Windows");
    menu_->setObjectName("Window_menu");
    QAction* make =
        menu_->addAction("&New Window", QKeySequence("Ctrl+Shift+N"), this, &WindowsMenu::NewWindow);
    make->setObjectName("NewWindowItem");
    make->setEnabled(shell_.App().ports != nullptr);
    menu_->addSeparator();
    // A child may have been opened or closed without anyone saying so.
    connect(menu_, &QMenu::aboutToShow, this, &WindowsMenu::BuildWindowMenu);
}

void WindowsMenu::NewWindow() {
    if (MainForm* const form = shell_.NewWindow())
        form->show();
    else
        form_.Ask().ShowError(WindowLimitText());
}

void WindowsMenu::BuildWindowMenu() {
    std::vector<WindowMenuEntry> entries = marisonde::BuildWindowMenu(shell_.App(), form_.Window().Index());
    if (entries == entries_) return;
    for (QAction* item : items_) delete item;
    items_.clear();
    entries_ = std::move(entries);
    for (const WindowMenuEntry& entry : entries_) AddEntry(entry);
}

void WindowsMenu::AddEntry(const WindowMenuEntry& entry) {
    QString text = FromText(entry.text).replace('&', "&&");
    const bool child = !entry.tag.empty();
    const int number = entry.window + 1;
    if (!child) text = QString("&%1 %2").arg(QString::number(number), text.trimmed());
    QAction* item = menu_->addAction(text, this, [this, entry] {
        // The menu may be built anew by what is shown, and the item with it.
        // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
        const WindowMenuEntry chosen = entry;
        SelectWindowFromWindowsMenu(shell_.App(), chosen);
    });
    item->setObjectName(QString("WindowItem(%1)").arg(items_.size()));
    item->setData(FromText(entry.tag));
    if (!child) {
        item->setShortcut(QKeySequence(QString("Ctrl+%1").arg(number)));
        item->setCheckable(true);
        item->setChecked(entry.checked);
        // Choosing the window that is in front already must leave its mark.
        connect(item, &QAction::triggered, item, [item, on = entry.checked] { item->setChecked(on); });
    }
    items_.push_back(item);
}

}  // namespace marisonde
