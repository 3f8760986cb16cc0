#pragma once

#include <QObject>

#include "platform/Operations.h"

class QAction;
class QActionGroup;
class QMenu;
class QMenuBar;

namespace marisonde {

class DataWindow;
class MainForm;

/// The commands of one data window that concern its calibration: choosing a file, calibrating the instrument.
class CalibrationCommands final : public QObject {
    Q_OBJECT

  public:
    /// All that is referred to outlives the commands, except what runs among `operations`.
    CalibrationCommands(MainForm& form, Operations& operations);

    void MakeMenu(QMenuBar* bar);
    /// The choice of a file, in the menu of files.
    void AddTo(QMenu* files);
    /// What is enabled, and why not. Once a tick.
    void Update();

  private:
    using Command = QCoro::Task<> (*)(Operation&, DataWindow&);
    QAction* MakeAction(const char* name, const QString& text, Command command);
    void Run(Command command);

    MainForm& form_;
    Operations& operations_;
    QAction* selectCal_;
    QAction* calibrate_;
    /// Whether the window can calibrate at all: disabled, it overrules what the instrument's state allows.
    QActionGroup* possible_;
};

}  // namespace marisonde
