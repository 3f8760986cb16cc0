#pragma once

#include <QDialog>

#include "app/Dialogs.h"

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

/// Text from the program's texts and from instruments: bytes are Latin-1 unless they are valid UTF-8.
QString FromText(const std::string& text);

}  // namespace marisonde
