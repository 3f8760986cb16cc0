#include "app/forms/MessageBody.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>

namespace marisonde {

namespace {

constexpr double kCeilingInches = 8000.0 / 1440;      ///< of a whole message form
constexpr int kButtonLines = 6;                       ///< of them for what is not text, in lines
constexpr int kNarrow = 30, kUsual = 60, kWide = 90;  ///< characters in a line

int HeightAt(const QFontMetrics& metrics, const QString& text, int width) {
    constexpr int kAnyHeight = 1 << 20;
    return metrics.boundingRect(QRect(0, 0, width, kAnyHeight), Qt::TextWordWrap | Qt::TextExpandTabs, text)
        .height();
}

}  // namespace

MessageBody::MessageBody(QStyle::StandardPixmap icon, QWidget* parent)
    : QWidget(parent), picture_(new QLabel(this)), area_(new QScrollArea(this)), message_(new QLabel) {
    picture_->setPixmap(
        style()->standardIcon(icon).pixmap(QSize(IconSize(), IconSize()), devicePixelRatio()));
    picture_->setAlignment(Qt::AlignTop);
    message_->setObjectName("Message");
    message_->setTextFormat(Qt::PlainText);
    message_->setWordWrap(true);
    message_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    area_->setWidget(message_);
    area_->setWidgetResizable(true);
    area_->setFrameShape(QFrame::NoFrame);
    // The room that SetText measures is all it wants; what a scroll area would like by itself is too high.
    area_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area_->viewport()->setAutoFillBackground(false);
    message_->setAutoFillBackground(false);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(16);
    row->addWidget(picture_);
    row->addWidget(area_, 1);
}

void MessageBody::SetText(const QString& text) {
    message_->setText(text);
    message_->setAccessibleName(text);
    const QSize room = RoomFor(text);
    const int height = HeightAt(message_->fontMetrics(), text, room.width());
    const bool scrolls = height > room.height();
    // A line or two stand beside the middle of the icon.
    const Qt::Alignment upright = height < IconSize() ? Qt::AlignVCenter : Qt::AlignTop;
    message_->setAlignment(Qt::AlignLeft | upright);
    layout()->setAlignment(picture_, upright);
    const int bar = scrolls ? area_->verticalScrollBar()->sizeHint().width() : 0;
    area_->setMinimumSize(room.width() + bar, room.height());
    area_->setFocusPolicy(scrolls ? Qt::StrongFocus : Qt::NoFocus);
}

int MessageBody::IconSize() const {
    return style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
}

QString MessageBody::Text() const {
    return message_->text();
}

QSize MessageBody::RoomFor(const QString& text) const {
    const QFontMetrics metrics = message_->fontMetrics();
    const int letter = metrics.averageCharWidth();
    const int line = metrics.lineSpacing();
    const QRect screen = this->screen()->availableGeometry();
    const int ceiling = std::min(static_cast<int>(kCeilingInches * logicalDpiY()), screen.height() * 8 / 10) -
                        kButtonLines * line;
    const int natural = metrics.size(Qt::TextExpandTabs, text).width() + letter;
    int width = std::clamp(natural, kNarrow * letter, kUsual * letter);
    const bool lists = text.contains('\n');  // of paths, which read badly when they are broken
    if (lists || HeightAt(metrics, text, width) > 10 * line)
        width = std::clamp(natural, width, kWide * letter);
    width = std::min(width, screen.width() * 8 / 10);
    return {width, std::clamp(HeightAt(metrics, text, width) + 2, IconSize(), std::max(ceiling, 4 * line))};
}

QVBoxLayout* LayMessageForm(QWidget* form, MessageBody* body) {
    auto* all = new QVBoxLayout(form);
    all->setContentsMargins(20, 18, 20, 16);
    all->setSpacing(18);
    all->addWidget(body, 1);
    return all;
}

}  // namespace marisonde
