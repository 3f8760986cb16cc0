#include "app/forms/FormDialogs.h"

#include <QFileDialog>
#include <memory>
#include <optional>

#include "app/forms/ErrorForm.h"
#include "app/forms/YesNoCancelForm.h"
#include "platform/Operations.h"

namespace marisonde {

namespace {

/// A question has no time limit: people on ships have other things to do.
constexpr Millis kNoLimit = std::chrono::hours(24 * 365);

/// Shows a dialog without nesting an event loop and waits until it has closed or the operation is cancelled.
QCoro::Task<void> WaitFor(Operation& operation, QDialog* dialog) {
    auto closed = std::make_shared<bool>(false);
    QPointer<QDialog> shown = dialog;
    QObject::connect(dialog, &QDialog::finished, dialog, [closed] { *closed = true; });
    QObject::connect(dialog, &QObject::destroyed, [closed] { *closed = true; });
    dialog->open();
    const bool* done = closed.get();
    co_await operation.Until([done] { return *done; }, kNoLimit);
    if (shown && shown->isVisible()) shown->reject();
}

}  // namespace

QCoro::Task<Choice> FormDialogs::ShowChoiceDialog(Operation& operation, Question question) {
    const QPointer<YesNoCancelForm> form = new YesNoCancelForm(question, parent_);
    const Choice unanswered = form->Answer();
    co_await WaitFor(operation, form.data());
    const Choice answer = form && !operation.Cancelled() ? form->Answer() : unanswered;
    if (form) form->deleteLater();
    co_return answer;
}

QCoro::Task<void> FormDialogs::ShowMessage(Operation& operation, std::string text) {
    const Question notice{std::move(text), "OK", "", ""};
    co_await ShowChoiceDialog(operation, notice);
}

QCoro::Task<std::string> FormDialogs::AskSaveBase(Operation& operation, std::string path) {
    const QPointer<QFileDialog> form =
        new QFileDialog(parent_, "Save As", FromText(path), "Raw and Calibrated Data (*.raw *.dat)");
    form->setObjectName("SaveFileDialog");
    form->setAcceptMode(QFileDialog::AcceptSave);
    form->setDefaultSuffix("raw");
    co_await WaitFor(operation, form.data());
    std::string base;
    if (form && !operation.Cancelled() && form->result() == QDialog::Accepted &&
        !form->selectedFiles().isEmpty())
        base = form->selectedFiles().constFirst().toStdString();
    if (form) form->deleteLater();
    co_return base;
}

void FormDialogs::ShowError(std::string text) {
    if (!error_) error_ = new ErrorForm(parent_);
    error_->ShowText(FromText(text));
}

void FormDialogs::ShowInstrumentMessage(std::string text) {
    if (!fromInstrument_) fromInstrument_ = new InstErrorForm(parent_);
    fromInstrument_->ShowText(FromText(text));
}

}  // namespace marisonde
