#pragma once

#include <QPointer>

#include "app/Dialogs.h"

class QWidget;

namespace marisonde {

class ErrorForm;
class InstErrorForm;

/// The questions and notices of one window, as forms above it.
class FormDialogs final : public Dialogs {
  public:
    explicit FormDialogs(QWidget* parent) : parent_(parent) {}

    QCoro::Task<Choice> ShowChoiceDialog(Operation& operation, Question question) override;
    QCoro::Task<void> ShowMessage(Operation& operation, std::string text) override;
    QCoro::Task<std::string> AskSaveBase(Operation& operation, std::string path) override;
    void ShowError(std::string text) override;
    void ShowInstrumentMessage(std::string text) override;

  private:
    QWidget* parent_;
    QPointer<ErrorForm> error_;
    QPointer<InstErrorForm> fromInstrument_;
};

}  // namespace marisonde
