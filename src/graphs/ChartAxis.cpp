#include "graphs/ChartAxis.h"

#include <cmath>

#include "graphs/Chart2D.h"
#include "graphs/TickSpacing.h"

namespace marisonde {

namespace {

/// Beside a limit that stands fixed where no data are: one step of its own size, on the side that follows.
AxisRange BesideFixed(double fixed, bool minFollows) {
    const double step = fixed == 0 ? 1 : TickSpacingFor(0, std::fabs(fixed));
    const double beside = minFollows ? -TickAbove(-fixed, step) : TickAbove(fixed, step);
    const double limit = std::isfinite(beside) ? beside : fixed;
    return minFollows ? AxisRange{limit, fixed} : AxisRange{fixed, limit};
}

}  // namespace

double ChartAxis::Min() const {
    return min_.isDefault ? Computed().min : min_.value;
}
double ChartAxis::Max() const {
    return max_.isDefault ? Computed().max : max_.value;
}

ChartAxis::Limits ChartAxis::Computed() const {
    AxisRange data = chart_.DataRange(name_);
    const bool none = !(data.min <= data.max);
    if (none) data = {0, 1};
    if (!dataMin_.isDefault) data.min = dataMin_.value;
    if (!dataMax_.isDefault) data.max = dataMax_.value;
    if (!min_.isDefault) data.min = min_.value;
    if (!max_.isDefault) data.max = max_.value;
    if (min_.isDefault != max_.isDefault && !(data.min < data.max)) {
        const AxisRange beside = BesideFixed(min_.isDefault ? max_.value : min_.value, min_.isDefault);
        return {beside.min, beside.max};
    }
    const AxisRange round = none ? data : RoundRange(data.min, data.max);
    return {min_.isDefault ? round.min : min_.value, max_.isDefault ? round.max : max_.value};
}

void ChartAxis::SetMin(double value) {
    if (!std::isfinite(value)) return;
    if (!min_.isDefault && min_.value == value) return;
    min_ = {value, false};
    chart_.NoteAxesChanged();
}

void ChartAxis::SetMax(double value) {
    if (!std::isfinite(value)) return;
    if (!max_.isDefault && max_.value == value) return;
    max_ = {value, false};
    chart_.NoteAxesChanged();
}

void ChartAxis::SetMinIsDefault(bool isDefault) {
    if (isDefault == min_.isDefault) return;
    min_ = {Min(), isDefault};
    chart_.NoteAxesChanged();
}

void ChartAxis::SetMaxIsDefault(bool isDefault) {
    if (isDefault == max_.isDefault) return;
    max_ = {Max(), isDefault};
    chart_.NoteAxesChanged();
}

void ChartAxis::SetDataMin(AxisLimit limit) {
    dataMin_ = limit;
    chart_.NoteAxesChanged();
}

void ChartAxis::SetDataMax(AxisLimit limit) {
    dataMax_ = limit;
    chart_.NoteAxesChanged();
}

double ChartAxis::TickSpacing() const {
    return TickSpacingFor(Min(), Max());
}

void ChartAxis::SetTitle(std::string_view title) {
    if (title_ == title) return;
    title_ = title;
    chart_.NoteAxesChanged();
}

void ChartAxis::SetVisible(bool visible) {
    if (visible_ == visible) return;
    visible_ = visible;
    chart_.NoteAxesChanged();
}

void ChartAxis::SetReversed(bool reversed) {
    if (reversed_ == reversed) return;
    reversed_ = reversed;
    chart_.NoteAxesChanged();
}

void ChartAxis::SetPlacement(int placement) {
    if (placement_ == placement) return;
    placement_ = placement;
    chart_.NoteAxesChanged();
}

}  // namespace marisonde
