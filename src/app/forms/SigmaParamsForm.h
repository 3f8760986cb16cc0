#pragma once

#include <array>

#include "app/forms/ParameterForm.h"
#include "optics/SigmaParamsEntry.h"
#include "platform/Operations.h"

class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTabWidget;

namespace marisonde {

/// The parameters of the sigma correction, in the form "SigmaParamsFormNew", or "SigmaParamsFormOld" of users
/// whose K holds the absorption of water.
class SigmaParamsForm final : public ParameterForm {
    Q_OBJECT

  public:
    /// File dialogs run among `operations`, which end before the form dies. `app` outlives the form.
    SigmaParamsForm(AppContext& app, Operations& operations, QWidget* parent);

  private:
    void MakeBoxes();
    void MakeCalculation();
    void MakeOptions();
    QPushButton* MakeDefaultsButton();
    QPushButton* MakeBrowse(SigmaBox box, const char* title);
    QWidget* LayCorvanePage();
    QWidget* LayNTidalPage();
    void AddBox(QGridLayout* grid, SigmaBox box);
    void LayCalculation(QGridLayout* grid);
    QWidget* LayPages();
    void FillIn() override;
    void FillIn(const SigmaParamsEntry& entry);
    [[nodiscard]] SigmaParamsEntry Entry() const;
    void Browse(SigmaBox box, const char* title);
    void DefaultsButton_Click();
    void CalculateButton_Click();
    void ForgetResults();
    void ShowWrong(const SigmaBoxError& wrong);
    void OKButton_Click() override;
    [[nodiscard]] QLineEdit* Box(SigmaBox box) const { return boxes_.at(static_cast<std::size_t>(box)); }

    Operations& operations_;
    const SigmaTablePaths tables_;
    const bool older_;
    std::array<QLineEdit*, kSigmaBoxes> boxes_{};
    std::array<QPushButton*, kSigmaBoxes> browse_{};  ///< null beside boxes that take only a number
    QTabWidget* pages_ = nullptr;
    QRadioButton* share_ = nullptr;
    QRadioButton* model_ = nullptr;
    QLineEdit* wavelength_ = nullptr;
    QPushButton* calculate_ = nullptr;
    QLabel* a_ = nullptr;
    QLabel* bbTilde_ = nullptr;
};

}  // namespace marisonde
