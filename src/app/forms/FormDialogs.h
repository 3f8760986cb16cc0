#pragma once

#include <QPointer>

#include "app/Dialogs.h"

class QWidget;

namespace marisonde {

class ErrorForm;
class InstErrorForm;
class SaveErrorAlert;

/// The questions and notices of one window, as forms above it.
class FormDialogs final : public Dialogs {
  public:
    explicit FormDialogs(QWidget* parent) : parent_(parent) {}

    QCoro::Task<Choice> ShowChoiceDialog(Operation& operation, Question question) override;
    QCoro::Task<void> ShowMessage(Operation& operation, std::string text) override;
    /// A notice that may be refused; false when it is, also by closing it.
    QCoro::Task<bool> ShowOkCancel(Operation& operation, std::string text);
    QCoro::Task<FileChoice> ChooseFile(Operation& operation, FileRequest request) override;
    QCoro::Task<int> ShowCalReminder(Operation& operation, std::string serial, std::string text) override;
    void ShowError(std::string text) override;
    void ShowSaveError(std::string text, std::string folder) override;
    void ShowInstrumentMessage(std::string text) override;

  private:
    QWidget* parent_;
    QPointer<ErrorForm> error_;
    QPointer<SaveErrorAlert> saveError_;
    QPointer<InstErrorForm> fromInstrument_;
};

}  // namespace marisonde
