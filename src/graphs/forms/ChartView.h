#pragma once

#include <QPixmap>
#include <QTimer>
#include <QWidget>
#include <map>
#include <utility>

#include "graphs/Chart2D.h"
#include "graphs/forms/ChartLook.h"

namespace marisonde {

class ChartPlot;

/// The graph of a data window, "Chart2D1". It follows its chart by itself: a change marks the view, and at
/// most 25 times a second the marked part is drawn, new points at the cost of their own pixels.
class ChartView final : public QWidget {
    Q_OBJECT

  public:
    /// `chart` outlives the view, which takes its OnChange.
    explicit ChartView(Chart2D& chart, QWidget* parent = nullptr);
    ~ChartView() override;

    /// Name in the legend (no entry when empty) and colour of a series. A colour that could not be told from
    /// the background is shown in a shade that can; see ShownColor.
    void SetSeriesStyle(int group, int series, const QString& name, const QColor& color);
    void SetSeriesStyle(int series, const QString& name, const QColor& color) {
        SetSeriesStyle(1, series, name, color);
    }
    void ClearSeriesStyles();
    [[nodiscard]] QColor ShownColor(const QColor& color) const;
    void SetLook(const ChartLook& look);

    /// Values of X and of the group's own axis under a position in the view.
    [[nodiscard]] QPointF PixelToData(int group, const QPoint& position) const;
    /// The graph as a picture of `size` layout pixels with `scale` pixels to each.
    [[nodiscard]] QPixmap RenderPixmap(const QSize& size, double scale = 1);
    bool SavePng(const QString& path, const QSize& size, double scale = 1);

    /// Draws at once what the timer would draw; nothing while the chart is batched.
    void RefreshNow();
    /// The same for the whole picture, whether it has changed or not.
    void RedrawNow();

    [[nodiscard]] QSize sizeHint() const override { return {640, 480}; }

  protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    struct Style {
        QString name;
        QColor color;
    };
    void Mark();
    void OnTimer();
    void ApplyStyles();
    void Describe();

    Chart2D& chart_;
    ChartPlot* plot_;
    ChartLook look_;
    ChartColors colors_;
    std::map<std::pair<int, int>, Style> styles_;
    QTimer timer_;
    std::uint64_t describedAxes_ = 0;
};

}  // namespace marisonde
