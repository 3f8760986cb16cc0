#include "app/forms/ErrorForm.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace marisonde {

namespace {

QDialogButtonBox* OkRow(QDialog* form) {
    auto* row = new QDialogButtonBox(QDialogButtonBox::Ok, form);
    row->button(QDialogButtonBox::Ok)->setObjectName("OKButton");
    QObject::connect(row, &QDialogButtonBox::accepted, form, &QDialog::accept);
    return row;
}

}  // namespace

ErrorForm::ErrorForm(QWidget* parent) : QDialog(parent), message_(new QLabel(this)) {
    setObjectName("ErrorForm");
    setWindowTitle("Marisonde");
    auto* icon = new QLabel(this);
    const int iconSize = style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(iconSize, iconSize));
    icon->setAlignment(Qt::AlignTop);
    message_->setObjectName("Message");
    message_->setTextFormat(Qt::PlainText);
    message_->setWordWrap(true);
    message_->setMinimumWidth(420);
    message_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* top = new QHBoxLayout;
    top->setSpacing(16);
    top->addWidget(icon);
    top->addWidget(message_, 1);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(20, 18, 20, 16);
    all->setSpacing(18);
    all->addLayout(top, 1);
    all->addWidget(OkRow(this));
}

void ErrorForm::ShowText(const QString& text) {
    const bool more = isVisible() && !message_->text().isEmpty();
    if (more && message_->text().endsWith(text)) return;
    message_->setText(more ? message_->text() + "\n\n" + text : text);
    adjustSize();
    if (!isVisible()) open();
}

InstErrorForm::InstErrorForm(QWidget* parent) : QDialog(parent), text_(new QPlainTextEdit(this)) {
    setObjectName("InstErrorForm");
    setWindowTitle("Message from Instrument");
    text_->setObjectName("Message");
    text_->setAccessibleName("Messages from the instrument");
    text_->setReadOnly(true);
    text_->setMaximumBlockCount(1000);
    auto* all = new QVBoxLayout(this);
    all->addWidget(text_);
    all->addWidget(OkRow(this));
    resize(460, 200);
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
