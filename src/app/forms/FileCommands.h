#pragma once

#include <QObject>
#include <functional>
#include <string>
#include <vector>

#include "app/OpenFile.h"
#include "platform/Operations.h"

class QAction;
class QLabel;
class QMenu;
class QMenuBar;
class QPushButton;
class QToolBar;
class QWidget;

namespace marisonde {

class MainForm;
class ProcessFilesForm;
class ProgressBar;
class Shell;

/// The command that asks about files or calibration of a window: there is one at a time.
inline constexpr const char* kFilesOperation = "Files";

/// The commands of one data window that concern its files: menu File, tool bar, what is dropped on the
/// window, and the line that tells how loading and saving went.
class FileCommands final : public QObject {
    Q_OBJECT

  public:
    /// All that is referred to outlives the commands, except what runs among `operations`.
    FileCommands(Shell& shell, MainForm& form, Operations& operations);

    /// Menu File; `addFurther` adds what is no command of files, such as the preferences.
    void MakeMenu(QMenuBar* bar, const std::function<void(QMenu*)>& addFurther);
    void MakeToolBar(QToolBar* bar);
    /// News about the window's data, and the progress of reading a file. Hidden while there is nothing to
    /// tell.
    QWidget* MakeStatusLine(QWidget* parent);
    /// What is enabled and shown. Once a tick.
    void Update();

    /// Opens files by their names, calibrations among them.
    void OpenGiven(std::vector<std::string> paths);

  protected:
    /// Takes files that are dropped on the window.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    using Command = QCoro::Task<> (*)(Operation&, DataWindow&, const ShowNewWindow&);
    QAction* MakeAction(const char* name, const QString& text, const QString& tip, Command command);
    void Run(Command command);
    void MakeRecentMenu(QMenu* file);
    void FillRecentMenu();
    void ShowProcessFiles();
    void StopWork();
    void UpdateProgress();
    [[nodiscard]] ShowNewWindow NewWindow();
    [[nodiscard]] DataWindow& Window();

    Shell& shell_;
    MainForm& form_;
    Operations& operations_;
    QAction* new_;
    QAction* open_;
    QAction* save_;
    QAction* saveAs_;
    QAction* closeFile_;
    QMenu* recent_ = nullptr;
    QWidget* line_ = nullptr;
    QLabel* text_ = nullptr;
    ProgressBar* progress_ = nullptr;
    QPushButton* stop_ = nullptr;
    QPushButton* dismiss_ = nullptr;
    ProcessFilesForm* processFiles_ = nullptr;  ///< made when it is first wanted
};

}  // namespace marisonde
