#pragma once

#include <QColor>
#include <QPalette>
#include <optional>
#include <vector>

#include "graphs/GraphLook.h"

namespace marisonde {

/// What a user may choose about the look of a graph. A colour that is not set follows the theme.
struct ChartLook {
    std::optional<QColor> plotBackground;
    std::optional<QColor> background;
    std::optional<QColor> grid;
    bool gridOn = true;
    int gridStyle = 0;   ///< 0 dotted, 1 dashed, 2 solid
    int lineSize = 1;    ///< of the curves, in logical pixels
    int markerSize = 1;  ///< in logical pixels
    /// A marker no wider than its line would not be seen and is not drawn.
    [[nodiscard]] bool MarkersShow() const { return markerSize > lineSize; }
};
/// The view's side of a graph's look. White paper and black grid lines, which nobody has chosen, follow the
/// theme; sizes are held to what can be drawn.
ChartLook LookOf(const GraphLook& look);
QColor ColorOf(PackedColor color);

/// The colours to draw with.
struct ChartColors {
    QColor plotBackground;
    QColor background;
    QColor grid;
    QColor text;
    QColor frame;
};
ChartColors ColorsFor(const ChartLook& look, const QPalette& palette);

/// Contrast of two opaque colours, 1 (none) to 21, after the accessibility guidelines for web content.
double ContrastOf(const QColor& a, const QColor& b);
/// The colour itself if it can be told from the background; otherwise the nearest shade of it that can.
QColor ReadableOn(const QColor& color, const QColor& background);
/// A readable shade that is also another than those taken, as far as the shades go.
QColor DistinctOn(const QColor& color, const QColor& background, const std::vector<QColor>& taken);
/// The colour between the strokes of a curve's pattern.
QColor FaintOn(const QColor& color, const QColor& background);

}  // namespace marisonde
