#pragma once

#include <QObject>
#include <QPoint>
#include <optional>

#include "graphs/LivePlot.h"

class QInputEvent;
class QKeyEvent;
class QLabel;
class QMouseEvent;
class QRubberBand;
class QWheelEvent;

namespace marisonde {

class ChartView;

/// Mouse, wheel and arrow keys on a graph: the values under the pointer (CoordText), the rectangle that
/// becomes the new scale, zooming about the pointer, and moving along the axes.
class ChartPointer final : public QObject {
    Q_OBJECT

  public:
    /// Both outlive the object, which the view owns.
    ChartPointer(LivePlot& plot, const Chart2D& chart, ChartView& view);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool OnPress(const QMouseEvent& event);
    bool OnMove(const QMouseEvent& event);
    bool OnRelease(const QMouseEvent& event);
    bool OnWheel(const QWheelEvent& event);
    bool OnKey(const QKeyEvent& event);
    void EndDrag();
    /// The corners of the rectangle between press and pointer, within the plot area.
    [[nodiscard]] QRect Dragged() const;
    [[nodiscard]] ChartPoint PointAt(const QPoint& position) const;
    void ShowReadout();
    void HideReadout();
    /// Whether a step of wheel or keys begins a new movement of the user's.
    bool BeginsMovement(const QInputEvent& event);

    LivePlot& plot_;
    const Chart2D& chart_;
    ChartView& view_;
    QLabel* text_;
    QRubberBand* band_;
    std::optional<QPoint> pressed_;  ///< where a drag has begun
    std::optional<QPoint> pointer_;  ///< none while it is elsewhere
    std::optional<quint64> lastStep_;
};

}  // namespace marisonde
