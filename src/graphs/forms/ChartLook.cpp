#include "graphs/forms/ChartLook.h"

#include <algorithm>
#include <cmath>

namespace marisonde {

namespace {

constexpr double kLeastContrast = 2.1;
constexpr double kShade = 0.04;

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

}  // namespace

double ContrastOf(const QColor& a, const QColor& b) {
    const double first = Luminance(a);
    const double second = Luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QColor ReadableOn(const QColor& color, const QColor& background) {
    const QColor away = Luminance(background) > 0.18 ? QColor(Qt::black) : QColor(Qt::white);
    for (double share = 0; share < 1; share += kShade)
        if (const QColor shade = Mixed(color, away, share); ContrastOf(shade, background) >= kLeastContrast)
            return shade;
    return away;
}

ChartColors ColorsFor(const ChartLook& look, const QPalette& palette) {
    ChartColors colors;
    colors.plotBackground = look.plotBackground.value_or(palette.color(QPalette::Base));
    colors.background = look.background.value_or(palette.color(QPalette::Base));
    const bool dark = Luminance(colors.background) <= 0.18;
    colors.text = dark ? QColor(0xe6, 0xe6, 0xe6) : QColor(Qt::black);
    colors.frame = Mixed(colors.text, colors.background, 0.25);
    const bool darkPlot = Luminance(colors.plotBackground) <= 0.18;
    colors.grid = look.grid.value_or(darkPlot ? QColor(0xb0, 0xb0, 0xb0) : QColor(Qt::black));
    return colors;
}

}  // namespace marisonde
