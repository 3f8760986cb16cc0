#pragma once

#include <QColor>
#include <QRectF>

#include "graphs/CurveMarks.h"

class QPainter;

namespace marisonde {

/// How a curve looks in its graph, for a legend or beside a readout.
struct CurveSample {
    QColor color;
    QColor faint;     ///< between the strokes of the pattern
    int pattern = 0;  ///< see IsFullAt
    CurveMarker marker = CurveMarker::None;

    bool operator==(const CurveSample&) const = default;
};

/// A stroke of the curve along the longer side of `box`, as broad as the shorter one or `breadth`, whichever
/// is less, with its marker in the middle.
void DrawCurveSample(QPainter& painter, const QRectF& box, const CurveSample& sample, double breadth);

}  // namespace marisonde
