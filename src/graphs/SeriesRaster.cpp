#include "graphs/SeriesRaster.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace marisonde {

namespace {

constexpr int kPiece = 2048;  ///< points at a time: X and its runs stay in the fast memory for all series
constexpr std::size_t kFewValues = 12;
constexpr int kNoColumn = std::numeric_limits<int>::min();

/// Raises bytes to at least `rank`. The last block may overlap the one before it: once more does no harm, and
/// it spares the single steps at the end. `count` is at least Block.
template <int Block>
void RaiseInBlocks(std::uint8_t* bytes, int count, std::uint8_t rank) {
    const auto raise = [&](std::uint8_t* block) {
        for (int i = 0; i < Block; ++i) block[i] = std::max(block[i], rank);
    };
    for (int i = 0; i < count - Block; i += Block) raise(bytes + i);
    raise(bytes + count - Block);
}

std::int64_t CeilDiv(std::int64_t a, std::int64_t b) {
    return (a + b - 1) / b;
}

}  // namespace

PixelScale::PixelScale(double min, double max, int pixels, bool flipped)
    : min_(min),
      // A trifle less than the full length, so that the upper limit is still inside.
      perUnit_(pixels * (1 - 1e-8) / 2 / (max / 2 - min / 2)),
      last_(pixels - 1),
      flipped_(flipped) {}

void SeriesRaster::Reset(int xPixels, int yPixels, int lineWidth) {
    xPixels_ = std::max(xPixels, 0);
    yPixels_ = std::max(yPixels, 0);
    before_ = (lineWidth - 1) / 2;
    behind_ = lineWidth - 1 - before_;
    pixels_.assign(static_cast<std::size_t>(xPixels_) * static_cast<std::size_t>(yPixels_), 0);
    markers_ = {};
}

void SeriesRaster::SetMarkers(const Markers& byRank, int size, bool transposed) {
    markers_ = byRank;
    markerSpacing_ = 2 * size;
    for (int marker = 0; marker < kCurveMarkers; ++marker)
        shapes_[static_cast<std::size_t>(marker)] =
            MarkSpans(static_cast<CurveMarker>(marker), size, transposed);
    lastMarked_.fill(kNoColumn);
}

std::span<const std::uint8_t> SeriesRaster::Column(int x) const {
    const auto length = static_cast<std::size_t>(yPixels_);
    return std::span(pixels_).subspan(static_cast<std::size_t>(x) * length, length);
}

PixelBox SeriesRaster::Draw(const ChartGroup& group, int from, int to, const PixelScale& x,
                            const PixelScale& y, int firstRank) {
    touched_ = {xPixels_, yPixels_, -1, -1};
    const int end = std::min(to, group.NumPoints());
    // Pieces share a point: the line from one to the next belongs to one of them.
    for (int begin = std::max(from, 1); begin <= end; begin += kPiece - 1) {
        if (begin == end && begin > std::max(from, 1)) break;
        const auto offset = static_cast<std::size_t>(begin) - 1;
        const auto count = static_cast<std::size_t>(std::min(kPiece, end - begin + 1));
        FindRuns(group.XData().subspan(offset, count), x);
        for (int series = 1; series <= group.NumSeries(); ++series) {
            if (group.Display(series) != SeriesDisplay::Drawn) continue;
            rank_ = static_cast<std::uint8_t>(std::min(firstRank + series - 1, 255));
            DrawRuns(group.YData(series).subspan(offset, count), y);
            if (markers_[rank_] != CurveMarker::None)
                DrawMarkers(group.YData(series).subspan(offset, count), y);
        }
    }
    return touched_;
}

void SeriesRaster::FindRuns(std::span<const double> x, const PixelScale& scale) {
    runs_.clear();
    int open = kNoColumn;
    for (std::size_t i = 0; i < x.size(); ++i) {
        const int column = std::isnan(x[i]) ? kNoColumn : scale.At(x[i]);
        if (i > 0 && column == open) continue;
        const int index = static_cast<int>(i);
        if (i > 0) runs_.back().end = index;
        runs_.push_back({index, static_cast<int>(x.size()), column});
        open = column;
    }
}

void SeriesRaster::DrawRuns(std::span<const double> y, const PixelScale& scale) {
    Pen pen;
    for (const Run& run : runs_) {
        if (run.column == kNoColumn)
            Lift(pen);
        else
            DrawRun(run, y, scale, pen);
    }
    Lift(pen);
}

