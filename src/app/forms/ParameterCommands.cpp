#include "app/forms/ParameterCommands.h"

#include <QAction>
#include <QMenu>

#include "app/forms/BbParamsForm.h"
#include "app/forms/MainForm.h"
#include "app/forms/PreferencesForm.h"
#include "app/forms/Shell.h"
#include "app/forms/SigmaParamsForm.h"

namespace marisonde {

ParameterCommands::ParameterCommands(Shell& shell, MainForm& form)
    : QObject(&form), shell_(shell), form_(form) {}

void ParameterCommands::AddTo(QMenu* menu) {
    const auto add = [this, menu](const char* name, const char* caption, void (ParameterCommands::*show)()) {
        menu->addAction(caption, this, show)->setObjectName(name);
    };
    add("PreferencesItem", "Pr&eferences...", &ParameterCommands::ShowPreferences);
    add("SigmaParamsItem", "Si&gma Parameters...", &ParameterCommands::ShowSigmaParams);
    add("PureWaterParamsItem", "Pure-&water Parameters...", &ParameterCommands::ShowPureWaterParams);
}

void ParameterCommands::ShowPreferences() {
    if (preferences_ == nullptr) preferences_ = new PreferencesForm(shell_.App(), &form_);
    preferences_->Show();
}

void ParameterCommands::ShowSigmaParams() {
    if (sigma_ == nullptr) sigma_ = new SigmaParamsForm(shell_.App(), form_.Running(), &form_);
    sigma_->Show();
}

void ParameterCommands::ShowPureWaterParams() {
    if (pureWater_ == nullptr) pureWater_ = new BbParamsForm(shell_.App(), &form_);
    pureWater_->Show();
}

}  // namespace marisonde
