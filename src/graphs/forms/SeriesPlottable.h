#pragma once

#include <qcustomplot.h>

#include "graphs/ChartAxis.h"

namespace marisonde {

class ChartPlot;

/// All curves of a chart as one plottable. On the screen the plot itself lays the picture of the curves
/// between its buffers; this draws them where there are none: in exported pictures and in print.
class SeriesPlottable final : public QCPAbstractPlottable {
    Q_OBJECT

  public:
    explicit SeriesPlottable(ChartPlot& plot);

    double selectTest(const QPointF& position, bool onlySelectable,
                      QVariant* details = nullptr) const override;
    QCPRange getKeyRange(bool& found, QCP::SignDomain domain = QCP::sdBoth) const override;
    QCPRange getValueRange(bool& found, QCP::SignDomain domain = QCP::sdBoth,
                           const QCPRange& keyRange = QCPRange()) const override;

  protected:
    void draw(QCPPainter* painter) override;
    void drawLegendIcon(QCPPainter* painter, const QRectF& rect) const override;

  private:
    [[nodiscard]] QCPRange RangeOf(AxisName name, bool& found) const;
    ChartPlot& plot_;
};

}  // namespace marisonde
