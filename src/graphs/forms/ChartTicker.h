#pragma once

#include <qcustomplot.h>

#include "graphs/TickSpacing.h"

namespace marisonde {

/// Ticks of an axis at the spacing that the chart itself uses to round its limits.
class ChartTicker final : public QCPAxisTicker {
  public:
    explicit ChartTicker(const QCPAxis& axis) : axis_(axis) {}

  protected:
    double getTickStep(const QCPRange& range) override { return TickSpacingFor(range.lower, range.upper); }
    int getSubTickCount(double) override { return 1; }
    /// Where labels would run into each other, only every second, fifth or tenth tick has one.
    QVector<QString> createLabelVector(const QVector<double>& ticks, const QLocale& locale, QChar format,
                                       int precision) override;

  private:
    const QCPAxis& axis_;
};

/// The range that the plotting library can show: finite, not reversed, wide enough for its ticks.
AxisRange ShownRange(double min, double max);
/// Significant digits that tell the labels of neighbouring ticks apart, 6 to 15.
int LabelPrecision(const AxisRange& range);

}  // namespace marisonde
