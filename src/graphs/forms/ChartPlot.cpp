#include "graphs/forms/ChartPlot.h"

#include <QPaintEvent>
#include <algorithm>
#include <cmath>

#include "graphs/forms/ChartTicker.h"
#include "graphs/forms/SeriesPlottable.h"

namespace marisonde {

namespace {

constexpr int kBufferAboveCurves = 1;
// Room for the half of a label that stands beyond the last tick; the library leaves out labels without it.
constexpr QMargins kLeastMargins(15, 12, 24, 4);
constexpr double kGridOpacity = 0.35;
constexpr std::array kGridStyles{Qt::DotLine, Qt::DashLine, Qt::SolidLine};

QRect Logical(const QRect& device, double ratio, const QPoint& origin) {
    if (device.isEmpty()) return {};
    const QRectF logical(device.x() / ratio, device.y() / ratio, device.width() / ratio,
                         device.height() / ratio);
    return logical.toAlignedRect().translated(origin);
}

}  // namespace

ChartPlot::ChartPlot(const Chart2D& chart, QWidget* parent)
    : QCustomPlot(parent), chart_(chart), legend_(*this) {
    // Two buffers, as few as an empty plot has: background and grid below the curves, all else above them.
    // Entries of a legend insist on the layer of that name.
    QCPLayer* const above = layer("legend");
    above->setMode(QCPLayer::lmBuffered);
    for (QCPAxis* axis : {xAxis, yAxis, xAxis2, yAxis2}) axis->setLayer(above);
    setCurrentLayer("grid");
    for (const char* unused : {"main", "axes", "overlay"}) removeLayer(layer(unused));
    for (QCPAxis* axis : {xAxis, yAxis, xAxis2, yAxis2}) {
        axis->setTicker(QSharedPointer<ChartTicker>::create(*axis));
        axis->setVisible(true);
        axis->setNumberFormat("gb");
        axis->setTickLengthIn(0);
        axis->setTickLengthOut(4);
        axis->setSubTickLength(0, 2);
    }
    axisRect()->setMinimumMargins(kLeastMargins);
    new SeriesPlottable(*this);
}

ChartPlot::Roles ChartPlot::AxisRoles() const {
    if (chart_.Rotated()) return {yAxis, xAxis2, xAxis};
    return {xAxis, yAxis, yAxis2};
}

void ChartPlot::SetColors(const ChartColors& colors, const ChartLook& look) {
    colors_ = colors;
    look_ = look;
    setBackground(QBrush(colors.background));
    axisRect()->setBackground(QBrush(colors.plotBackground));
    legend_.SetTextColor(colors.text);
    for (QCPAxis* axis : {xAxis, yAxis, xAxis2, yAxis2}) StyleAxis(*axis);
    seenAxes_ = 0;
}

void ChartPlot::StyleAxis(QCPAxis& axis) {
    const QPen line(colors_.frame, 1);
    axis.setBasePen(line);
    axis.setTickPen(line);
    axis.setSubTickPen(line);
    axis.setTickLabelColor(colors_.text);
    axis.setLabelColor(colors_.text);
    axis.setTickLabelFont(font());
    axis.setLabelFont(font());
    QColor grid = colors_.grid;
    if (!look_.grid) grid.setAlphaF(kGridOpacity);
    const auto style = static_cast<std::size_t>(std::clamp(look_.gridStyle, 0, 2));
    axis.grid()->setPen(QPen(grid, 0, kGridStyles[style]));
    axis.grid()->setZeroLinePen(Qt::NoPen);
}

void ChartPlot::SetLegend(const std::vector<LegendEntry>& entries) {
    legend_.SetEntries(entries);
    seenAxes_ = 0;
}

void ChartPlot::SyncAxes() {
    const Roles roles = AxisRoles();
    const ChartAxis& y2 = chart_.Axes(AxisName::Y2);
    for (QCPAxis* axis : {xAxis, yAxis, xAxis2, yAxis2}) {
        const bool used = axis == roles.x || axis == roles.y || (axis == roles.y2 && y2.Visible());
        axis->setTicks(used);
        axis->setTickLabels(used);
        axis->grid()->setVisible(look_.gridOn && (axis == roles.x || axis == roles.y));
        if (!used) axis->setLabel({});
    }
    SyncAxis(*roles.x, chart_.Axes(AxisName::X));
    SyncAxis(*roles.y, chart_.Axes(AxisName::Y));
    if (y2.Visible()) SyncAxis(*roles.y2, y2);
    legend_.FitTo(viewport().width());
    seenAxes_ = chart_.AxesRevision();
}

void ChartPlot::SyncAxis(QCPAxis& shown, const ChartAxis& axis) {
    const AxisRange range = ShownRange(axis.Min(), axis.Max());
    shown.setRange(range.min, range.max);
    shown.setRangeReversed(axis.Reversed());
    shown.setNumberPrecision(LabelPrecision(range));
    shown.setLabel(QString::fromLatin1(axis.Title().data(), static_cast<qsizetype>(axis.Title().size())));
}

bool ChartPlot::SyncDevice() {
    const double ratio = devicePixelRatioF();
    if (ratio == bufferDevicePixelRatio()) return false;
    setBufferDevicePixelRatio(ratio);
    return true;
}

SeriesGeometry ChartPlot::GeometryAt(double scale) const {
    SeriesGeometry geometry;
    const QSize area = axisRect()->size();
    geometry.pixels = {static_cast<int>(std::ceil(area.width() * scale)),
                       static_cast<int>(std::ceil(area.height() * scale))};
    geometry.scale = scale;
    geometry.lineWidth = std::max(1, static_cast<int>(std::lround(look_.lineSize * scale)));
    if (look_.MarkersShow()) geometry.markerSize = static_cast<int>(std::lround(look_.markerSize * scale));
    const auto shown = [&](AxisName name) {
        return ShownRange(chart_.Axes(name).Min(), chart_.Axes(name).Max());
    };
    geometry.x = shown(AxisName::X);
    geometry.y = shown(AxisName::Y);
    geometry.y2 = shown(AxisName::Y2);
    geometry.rotated = chart_.Rotated();
    geometry.xReversed = chart_.Axes(AxisName::X).Reversed();
    return geometry;
}

bool ChartPlot::LayerIsStale() const {
    return seenPoints_ != chart_.PointsRevision() || !(layer_.Geometry() == GeometryAt(devicePixelRatioF()));
}

void ChartPlot::RedrawLayer() {
    layer_.Redraw(chart_, GeometryAt(devicePixelRatioF()));
    seenPoints_ = chart_.PointsRevision();
}

QRect ChartPlot::Refresh() {
    if (SyncDevice() || seenAxes_ != chart_.AxesRevision()) {
        SyncAxes();
        replot(rpQueuedRefresh);
        RedrawLayer();
        return rect();
    }
    if (LayerIsStale()) {
        RedrawLayer();
        return axisRect()->rect();
    }
    return Logical(layer_.Append(chart_), devicePixelRatioF(), axisRect()->topLeft()) & axisRect()->rect();
}

void ChartPlot::RedrawAll() {
    seenAxes_ = 0;
    Refresh();
}

QPointF ChartPlot::PixelToData(int group, const QPoint& position) const {
    const Roles roles = AxisRoles();
    const QCPAxis& y = group == 1 ? *roles.y : *roles.y2;
    const bool rotated = chart_.Rotated();
    return {roles.x->pixelToCoord(rotated ? position.y() : position.x()),
            y.pixelToCoord(rotated ? position.x() : position.y())};
}

void ChartPlot::SetFocusFrame(bool shown) {
    if (focusFrame_ == shown) return;
    focusFrame_ = shown;
    update();
}

void ChartPlot::paintEvent(QPaintEvent*) {
    // A new size comes here without a refresh before it. Anything else waits for one, as long as a batch
    // lasts.
    if (layer_.Geometry().pixels != GeometryAt(devicePixelRatioF()).pixels) RedrawLayer();
    QCPPainter painter(this);
    if (!painter.isActive()) return;
    painter.fillRect(rect(), mBackgroundBrush);
    for (int i = 0; i < mPaintBuffers.size(); ++i) {
        if (i == kBufferAboveCurves && !layer_.Image().isNull())
            painter.drawImage(
                QRectF(axisRect()->topLeft(), QSizeF(layer_.Image().size()) / devicePixelRatioF()),
                layer_.Image());
        mPaintBuffers[i]->draw(&painter);
    }
    if (!focusFrame_) return;
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void ChartPlot::resizeEvent(QResizeEvent* event) {
    SyncDevice();
    setViewport(rect());
    SyncAxes();
    QCustomPlot::resizeEvent(event);
}

}  // namespace marisonde
