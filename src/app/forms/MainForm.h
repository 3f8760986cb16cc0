#pragma once

#include <QMainWindow>
#include <functional>
#include <memory>

#include "app/DataWindow.h"
#include "app/forms/FormDialogs.h"
#include "platform/Operations.h"

class QMenu;
class QTimer;

namespace marisonde {

class CalibrationCommands;
class ChannelCommands;
class ChannelPanel;
class ChartView;
class FileCommands;
class GraphCommands;
class InstrumentCommands;
class NoticeStrip;
class ParameterCommands;
class Shell;
class StatusPanels;
class TerminalCommands;
class WindowsMenu;

/// One data window: the graph as the largest thing, the channels beside it, the instrument's state below.
class MainForm final : public QMainWindow {
    Q_OBJECT

  public:
    static constexpr int kTickMillis = 50;

    MainForm(Shell& shell, std::unique_ptr<SerialLine> line);
    ~MainForm() override;

    [[nodiscard]] DataWindow& Window() { return window_; }
    [[nodiscard]] FormDialogs& Ask() { return dialogs_; }
    [[nodiscard]] Operations& Running() { return operations_; }
    [[nodiscard]] InstrumentCommands& Commands() { return *commands_; }
    [[nodiscard]] ParameterCommands& Parameters() { return *parameters_; }
    /// Notices that wait in the window until they are read, and hold up nothing.
    [[nodiscard]] NoticeStrip& Notices() { return *notices_; }
    /// Makes the list in the menu of windows anew, if it has changed.
    void BuildWindowMenu();
    /// Brings the window to the front.
    void BringToFront();
    [[nodiscard]] FileCommands& Files() { return *files_; }
    /// True while a question of its closing stands.
    [[nodiscard]] bool AsksToClose() const { return operations_.Running("Close"); }
    /// The gate of closing: ends what connects, then asks. False: the window stays open.
    QCoro::Task<bool> PrepToClose(Operation& operation);
    /// Shows what a new calibration or model means: channels, colours, legend, title.
    void InstrumentChanged();
    /// Closing asks nothing but runs `last` instead, as in the demonstration.
    void CloseWith(std::function<void()> last) { insteadOfAsking_ = std::move(last); }
    /// Closes without the gate: whoever calls has been through it, or there is nothing to ask.
    void CloseWithoutAsking();
    /// The window as it stands, for a picture file.
    [[nodiscard]] QPixmap Picture();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void LayOut();
    void MakeMenus();
    void MakeChannelViewItem(QMenu* menu);
    void Tick();
    void ShowTitle();
    void ShowBusy();
    void SetChannelView(bool open);
    void AskToClose();
    void SavePlace() const;
    void RestorePlace();

    Shell& shell_;
    FormDialogs dialogs_;
    DataWindow window_;
    ChartView* chart_;
    GraphCommands* graph_;
    ChannelPanel* channels_;
    QTimer* timer_;
    QAction* channelView_ = nullptr;
    ParameterCommands* parameters_;
    NoticeStrip* notices_;
    StatusPanels* panels_;
    QWidget* statusLine_ = nullptr;
    ChannelCommands* channelCommands_ = nullptr;
    WindowsMenu* windowsMenu_;
    bool mayClose_ = false;
    std::function<void()> insteadOfAsking_;
    std::unique_ptr<InstrumentCommands> commands_;
    std::unique_ptr<TerminalCommands> terminal_;
    FileCommands* files_ = nullptr;
    CalibrationCommands* calibration_ = nullptr;
    Operations operations_;  ///< dies first: what runs uses everything above
};

}  // namespace marisonde
