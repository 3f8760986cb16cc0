#include "app/forms/FormDialogs.h"

#include <QFileDialog>
#include <QFileInfo>
#include <memory>
#include <optional>

#include "app/forms/CalReminderForm.h"
#include "app/forms/ErrorForm.h"
#include "app/forms/YesNoCancelForm.h"
#include "platform/Operations.h"

namespace marisonde {

namespace {

/// Shows a dialog without nesting an event loop and waits until it has closed or the operation is cancelled;
/// without a limit, for people on ships have other things to do.
QCoro::Task<void> WaitFor(Operation& operation, QDialog* dialog) {
    auto closed = std::make_shared<bool>(false);
    QPointer<QDialog> shown = dialog;
    QObject::connect(dialog, &QDialog::finished, dialog, [closed] { *closed = true; });
    QObject::connect(dialog, &QObject::destroyed, [closed] { *closed = true; });
    dialog->open();
    PlaceClearOfOthers(*dialog);
    const bool* done = closed.get();
    co_await operation.Until([done] { return *done; });
    if (shown && shown->isVisible()) shown->reject();
}

/// The toolkit takes the last brackets for the pattern and hides them; the name has its own, for the user.
QStringList ToolkitFilters(const FileRequest& request) {
    QStringList filters;
    for (const FileFilter& filter : request.filters) {
        const QString pattern = QLatin1StringView(filter.pattern.data(), qsizetype(filter.pattern.size()));
        filters.push_back(
            QString("%1 (%2)").arg(QLatin1StringView(filter.name.data(), qsizetype(filter.name.size())),
                                   pattern == "*.*" ? QString("*") : QString(pattern).replace(';', ' ')));
    }
    return filters;
}

/// The type that is chosen in the dialog; the toolkit tells it with or without the hidden pattern.
int FilterOf(const QFileDialog& form, const FileRequest& request) {
    const QString selected = form.selectedNameFilter();
    const QStringList filters = ToolkitFilters(request);
    for (qsizetype i = 0; i < filters.size(); ++i) {
        const std::string_view name = request.filters[static_cast<std::size_t>(i)].name;
        if (selected == filters[i] ||
            selected.trimmed() == QLatin1StringView(name.data(), qsizetype(name.size())))
            return static_cast<int>(i);
    }
    return 0;
}

QFileDialog* MakeFileDialog(const FileRequest& request, QWidget* parent) {
    const bool saves = request.purpose == FileRequest::Purpose::Save;
    auto* form = new QFileDialog(parent, FromText(request.title));
    form->setObjectName(saves ? "SaveFileDialog" : "OpenFileDialog");
    form->setAcceptMode(saves ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    form->setFileMode(saves ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    form->setOption(QFileDialog::DontConfirmOverwrite);
    form->setOption(QFileDialog::HideNameFilterDetails);
    const QStringList filters = ToolkitFilters(request);
    form->setNameFilters(filters);
    form->selectNameFilter(filters.value(request.filter));
    const QFileInfo proposed(FromText(request.path));
    if (proposed.isDir()) {
        form->setDirectory(proposed.filePath());
    } else if (!request.path.empty()) {
        form->setDirectory(proposed.path());
        form->selectFile(proposed.fileName());
    }
    return form;
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

QCoro::Task<bool> FormDialogs::ShowOkCancel(Operation& operation, std::string text) {
    const QPointer<OKCancelForm> form = new OKCancelForm(FromText(text), parent_);
    co_await WaitFor(operation, form.data());
    const bool accepted = form && !operation.Cancelled() && form->result() == QDialog::Accepted;
    if (form) form->deleteLater();
    co_return accepted;
}

QCoro::Task<FileChoice> FormDialogs::ChooseFile(Operation& operation, FileRequest request) {
    const QPointer<QFileDialog> form = MakeFileDialog(request, parent_);
    co_await WaitFor(operation, form.data());
    FileChoice choice;
    if (form && !operation.Cancelled() && form->result() == QDialog::Accepted &&
        !form->selectedFiles().isEmpty()) {
        choice.path = form->selectedFiles().constFirst().toStdString();
        choice.filter = FilterOf(*form, request);
    }
    if (form) form->deleteLater();
    co_return choice;
}

QCoro::Task<int> FormDialogs::ShowCalReminder(Operation& operation, std::string serial, std::string text) {
    const QPointer<CalReminderForm> form = new CalReminderForm(FromText(serial), FromText(text), parent_);
    co_await WaitFor(operation, form.data());
    const int days = form && !operation.Cancelled() ? form->Days() : 0;
    if (form) form->deleteLater();
    co_return days;
}

void FormDialogs::ShowError(std::string text) {
    if (!error_) error_ = new ErrorForm(parent_);
    error_->ShowText(FromText(text));
}

void FormDialogs::ShowSaveError(std::string text, std::string folder) {
    if (!saveError_) saveError_ = new SaveErrorAlert(parent_);
    saveError_->ShowText(FromText(text), FromText(folder));
}

void FormDialogs::ShowInstrumentMessage(std::string text) {
    if (!fromInstrument_) fromInstrument_ = new InstErrorForm(parent_);
    fromInstrument_->ShowText(FromText(text));
}

}  // namespace marisonde