void SeriesRaster::DrawRun(const Run& run, std::span<const double> y, const PixelScale& scale, Pen& pen) {
    const auto begin = static_cast<std::size_t>(run.begin);
    const auto values = y.subspan(begin, static_cast<std::size_t>(run.end - run.begin));
    const Extremes extremes = ExtremesOf(values);
    if (extremes.gaps) {
        DrawPointByPoint(run, y, scale, pen);
        return;
    }
    const int first = scale.At(values.front());
    if (values.size() == 1) {
        MoveOn(pen, {true, run.column, first, first, first}, first);
        return;
    }
    const int a = scale.At(extremes.low);
    const int b = scale.At(extremes.high);
    MoveOn(pen, {true, run.column, scale.At(values.back()), std::min(a, b), std::max(a, b)}, first);
}

void SeriesRaster::DrawPointByPoint(const Run& run, std::span<const double> y, const PixelScale& scale,
                                    Pen& pen) {
    for (int i = run.begin; i < run.end; ++i) {
        const double value = y[static_cast<std::size_t>(i)];
        if (std::isnan(value)) {
            Lift(pen);
            continue;
        }
        const int place = scale.At(value);
        if (pen.down && pen.x == run.column)
            pen = {true, pen.x, place, std::min(pen.low, place), std::max(pen.high, place)};
        else
            MoveOn(pen, {true, run.column, place, place, place}, place);
    }
}

void SeriesRaster::MoveOn(Pen& pen, Pen next, int entry) {
    if (pen.down) {
        const int width = std::abs(next.x - pen.x);
        const int height = std::abs(entry - pen.y);
        // Between neighbouring columns, by far the commonest case, each column takes its half of the line.
        if (width == 1 && height > 1) {
            const int down = entry > pen.y ? 1 : -1;
            const int half = pen.y + down * ((height + 1) / 2);
            pen.low = std::min(pen.low, half - down);
            pen.high = std::max(pen.high, half - down);
            next.low = std::min(next.low, half);
            next.high = std::max(next.high, half);
        }
        Span(pen.x, pen.low, pen.high);
        if (width > 1) Line(pen.x, pen.y, next.x, entry);
    }
    pen = next;
}

void SeriesRaster::Lift(Pen& pen) {
    if (pen.down) Span(pen.x, pen.low, pen.high);
    pen.down = false;
}

SeriesRaster::Extremes SeriesRaster::ExtremesOfFew(std::span<const double> values) {
    double low = values[0];
    double high = low;
    double sum = low;
    for (const double value : values.subspan(1)) {
        low = value < low ? value : low;
        high = value > high ? value : high;
        sum += value;
    }
    return {low, high, std::isnan(sum)};
}

SeriesRaster::Extremes SeriesRaster::ExtremesOf(std::span<const double> values) {
    if (values.size() < kFewValues) return ExtremesOfFew(values);
    constexpr std::size_t kLanes = 4;  // independent chains: no comparison waits for the last one
    double low[kLanes];
    double high[kLanes];
    double sum[kLanes];
    for (std::size_t k = 0; k < kLanes; ++k) {
        low[k] = high[k] = values[0];
        sum[k] = 0;
    }
    std::size_t i = 0;
    for (; i + kLanes <= values.size(); i += kLanes) {
        for (std::size_t k = 0; k < kLanes; ++k) {
            const double value = values[i + k];
            low[k] = value < low[k] ? value : low[k];
            high[k] = value > high[k] ? value : high[k];
            sum[k] += value;
        }
    }
    for (; i < values.size(); ++i) {
        low[0] = std::min(low[0], values[i]);
        high[0] = std::max(high[0], values[i]);
        sum[0] += values[i];
    }
    for (std::size_t k = 1; k < kLanes; ++k) {
        low[0] = std::min(low[0], low[k]);
        high[0] = std::max(high[0], high[k]);
        sum[0] += sum[k];
    }
    // Not-a-number stays in a sum. Infinite values of both signs give it too, which only costs time.
    return {low[0], high[0], std::isnan(sum[0])};
}

void SeriesRaster::Line(int x0, int y0, int x1, int y1) {
    if (std::max(x0, x1) + behind_ < 0 || std::min(x0, x1) - before_ >= xPixels_) return;
    if (std::max(y0, y1) + behind_ < 0 || std::min(y0, y1) - before_ >= yPixels_) return;
    if (std::abs(y1 - y0) > std::abs(x1 - x0))
        SteepLine(x0, y0, x1, y1);
    else
        FlatLine(x0, y0, x1, y1);
}

