#pragma once

#include <QObject>
#include <vector>

#include "app/WindowMenu.h"

class QAction;
class QMenu;
class QMenuBar;

namespace marisonde {

class MainForm;
class Shell;

/// The menu of windows, Window_menu: a new window, and the list of all that are open, the same in each.
class WindowsMenu final : public QObject {
    Q_OBJECT

  public:
    WindowsMenu(Shell& shell, MainForm& form);

    void MakeMenu(QMenuBar* bar);
    /// Makes the list anew when it has changed.
    void BuildWindowMenu();
    void NewWindow();

  private:
    void AddEntry(const WindowMenuEntry& entry);

    Shell& shell_;
    MainForm& form_;
    QMenu* menu_ = nullptr;
    std::vector<WindowMenuEntry> entries_;
    std::vector<QAction*> items_;
};

}  // namespace marisonde
