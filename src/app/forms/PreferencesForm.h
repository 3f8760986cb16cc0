#pragma once

#include <QDialog>
#include <array>

#include "app/PreferencesEntry.h"
#include "app/forms/FormDialogs.h"

class QCheckBox;
class QLineEdit;
class QRadioButton;

namespace marisonde {

/// The user's preferences. Nothing changes before OK.
class PreferencesForm final : public QDialog {
    Q_OBJECT

  public:
    /// `app` outlives the form.
    PreferencesForm(AppContext& app, QWidget* parent);

    /// Opens the form with what is in force.
    void Show();

  protected:
    void done(int result) override;

  private:
    void OKButton_Click();
    void MakeControls();
    void LayOut();
    void FillIn();
    [[nodiscard]] PreferencesEntry Entry() const;

    AppContext& app_;
    FormDialogs dialogs_;
    std::array<QRadioButton*, 3> connectOption_{};
    QCheckBox* fileNameOnDetect_ = nullptr;
    QCheckBox* recallLastCal_ = nullptr;
    QCheckBox* orca_ = nullptr;
    QLineEdit* header_ = nullptr;
    QLineEdit* maxGraphPoints_ = nullptr;
};

}  // namespace marisonde
