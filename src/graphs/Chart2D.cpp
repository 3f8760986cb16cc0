#include "graphs/Chart2D.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "calibration/Sentinel.h"

namespace marisonde {

namespace {

constexpr int kFirstLength = 1000;

void IncludeOne(AxisRange& range, double value) {
    const bool counts = IsValue(value);
    range.min = counts && value < range.min ? value : range.min;
    range.max = counts && value > range.max ? value : range.max;
}

void Include(AxisRange& range, std::span<const double> values, int count) {
    constexpr std::size_t kLanes = 4;  // independent chains: no comparison waits for the last one
    std::array<AxisRange, kLanes> lanes;
    lanes.fill(range);
    const auto drawn = values.first(static_cast<std::size_t>(count));
    std::size_t i = 0;
    for (; i + kLanes <= drawn.size(); i += kLanes)
        for (std::size_t k = 0; k < kLanes; ++k) IncludeOne(lanes[k], drawn[i + k]);
    for (; i < drawn.size(); ++i) IncludeOne(lanes[0], drawn[i]);
    for (const AxisRange& lane : lanes) {
        range.min = std::min(range.min, lane.min);
        range.max = std::max(range.max, lane.max);
    }
}

}  // namespace

Chart2D::Chart2D()
    : group1_(*this),
      group2_(*this),
      x_(*this, AxisName::X, 0, 100),
      y_(*this, AxisName::Y, 0, 0.01),
      y2_(*this, AxisName::Y2, 0, 0.1) {
    for (ChartGroup* group : {&group1_, &group2_}) {
        group->SetNumPoints(kFirstLength);
        group->SetLastPoint(1);
    }
    y2_.SetVisible(false);
    y_.SetPlacement(2);
    y2_.SetPlacement(3);
}

ChartAxis& Chart2D::Axes(AxisName name) {
    return name == AxisName::X ? x_ : name == AxisName::Y ? y_ : y2_;
}

const ChartAxis& Chart2D::Axes(AxisName name) const {
    return name == AxisName::X ? x_ : name == AxisName::Y ? y_ : y2_;
}

void Chart2D::SetRotated(bool rotated) {
    if (rotated_ == rotated) return;
    rotated_ = rotated;
    NoteAxesChanged();
}

void Chart2D::SetIsBatched(bool batched) {
    const bool ends = batched_ && !batched;
    batched_ = batched;
    // Also without a change within the batch: one from before it may still wait to be shown.
    if (ends && OnChange) OnChange();
}

AxisRange Chart2D::DataRange(AxisName name) const {
    KnownRange& known = known_[static_cast<std::size_t>(name)];
    if (known.revision != dataRevision_) known = {dataRevision_, FindDataRange(name)};
    return known.range;
}

AxisRange Chart2D::FindDataRange(AxisName name) const {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    AxisRange range{kInfinity, -kInfinity};
    for (const int number : {1, 2}) {
        const ChartGroup& group = ChartGroups(number);
        if (group.NumSeries() == 0) continue;
        if (name == AxisName::X) Include(range, group.XData(), group.LastPoint());
        if (name != (number == 1 ? AxisName::Y : AxisName::Y2)) continue;
        for (int series = 1; series <= group.NumSeries(); ++series)
            if (group.Display(series) == SeriesDisplay::Drawn)
                Include(range, group.YData(series), group.LastPoint());
    }
    return range;
}

void Chart2D::NotePointsChanged() {
    ++dataRevision_;
    ++pointsRevision_;
    Changed();
}

void Chart2D::NotePointsAppended() {
    ++dataRevision_;
    const auto follows = [](const ChartAxis& axis) { return axis.MinIsDefault() || axis.MaxIsDefault(); };
    if (follows(x_) || follows(y_) || follows(y2_))
        NoteAxesChanged();
    else
        Changed();
}

void Chart2D::NoteAxesChanged() {
    ++axesRevision_;
    ++pointsRevision_;
    Changed();
}

void Chart2D::Changed() {
    if (!batched_ && OnChange) OnChange();
}

void SetAxisRange(Chart2D& chart, AxisName name, double min, double max) {
    if (!std::isfinite(min) || !std::isfinite(max)) return;
    chart.Axes(name).SetMin(min);
    chart.Axes(name).SetMax(max);
}

}  // namespace marisonde
