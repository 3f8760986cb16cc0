#include "app/forms/InstStatusForm.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "app/DataWindow.h"
#include "app/InstStatus.h"
#include "app/forms/FormHelpers.h"

namespace marisonde {

namespace {

QString FromView(std::string_view text) {
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

InstStatusForm::InstStatusForm(DataWindow& window, Settings& settings, QWidget* parent)
    : QDialog(parent), window_(window), settings_(settings) {
    setObjectName("InstStatusForm");
    setWindowTitle("Instrument Status");
    auto* form = new QFormLayout(this);
    for (const InstStatusRow& row : InstStatus(window_)) {
        auto* box = new QLineEdit(this);
        box->setObjectName(FromView(row.box));
        // To read and to copy, and seen to be nothing else.
        box->setReadOnly(true);
        box->setFrame(false);
        QPalette colors;
        colors.setBrush(QPalette::Base, Qt::transparent);
        box->setPalette(colors);
        box->setMinimumWidth(box->fontMetrics().horizontalAdvance("Corvane-6 CV6120345 00000"));
        auto* label = new QLabel(FromView(row.label), this);
        label->setBuddy(box);
        box->setAccessibleName(label->text().remove('&'));
        form->addRow(label, box);
        boxes_.push_back(box);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName("OK");
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    form->addRow(buttons);
    RestoreFormGeometry(settings_, *this);
}

void InstStatusForm::Show() {
    show();
    raise();
    activateWindow();
    Refresh();
}

void InstStatusForm::Refresh() {
    if (!isVisible()) return;
    const auto rows = InstStatus(window_);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const QString value = FromText(rows[i].value);
        if (boxes_.at(i)->text() != value) boxes_.at(i)->setText(value);
    }
}

void InstStatusForm::done(int result) {
    SaveFormGeometry(settings_, *this);
    QDialog::done(result);
}

}  // namespace marisonde
