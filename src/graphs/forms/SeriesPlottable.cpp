#include "graphs/forms/SeriesPlottable.h"

#include "graphs/forms/ChartPlot.h"

namespace marisonde {

namespace {

constexpr double kPrintScale =
    4;  ///< pixels of a curve to one of the layout where the output has none of its own

}  // namespace

SeriesPlottable::SeriesPlottable(ChartPlot& plot)
    : QCPAbstractPlottable(plot.xAxis, plot.yAxis), plot_(plot) {
    setSelectable(QCP::stNone);
}

double SeriesPlottable::selectTest(const QPointF&, bool, QVariant*) const {
    return -1;
}

QCPRange SeriesPlottable::getKeyRange(bool& found, QCP::SignDomain) const {
    return RangeOf(AxisName::X, found);
}

QCPRange SeriesPlottable::getValueRange(bool& found, QCP::SignDomain, const QCPRange&) const {
    return RangeOf(AxisName::Y, found);
}

QCPRange SeriesPlottable::RangeOf(AxisName name, bool& found) const {
    const AxisRange range = plot_.Chart().DataRange(name);
    found = range.min <= range.max;
    return found ? QCPRange(range.min, range.max) : QCPRange();
}

void SeriesPlottable::draw(QCPPainter* painter) {
    const bool toPaper = painter->modes().testFlag(QCPPainter::pmVectorized);
    if (!toPaper && !painter->modes().testFlag(QCPPainter::pmNoCaching)) return;
    const double scale = toPaper ? kPrintScale : painter->transform().m11();
    SeriesLayer layer = plot_.Layer();
    layer.Redraw(plot_.Chart(), plot_.GeometryAt(scale));
    if (layer.Image().isNull()) return;
    painter->drawImage(QRectF(plot_.axisRect()->rect()), layer.Image());
}

void SeriesPlottable::drawLegendIcon(QCPPainter*, const QRectF&) const {}

}  // namespace marisonde
