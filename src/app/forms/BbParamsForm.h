#pragma once

#include <QDialog>
#include <array>

#include "app/AppContext.h"
#include "app/forms/FormDialogs.h"
#include "optics/PureWaterEntry.h"

class QButtonGroup;
class QCheckBox;
class QLineEdit;

namespace marisonde {

/// The water that is taken out of the backscatter, and chi. Nothing changes before OK.
class BbParamsForm final : public QDialog {
    Q_OBJECT

  public:
    /// `app` outlives the form.
    BbParamsForm(AppContext& app, QWidget* parent);

    /// Opens the form with what is in force.
    void Show();

  protected:
    void done(int result) override;

  private:
    void MakeControls();
    void LayOut();
    void Refresh();
    void OKButton_Click();

    AppContext& app_;
    FormDialogs dialogs_;
    PureWaterEntry entry_;
    QButtonGroup* options_ = nullptr;
    std::array<QLineEdit*, kPureWaterBoxes> boxes_{};
    QCheckBox* useCalChi_ = nullptr;
    QCheckBox* writeBeta_ = nullptr;
};

}  // namespace marisonde
