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
    QSize pixels;  ///< of the plot area, in device pixels
    int lineWidth = 1;
    AxisRange x, y, y2;
    bool rotated = false;
    bool xReversed = false;

    bool operator==(const SeriesGeometry& other) const;
};

/// The curves of a chart as a picture with a clear background, which grows with the points at the cost of the
/// new ones alone. It always equals the picture that a full redraw would give.
class SeriesLayer {
  public:
    /// Colour of a series of a group; counts from the next Redraw on.
    void SetColor(int group, int series, QRgb color);

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
    using Palette = std::array<QRgb, 256>;

    PixelBox DrawNew(const Chart2D& chart);
    [[nodiscard]] QRect ImageRect(const PixelBox& box) const;
    void Convert(const QRect& area);
    void ConvertRotated(const QRect& area);
    void ConvertUpright(const QRect& area);

    SeriesGeometry geometry_;
    SeriesRaster raster_;
    QImage image_;
    std::array<std::array<QRgb, kSeriesSlots>, kGroups> colors_{};
    Palette palette_{};
    std::array<int, kGroups> drawnPoints_{};
};

}  // namespace marisonde
