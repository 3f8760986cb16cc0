#include "graphs/CoordinateText.h"

#include "common/ConversionUtils.h"
#include "common/Numbers.h"

namespace marisonde {

namespace {

constexpr int kDigits = 3;
constexpr int kExactDigits = 15;  ///< what lies behind them is the noise of a 64-bit number

bool Holds(const ChartAxis& axis, double value) {
    return value >= axis.Min() && value <= axis.Max();
}

std::string ValueWithUnit(const ChartAxis& axis, double value) {
    const double rounded = RoundSignificant(RoundToDigits(value, kDigits), kExactDigits);
    return NumberText(rounded) + " " + TextInBrackets(axis.Title());
}

}  // namespace

std::string CoordinateText(const Chart2D& chart, const ChartPoint& point) {
    const ChartAxis& x = chart.Axes(AxisName::X);
    const ChartAxis& y = chart.Axes(AxisName::Y);
    const ChartAxis& y2 = chart.Axes(AxisName::Y2);
    if (!Holds(x, point.x) || !Holds(y, point.y)) return "";
    std::string text = ValueWithUnit(x, point.x) + ", " + ValueWithUnit(y, point.y);
    if (y2.Visible()) text += ", " + ValueWithUnit(y2, point.y2);
    return text;
}

}  // namespace marisonde
