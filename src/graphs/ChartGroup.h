#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace marisonde {

class Chart2D;

/// How a series is shown. The numbers stand in settings.
enum class SeriesDisplay : std::int8_t { Drawn = 1, Kept = 3 };

/// One group of series on a common X array. Series and points count from 1. A place that was never written
/// holds not-a-number: it is not drawn, and a curve has a gap there. Reading outside the arrays gives
/// not-a-number, writing there does nothing.
class ChartGroup {
  public:
    explicit ChartGroup(Chart2D& chart) : chart_(chart) {}
    ChartGroup(const ChartGroup&) = delete;
    ChartGroup& operator=(const ChartGroup&) = delete;

    /// 0: the group is unused. Series that stay keep their points.
    [[nodiscard]] int NumSeries() const { return static_cast<int>(y_.size()); }
    void SetNumSeries(int count);
    /// Length of the arrays. Setting it sets LastPoint to the same; 0 discards all points.
    [[nodiscard]] int NumPoints() const { return static_cast<int>(x_.size()); }
    void SetNumPoints(int count);
    /// Adds `more` places behind the others; LastPoint stays, and so does what is drawn.
    void Lengthen(int more);
    /// Makes room for so many points at once, so that Lengthen need not move them on its way there. The
    /// length stays.
    void Reserve(int points);
    /// The last point that is drawn; those behind it exist but are not shown. Held to 0..NumPoints.
    [[nodiscard]] int LastPoint() const { return lastPoint_; }
    void SetLastPoint(int point);

    [[nodiscard]] double X(int point) const;
    void SetX(int point, double value) {
        if (!HasPoint(point)) return;
        x_[static_cast<std::size_t>(point) - 1] = value;
        if (point <= lastPoint_) NoteRewritten();
    }
    [[nodiscard]] double Y(int series, int point) const;
    void SetY(int series, int point, double value) {
        if (!HasSeries(series) || !HasPoint(point)) return;
        Series(series)[static_cast<std::size_t>(point) - 1] = value;
        if (point <= lastPoint_) NoteRewritten();
    }
    [[nodiscard]] SeriesDisplay Display(int series) const {
        return HasSeries(series) ? display_[static_cast<std::size_t>(series) - 1] : SeriesDisplay::Kept;
    }
    void SetDisplay(int series, SeriesDisplay display);

    /// Moves `count` points of X and of all series from index `from` to index `to`; the arrays keep their
    /// length and the places left behind their values. Nothing moves when a place lies outside.
    void MovePoints(int count, int to, int from);
    /// Shows the next `count` points behind LastPoint; what is drawn already stays as it is.
    void FastAdd(int count);
    /// X and a series change places, over the whole length of the arrays.
    void SwapXWithSeries(int series);
    void SwapSeries(int first, int second);
    void ScaleX(double factor);
    void ScaleSeries(int series, double factor);
    void CopyXFrom(const ChartGroup& other);

    /// The arrays in place, index 0 being point 1. Valid until the next change of length.
    [[nodiscard]] std::span<const double> XData() const { return x_; }
    [[nodiscard]] std::span<const double> YData(int series) const;
    /// Memory held for points.
    [[nodiscard]] std::size_t CapacityBytes() const;

  private:
    using Points = std::vector<double>;
    [[nodiscard]] bool HasPoint(int point) const { return point >= 1 && point <= NumPoints(); }
    [[nodiscard]] bool HasSeries(int series) const { return series >= 1 && series <= NumSeries(); }
    Points& Series(int series) { return y_[static_cast<std::size_t>(series) - 1]; }
    void NoteRewritten();

    Chart2D& chart_;
    int lastPoint_ = 0;
    Points x_;
    std::vector<Points> y_;
    std::vector<SeriesDisplay> display_;
};

}  // namespace marisonde
