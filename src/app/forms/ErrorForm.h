#pragma once

#include <QDialog>

class QLabel;
class QPlainTextEdit;

namespace marisonde {

/// The common notice of a window. It does not hold up anything; a further notice is added to the one shown.
class ErrorForm final : public QDialog {
    Q_OBJECT

  public:
    explicit ErrorForm(QWidget* parent);
    void ShowText(const QString& text);

  private:
    QLabel* message_;
};

/// "Message from Instrument": what the instrument tells its user. Further messages are added below.
class InstErrorForm final : public QDialog {
    Q_OBJECT

  public:
    explicit InstErrorForm(QWidget* parent);
    /// Beeps; shows the text unless it is what already stands there.
    void ShowText(const QString& text);

  private:
    QPlainTextEdit* text_;
};

}  // namespace marisonde
