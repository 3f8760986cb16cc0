#include "app/forms/CalibrationCommands.h"

#include <QAction>
#include <QActionGroup>
#include <QMenuBar>

#include "app/Calibrate.h"
#include "app/DataWindow.h"
#include "app/SelectCal.h"
#include "app/forms/FileCommands.h"
#include "app/forms/FormHelpers.h"
#include "app/forms/MainForm.h"

namespace marisonde {

namespace {

QCoro::Task<> SelectCal(Operation& operation, DataWindow& window) {
    co_await SelectCalCommand(operation, window);
}

}  // namespace

CalibrationCommands::CalibrationCommands(MainForm& form, Operations& operations)
    : QObject(&form),
      form_(form),
      operations_(operations),
      selectCal_(MakeAction("SelectCalItem", "Select Cali&bration File...", SelectCal)),
      calibrate_(MakeAction("DoCalMenu", "&Calibrate Instrument...", CalibrateCommand)),
      possible_(new QActionGroup(this)) {
    selectCal_->setToolTip("Choose the calibration of this window");
    possible_->setExclusionPolicy(QActionGroup::ExclusionPolicy::None);
    possible_->addAction(calibrate_);
    Update();
}

QAction* CalibrationCommands::MakeAction(const char* name, const QString& text, Command command) {
    auto* action = new QAction(text, this);
    action->setObjectName(name);
    connect(action, &QAction::triggered, this, [this, command] { Run(command); });
    return action;
}

/// One at a time, and none beside a command of the files: each may ask about what the other is changing.
void CalibrationCommands::Run(Command command) {
    operations_.StartUnlessRunning(kFilesOperation, [this, command](Operation& operation) -> QCoro::Task<> {
        co_await command(operation, form_.Window());
    });
}

void CalibrationCommands::MakeMenu(QMenuBar* bar) {
    QMenu* menu = bar->addMenu("&Calibration");
    menu->setObjectName("Calibration_menu");
    menu->setToolTipsVisible(true);
    menu->addAction(selectCal_);
    menu->addSeparator();
    menu->addAction(calibrate_);
}

void CalibrationCommands::AddTo(QMenu* files) {
    files->addAction(selectCal_);
}

void CalibrationCommands::Update() {
    const QString reason = FromText(NoCalibratingText(form_.Window()));
    possible_->setEnabled(reason.isEmpty());
    calibrate_->setToolTip(reason.isEmpty() ? "Calibrate the instrument and store the result in it" : reason);
}

}  // namespace marisonde
