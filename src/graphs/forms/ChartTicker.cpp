#include "graphs/forms/ChartTicker.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace marisonde {

namespace {

constexpr double kLargest = 4e249;    // the library draws ranges below 1e250
constexpr double kNarrowest = 1e-10;  // against the values themselves: 64-bit numbers end at 1e-16
constexpr double kSmallest = 1e-250;
constexpr int kSideMargins = 120;
constexpr std::array kEvery{1, 2, 5, 10, 20, 50};

}  // namespace

AxisRange ShownRange(double min, double max) {
    double low = std::clamp(std::min(min, max), -kLargest, kLargest);
    double high = std::clamp(std::max(min, max), -kLargest, kLargest);
    const double least = std::max(kSmallest, std::max(std::fabs(low), std::fabs(high)) * kNarrowest);
    if (high - low < least) {
        const double middle = low + (high - low) / 2;
        low = middle - (middle == 0 ? 0.5 : least);
        high = middle + (middle == 0 ? 0.5 : least);
    }
    // A limit that is nothing beside the other one is 0 to the eye.
    if (std::fabs(low) < std::fabs(high) * 1e-290) low = 0;
    if (std::fabs(high) < std::fabs(low) * 1e-290) high = 0;
    return {low, high};
}

int LabelPrecision(const AxisRange& range) {
    const double largest = std::max(std::fabs(range.min), std::fabs(range.max));
    const double digits = std::ceil(std::log10(largest / TickSpacingFor(range.min, range.max))) + 1;
    return static_cast<int>(std::clamp(digits, 6.0, 15.0));
}

QVector<QString> ChartTicker::createLabelVector(const QVector<double>& ticks, const QLocale& locale,
                                                QChar format, int precision) {
    QVector<QString> labels = QCPAxisTicker::createLabelVector(ticks, locale, format, precision);
    const auto side = axis_.axisType();
    if (ticks.size() < 2 || side == QCPAxis::atLeft || side == QCPAxis::atRight) return labels;
    const QFontMetrics metrics(axis_.tickLabelFont());
    int widest = 0;
    for (const QString& label : labels) widest = std::max(widest, metrics.horizontalAdvance(label));
    const double step = ticks[1] - ticks[0];
    // Labels are made before the layout is known; the vertical axes take about so much of the width.
    const int width = std::max(axis_.parentPlot()->viewport().width() - kSideMargins, kSideMargins);
    const double room = width * step / axis_.range().size();
    const double wanted = widest + metrics.averageCharWidth() * 2;
    const auto* const every =
        std::find_if(kEvery.begin(), kEvery.end() - 1, [&](int n) { return n * room >= wanted; });
    for (qsizetype i = 0; i < ticks.size(); ++i)
        if (std::fmod(std::round(ticks[i] / step), *every) != 0) labels[i].clear();
    return labels;
}

}  // namespace marisonde
