#include "app/forms/NoticeStrip.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QStyle>
#include <utility>

#include "app/forms/FormHelpers.h"

namespace marisonde {

namespace {

constexpr int kMostLines = 5;  ///< longer notices scroll: the graph is worth more room

}  // namespace

NoticeStrip::NoticeStrip(QWidget* parent)
    : QFrame(parent), text_(new QLabel(this)), area_(new QScrollArea(this)), more_(new QLabel(this)) {
    setObjectName("NoticeStrip");
    setAccessibleName("Notice");
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    text_->setObjectName("Message");
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    for (QWidget* plain : {static_cast<QWidget*>(text_), static_cast<QWidget*>(area_),
                           static_cast<QWidget*>(area_->viewport()), static_cast<QWidget*>(more_)}) {
        plain->setBackgroundRole(QPalette::ToolTipBase);
        plain->setForegroundRole(QPalette::ToolTipText);
    }
    area_->setFrameShape(QFrame::NoFrame);
    area_->setWidgetResizable(true);
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area_->setWidget(text_);
    auto* picture = new QLabel(this);
    const int size = style()->pixelMetric(QStyle::PM_ButtonIconSize) * 3 / 2;
    picture->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxInformation).pixmap(size));
    row_ = new QHBoxLayout(this);
    row_->setContentsMargins(10, 6, 10, 6);
    row_->setSpacing(8);
    row_->addWidget(picture);
    row_->addWidget(area_, 1);
    row_->addWidget(more_);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    hide();
}

void NoticeStrip::AddNotice(const QString& text, std::function<void()> read) {
    Add(text, {{"OK", "OKButton", std::move(read)}});
}

void NoticeStrip::Add(const QString& text, std::vector<NoticeButton> buttons) {
    notices_.push_back({text, std::move(buttons)});
    ShowFirst();
}

void NoticeStrip::ShowFirst() {
    for (QWidget* button : std::exchange(shownButtons_, {})) {
        button->hide();
        button->deleteLater();
    }
    setVisible(!notices_.empty());
    if (notices_.empty()) return;
    const Notice& notice = notices_.front();
    text_->setText(notice.text);
    setAccessibleDescription(notice.text);
    const auto others = notices_.size() - 1;
    more_->setText(others == 0 ? QString() : QString("%1 more").arg(others));
    more_->setVisible(others > 0);
    QList<QWidget*> order{text_};
    for (std::size_t i = 0; i < notice.buttons.size(); ++i) {
        auto* button = new QPushButton(notice.buttons[i].caption, this);
        button->setObjectName(notice.buttons[i].name);
        button->setAccessibleName(notice.buttons[i].caption);
        connect(button, &QPushButton::clicked, this, [this, i] { Answer(i); });
        row_->addWidget(button);
        button->show();
        shownButtons_.push_back(button);
        order.push_back(button);
    }
    OrderTabs(order);
    FixControlAccelerators(*this);
    FitHeight();
}

void NoticeStrip::Answer(std::size_t button) {
    const std::function<void()> pressed = notices_.front().buttons.at(button).pressed;
    notices_.pop_front();
    ShowFirst();
    if (pressed) pressed();
}

void NoticeStrip::resizeEvent(QResizeEvent* event) {
    QFrame::resizeEvent(event);
    FitHeight();
}

void NoticeStrip::FitHeight() {
    const int line = text_->fontMetrics().lineSpacing();
    const int wanted = text_->heightForWidth(std::max(area_->viewport()->width(), 100));
    const int height = std::min(std::max(wanted, line), kMostLines * line);
    if (area_->height() != height || area_->minimumHeight() != height) area_->setFixedHeight(height);
}

}  // namespace marisonde
