#include "app/forms/YesNoCancelForm.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStringDecoder>
#include <QStyle>
#include <QVBoxLayout>

namespace marisonde {

namespace {

constexpr int kTextWidth = 420;  ///< pixels at 100 %; longer messages wrap

}  // namespace

QString FromText(const std::string& text) {
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString decoded = utf8(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
    return utf8.hasError() ? QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())) : decoded;
}

YesNoCancelForm::YesNoCancelForm(const Question& question, QWidget* parent) : QDialog(parent) {
    setObjectName("YesNoCancelForm");
    setWindowTitle("Marisonde");
    auto* icon = new QLabel(this);
    const bool notice = question.second.empty() && question.third.empty();
    const auto pixmap = notice ? QStyle::SP_MessageBoxInformation : QStyle::SP_MessageBoxQuestion;
    const int iconSize = style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
    icon->setPixmap(style()->standardIcon(pixmap).pixmap(iconSize, iconSize));
    icon->setAlignment(Qt::AlignTop);
    auto* message = new QLabel(FromText(question.message), this);
    message->setObjectName("Message");
    message->setTextFormat(Qt::PlainText);
    message->setWordWrap(true);
    message->setMinimumWidth(kTextWidth);
    message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* top = new QHBoxLayout;
    top->setSpacing(16);
    top->addWidget(icon);
    top->addWidget(message, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    QPushButton* first = AddButton(question.first, "YesButton", Choice::First);
    QPushButton* second = AddButton(question.second, "NoButton", Choice::Second);
    QPushButton* third = AddButton(question.third, "Cancel_Button", Choice::Third);
    for (QPushButton* button : {first, second, third})
        if (button != nullptr) buttons->addWidget(button);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(20, 18, 20, 16);
    all->setSpacing(18);
    all->addLayout(top, 1);
    all->addLayout(buttons);
    if (first != nullptr) {
        first->setDefault(true);
        first->setFocus();
    }
}

QPushButton* YesNoCancelForm::AddButton(const std::string& caption, const char* name, Choice choice) {
    if (caption.empty()) return nullptr;
    const QString text = FromText(caption);
    auto* button = new QPushButton(text.contains('&') ? text : "&" + text, this);
    button->setObjectName(name);
    button->setAccessibleName(text);
    answer_ = choice;  // Escape answers like the last button that is shown
    connect(button, &QPushButton::clicked, this, [this, choice] {
        answer_ = choice;
        accept();
    });
    return button;
}

}  // namespace marisonde
