#pragma once

#include <QDialog>

class QComboBox;

namespace marisonde {

/// Tells the age of an instrument's calibration, and asks when to tell it again.
class CalReminderForm final : public QDialog {
    Q_OBJECT

  public:
    CalReminderForm(const QString& serial, const QString& text, QWidget* parent);
    /// Days until the next reminder; 0 at the next connection.
    [[nodiscard]] int Days() const;

  private:
    QComboBox* remind_;
};

}  // namespace marisonde
