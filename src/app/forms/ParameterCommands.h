#pragma once

#include <QObject>

class QMenu;

namespace marisonde {

class BbParamsForm;
class MainForm;
class PreferencesForm;
class Shell;
class SigmaParamsForm;

/// The menu items of one window that open the forms of preferences and of the optical parameters.
class ParameterCommands final : public QObject {
    Q_OBJECT

  public:
    /// Both outlive the commands.
    ParameterCommands(Shell& shell, MainForm& form);

    void AddTo(QMenu* menu);
    void ShowPreferences();
    /// The form of the version in use.
    void ShowSigmaParams();
    void ShowPureWaterParams();

  private:
    Shell& shell_;
    MainForm& form_;
    // Made when they are first wanted.
    PreferencesForm* preferences_ = nullptr;
    SigmaParamsForm* sigma_ = nullptr;
    BbParamsForm* pureWater_ = nullptr;
};

}  // namespace marisonde
