#include "app/forms/ChannelPanel.h"

#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace marisonde {

namespace {

constexpr double kValueScale = 1.5;  ///< value figures against the form's font
constexpr int kSwatchWidth = 6;
constexpr int kGap = 8;  ///< between a swatch and its texts

QString Element(const char* name, int channel) {
    return QString("%1(%2)").arg(name).arg(channel);
}

}  // namespace

ChannelPanel::ChannelPanel(QWidget* parent) : QWidget(parent), hint_(new QLabel(this)) {
    setObjectName("ChannelPanel");
    setAccessibleName("Channels and their current values");
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(8, 10, 10, 8);
    column->setSpacing(6);
    hint_->setText("Values appear here when a calibration is loaded.");
    hint_->setObjectName("Hint");
    hint_->setWordWrap(true);
    hint_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
    hint_->setForegroundRole(QPalette::PlaceholderText);
    column->addWidget(hint_);
    for (int channel = 0; channel < kChannelSlots; ++channel) {
        Row& row = rows_.at(static_cast<std::size_t>(channel));
        row = MakeRow(channel);
        row.frame->hide();
        column->addWidget(row.frame);
    }
    column->addStretch();
    // As wide without channels as with them: the graph keeps its size when an instrument is connected.
    const QMargins margins = column->contentsMargins();
    const int width = kSwatchWidth + kGap + rows_[0].value->width();
    setMinimumWidth(margins.left() + width + margins.right());
    hint_->setMinimumHeight(hint_->heightForWidth(width));
}

ChannelPanel::Row ChannelPanel::MakeRow(int channel) {
    Row row;
    row.frame = new QFrame(this);
    row.frame->setObjectName(Element("Channel_Frame", channel));
    row.swatch = new QLabel(row.frame);
    row.swatch->setObjectName(Element("Color_sel", channel));
    row.swatch->setFixedWidth(kSwatchWidth);
    row.swatch->setAutoFillBackground(true);
    row.name = new QLabel(row.frame);
    row.name->setObjectName(Element("Channel_Text", channel));
    row.name->setTextFormat(Qt::PlainText);
    row.value = new QLabel(row.frame);
    row.value->setObjectName(Element("DataBox", channel));
    row.value->setTextFormat(Qt::PlainText);
    row.value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QFont figures = row.value->font();
    figures.setPointSizeF(figures.pointSizeF() * kValueScale);
    row.value->setFont(figures);
    // A label of fixed size repaints itself alone; a free one would lay the whole window out at each new
    // value.
    row.value->setFixedSize(QFontMetrics(figures).horizontalAdvance("-0.000000"),
                            QFontMetrics(figures).height() + 2);
    auto* grid = new QGridLayout(row.frame);
    grid->setContentsMargins(0, 2, 0, 2);
    grid->setHorizontalSpacing(kGap);
    grid->setVerticalSpacing(0);
    grid->addWidget(row.swatch, 0, 0, 2, 1);
    grid->addWidget(row.name, 0, 1);
    grid->addWidget(row.value, 1, 1, Qt::AlignRight);
    grid->setColumnStretch(1, 1);
    return row;
}

void ChannelPanel::SetChannels(const std::vector<ChannelRow>& rows) {
    hint_->setVisible(rows.empty());
    for (Row& row : rows_) {
        row.frame->hide();
        row.value->clear();
    }
    for (const ChannelRow& shown : rows) {
        Row& row = rows_.at(static_cast<std::size_t>(shown.box));
        const QString unit = shown.unit.isEmpty() ? QString() : "  (" + shown.unit + ")";
        row.name->setText(shown.name + unit);
        row.value->setAccessibleName(shown.name + unit);
        row.swatch->setAccessibleName("Colour of " + shown.name);
        QPalette palette = row.swatch->palette();
        palette.setColor(QPalette::Window, shown.color);
        row.swatch->setPalette(palette);
        row.frame->show();
    }
}

void ChannelPanel::SetValue(int channel, std::string_view text) {
    QLabel* const box = rows_.at(static_cast<std::size_t>(channel)).value;
    const auto shown = QLatin1StringView(text.data(), static_cast<qsizetype>(text.size()));
    if (box->text() != shown) box->setText(shown);
}

}  // namespace marisonde
