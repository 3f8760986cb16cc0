#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <memory>
#include <vector>

#include "app/AppContext.h"
#include "app/CommandLine.h"
#include "link/SerialLine.h"
#include "platform/KeepAwake.h"
#include "platform/Operations.h"
#include "platform/Pump.h"

namespace marisonde {

class MainForm;

/// The program with all its windows: what Sub Main sets up, and what ends when the last window has closed.
class Shell final : public QObject {
    Q_OBJECT

  public:
    Shell(AppContext& app, Pump& pump);
    ~Shell() override;

    [[nodiscard]] AppContext& App() { return app_; }
    [[nodiscard]] Pump& Waiting() { return pump_; }

    /// A new window in the lowest free slot, with the calibration that the user wants recalled; nullptr when
    /// all slots are taken. Its line is one of the application's ports.
    MainForm* NewWindow();
    /// The same on a line of its own.
    MainForm* NewWindow(std::unique_ptr<SerialLine> line);
    [[nodiscard]] std::vector<MainForm*> Windows() const;
    /// Every window shows the same list of windows: makes it anew in all.
    void BuildWindowMenu();
    /// Keeps the computer awake while data arrive in any window.
    void WatchSleep();
    /// Whom the computer's sleep is kept off by; none is used before.
    void UseInhibitor(std::unique_ptr<SleepInhibitor> inhibitor) { awake_.Use(std::move(inhibitor)); }
    /// Asks every used window, `first` first, whether it may close; the first refusal stops it all.
    void ExitCommand(MainForm* first);
    /// While it asks, windows do not close one by one.
    [[nodiscard]] bool Exiting() const;
    /// `form` has closed and will be deleted. After the last one the settings are saved and the program ends.
    void WindowClosed(MainForm* form);

  private:
    AppContext& app_;
    Pump& pump_;
    std::vector<MainForm*> forms_;  ///< the open ones; each takes itself out when it goes
    KeepAwake awake_;
    QTimer nextTurn_;  ///< turns the pump for work at hand, as soon as the event loop has seen to the rest
    Operations operations_;
};

}  // namespace marisonde
