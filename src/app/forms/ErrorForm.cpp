#include "app/forms/ErrorForm.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

#include "app/forms/FormHelpers.h"
#include "app/forms/MessageBody.h"

namespace marisonde {

namespace {

constexpr int kMaxNotices = 20;  ///< an ill device must not fill the memory with its complaints

QDialogButtonBox* OkRow(QDialog* form) {
    auto* row = new QDialogButtonBox(QDialogButtonBox::Ok, form);
    row->button(QDialogButtonBox::Ok)->setObjectName("OKButton");
    row->button(QDialogButtonBox::Ok)->setDefault(true);
    QObject::connect(row, &QDialogButtonBox::accepted, form, &QDialog::accept);
    QObject::connect(row, &QDialogButtonBox::rejected, form, &QDialog::reject);
    return row;
}

}  // namespace

ErrorForm::ErrorForm(QWidget* parent)
    : QDialog(parent), body_(new MessageBody(QStyle::SP_MessageBoxWarning, this)), buttons_(OkRow(this)) {
    setObjectName("ErrorForm");
    setWindowTitle("Marisonde");
    LayMessageForm(this, body_)->addWidget(buttons_);
}

void ErrorForm::ShowText(const QString& text) {
    if (!isVisible()) notices_.clear();
    if (notices_.contains(text)) return;
    notices_.push_back(text);
    if (notices_.size() > kMaxNotices) notices_.pop_front();
    SetText(notices_.join("\n\n"));
    if (isVisible()) return;
    open();
    PlaceClearOfOthers(*this);
}

void ErrorForm::SetText(const QString& text) {
    body_->SetText(text);
    adjustSize();
}

QPushButton* ErrorForm::AddButton(const QString& caption, const char* name) {
    QPushButton* button = buttons_->addButton(caption, QDialogButtonBox::ActionRole);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

OKCancelForm::OKCancelForm(const QString& text, QWidget* parent) : ErrorForm(parent) {
    setObjectName("OKCancelForm");
    connect(AddButton("Cancel", "Cancel_Button"), &QPushButton::clicked, this, &QDialog::reject);
    FixControlAccelerators(*this);
    SetText(text);
}

SaveErrorAlert::SaveErrorAlert(QWidget* parent) : ErrorForm(parent) {
    setObjectName("SaveErrorAlert");
    connect(AddButton("Open Temporary Folder", "OpenDirButton"), &QPushButton::clicked, this,
            [this] { QDesktopServices::openUrl(QUrl::fromLocalFile(folder_)); });
    FixControlAccelerators(*this);
}

void SaveErrorAlert::ShowText(const QString& text, const QString& folder) {
    folder_ = folder;
    ErrorForm::ShowText(text);
}

InstErrorForm::InstErrorForm(QWidget* parent) : QDialog(parent), text_(new QPlainTextEdit(this)) {
    setObjectName("InstErrorForm");
    setWindowTitle("Message from Instrument");
    // It may come while the user types into another window.
    setAttribute(Qt::WA_ShowWithoutActivating);
    text_->setObjectName("Message");
    text_->setAccessibleName("Messages from the instrument");
    text_->setReadOnly(true);
    text_->setTabChangesFocus(true);
    text_->setMaximumBlockCount(1000);
    auto* all = new QVBoxLayout(this);
    all->addWidget(text_);
    all->addWidget(OkRow(this));
    const QFontMetrics metrics = text_->fontMetrics();
    resize(metrics.averageCharWidth() * 70, metrics.lineSpacing() * 14);
}

void InstErrorForm::ShowText(const QString& text) {
    QApplication::beep();
    if (isVisible() && text_->toPlainText() == text) return;
    if (isVisible())
        text_->appendPlainText(text);
    else
        text_->setPlainText(text);
    show();
}

}  // namespace marisonde
