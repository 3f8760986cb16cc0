#pragma once

#include <QDialog>
#include <vector>

class QFormLayout;
class QLineEdit;

namespace marisonde {

class DataWindow;
class Settings;

/// What is known of the instrument of a window, to read and to copy.
class InstStatusForm final : public QDialog {
    Q_OBJECT

  public:
    /// Both outlive the form.
    InstStatusForm(DataWindow& window, Settings& settings, QWidget* parent);

    void Show();
    /// Shows the facts as they are now; nothing while the form is not seen.
    void Refresh();

  protected:
    void done(int result) override;

  private:
    DataWindow& window_;
    Settings& settings_;
    std::vector<QLineEdit*> boxes_;
};

}  // namespace marisonde
