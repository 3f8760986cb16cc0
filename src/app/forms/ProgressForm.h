#pragma once

#include <QDialog>

#include "common/Clock.h"
#include "files/LineReader.h"

class QLabel;

namespace marisonde {

class ProgressBar;

/// Shows how far a conversion is that was asked for without any window, and lets its user stop it.
class ProgressForm final : public QDialog {
    Q_OBJECT

  public:
    /// `clock` outlives the form.
    explicit ProgressForm(const Clock& clock);

    /// What is being worked on.
    void SetText(const QString& text);
    /// Shows it as often as an eye follows.
    void ShowProgress(const ReadProgress& progress);
    /// The user wants no more of it.
    [[nodiscard]] bool Cancelled() const { return cancelled_; }
    void reject() override;

  private:
    const Clock& clock_;
    QLabel* text_;
    ProgressBar* bar_;
    Millis nextShown_{0};
    bool cancelled_ = false;
};

}  // namespace marisonde
