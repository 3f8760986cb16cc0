#include "graphs/forms/ChartView.h"

#include <QEvent>
#include <QFocusEvent>
#include <QVBoxLayout>
#include <utility>
#include <vector>

#include "graphs/forms/ChartPlot.h"

namespace marisonde {

namespace {

constexpr int kRedrawInterval = 40;  ///< ms

}  // namespace

ChartView::ChartView(Chart2D& chart, QWidget* parent)
    : QWidget(parent), chart_(chart), plot_(new ChartPlot(chart, this)) {
    setObjectName("Chart2D1");
    setAccessibleName("Graph of the instrument's channels");
    setMinimumSize(240, 180);
    setFocusPolicy(Qt::StrongFocus);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(plot_);
    timer_.setSingleShot(true);
    timer_.setInterval(kRedrawInterval);
    connect(&timer_, &QTimer::timeout, this, &ChartView::OnTimer);
    chart_.OnChange = [this] { Mark(); };
    ApplyStyles();
}

ChartView::~ChartView() {
    chart_.OnChange = nullptr;
}

void ChartView::Mark() {
    if (!timer_.isActive() && isVisible()) timer_.start();
}

void ChartView::OnTimer() {
    if (chart_.IsBatched()) return;
    ShowLegend();
    const QRect changed = plot_->Refresh();
    if (!changed.isEmpty()) plot_->update(changed);
    Describe();
}

void ChartView::RefreshNow() {
    if (chart_.IsBatched()) return;
    timer_.stop();
    ShowLegend();
    const QRect changed = plot_->Refresh();
    if (!changed.isEmpty()) plot_->repaint(changed);
    Describe();
}

void ChartView::RedrawNow() {
    timer_.stop();
    plot_->RedrawAll();
    plot_->repaint();
}

void ChartView::SetSeriesStyle(int group, int series, const SeriesStyle& style) {
    styles_[{group, series}] = style;
    ApplyStyles();
    Mark();
}

void ChartView::SetSeriesStyles(std::map<std::pair<int, int>, SeriesStyle> styles) {
    styles_ = std::move(styles);
    ApplyStyles();
    Mark();
}

CurveSample ChartView::SampleOf(int group, int series) const {
    const auto found = samples_.find({group, series});
    return found == samples_.end() ? CurveSample() : found->second;
}

QRect ChartView::PlotArea() const {
    return plot_->axisRect()->rect().translated(plot_->pos());
}

QWidget& ChartView::Canvas() {
    return *plot_;
}

void ChartView::SetLook(const ChartLook& look) {
    look_ = look;
    ApplyStyles();
    Mark();
}

void ChartView::ApplyStyles() {
    colors_ = ColorsFor(look_, palette());
    plot_->SetColors(colors_, look_);
    samples_.clear();
    plot_->Layer().ClearPens();
    std::vector<QColor> taken;
    for (const auto& [where, style] : styles_) {
        const QColor shown = DistinctOn(style.color, colors_.plotBackground, taken);
        const QColor faint = FaintOn(shown, colors_.plotBackground);
        taken.push_back(shown);
        const CurveMarker marker = look_.MarkersShow() ? style.marker : CurveMarker::None;
        const CurveSample sample{shown, faint, style.pattern, marker};
        plot_->Layer().SetPen(where.first, where.second, {shown.rgb(), faint.rgb(), style.pattern, marker});
        samples_[where] = sample;
    }
    named_.reset();
    ShowLegend();
}

std::vector<bool> ChartView::DrawnCurves() const {
    std::vector<bool> drawn;
    drawn.reserve(styles_.size());
    for (const auto& [where, style] : styles_)
        drawn.push_back(chart_.ChartGroups(where.first).Display(where.second) == SeriesDisplay::Drawn);
    return drawn;
}

void ChartView::ShowLegend() {
    std::vector<bool> drawn = DrawnCurves();
    if (named_ == drawn) return;
    std::vector<LegendEntry> entries;
    auto named = drawn.begin();
    for (const auto& [where, style] : styles_)
        if (*named++ && !style.name.isEmpty()) entries.push_back({style.name, samples_[where]});
    plot_->SetLegend(entries);
    named_ = std::move(drawn);
}

QPointF ChartView::PixelToData(int group, const QPoint& position) const {
    return plot_->PixelToData(group, plot_->mapFrom(this, position));
}

QPixmap ChartView::RenderPixmap(const QSize& size, double scale) {
    plot_->RedrawAll();
    return plot_->toPixmap(size.width(), size.height(), scale);
}

bool ChartView::SavePng(const QString& path, const QSize& size, double scale) {
    return RenderPixmap(size, scale).save(path, "PNG");
}

void ChartView::Describe() {
    if (describedAxes_ == chart_.AxesRevision()) return;
    describedAxes_ = chart_.AxesRevision();
    const auto title = [&](AxisName name) { return QString::fromStdString(chart_.Axes(name).Title()); };
    QString text = title(AxisName::Y);
    if (chart_.Axes(AxisName::Y2).Visible()) text += " and " + title(AxisName::Y2);
    setAccessibleDescription(text + " against " + title(AxisName::X));
    emit AxesShown();
}

void ChartView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    const auto type = event->type();
    if (type != QEvent::PaletteChange && type != QEvent::FontChange && type != QEvent::StyleChange) return;
    ApplyStyles();
    Mark();
    if (type == QEvent::PaletteChange) emit ColorsChanged();
}

void ChartView::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    const auto reason = event->reason();
    plot_->SetFocusFrame(reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason);
}

void ChartView::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    plot_->SetFocusFrame(false);
}

// A hidden view keeps no picture up to date; it catches up when it is seen.
void ChartView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (chart_.IsBatched()) return;
    ShowLegend();
    plot_->Refresh();
    Describe();
}

}  // namespace marisonde
