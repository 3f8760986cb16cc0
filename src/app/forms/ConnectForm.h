#pragma once

#include <QDialog>
#include <functional>

#include "app/Connect.h"
#include "platform/Operations.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace marisonde {

/// The connect dialog: shows what the connector tells and hands it what the user sets and presses.
class ConnectForm final : public QDialog {
    Q_OBJECT

  public:
    /// The buttons' work runs among `operations`. All that is referred to outlives the form's use.
    ConnectForm(Connector& connector, Operations& operations, Settings& settings, QWidget* parent);

    /// Opens the dialog above its window. `whenClosed` is called once it has closed; the form may be opened
    /// again then.
    void Show(std::function<void()> whenClosed);
    /// Presses a button as the user would.
    void PressOk();
    void PressAutoDetect();
    /// Takes the dialog away, whatever it does.
    void TakeAway();

    void reject() override;

  private:
    void MakeInputs();
    void MakeButtons();
    void LayOut();
    void FillLists();
    void Refresh();
    void RefreshPorts();
    void RefreshSearchList();
    void Hide();

    Connector& connector_;
    Operations& operations_;
    Settings& settings_;
    std::function<void()> whenClosed_;
    std::vector<PortRow> shownPorts_;
    QComboBox* commPort_ = nullptr;
    QComboBox* baud_ = nullptr;
    QComboBox* instrument_ = nullptr;
    QCheckBox* uploadCal_ = nullptr;
    QCheckBox* noQuery_ = nullptr;
    QPlainTextEdit* searchList_ = nullptr;
    QLabel* status_ = nullptr;
    QPushButton* ok_ = nullptr;
    QPushButton* autoDetect_ = nullptr;
    QPushButton* cancel_ = nullptr;
};

}  // namespace marisonde
