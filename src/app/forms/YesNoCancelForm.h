#pragma once

#include <QDialog>

#include "app/Dialogs.h"
#include "app/forms/FormHelpers.h"

class QPushButton;

namespace marisonde {

/// A question with up to three buttons, or a notice with one. Escape and closing answer with the last button
/// shown.
class YesNoCancelForm final : public QDialog {
    Q_OBJECT

  public:
    YesNoCancelForm(const Question& question, QWidget* parent);
    [[nodiscard]] Choice Answer() const { return answer_; }

  private:
    QPushButton* AddButton(const std::string& caption, const char* name, Choice choice);

    Choice answer_ = Choice::First;
};

}  // namespace marisonde
