#pragma once

#include <QObject>
#include <QPointer>

#include "platform/Operations.h"

class QAction;
class QMenu;
class QToolBar;

namespace marisonde {

class MainForm;
class TermulatorForm;

/// Opens the terminal of a data window, keeps it up to date and takes it away with the window.
class TerminalCommands final : public QObject {
    Q_OBJECT

  public:
    /// All that is referred to outlives the commands, except what runs among `operations`.
    TerminalCommands(MainForm& form, Operations& operations);
    ~TerminalCommands() override;

    void MakeMenu(QMenu* instrument);
    void MakeToolBar(QToolBar* bar);
    /// Once a tick.
    void Update();
    /// Shows the terminal in front of all windows.
    void ShowTermulator();

  private:
    MainForm& form_;
    Operations& operations_;
    QAction* terminal_;
    QPointer<TermulatorForm> termulator_;  ///< made when it is first wanted
};

}  // namespace marisonde
