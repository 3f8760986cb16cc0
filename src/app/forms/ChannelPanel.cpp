#include "app/forms/ChannelPanel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QScrollArea>
#include <QStyle>
#include <QVBoxLayout>

namespace marisonde {

namespace {

constexpr int kRightMargin = 6;

}  // namespace

ChannelPanel::ChannelPanel(QWidget* parent) : QWidget(parent), sigmaOptions_(MakeSigmaOptions()) {
    setObjectName("ChannelPanel");
    setAccessibleName("Channels and their current values");
    QWidget* const rows = MakeRows();
    auto* area = new QScrollArea(this);
    area->setObjectName("ChannelArea");
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidget(rows);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(8, 10, 2, 8);
    column->setSpacing(6);
    column->addWidget(sigmaOptions_);
    column->addWidget(area, 1);
    // As wide without channels as with them: the graph keeps its size when an instrument is connected.
    const int width = std::max(frames_[0]->ContentWidth(), sigmaOptions_->sizeHint().width());
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    const QMargins margins = column->contentsMargins();
    setFixedWidth(margins.left() + width + kRightMargin + bar + margins.right());
    hint_->setMinimumHeight(hint_->heightForWidth(width));
}

QWidget* ChannelPanel::MakeSigmaOptions() {
    auto* box = new QWidget(this);
    box->setObjectName("SigmaFrame");
    box->setAccessibleName("Form of the values shown");
    auto* column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    const std::array captions{"No Sigma", "Sigma Correct"};
    const std::array tips{"Show backscattering as measured",
                          "Show backscattering corrected for the light lost on its way"};
    for (std::size_t i = 0; i < sigma_.size(); ++i) {
        sigma_.at(i) = new QRadioButton(captions.at(i), box);
        sigma_.at(i)->setObjectName(QString("SigmaOption(%1)").arg(i));
        sigma_.at(i)->setToolTip(tips.at(i));
        column->addWidget(sigma_.at(i));
        connect(sigma_.at(i), &QRadioButton::toggled, this, [this, i](bool on) {
            if (on) emit SigmaChosen(static_cast<SigmaChoice>(i));
        });
    }
    box->hide();
    return box;
}

QWidget* ChannelPanel::MakeRows() {
    auto* rows = new QWidget(this);
    auto* column = new QVBoxLayout(rows);
    column->setContentsMargins(0, 0, kRightMargin, 0);
    column->setSpacing(6);
    hint_ = new QLabel("Values appear here when a calibration is loaded.", rows);
    hint_->setObjectName("Hint");
    hint_->setWordWrap(true);
    hint_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
    hint_->setForegroundRole(QPalette::PlaceholderText);
    column->addWidget(hint_);
    for (int channel = 0; channel < kChannelSlots; ++channel) {
        auto* frame = new ChannelFrame(channel, rows);
        frame->hide();
        column->addWidget(frame);
        connect(frame, &ChannelFrame::OnOff, this, &ChannelPanel::OnOff);
        connect(frame, &ChannelFrame::Opened, this, &ChannelPanel::Opened);
        frames_.at(static_cast<std::size_t>(channel)) = frame;
    }
    column->addStretch();
    return rows;
}

void ChannelPanel::SetChannels(const std::vector<ChannelRow>& rows) {
    hint_->setVisible(rows.empty());
    std::array<bool, kChannelSlots> shown{};
    for (const ChannelRow& row : rows) {
        shown.at(static_cast<std::size_t>(row.box)) = true;
        Frame(row.box).SetChannel(row);
    }
    for (std::size_t i = 0; i < shown.size(); ++i)
        if (!shown.at(i)) frames_.at(i)->Clear();
}

bool ChannelPanel::IsOpen(int channel) const {
    const ChannelFrame& frame = *frames_.at(static_cast<std::size_t>(channel));
    return !frame.isHidden() && frame.IsOpen();
}

void ChannelPanel::SetSigmaOption(SigmaChoice choice) {
    for (QRadioButton* button : sigma_) button->blockSignals(true);
    sigma_.at(static_cast<std::size_t>(choice))->setChecked(true);
    for (QRadioButton* button : sigma_) button->blockSignals(false);
}

void ChannelPanel::ShowSigmaOptions(bool shown) {
    sigmaOptions_->setVisible(shown);
}

}  // namespace marisonde
