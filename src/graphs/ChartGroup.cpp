#include "graphs/ChartGroup.h"

#include <algorithm>
#include <limits>

#include "graphs/Chart2D.h"

namespace marisonde {

namespace {

constexpr double kUnwritten = std::numeric_limits<double>::quiet_NaN();

// A vector grown by the ordinary rule would hold up to twice the memory of its points; one that is moved at
// each growth would be copied a hundred times on its way to the largest graph.
constexpr std::size_t kSpareFraction = 16;

void SetLength(std::vector<double>& points, std::size_t length) {
    if (length == 0) {
        std::vector<double>().swap(points);
        return;
    }
    if (length > points.capacity()) points.reserve(length + length / kSpareFraction);
    points.resize(length, kUnwritten);
}

}  // namespace

void ChartGroup::SetNumSeries(int count) {
    const auto length = static_cast<std::size_t>(std::max(count, 0));
    if (length == y_.size()) return;
    const std::size_t before = y_.size();
    y_.resize(length);
    display_.resize(length, SeriesDisplay::Drawn);
    for (std::size_t i = before; i < length; ++i) SetLength(y_[i], x_.size());
    chart_.NotePointsChanged();
}

void ChartGroup::SetNumPoints(int count) {
    const auto length = static_cast<std::size_t>(std::max(count, 0));
    SetLength(x_, length);
    for (Points& series : y_) SetLength(series, length);
    lastPoint_ = NumPoints();
    chart_.NotePointsChanged();
}

void ChartGroup::Lengthen(int more) {
    const std::size_t length = x_.size() + static_cast<std::size_t>(std::max(more, 0));
    SetLength(x_, length);
    for (Points& series : y_) SetLength(series, length);
}

void ChartGroup::Reserve(int points) {
    const auto places = static_cast<std::size_t>(std::max(points, 0));
    x_.reserve(places);
    for (Points& series : y_) series.reserve(places);
}

void ChartGroup::SetLastPoint(int point) {
    const int held = std::clamp(point, 0, NumPoints());
    if (held == lastPoint_) return;
    lastPoint_ = held;
    chart_.NotePointsChanged();
}

double ChartGroup::X(int point) const {
    return HasPoint(point) ? x_[static_cast<std::size_t>(point) - 1] : kUnwritten;
}

double ChartGroup::Y(int series, int point) const {
    if (!HasSeries(series) || !HasPoint(point)) return kUnwritten;
    return y_[static_cast<std::size_t>(series) - 1][static_cast<std::size_t>(point) - 1];
}

void ChartGroup::NoteRewritten() {
    chart_.NotePointsChanged();
}

void ChartGroup::SetDisplay(int series, SeriesDisplay display) {
    if (!HasSeries(series) || Display(series) == display) return;
    display_[static_cast<std::size_t>(series) - 1] = display;
    chart_.NotePointsChanged();
}

void ChartGroup::MovePoints(int count, int to, int from) {
    if (count <= 0 || !HasPoint(to) || !HasPoint(from)) return;
    if (count > NumPoints() - std::max(to, from) + 1) return;
    const auto move = [&](Points& points) {
        const auto source = points.begin() + (from - 1);
        if (to < from)
            std::copy(source, source + count, points.begin() + (to - 1));
        else
            std::copy_backward(source, source + count, points.begin() + (to - 1 + count));
    };
    move(x_);
    for (Points& series : y_) move(series);
    chart_.NotePointsChanged();
}

void ChartGroup::FastAdd(int count) {
    const int added = std::clamp(count, 0, NumPoints() - lastPoint_);
    if (added == 0) return;
    lastPoint_ += added;
    chart_.NotePointsAppended();
}

void ChartGroup::SwapXWithSeries(int series) {
    if (!HasSeries(series)) return;
    x_.swap(Series(series));
    chart_.NotePointsChanged();
}

void ChartGroup::SwapSeries(int first, int second) {
    if (!HasSeries(first) || !HasSeries(second)) return;
    Series(first).swap(Series(second));
    chart_.NotePointsChanged();
}

void ChartGroup::ScaleX(double factor) {
    for (double& value : x_) value *= factor;
    chart_.NotePointsChanged();
}

void ChartGroup::ScaleSeries(int series, double factor) {
    if (!HasSeries(series)) return;
    for (double& value : Series(series)) value *= factor;
    chart_.NotePointsChanged();
}

void ChartGroup::CopyXFrom(const ChartGroup& other) {
    std::copy_n(other.x_.begin(), std::min(x_.size(), other.x_.size()), x_.begin());
    chart_.NotePointsChanged();
}

std::span<const double> ChartGroup::YData(int series) const {
    if (!HasSeries(series)) return {};
    return y_[static_cast<std::size_t>(series) - 1];
}

std::size_t ChartGroup::CapacityBytes() const {
    std::size_t places = x_.capacity();
    for (const Points& series : y_) places += series.capacity();
    return places * sizeof(double);
}

}  // namespace marisonde
