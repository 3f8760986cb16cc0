#pragma once

#include <QRect>
#include <qcustomplot.h>

#include "graphs/Chart2D.h"
#include "graphs/forms/ChartLegend.h"
#include "graphs/forms/ChartLook.h"
#include "graphs/forms/SeriesLayer.h"

namespace marisonde {

class SeriesPlottable;

/// The plotting library's widget with the curves of a Chart2D between its grid and its axes. Axes, ticks,
/// grid and legend are drawn anew only when an axis has changed; new points cost their own pixels.
class ChartPlot final : public QCustomPlot {
    Q_OBJECT

  public:
    ChartPlot(const Chart2D& chart, QWidget* parent);

    void SetColors(const ChartColors& colors, const ChartLook& look);
    void SetLegend(const std::vector<LegendEntry>& entries);
    [[nodiscard]] SeriesLayer& Layer() { return layer_; }

    /// Brings the picture up to date with the chart. Returns what is to be painted again, in logical pixels.
    QRect Refresh();
    /// Axes, legend and curves anew, whatever has changed.
    void RedrawAll();

    /// A frame around the whole, for who has come here by keyboard.
    void SetFocusFrame(bool shown);

    /// Values under a position in the widget.
    [[nodiscard]] QPointF PixelToData(int group, const QPoint& position) const;
    /// The curves at the present layout, `scale` device pixels to one of the layout: for pictures and print.
    [[nodiscard]] SeriesGeometry GeometryAt(double scale) const;
    [[nodiscard]] const Chart2D& Chart() const { return chart_; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    struct Roles {
        QCPAxis* x;
        QCPAxis* y;
        QCPAxis* y2;
    };
    [[nodiscard]] Roles AxisRoles() const;
    void SyncAxes();
    void SyncAxis(QCPAxis& shown, const ChartAxis& axis);
    void StyleAxis(QCPAxis& axis);
    bool SyncDevice();
    void RedrawLayer();
    [[nodiscard]] bool LayerIsStale() const;

    const Chart2D& chart_;
    SeriesLayer layer_;
    ChartLegend legend_;
    ChartColors colors_;
    ChartLook look_;
    bool focusFrame_ = false;
    std::uint64_t seenAxes_ = 0;
    std::uint64_t seenPoints_ = 0;
};

}  // namespace marisonde
