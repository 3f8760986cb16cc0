#include <QApplication>
#include <QMainWindow>
#include <benchmark/benchmark.h>
#include <cmath>
#include <memory>
#include <qcustomplot.h>
#include <random>
#include <vector>

#include "graphs/Chart2D.h"
#include "graphs/forms/ChartView.h"

/// The figures to quote are ratios from one run: appending at 100000 points held against 1000, appending
/// against a full redraw, and full redraws against the plotting library's own graph and curve over the same
/// points.
namespace {

using namespace marisonde;

constexpr int kSeries = 11;
constexpr int kNewPoints = 10;
constexpr int kHeld = 100000;
constexpr int kRoom = 1000;
constexpr QSize kArea(1200, 800);

/// A cast that goes down and up: time, depth with the ship's heave in it, and noisy channels with a layer.
struct Cast {
    explicit Cast(int count) {
        std::mt19937 random(3);
        std::normal_distribution<double> noise(0, 1);
        for (int i = 0; i < count; ++i) {
            const double share = static_cast<double>(i) / count;
            minutes.push_back(share * 100);
            depth.push_back(45 - 40 * std::cos(share * 6 * 3.14159265358979) + 0.5 * std::sin(i * 0.03) +
                            0.02 * noise(random));
            const double layer = std::exp(-std::pow((depth.back() - 25) / 6, 2));
            for (int s = 0; s < kSeries; ++s)
                values[static_cast<std::size_t>(s)].push_back(
                    0.0004 + 0.0005 * s + (0.001 + 0.0003 * s) * layer + 0.0001 * noise(random));
        }
    }
    std::vector<double> minutes;
    std::vector<double> depth;
    std::array<std::vector<double>, kSeries> values;
};

const Cast& LongCast() {
    static const Cast cast(kHeld + kRoom);
    return cast;
}

QColor ColorOf(int series) {
    return QColor::fromHsv(series * 30, 255, 180);
}

/// A view that shows the first `count` points of the long cast, with room for `room` more.
struct Shown {
    Shown(int count, int room, bool profile) {
        ChartGroup& group = chart.ChartGroups(1);
        group.SetNumSeries(kSeries);
        group.SetNumPoints(count + room);
        for (int i = 1; i <= count; ++i) Put(i, i - 1, profile);
        group.SetLastPoint(count);
        chart.SetRotated(profile);
        chart.Axes(AxisName::X).SetReversed(profile);
        chart.Axes(AxisName::X).SetTitle("Elapsed Time (minutes)");
        chart.Axes(AxisName::Y).SetTitle("Backscattering Coefficient (/m)");
        for (int s = 1; s <= kSeries; ++s) view.SetSeriesStyle(s, QString("bb(%1)").arg(s), ColorOf(s));
        view.resize(kArea);
        view.show();
        QApplication::processEvents();
    }
    void Put(int point, int source, bool profile) {
        ChartGroup& group = chart.ChartGroups(1);
        const auto from = static_cast<std::size_t>(source);
        group.SetX(point, profile ? LongCast().depth[from] : LongCast().minutes[from]);
        for (int s = 1; s <= kSeries; ++s)
            group.SetY(s, point, LongCast().values[static_cast<std::size_t>(s) - 1][from]);
    }
    Chart2D chart;
    ChartView view{chart};
};

// New points are written where there is room and shown; when the room is used up, the view goes back to the
// points it began with, outside the measurement.
void AppendTenPoints(benchmark::State& state, bool profile) {
    const int held = static_cast<int>(state.range(0));
    Shown shown(held, kRoom, profile);
    ChartGroup& group = shown.chart.ChartGroups(1);
    for (auto _ : state) {
        if (group.LastPoint() + kNewPoints > held + kRoom) {
            state.PauseTiming();
            group.SetLastPoint(held);
            shown.view.RefreshNow();
            state.ResumeTiming();
        }
        const int last = group.LastPoint();
        for (int i = 1; i <= kNewPoints; ++i) shown.Put(last + i, last + i - 1, profile);
        group.FastAdd(kNewPoints);
        shown.view.RefreshNow();
    }
}
void AppendInTime(benchmark::State& state) {
    AppendTenPoints(state, false);
}
void AppendInProfile(benchmark::State& state) {
    AppendTenPoints(state, true);
}
BENCHMARK(AppendInTime)->Arg(1000)->Arg(kHeld)->Unit(benchmark::kMicrosecond);
BENCHMARK(AppendInProfile)->Arg(1000)->Arg(kHeld)->Unit(benchmark::kMicrosecond);

void FullRedraw(benchmark::State& state, bool profile) {
    Shown shown(kHeld, 0, profile);
    for (auto _ : state) shown.view.RedrawNow();
}
void RedrawInTime(benchmark::State& state) {
    FullRedraw(state, false);
}
void RedrawInProfile(benchmark::State& state) {
    FullRedraw(state, true);
}
BENCHMARK(RedrawInTime)->Unit(benchmark::kMillisecond);
BENCHMARK(RedrawInProfile)->Unit(benchmark::kMillisecond);

std::unique_ptr<QCustomPlot> LibraryPlot() {
    auto plot = std::make_unique<QCustomPlot>();
    plot->setNotAntialiasedElements(QCP::aeAll);
    plot->resize(kArea);
    plot->xAxis->setLabel("Elapsed Time (minutes)");
    plot->yAxis->setLabel("Backscattering Coefficient (/m)");
    return plot;
}

QVector<double> Copied(const std::vector<double>& values) {
    return {values.begin(), values.end()};
}

void LibraryGraphInTime(benchmark::State& state) {
    const auto plot = LibraryPlot();
    for (int s = 0; s < kSeries; ++s) {
        QCPGraph* const graph = plot->addGraph();
        graph->setPen(QPen(ColorOf(s + 1), 0));
        graph->setData(Copied(LongCast().minutes), Copied(LongCast().values[static_cast<std::size_t>(s)]),
                       true);
    }
    plot->xAxis->setRange(0, 100);
    plot->yAxis->setRange(0, 0.01);
    plot->show();
    QApplication::processEvents();
    for (auto _ : state) plot->replot(QCustomPlot::rpImmediateRefresh);
}
BENCHMARK(LibraryGraphInTime)->Unit(benchmark::kMillisecond);

void LibraryCurveInProfile(benchmark::State& state) {
    const auto plot = LibraryPlot();
    for (int s = 0; s < kSeries; ++s) {
        auto* const curve = new QCPCurve(plot->xAxis, plot->yAxis);
        curve->setPen(QPen(ColorOf(s + 1), 0));
        curve->setData(Copied(LongCast().values[static_cast<std::size_t>(s)]), Copied(LongCast().depth));
    }
    plot->xAxis->setRange(0, 0.01);
    plot->yAxis->setRange(0, 100);
    plot->yAxis->setRangeReversed(true);
    plot->show();
    QApplication::processEvents();
    for (auto _ : state) plot->replot(QCustomPlot::rpImmediateRefresh);
}
BENCHMARK(LibraryCurveInProfile)->Unit(benchmark::kMillisecond);

template <class MakeCentral>
void FirstPaint(benchmark::State& state, MakeCentral makeCentral) {
    for (auto _ : state) {
        QMainWindow window;
        window.setCentralWidget(makeCentral());
        window.resize(kArea);
        window.show();
        QApplication::processEvents();
        benchmark::DoNotOptimize(window.grab());
        state.PauseTiming();
        delete window.takeCentralWidget();
        state.ResumeTiming();
    }
}
void FirstPaintOfLibraryPlot(benchmark::State& state) {
    FirstPaint(state, [] { return new QCustomPlot; });
}
void FirstPaintOfEmptyView(benchmark::State& state) {
    Chart2D chart;
    chart.ChartGroups(1).SetNumSeries(kSeries);
    FirstPaint(state, [&] {
        auto* const view = new ChartView(chart);
        for (int s = 1; s <= kSeries; ++s) view->SetSeriesStyle(s, QString("bb(%1)").arg(s), ColorOf(s));
        return view;
    });
}
BENCHMARK(FirstPaintOfLibraryPlot)->Unit(benchmark::kMillisecond);
BENCHMARK(FirstPaintOfEmptyView)->Unit(benchmark::kMillisecond);

}  // namespace
