#include "app/forms/ChannelFrame.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QToolButton>

#include "app/ChannelDetails.h"
#include "app/forms/FormHelpers.h"

namespace marisonde {

namespace {

constexpr double kValueScale = 1.5;  ///< value figures against the form's font
constexpr int kSwatchWidth = 11;     ///< the curve's marker has room in it
constexpr double kStrokeWidth = 6;
constexpr int kGap = 6;

struct DetailRow {
    const char* name;
    const char* label;
    std::string ChannelDetails::*text;
};
constexpr std::array kDetailRows{
    DetailRow{"Channel_Min", "Minimum", &ChannelDetails::minimum},
    DetailRow{"Channel_Max", "Maximum", &ChannelDetails::maximum},
    DetailRow{"Channel_Counts", "Raw counts", &ChannelDetails::counts},
    DetailRow{"Channel_Reference", "Reference", &ChannelDetails::reference},
    DetailRow{"Channel_Gain", "Gain", &ChannelDetails::gain},
};

QString Element(const char* name, int channel) {
    return QString("%1(%2)").arg(name).arg(channel);
}

QLabel* PlainLabel(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    return label;
}

}  // namespace

/// A piece of the curve as it looks in the graph.
class CurveSwatch final : public QWidget {
  public:
    explicit CurveSwatch(QWidget* parent) : QWidget(parent) {
        setFixedWidth(kSwatchWidth);
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    }
    void SetCurve(const CurveSample& curve) {
        if (curve == curve_) return;
        curve_ = curve;
        QPalette colors = palette();
        colors.setColor(QPalette::Window, curve.color);
        setPalette(colors);
        update();
    }

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        DrawCurveSample(painter, rect(), curve_, kStrokeWidth);
    }

  private:
    CurveSample curve_;
};

ChannelFrame::ChannelFrame(int channel, QWidget* parent)
    : QFrame(parent),
      channel_(channel),
      swatch_(new CurveSwatch(this)),
      onOff_(new QCheckBox(this)),
      name_(PlainLabel(this)),
      value_(PlainLabel(this)),
      open_(MakeArrow("Channel_Open", Qt::RightArrow)),
      close_(MakeArrow("Close_Channel", Qt::DownArrow)),
      detail_(new QWidget(this)) {
    setObjectName(Element("Channel_Frame", channel));
    swatch_->setObjectName(Element("Color_sel", channel));
    onOff_->setObjectName(Element("ChannelOnOff_Check", channel));
    onOff_->setToolTip("Draw this channel's curve");
    name_->setObjectName(Element("Channel_Text", channel));
    value_->setObjectName(Element("DataBox", channel));
    value_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QFont figures = value_->font();
    figures.setPointSizeF(figures.pointSizeF() * kValueScale);
    value_->setFont(figures);
    // A label of fixed size repaints itself alone; a free one would lay the whole window out at each new
    // value.
    const QFontMetrics room(figures);
    value_->setFixedSize(room.horizontalAdvance("-0.000000"), room.height() + 2);
    MakeDetails();
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 2, 0, 2);
    grid->setHorizontalSpacing(kGap);
    grid->setVerticalSpacing(0);
    grid->addWidget(swatch_, 0, 0, 2, 1);
    grid->addWidget(onOff_, 0, 1);
    grid->addWidget(name_, 0, 2);
    grid->addWidget(open_, 0, 3);
    grid->addWidget(close_, 0, 3);
    grid->addWidget(value_, 1, 1, 1, 2, Qt::AlignRight);
    grid->addWidget(detail_, 2, 1, 1, 2);
    grid->setColumnStretch(2, 1);
    CloseChannelView();
    connect(onOff_, &QCheckBox::toggled, this, [this](bool on) { emit OnOff(channel_, on); });
    connect(open_, &QToolButton::clicked, this, [this] {
        const bool moves = open_->hasFocus();
        OpenChannelView();
        if (moves) close_->setFocus();
    });
    connect(close_, &QToolButton::clicked, this, [this] {
        const bool moves = close_->hasFocus();
        CloseChannelView();
        if (moves) open_->setFocus();
    });
}

QToolButton* ChannelFrame::MakeArrow(const char* name, Qt::ArrowType arrow) {
    auto* button = new QToolButton(this);
    button->setObjectName(Element(name, channel_));
    button->setArrowType(arrow);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setToolTip(arrow == Qt::RightArrow ? "Show more about this channel" : "Show less");
    return button;
}

void ChannelFrame::MakeDetails() {
    auto* grid = new QGridLayout(detail_);
    grid->setContentsMargins(0, 0, 0, 4);
    grid->setVerticalSpacing(1);
    grid->setColumnStretch(1, 1);
    for (std::size_t i = 0; i < kDetailRows.size(); ++i) {
        Detail& detail = details_.at(i);
        detail.label = PlainLabel(detail_);
        detail.label->setText(kDetailRows[i].label);
        detail.value = PlainLabel(detail_);
        detail.value->setObjectName(Element(kDetailRows[i].name, channel_));
        detail.value->setAlignment(Qt::AlignRight);
        detail.value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        grid->addWidget(detail.label, static_cast<int>(i), 0);
        grid->addWidget(detail.value, static_cast<int>(i), 1);
    }
}

void ChannelFrame::SetChannel(const ChannelRow& row) {
    const QString unit = row.unit.isEmpty() ? QString() : "  (" + row.unit + ")";
    name_->setText(row.name + unit);
    value_->clear();
    value_->setAccessibleName(row.name + unit);
    swatch_->setAccessibleName("Colour of " + row.name);
    swatch_->SetCurve(row.curve);
    onOff_->setAccessibleName("Draw " + row.name);
    const QSignalBlocker quiet(onOff_);
    onOff_->setChecked(row.on);
    open_->setAccessibleName("More about " + row.name);
    close_->setAccessibleName("Less about " + row.name);
    for (std::size_t i = 0; i < kDetailRows.size(); ++i)
        details_.at(i).value->setAccessibleName(QString("%1 of %2").arg(kDetailRows[i].label, row.name));
    show();
}

void ChannelFrame::Clear() {
    hide();
    value_->clear();
}

void ChannelFrame::SetValue(std::string_view text) {
    const auto shown = QLatin1StringView(text.data(), static_cast<qsizetype>(text.size()));
    if (value_->text() != shown) value_->setText(shown);
}

void ChannelFrame::SetDetails(const ChannelDetails& details) {
    for (std::size_t i = 0; i < kDetailRows.size(); ++i) {
        const std::string& text = details.*kDetailRows[i].text;
        details_.at(i).label->setVisible(!text.empty());
        details_.at(i).value->setVisible(!text.empty());
        const QString shown = FromText(text);
        if (details_.at(i).value->text() != shown) details_.at(i).value->setText(shown);
    }
}

bool ChannelFrame::IsOpen() const {
    return !detail_->isHidden();
}

void ChannelFrame::OpenChannelView() {
    detail_->show();
    close_->show();
    open_->hide();
    emit Opened(channel_);
}

void ChannelFrame::CloseChannelView() {
    detail_->hide();
    open_->show();
    close_->hide();
}

int ChannelFrame::ContentWidth() const {
    return kSwatchWidth + 2 * kGap + value_->width() + open_->sizeHint().width();
}

}  // namespace marisonde