SeriesRaster::Steps SeriesRaster::SeenSteps(int start, int direction, std::int64_t length, int pixels) const {
    const std::int64_t first = direction > 0 ? -behind_ - start : start - (pixels - 1 + before_);
    const std::int64_t last = direction > 0 ? pixels - 1 + before_ - start : start + behind_;
    return {std::max<std::int64_t>(first, 0), std::min(last, length)};
}

void SeriesRaster::SteepLine(int x0, int y0, int x1, int y1) {
    const int right = x1 > x0 ? 1 : -1;
    const int down = y1 > y0 ? 1 : -1;
    const std::int64_t width = std::abs(x1 - x0);
    const std::int64_t height = std::abs(y1 - y0);
    // A row belongs to the column that its middle is nearest to.
    const auto columnOf = [&](std::int64_t row) { return (2 * row * width + height) / (2 * height); };
    const auto firstRowOf = [&](std::int64_t step) {
        return step == 0 ? 0 : std::min(CeilDiv((2 * step - 1) * height, 2 * width), height + 1);
    };
    const Steps rows = SeenSteps(y0, down, height, yPixels_);
    const Steps columns = SeenSteps(x0, right, width, xPixels_);
    if (rows.first > rows.last) return;
    const std::int64_t last = std::min(columns.last, columnOf(rows.last));
    for (std::int64_t step = std::max(columns.first, columnOf(rows.first)); step <= last; ++step) {
        const std::int64_t next = step == width ? height + 1 : firstRowOf(step + 1);
        Span(x0 + right * static_cast<int>(step), y0 + down * static_cast<int>(firstRowOf(step)),
             y0 + down * static_cast<int>(next - 1));
    }
}

void SeriesRaster::FlatLine(int x0, int y0, int x1, int y1) {
    const int right = x1 > x0 ? 1 : -1;
    const int down = y1 > y0 ? 1 : -1;
    const std::int64_t width = std::abs(x1 - x0);
    const std::int64_t height = std::abs(y1 - y0);
    const Steps columns = SeenSteps(x0, right, width, xPixels_);
    for (std::int64_t step = columns.first; step <= columns.last; ++step) {
        const int row = y0 + down * static_cast<int>((2 * step * height + width) / (2 * width));
        Span(x0 + right * static_cast<int>(step), row, row);
    }
}

void SeriesRaster::Span(int column, int y0, int y1) {
    Cover(column - before_, column + behind_, std::min(y0, y1) - before_, std::max(y0, y1) + behind_);
}

void SeriesRaster::Cover(int x0, int x1, int y0, int y1) {
    const int low = std::max(y0, 0);
    const int high = std::min(y1, yPixels_ - 1);
    const int first = std::max(x0, 0);
    const int last = std::min(x1, xPixels_ - 1);
    if (low > high || first > last) return;
    for (int x = first; x <= last; ++x) Fill(x, low, high);
    touched_.x0 = std::min(touched_.x0, first);
    touched_.x1 = std::max(touched_.x1, last);
    touched_.y0 = std::min(touched_.y0, low);
    touched_.y1 = std::max(touched_.y1, high);
}

// A point that is looked at once more, as the last one drawn is when others are appended, is decided as
// before.
void SeriesRaster::DrawMarkers(std::span<const double> y, const PixelScale& scale) {
    const auto& shape = shapes_[static_cast<std::size_t>(markers_[rank_])];
    int& last = lastMarked_[rank_];
    for (const Run& run : runs_) {
        if (run.column == kNoColumn) continue;
        if (last != kNoColumn && std::abs(run.column - last) < markerSpacing_) continue;
        const auto end = y.begin() + run.end;
        const auto point =
            std::find_if_not(y.begin() + run.begin, end, [](double v) { return std::isnan(v); });
        if (point == end) continue;
        last = run.column;
        const int middle = scale.At(*point);
        for (const MarkSpan& span : shape)
            Cover(last + span.column, last + span.column, middle + span.top, middle + span.bottom);
    }
}

void SeriesRaster::Fill(int column, int y0, int y1) {
    std::uint8_t* const pixels =
        pixels_.data() + static_cast<std::size_t>(column) * static_cast<std::size_t>(yPixels_) + y0;
    const int count = y1 - y0 + 1;
    if (count >= 16)
        RaiseInBlocks<16>(pixels, count, rank_);
    else if (count >= 4)
        RaiseInBlocks<4>(pixels, count, rank_);
    else
        for (int i = 0; i < count; ++i) pixels[i] = std::max(pixels[i], rank_);
}

}  // namespace marisonde
