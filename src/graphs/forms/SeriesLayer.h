#pragma once

#include <QImage>
#include <QRect>
#include <QSize>
#include <array>
#include <cstdint>

#include "graphs/Chart2D.h"
#include "graphs/SeriesRaster.h"

namespace marisonde {

/// Where on the plot area the values of the three axes lie. Ranges are those shown: min below max, finite.
struct SeriesGeometry {
    QSize pixels;      ///< of the plot area, in device pixels
    double scale = 1;  ///< device pixels to one of the layout
    int lineWidth = 1;
    int markerSize = 0;  ///< 0: curves have no markers
    AxisRange x, y, y2;
    bool rotated = false;
    bool xReversed = false;

    bool operator==(const SeriesGeometry& other) const;
};

/// What a curve is drawn with.
struct CurvePen {
    QRgb full = 0;
    QRgb faint = 0;  ///< between the strokes of its pattern
    int pattern = 0;
    CurveMarker marker = CurveMarker::None;
};

/// The curves of a chart as a picture with a clear background, which grows with the points at the cost of the
/// new ones alone. It always equals the picture that a full redraw would give.
class SeriesLayer {
  public:
    /// How a series of a group is drawn, from the next Redraw on.
    void SetPen(int group, int series, const CurvePen& pen);
    void ClearPens() { pens_ = {}; }

    void Redraw(const Chart2D& chart, const SeriesGeometry& geometry);
    /// Draws the points that were appended since the last call. Returns the part of the image that may have
    /// changed, in device pixels.
    QRect Append(const Chart2D& chart);

    /// Null as long as nothing was to be drawn.
    [[nodiscard]] const QImage& Image() const { return image_; }
    [[nodiscard]] const SeriesGeometry& Geometry() const { return geometry_; }

  private:
    static constexpr int kGroups = 2;
    static constexpr int kSeriesSlots = 100;
    using Palette = std::array<QRgb, 256>;  ///< by rank

    void TakePens(const Chart2D& chart);
    /// The colours at a column of the raster.
    [[nodiscard]] const Palette& PaletteAt(int column) const;

    PixelBox DrawNew(const Chart2D& chart);
    [[nodiscard]] QRect ImageRect(const PixelBox& box) const;
    void Convert(const QRect& area);
    void ConvertRotated(const QRect& area);
    void ConvertUpright(const QRect& area);

    SeriesGeometry geometry_;
    SeriesRaster raster_;
    QImage image_;
    std::array<std::array<CurvePen, kSeriesSlots>, kGroups> pens_{};
    std::array<Palette, kDashPeriod> palettes_{};
    SeriesRaster::Markers markers_{};
    std::array<int, kGroups> drawnPoints_{};
};

}  // namespace marisonde
