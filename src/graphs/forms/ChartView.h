#pragma once

#include <QPixmap>
#include <QTimer>
#include <QWidget>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "graphs/Chart2D.h"
#include "graphs/forms/ChartLook.h"
#include "graphs/forms/CurveSample.h"

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

    /// A curve as it is asked for. One without a name has no entry in the legend. A colour that could not be
    /// told from the background, or from those before it, is shown in a shade that can; see SampleOf.
    struct SeriesStyle {
        QString name;
        QColor color;
        int pattern = 0;  ///< of its strokes, see IsFullAt
        CurveMarker marker = CurveMarker::None;
    };
    void SetSeriesStyle(int group, int series, const SeriesStyle& style);
    void SetSeriesStyle(int group, int series, const QString& name, const QColor& color) {
        SetSeriesStyle(group, series, SeriesStyle{name, color});
    }
    void SetSeriesStyle(int series, const QString& name, const QColor& color) {
        SetSeriesStyle(1, series, name, color);
    }
    /// All curves at once, by group and series; others have no style any more.
    void SetSeriesStyles(std::map<std::pair<int, int>, SeriesStyle> styles);
    void ClearSeriesStyles() { SetSeriesStyles({}); }
    /// How a curve with a style is shown, for all that shows it beside the graph.
    [[nodiscard]] CurveSample SampleOf(int group, int series) const;
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

    /// The plot area, in the view's pixels: where values lie between the limits.
    [[nodiscard]] QRect PlotArea() const;
    /// The widget that is painted and takes the mouse; it fills the view.
    [[nodiscard]] QWidget& Canvas();
    [[nodiscard]] QSize sizeHint() const override { return {640, 480}; }

  signals:
    /// Curves are shown in other colours than before: the theme has changed.
    void ColorsChanged();
    /// Limits, titles or the turn of the axes are shown anew.
    void AxesShown();

  protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    void Mark();
    void OnTimer();
    void ApplyStyles();
    /// Names the curves that are drawn at present; cheap while they are the same.
    void ShowLegend();
    [[nodiscard]] std::vector<bool> DrawnCurves() const;
    void Describe();

    Chart2D& chart_;
    ChartPlot* plot_;
    ChartLook look_;
    ChartColors colors_;
    std::map<std::pair<int, int>, SeriesStyle> styles_;
    std::map<std::pair<int, int>, CurveSample> samples_;
    std::optional<std::vector<bool>> named_;  ///< what DrawnCurves gave for the legend that is shown
    QTimer timer_;
    std::uint64_t describedAxes_ = 0;
};

}  // namespace marisonde
