#pragma once

namespace marisonde {

/// The annotation spacing of an axis: the smallest of 1, 2 or 5 times a power of ten that cuts the range into
/// at most ten steps. Always above 0 and finite; an empty, reversed or not finite range is read as one of
/// length 1.
double TickSpacingFor(double min, double max);

struct AxisRange {
    double min = 0;
    double max = 1;
};
/// Round limits around data from `low` to `high`, both finite: the ticks at or beyond them. One single value
/// gets a step of room above it.
AxisRange RoundRange(double low, double high);
/// The tick behind `value`, (Int(value / spacing) + 1) * spacing, and the tick at or before it.
double TickAbove(double value, double spacing);
double TickBelow(double value, double spacing);

}  // namespace marisonde
