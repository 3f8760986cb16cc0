#pragma once

#include <QDialog>

class QDialogButtonBox;
class QPlainTextEdit;
class QPushButton;

namespace marisonde {

class MessageBody;

/// The common notice of a window. It does not hold up anything; a further notice is added to the one shown.
class ErrorForm : public QDialog {
    Q_OBJECT

  public:
    explicit ErrorForm(QWidget* parent);
    /// Shows the text, below those that still stand there; the oldest are given up when there are many.
    void ShowText(const QString& text);

  protected:
    /// A further button beside OKButton.
    QPushButton* AddButton(const QString& caption, const char* name);
    void SetText(const QString& text);

  private:
    MessageBody* body_;
    QDialogButtonBox* buttons_;
    QStringList notices_;
};

/// A notice that the user may also refuse: Escape and Cancel_Button reject.
class OKCancelForm final : public ErrorForm {
    Q_OBJECT

  public:
    OKCancelForm(const QString& text, QWidget* parent);
};

/// Data could not be saved where the user wanted them; OpenDirButton opens the folder in which they are.
class SaveErrorAlert final : public ErrorForm {
    Q_OBJECT

  public:
    explicit SaveErrorAlert(QWidget* parent);
    void ShowText(const QString& text, const QString& folder);
    /// What OpenDirButton opens.
    [[nodiscard]] const QString& Folder() const { return folder_; }

  private:
    QString folder_;
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
