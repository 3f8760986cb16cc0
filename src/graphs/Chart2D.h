#pragma once

#include <array>
#include <cstdint>
#include <functional>

#include "graphs/ChartAxis.h"
#include "graphs/ChartGroup.h"
#include "graphs/TickSpacing.h"

namespace marisonde {

/// Values on the three axes under one place of a chart.
struct ChartPoint {
    double x = 0;
    double y = 0;
    double y2 = 0;
};

/// The only store of plotted points: two groups of series on a common X axis, and three axes. It draws
/// nothing; a view asks its revisions to learn whether points were only added behind the others or all is to
/// be redrawn.
class Chart2D {
  public:
    /// An empty chart: 1000 places in both groups, no series, X 0 to 100, Y 0 to 0.01, Y2 0 to 0.1 and
    /// hidden.
    Chart2D();
    Chart2D(const Chart2D&) = delete;
    Chart2D& operator=(const Chart2D&) = delete;

    /// Group 1 is drawn against Y; group 2, and any other number, against Y2.
    [[nodiscard]] ChartGroup& ChartGroups(int group) { return group == 1 ? group1_ : group2_; }
    [[nodiscard]] const ChartGroup& ChartGroups(int group) const { return group == 1 ? group1_ : group2_; }
    [[nodiscard]] ChartAxis& Axes(AxisName name);
    [[nodiscard]] const ChartAxis& Axes(AxisName name) const;

    /// X runs vertically and Y horizontally.
    [[nodiscard]] bool Rotated() const { return rotated_; }
    void SetRotated(bool rotated);

    /// While true a view keeps the picture it has; setting it false shows what has changed.
    [[nodiscard]] bool IsBatched() const { return batched_; }
    void SetIsBatched(bool batched);

    /// Grows when points that are drawn already, or how they are drawn, have changed.
    [[nodiscard]] std::uint64_t PointsRevision() const { return pointsRevision_; }
    /// Grows when something about an axis has changed; PointsRevision grows with it.
    [[nodiscard]] std::uint64_t AxesRevision() const { return axesRevision_; }
    /// Called at each change outside a batch and at the end of a batch. Must not throw.
    std::function<void()> OnChange;

    /// Smallest and largest value that the drawn points have on an axis; min above max when there is none.
    /// Asked again about the same points, it does not look at them again.
    [[nodiscard]] AxisRange DataRange(AxisName name) const;

    void NotePointsChanged();
    void NotePointsAppended();
    void NoteAxesChanged();

  private:
    struct KnownRange {
        std::uint64_t revision = 0;
        AxisRange range;
    };
    void Changed();
    [[nodiscard]] AxisRange FindDataRange(AxisName name) const;

    ChartGroup group1_;
    ChartGroup group2_;
    ChartAxis x_;
    ChartAxis y_;
    ChartAxis y2_;
    bool rotated_ = false;
    bool batched_ = false;
    std::uint64_t pointsRevision_ = 1;
    std::uint64_t axesRevision_ = 1;
    std::uint64_t dataRevision_ = 1;  ///< grows with every change of what is drawn, and not with the axes
    mutable std::array<KnownRange, 3> known_;
};

/// Sets both limits of an axis; nothing when one of them is not finite.
void SetAxisRange(Chart2D& chart, AxisName name, double min, double max);

}  // namespace marisonde
