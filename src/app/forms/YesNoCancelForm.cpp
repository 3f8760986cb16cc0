#include "app/forms/YesNoCancelForm.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/forms/MessageBody.h"

namespace marisonde {

YesNoCancelForm::YesNoCancelForm(const Question& question, QWidget* parent) : QDialog(parent) {
    setObjectName("YesNoCancelForm");
    setWindowTitle("Marisonde");
    const bool notice = question.second.empty() && question.third.empty();
    auto* body =
        new MessageBody(notice ? QStyle::SP_MessageBoxInformation : QStyle::SP_MessageBoxQuestion, this);
    body->SetText(FromText(question.message));
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addStretch();
    QPushButton* first = AddButton(question.first, "YesButton", Choice::First);
    QPushButton* second = AddButton(question.second, "NoButton", Choice::Second);
    QPushButton* third = AddButton(question.third, "Cancel_Button", Choice::Third);
    for (QPushButton* button : {first, second, third})
        if (button != nullptr) buttons->addWidget(button);
    LayMessageForm(this, body)->addLayout(buttons);
    FixControlAccelerators(*this);
    if (first != nullptr) {
        first->setDefault(true);
        first->setFocus();
    }
}

QPushButton* YesNoCancelForm::AddButton(const std::string& caption, const char* name, Choice choice) {
    if (caption.empty()) return nullptr;
    auto* button = new QPushButton(FromText(caption), this);
    button->setObjectName(name);
    button->setAccessibleName(button->text().remove('&'));
    answer_ = choice;  // Escape answers like the last button that is shown
    connect(button, &QPushButton::clicked, this, [this, choice] {
        answer_ = choice;
        accept();
    });
    return button;
}

}  // namespace marisonde
