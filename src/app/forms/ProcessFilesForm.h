#pragma once

#include <QDialog>
#include <string>
#include <vector>

#include "app/ProcessFiles.h"
#include "app/forms/FormDialogs.h"
#include "platform/Operations.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;

namespace marisonde {

struct AppContext;
class ProgressBar;

/// Converts many raw files into calibrated files or into tables of raw numbers. Stays open at the end, and
/// while it is at work the instruments of all windows go on.
class ProcessFilesForm final : public QDialog {
    Q_OBJECT

  public:
    /// The work runs among `operations`, which end before the form dies. `app` outlives the form.
    ProcessFilesForm(AppContext& app, Operations& operations, QWidget* parent);

    /// Shows the form, with the raw files that are in its source folder now; while it is at work, with those
    /// that wait for it.
    void Show();
    /// While it is at work: no further file. Otherwise the form closes.
    void reject() override;

  private:
    QLineEdit* MakePath(const char* name, const char* meaning);
    QPushButton* MakeBrowse(QLineEdit* path, const char* title, bool folder);
    void MakeInputs();
    void MakeButtons();
    void LayOut();
    void FillList();
    void Refresh();
    void Process();
    void ShowProgress(const BatchProgress& at);
    void FileDone(std::size_t file);
    void Ended();
    [[nodiscard]] ProcessFilesChoice Chosen() const;

    AppContext& app_;
    Operations& operations_;
    FormDialogs dialogs_;
    BatchHost host_;
    std::vector<std::string> atWork_;  ///< names of the files of the run
    bool working_ = false;
    bool stop_ = false;
    Millis nextShown_{0};  ///< when progress within a file is painted again
    QLineEdit* source_ = nullptr;
    QLineEdit* dat_ = nullptr;
    QLineEdit* cal_ = nullptr;
    QPushButton* browseSource_ = nullptr;
    QPushButton* browseDat_ = nullptr;
    QPushButton* browseCal_ = nullptr;
    QCheckBox* saveToSource_ = nullptr;
    QRadioButton* calibrated_ = nullptr;
    QRadioButton* decimal_ = nullptr;
    QCheckBox* house_ = nullptr;
    QListWidget* list_ = nullptr;
    ProgressBar* bar_ = nullptr;
    QLabel* status_ = nullptr;
    QPushButton* process_ = nullptr;
    QPushButton* cancel_ = nullptr;
};

}  // namespace marisonde
