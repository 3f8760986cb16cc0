#include <QApplication>
#include <benchmark/benchmark.h>
#include <cmath>
#include <random>

#include "graphs/LivePlot.h"
#include "graphs/forms/ChartPlot.h"
#include "graphs/forms/ChartPointer.h"
#include "graphs/forms/ChartView.h"

/// What a command of the graph costs up to the new picture. The figures to quote are ratios from one run:
/// each command against a full redraw of what it shows.
namespace {

using namespace marisonde;

constexpr int kHeld = 100000;
constexpr QSize kArea(1200, 800);

/// A window's graph of a Corvane-6 with its eight curves and three kept series: a cast that goes down and up.
struct Graph {
    Graph() {
        plot.SetupChartForInstrument(InstTypeCode::Corvane6);
        ChartGroup& group = chart.ChartGroups(1);
        group.SetNumPoints(kHeld);
        std::mt19937 random(3);
        std::normal_distribution<double> noise(0, 1);
        for (int i = 1; i <= kHeld; ++i) {
            const double share = static_cast<double>(i) / kHeld;
            const double depth = 45 - 40 * std::cos(share * 6 * 3.14159265358979) + 0.5 * std::sin(i * 0.03) +
                                 0.02 * noise(random);
            const double layer = std::exp(-std::pow((depth - 25) / 6, 2));
            group.SetX(i, share * 100);
            for (int s = 1; s < group.NumSeries(); ++s)
                group.SetY(s, i, 0.0005 * s + (0.001 + 0.0003 * s) * layer + 0.0001 * noise(random));
            group.SetY(group.NumSeries(), i, depth);
        }
        for (int s = 1; s <= 8; ++s)
            view.SetSeriesStyle(1, s, {QString("bb(%1)").arg(s), QColor::fromHsv(s * 40, 255, 180), s - 1});
        view.resize(kArea);
        view.show();
        QApplication::processEvents();
    }
    void Show(PlotView wanted) {
        if (wanted == PlotView::Vs_Depth)
            plot.VsDepthCommand();
        else
            plot.VsTimeCommand();
        view.RefreshNow();
    }
    Chart2D chart;
    LivePlot plot{chart};
    ChartView view{chart};
};

Graph& Filled() {
    static auto* const graph = new Graph;
    return *graph;
}

void Redraw(benchmark::State& state, PlotView shown) {
    Filled().Show(shown);
    for (auto _ : state) Filled().view.RedrawNow();
}
void RedrawInTime(benchmark::State& state) {
    Redraw(state, PlotView::Vs_Time);
}
void RedrawInDepth(benchmark::State& state) {
    Redraw(state, PlotView::Vs_Depth);
}

void ThereAndBackBetweenViews(benchmark::State& state) {
    Filled().Show(PlotView::Vs_Depth);
    for (auto _ : state) {
        Filled().Show(PlotView::Vs_Time);
        Filled().Show(PlotView::Vs_Depth);
    }
}

void ChangeUnit(benchmark::State& state) {
    Filled().Show(PlotView::Vs_Depth);
    for (auto _ : state) {
        Filled().plot.ChangeDepthUnitsAndLimits(!Filled().plot.DepthInMeters());
        Filled().view.RefreshNow();
    }
    Filled().plot.ChangeDepthUnitsAndLimits(true);
}

void ZoomInAndOut(benchmark::State& state, PlotView shown) {
    Filled().Show(shown);
    for (auto _ : state) {
        Filled().plot.Z_In_Button_Click();
        Filled().view.RefreshNow();
        Filled().plot.Z_Out_Button_Click();
        Filled().view.RefreshNow();
    }
}
void ZoomInAndOutInTime(benchmark::State& state) {
    ZoomInAndOut(state, PlotView::Vs_Time);
}
void ZoomInAndOutInDepth(benchmark::State& state) {
    ZoomInAndOut(state, PlotView::Vs_Depth);
}

/// Show all tightens the scale, and curves that fill the plot take longer: it is to be compared with this.
void RedrawAllInDepth(benchmark::State& state) {
    Filled().Show(PlotView::Vs_Depth);
    Filled().plot.AutoScaleCommand();
    Filled().view.RefreshNow();
    for (auto _ : state) Filled().view.RedrawNow();
}

void ShowAllInDepth(benchmark::State& state) {
    Filled().Show(PlotView::Vs_Depth);
    ChartGroup& group = Filled().chart.ChartGroups(1);
    for (auto _ : state) {
        group.SetY(1, 1, group.Y(1, 1));  // the range of the data is to be found anew
        Filled().plot.AutoScaleCommand();
        Filled().view.RefreshNow();
    }
}

/// A move of the mouse with its readout, which draws no curves.
void MoveTheMouse(benchmark::State& state) {
    Filled().Show(PlotView::Vs_Depth);
    static auto* const pointer = new ChartPointer(Filled().plot, Filled().chart, Filled().view);
    benchmark::DoNotOptimize(pointer);
    int place = 0;
    for (auto _ : state) {
        const QPointF at(200 + place++ % 800, 300);
        QMouseEvent move(QEvent::MouseMove, at, at, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(&Filled().view.Canvas(), &move);
        QApplication::processEvents();
    }
}

BENCHMARK(RedrawInTime)->Unit(benchmark::kMillisecond);
BENCHMARK(RedrawInDepth)->Unit(benchmark::kMillisecond);
BENCHMARK(ThereAndBackBetweenViews)->Unit(benchmark::kMillisecond);
BENCHMARK(ChangeUnit)->Unit(benchmark::kMillisecond);
BENCHMARK(ZoomInAndOutInTime)->Unit(benchmark::kMillisecond);
BENCHMARK(ZoomInAndOutInDepth)->Unit(benchmark::kMillisecond);
BENCHMARK(RedrawAllInDepth)->Unit(benchmark::kMillisecond);
BENCHMARK(ShowAllInDepth)->Unit(benchmark::kMillisecond);
BENCHMARK(MoveTheMouse)->Unit(benchmark::kMillisecond);

}  // namespace
