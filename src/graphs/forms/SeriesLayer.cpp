#include "graphs/forms/SeriesLayer.h"

#include <algorithm>
#include <cmath>

namespace marisonde {

namespace {

constexpr int kColumnsAtOnce = 8;  ///< columns of the raster that are turned into pixels of a line together

bool IsEmpty(const ChartGroup& group) {
    return group.NumSeries() == 0 || group.LastPoint() == 0 ||
           (group.LastPoint() == 1 && std::isnan(group.X(1)));
}

bool Same(const AxisRange& a, const AxisRange& b) {
    return a.min == b.min && a.max == b.max;
}

PixelBox United(const PixelBox& a, const PixelBox& b) {
    if (a.Empty()) return b;
    if (b.Empty()) return a;
    return {std::min(a.x0, b.x0), std::min(a.y0, b.y0), std::max(a.x1, b.x1), std::max(a.y1, b.y1)};
}

}  // namespace

bool SeriesGeometry::operator==(const SeriesGeometry& other) const {
    return pixels == other.pixels && scale == other.scale && lineWidth == other.lineWidth &&
           markerSize == other.markerSize && Same(x, other.x) && Same(y, other.y) && Same(y2, other.y2) &&
           rotated == other.rotated && xReversed == other.xReversed;
}

void SeriesLayer::SetPen(int group, int series, const CurvePen& pen) {
    if (group < 1 || group > kGroups || series < 1 || series >= kSeriesSlots) return;
    pens_[static_cast<std::size_t>(group) - 1][static_cast<std::size_t>(series)] = pen;
}

void SeriesLayer::TakePens(const Chart2D& chart) {
    palettes_ = {};
    markers_ = {};
    std::size_t rank = 1;
    for (const int number : {1, 2}) {
        for (int series = 1; series <= chart.ChartGroups(number).NumSeries(); ++series, ++rank) {
            if (rank >= markers_.size() || series >= kSeriesSlots) continue;
            const CurvePen& pen =
                pens_[static_cast<std::size_t>(number) - 1][static_cast<std::size_t>(series)];
            markers_[rank] = pen.marker;
            for (int place = 0; place < kDashPeriod; ++place)
                palettes_[static_cast<std::size_t>(place)][rank] =
                    IsFullAt(pen.pattern, place) ? pen.full : pen.faint;
        }
    }
}

const SeriesLayer::Palette& SeriesLayer::PaletteAt(int column) const {
    return palettes_[static_cast<std::size_t>(column / geometry_.scale) % kDashPeriod];
}

void SeriesLayer::Redraw(const Chart2D& chart, const SeriesGeometry& geometry) {
    const bool resized = geometry.pixels != geometry_.pixels;
    geometry_ = geometry;
    TakePens(chart);
    drawnPoints_ = {};
    const bool empty = IsEmpty(chart.ChartGroups(1)) && IsEmpty(chart.ChartGroups(2));
    if (resized || empty) image_ = QImage();
    // An empty window costs no picture; it comes with the first points.
    if (empty || geometry.pixels.isEmpty()) return;
    const QSize raster = geometry.rotated ? geometry.pixels.transposed() : geometry.pixels;
    raster_.Reset(raster.width(), raster.height(), geometry.lineWidth);
    if (geometry.markerSize > 0) raster_.SetMarkers(markers_, geometry.markerSize, geometry.rotated);
    if (image_.isNull()) image_ = QImage(geometry.pixels, QImage::Format_ARGB32_Premultiplied);
    DrawNew(chart);
    Convert(image_.rect());
}

QRect SeriesLayer::Append(const Chart2D& chart) {
    if (image_.isNull()) {
        Redraw(chart, geometry_);
        return image_.rect();
    }
    const PixelBox touched = DrawNew(chart);
    if (touched.Empty()) return {};
    const QRect area = ImageRect(touched);
    Convert(area);
    return area;
}

PixelBox SeriesLayer::DrawNew(const Chart2D& chart) {
    const SeriesGeometry& g = geometry_;
    const QSize raster = g.rotated ? g.pixels.transposed() : g.pixels;
    // Pixels count from the top left; values grow to the right and upward, X downward when reversed.
    const PixelScale x(g.x.min, g.x.max, raster.width(), g.rotated != g.xReversed);
    PixelBox touched;
    int rank = 1;
    for (const int number : {1, 2}) {
        const ChartGroup& group = chart.ChartGroups(number);
        const AxisRange& range = number == 1 ? g.y : g.y2;
        const PixelScale y(range.min, range.max, raster.height(), !g.rotated);
        int& drawn = drawnPoints_[static_cast<std::size_t>(number) - 1];
        if (group.LastPoint() > drawn && group.NumSeries() > 0) {
            // From the last point drawn on: the line from it to the next is new.
            touched = United(touched, raster_.Draw(group, drawn, group.LastPoint(), x, y, rank));
            drawn = group.LastPoint();
        }
        rank += group.NumSeries();
    }
    return touched;
}

QRect SeriesLayer::ImageRect(const PixelBox& box) const {
    const QRect upright(QPoint(box.x0, box.y0), QPoint(box.x1, box.y1));
    return geometry_.rotated ? QRect(upright.y(), upright.x(), upright.height(), upright.width()) : upright;
}

void SeriesLayer::Convert(const QRect& area) {
    if (geometry_.rotated)
        ConvertRotated(area);
    else
        ConvertUpright(area);
}

void SeriesLayer::ConvertRotated(const QRect& area) {
    for (int line = area.top(); line <= area.bottom(); ++line) {
        auto* const out = reinterpret_cast<QRgb*>(image_.scanLine(line));
        const auto ranks = raster_.Column(line);
        const Palette& palette = PaletteAt(line);
        for (int i = area.left(); i <= area.right(); ++i)
            out[i] = palette[ranks[static_cast<std::size_t>(i)]];
    }
}

void SeriesLayer::ConvertUpright(const QRect& area) {
    const auto stride = static_cast<std::size_t>(image_.bytesPerLine()) / sizeof(QRgb);
    auto* const pixels = reinterpret_cast<QRgb*>(image_.bits());
    for (int left = area.left(); left <= area.right(); left += kColumnsAtOnce) {
        const auto columns = static_cast<std::size_t>(std::min(kColumnsAtOnce, area.right() - left + 1));
        std::array<const std::uint8_t*, kColumnsAtOnce> ranks{};
        std::array<const QRgb*, kColumnsAtOnce> palettes{};
        for (std::size_t k = 0; k < columns; ++k) {
            ranks[k] = raster_.Column(left + static_cast<int>(k)).data();
            palettes[k] = PaletteAt(left + static_cast<int>(k)).data();
        }
        for (int line = area.top(); line <= area.bottom(); ++line) {
            QRgb* const out =
                pixels + static_cast<std::size_t>(line) * stride + static_cast<std::size_t>(left);
            for (std::size_t k = 0; k < columns; ++k) out[k] = palettes[k][ranks[k][line]];
        }
    }
}

}  // namespace marisonde
