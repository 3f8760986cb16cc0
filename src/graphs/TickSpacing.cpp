#include "graphs/TickSpacing.h"

#include <array>
#include <cmath>

namespace marisonde {

namespace {

constexpr std::array kSteps{1.0, 2.0, 5.0, 10.0};

// Dividing by a whole power of ten keeps 0.005 the nearest number to 5/1000; multiplying by 0.001 would not.
double Scaled(double step, int exponent) {
    return exponent < 0 ? step / std::pow(10.0, -exponent) : step * std::pow(10.0, exponent);
}

}  // namespace

double TickSpacingFor(double min, double max) {
    // Half of each, because the distance of two large numbers may be too large for a number.
    double tenth = (max / 2 - min / 2) / 5;
    if (!(tenth > 1e-290) || !std::isfinite(tenth)) tenth = 0.1;
    const int exponent = static_cast<int>(std::floor(std::log10(tenth)));
    for (const double step : kSteps)
        if (const double spacing = Scaled(step, exponent); spacing >= tenth * (1 - 1e-9)) return spacing;
    return Scaled(1, exponent + 2);
}

double TickAbove(double value, double spacing) {
    return (std::floor(value / spacing) + 1) * spacing;
}
double TickBelow(double value, double spacing) {
    return std::floor(value / spacing) * spacing;
}

AxisRange RoundRange(double low, double high) {
    if (!(high > low)) {
        const double room = low == 0 ? 1 : TickSpacingFor(0, std::fabs(low));
        return {low == 0 ? 0 : TickBelow(low, room), TickAbove(low, room)};
    }
    const double spacing = TickSpacingFor(low, high);
    return {TickBelow(low, spacing), std::ceil(high / spacing) * spacing};
}

}  // namespace marisonde
