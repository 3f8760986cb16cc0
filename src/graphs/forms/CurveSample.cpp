#include "graphs/forms/CurveSample.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace marisonde {

namespace {

constexpr int kMarkerSize = 9;

}  // namespace

void DrawCurveSample(QPainter& painter, const QRectF& box, const CurveSample& sample, double breadth) {
    const bool upright = box.height() > box.width();
    const double length = upright ? box.height() : box.width();
    const double wide = std::min(breadth, upright ? box.width() : box.height());
    // On whole pixels: smoothed edges would mix the colours with the background.
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    const double side = std::floor((upright ? box.center().x() : box.center().y()) - wide / 2 + 0.5);
    for (int place = 0; place < length; ++place) {
        const double step = std::min(1.0, length - place);
        const QRectF piece = upright ? QRectF(side, box.top() + place, wide, step)
                                     : QRectF(box.left() + place, side, step, wide);
        painter.fillRect(piece, IsFullAt(sample.pattern, place) ? sample.color : sample.faint);
    }
    const QPointF middle(std::floor(box.center().x()), std::floor(box.center().y()));
    for (const MarkSpan& span : MarkSpans(sample.marker, kMarkerSize, false))
        painter.fillRect(
            QRectF(middle.x() + span.column, middle.y() + span.top, 1, span.bottom - span.top + 1),
            sample.color);
    painter.restore();
}

}  // namespace marisonde
