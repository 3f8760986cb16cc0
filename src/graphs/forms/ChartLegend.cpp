#include "graphs/forms/ChartLegend.h"

#include <algorithm>

namespace marisonde {

namespace {

constexpr int kIconLength = kDashPeriod;
constexpr int kIconGap = 5;
constexpr int kLineWidth = 3;
constexpr int kColumnGap = 14;

/// A short stroke of the curve and its name.
class CurveItem final : public QCPAbstractLegendItem {
  public:
    CurveItem(QCPLegend* legend, LegendEntry entry)
        : QCPAbstractLegendItem(legend), entry_(std::move(entry)) {}

  protected:
    void draw(QCPPainter* painter) override {
        const QRect box = rect();
        DrawCurveSample(*painter, QRectF(box.left(), box.top(), kIconLength, box.height()), entry_.curve,
                        kLineWidth);
        painter->setPen(mTextColor);
        painter->setFont(mFont);
        painter->drawText(box.adjusted(kIconLength + kIconGap, 0, 0, 0),
                          Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, entry_.name);
    }
    QSize minimumOuterSizeHint() const override {
        const QFontMetrics metrics(mFont);
        return {kIconLength + kIconGap + metrics.horizontalAdvance(entry_.name) + 1, metrics.height()};
    }

  private:
    LegendEntry entry_;
};

}  // namespace

ChartLegend::ChartLegend(QCustomPlot& plot) : legend_(*plot.legend) {
    plot.setAutoAddPlottableToLegend(false);
    plot.axisRect()->insetLayout()->take(&legend_);
    auto* const line = new QCPLayoutGrid;
    plot.plotLayout()->addElement(1, 0, line);  // first of all: elements learn from it which plot is theirs
    line->addElement(0, 0, new QCPLayoutElement);
    line->addElement(0, 1, &legend_);
    line->addElement(0, 2, new QCPLayoutElement);
    line->setColumnStretchFactor(1, 0.001);
    plot.plotLayout()->setRowStretchFactor(1, 0.001);
    plot.plotLayout()->setRowSpacing(0);
    legend_.setBorderPen(Qt::NoPen);
    legend_.setBrush(Qt::NoBrush);
    legend_.setMargins(QMargins(4, 0, 4, 4));
    legend_.setColumnSpacing(kColumnGap);
    legend_.setRowSpacing(1);
    legend_.setVisible(false);
}

void ChartLegend::SetEntries(const std::vector<LegendEntry>& entries) {
    if (entries == entries_) return;
    entries_ = entries;
    legend_.clearItems();
    perRow_ = 0;
    for (const LegendEntry& entry : entries_) legend_.addItem(new CurveItem(&legend_, entry));
    legend_.setVisible(!entries_.empty());
}

void ChartLegend::SetTextColor(const QColor& color) {
    legend_.setTextColor(color);
}

bool ChartLegend::FitTo(int width) {
    if (entries_.empty()) return false;
    const QFontMetrics metrics(legend_.font());
    int widest = 1;
    for (const LegendEntry& entry : entries_)
        widest = std::max(widest, kIconLength + kIconGap + metrics.horizontalAdvance(entry.name) + 1);
    const int perRow =
        std::clamp((width - kColumnGap) / (widest + kColumnGap), 1, static_cast<int>(entries_.size()));
    if (perRow == perRow_) return false;
    perRow_ = perRow;
    legend_.setWrap(perRow);
    legend_.setFillOrder(QCPLayoutGrid::foColumnsFirst, true);
    legend_.simplify();
    return true;
}

}  // namespace marisonde
