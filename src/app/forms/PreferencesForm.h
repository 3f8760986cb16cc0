#pragma once

#include <array>

#include "app/PreferencesEntry.h"
#include "app/forms/ParameterForm.h"

class QCheckBox;
class QLineEdit;
class QRadioButton;

namespace marisonde {

/// The user's preferences.
class PreferencesForm final : public ParameterForm {
    Q_OBJECT

  public:
    /// `app` outlives the form.
    PreferencesForm(AppContext& app, QWidget* parent);

  private:
    void MakeControls();
    QWidget* LayStart();
    QWidget* LayFiles();
    QWidget* LayGraphs();
    void FillIn() override;
    [[nodiscard]] PreferencesEntry Entry();
    void OKButton_Click() override;

    std::array<QRadioButton*, 3> connectOption_{};
    QCheckBox* fileNameOnDetect_ = nullptr;
    QCheckBox* recallLastCal_ = nullptr;
    QCheckBox* orca_ = nullptr;
    QLineEdit* header_ = nullptr;
    QLineEdit* maxGraphPoints_ = nullptr;
};

}  // namespace marisonde
