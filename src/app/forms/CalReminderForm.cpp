#include "app/forms/CalReminderForm.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <array>

#include "app/forms/MessageBody.h"

namespace marisonde {

namespace {

struct Delay {
    const char* caption;
    int days;
};
constexpr std::array kDelays{Delay{"at the next connection", 0}, Delay{"in a week", 7},
                             Delay{"in 30 days", 30}, Delay{"in 90 days", 90}};
constexpr int kUsualDelay = 2;

}  // namespace

CalReminderForm::CalReminderForm(const QString& serial, const QString& text, QWidget* parent)
    : QDialog(parent), remind_(new QComboBox(this)) {
    setObjectName("CalReminderForm");
    setWindowTitle("Calibration of " + serial);
    auto* body = new MessageBody(QStyle::SP_MessageBoxInformation, this);
    body->SetText(text);
    remind_->setObjectName("Remind_Box");
    remind_->setAccessibleName("When to remind again");
    for (const Delay& delay : kDelays) remind_->addItem(delay.caption, delay.days);
    remind_->setCurrentIndex(kUsualDelay);
    auto* caption = new QLabel("&Remind me again", this);
    caption->setBuddy(remind_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName("OKButton");
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    auto* row = new QHBoxLayout;
    row->addWidget(caption);
    row->addWidget(remind_);
    row->addStretch();
    row->addWidget(buttons);
    LayMessageForm(this, body)->addLayout(row);
}

int CalReminderForm::Days() const {
    // Closed in another way than by OK, the form has told what it had to, and nothing was chosen.
    return result() == QDialog::Accepted ? remind_->currentData().toInt() : 0;
}

}  // namespace marisonde
