#include "graphs/forms/ChartLook.h"

#include <algorithm>
#include <cmath>

namespace marisonde {

namespace {

constexpr double kLeastContrast = 3;  ///< what the guidelines ask of lines
constexpr double kShade = 0.04;
constexpr double kOtherShade = 0.3;  ///< from a colour that is taken to the next
constexpr int kOtherShades = 4;
constexpr int kLeastDifference = 40;  ///< of 255, in the part of two colours that differs most
constexpr double kFaint = 0.64;
constexpr double kFaintContrast = 1.6;  ///< what is left of a curve between its strokes is still seen
constexpr int kWidestLine = 20;
constexpr int kWidestMarker = 40;
constexpr double kDarkest = 0.18;  ///< luminance up to which a background counts as dark

double Linear(double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& c) {
    return 0.2126 * Linear(c.redF()) + 0.7152 * Linear(c.greenF()) + 0.0722 * Linear(c.blueF());
}

QColor Mixed(const QColor& a, const QColor& b, double share) {
    const auto mix = [&](double x, double y) { return static_cast<float>(x + (y - x) * share); };
    return QColor::fromRgbF(mix(a.redF(), b.redF()), mix(a.greenF(), b.greenF()), mix(a.blueF(), b.blueF()));
}

bool IsDark(const QColor& background) {
    return Luminance(background) <= kDarkest;
}

QColor AwayFrom(const QColor& background) {
    return IsDark(background) ? QColor(Qt::white) : QColor(Qt::black);
}

bool Alike(const QColor& a, const QColor& b) {
    const int difference = std::max(
        {std::abs(a.red() - b.red()), std::abs(a.green() - b.green()), std::abs(a.blue() - b.blue())});
    return difference < kLeastDifference;
}

std::optional<QColor> UnlessDefault(PackedColor color, PackedColor missing) {
    if (color == missing) return std::nullopt;
    return ColorOf(color);
}

}  // namespace

QColor ColorOf(PackedColor color) {
    return {RedOf(color), GreenOf(color), BlueOf(color)};
}

ChartLook LookOf(const GraphLook& look) {
    ChartLook chart;
    chart.plotBackground = UnlessDefault(look.GraphColor, kPaperColor);
    chart.background = UnlessDefault(look.GraphExtColor, kPaperColor);
    chart.grid = UnlessDefault(look.GridColor, kInkColor);
    chart.gridOn = look.GridOn;
    chart.gridStyle = std::clamp(look.GridStyle, 0, 2);
    chart.lineSize = std::clamp(look.LineSize, 1, kWidestLine);
    chart.markerSize = std::clamp(look.MarkerSize, 1, kWidestMarker);
    return chart;
}

double ContrastOf(const QColor& a, const QColor& b) {
    const double first = Luminance(a);
    const double second = Luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QColor ReadableOn(const QColor& color, const QColor& background) {
    const QColor away = AwayFrom(background);
    for (double share = 0; share < 1; share += kShade)
        if (const QColor shade = Mixed(color, away, share); ContrastOf(shade, background) >= kLeastContrast)
            return shade;
    return away;
}

QColor DistinctOn(const QColor& color, const QColor& background, const std::vector<QColor>& taken) {
    const QColor away = AwayFrom(background);
    QColor shade = ReadableOn(color, background);
    const auto isTaken = [&](const QColor& other) { return Alike(shade, other); };
    for (int i = 0; i < kOtherShades && std::any_of(taken.begin(), taken.end(), isTaken); ++i)
        shade = Mixed(shade, away, kOtherShade);
    return shade;
}

QColor FaintOn(const QColor& color, const QColor& background) {
    for (double share = kFaint; share > 0; share -= kShade)
        if (const QColor faint = Mixed(color, background, share);
            ContrastOf(faint, background) >= kFaintContrast)
            return faint;
    return color;
}

ChartColors ColorsFor(const ChartLook& look, const QPalette& palette) {
    ChartColors colors;
    const QColor base = palette.color(QPalette::Base);
    const QColor paper = IsDark(base) ? base : QColor(Qt::white);
    colors.plotBackground = look.plotBackground.value_or(paper);
    colors.background = look.background.value_or(paper);
    const bool dark = IsDark(colors.background);
    colors.text = dark ? QColor(0xe6, 0xe6, 0xe6) : QColor(Qt::black);
    colors.frame = Mixed(colors.text, colors.background, 0.25);
    const bool darkPlot = IsDark(colors.plotBackground);
    colors.grid = look.grid.value_or(darkPlot ? QColor(0xb0, 0xb0, 0xb0) : QColor(Qt::black));
    return colors;
}

}  // namespace marisonde
