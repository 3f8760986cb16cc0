#pragma once

#include <QObject>
#include <QPointer>
#include <functional>
#include <optional>
#include <vector>

#include "app/Connect.h"
#include "app/forms/ConnectForm.h"
#include "app/forms/StatusItems.h"
#include "platform/Operations.h"

class QAction;
class QLabel;
class QMenu;
class QMenuBar;
class QShortcut;
class QToolBar;

namespace marisonde {

class InstStatusForm;
class MainForm;
class Shell;

/// The commands of one data window that concern its instrument: menu, tool bar and connect dialog.
class InstrumentCommands final : public QObject {
    Q_OBJECT

  public:
    /// All that is referred to outlives the commands, except what runs among `operations`.
    InstrumentCommands(Shell& shell, MainForm& form, Operations& operations);
    ~InstrumentCommands() override;

    void MakeMenu(QMenuBar* bar);
    /// `addFurther` adds what stands between connecting and starting.
    void MakeToolBar(QToolBar* bar, const std::function<void()>& addFurther);
    /// A sentence on what to do next, for a window that has nothing to show yet.
    QLabel* MakeNextStep(QWidget* parent);
    /// Captions and what is enabled, by the state of the instrument. Once a tick.
    void Update();

    /// Opens the connect dialog, after a question when there is a connection already.
    void ConnectCommand();
    void DisconnectCommand();
    /// Stops what runs or is pending, else starts.
    void StartStopCommand();
    void StartCommand();
    void StopCommand();
    /// Puts the instrument to sleep, or wakes it.
    void SleepCommand();
    void ShowInstStatus();

    /// Opens the connect dialog; `whenClosed` is called once it has closed, whatever came of it.
    void ShowConnectForm(std::function<void()> whenClosed);
    /// Opens the connect dialog, sets port and rate, and presses Connect; `whenClosed` as above. A model: it
    /// is assumed to be there and not asked.
    void ConnectAt(int port, int baud, std::optional<InstTypeCode> assumed, std::function<void()> whenClosed);
    /// Connects as the user has chosen for the start of the program: 1 as last time, otherwise by search. The
    /// dialog goes away afterwards, whatever came of it.
    void ConnectOnStartup(int choice);
    /// Ends whatever connects this window.
    void EndConnecting();
    /// Something still connects this window.
    [[nodiscard]] bool Connecting() const;

  private:
    void AfterDialog();
    void UnloadWhenDone();
    void LineLost();
    [[nodiscard]] DataWindow& Window();
    void MakeActions();
    void MakeLaterItems();
    void ShowCaptions();
    void ShowInstrumentMenu();

    Shell& shell_;
    MainForm& form_;
    Operations& operations_;
    Connector connector_;
    QPointer<ConnectForm> dialog_;
    std::vector<std::function<void()>> whenClosed_;
    QAction* connect_;
    QAction* disconnect_;
    QAction* startStop_;
    QAction* startButton_;
    QAction* sleep_;
    QAction* status_;
    QMenu* menu_ = nullptr;
    QShortcut* menuKey_ = nullptr;
    StatusItems items_;
    InstStatusForm* statusForm_ = nullptr;  ///< made when it is first wanted
    QPointer<QLabel> nextStep_;
};

}  // namespace marisonde
