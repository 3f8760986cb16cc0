#pragma once

#include <array>

#include "app/forms/ParameterForm.h"
#include "optics/PureWaterEntry.h"

class QButtonGroup;
class QCheckBox;
class QLineEdit;

namespace marisonde {

/// The water that is taken out of the backscatter, and chi.
class BbParamsForm final : public ParameterForm {
    Q_OBJECT

  public:
    /// `app` outlives the form.
    BbParamsForm(AppContext& app, QWidget* parent);

  private:
    void MakeOptions();
    void MakeBoxes();
    void MakeChecks();
    QWidget* LayWater();
    QWidget* LayBackscatter();
    void FillIn() override;
    void Refresh();
    void OKButton_Click() override;
    [[nodiscard]] QLineEdit* Box(PureWaterBox box) const { return boxes_.at(static_cast<std::size_t>(box)); }

    PureWaterEntry entry_;
    QButtonGroup* options_ = nullptr;
    std::array<QLineEdit*, kPureWaterBoxes> boxes_{};
    QCheckBox* useCalChi_ = nullptr;
    QCheckBox* writeBeta_ = nullptr;
};

}  // namespace marisonde
