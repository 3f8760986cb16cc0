// Six windows at 115200 baud with about 190 lines a second each, plotted and logged, in real time: the share
// of one core that the program takes, with few and with many points held. The simulated instruments run in
// the same process; what they cost by themselves is measured beside it and taken off. Then, with 50 000
// points in each window, how late the event loop is while a pointer moves over a chart.
#include <QApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <ctime>
#include <memory>
#include <vector>

#include "app/forms/MainForm.h"
#include "app/forms/Shell.h"
#include "graphs/LivePlot.h"
#include "graphs/forms/ChartView.h"
#include "link/SimulatedLine.h"
#include "platform/Paths.h"
#include "platform/SystemClock.h"
#include "simulator/Instrument.h"

namespace {

using namespace marisonde;

constexpr int kSeconds = 8;

simulator::Options FullRate(int index) {
    simulator::Options options;
    options.baud = 115200;
    options.samplesPerSecond = 190;
    options.seed = static_cast<std::uint64_t>(index) + 1;
    return options;
}

double CpuSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

void RunEventLoop(int milliseconds) {
    QTimer::singleShot(milliseconds, qApp, [] { QCoreApplication::exit(0); });  // quit would ask the windows
    QApplication::exec();
}

/// What six instruments cost that are only simulated, in CPU seconds for each second of sampling.
double SimulationShare() {
    std::vector<std::unique_ptr<simulator::Instrument>> instruments;
    for (int i = 0; i < 6; ++i)
        instruments.push_back(simulator::MakeInstrument(simulator::Model::Corvane6, FullRate(i)));
    const double before = CpuSeconds();
    constexpr int kTicks = 60 * 20;
    for (int tick = 1; tick <= kTicks; ++tick)
        for (const auto& instrument : instruments) {
            instrument->RunUntil(Millis(50) * tick);
            benchmark::DoNotOptimize(instrument->TakeOutput(Millis(50) * tick));
        }
    return (CpuSeconds() - before) / 60;
}

/// Puts samples into a window until its graph holds `points`.
void Fill(DataWindow& window, int points) {
    const auto instrument = simulator::MakeInstrument(simulator::Model::Corvane6, FullRate(0));
    std::string text;
    for (int second = 1; window.Plot.PlotIndex() <= points; ++second) {
        instrument->RunUntil(std::chrono::seconds(second));
        text += instrument->TakeOutput(std::chrono::seconds(second));
        for (std::size_t end = text.find('\r'); end != std::string::npos; end = text.find('\r')) {
            if (text[0] == '*' && (text[1] == 'T' || text[1] == 'D'))
                window.Link.DataLineQueue.Add(text.substr(0, end));
            text.erase(0, end + 2);
        }
        while (window.Link.DataLineQueue.size() > 0) window.Tick();
    }
}

/// The program with six windows that sample, plot and log, each with `points` in its graph.
class SixSampling {
  public:
    explicit SixSampling(int points) : app_(settings_, clock_), pump_(clock_), shell_(app_, pump_) {
        LoadPreferences(settings_, folder_.path().toStdString(), app_.prefs);
        app_.prefs.MaxGraphPoints = kMostGraphPoints;
        app_.sigma = LoadSigmaParams(settings_, ProgramFolder(), DataFolder()).params;
        app_.pureWater = LoadPureWaterParams(settings_);
        app_.temporaryFolder = folder_.path().toStdString();
        for (int i = 0; i < 6; ++i) Open(i, points);
        RunEventLoop(1000);
    }
    ~SixSampling() {
        for (MainForm* form : shell_.Windows()) form->CloseWith([] {});
        for (MainForm* form : shell_.Windows()) form->close();
    }
    SixSampling(const SixSampling&) = delete;
    SixSampling& operator=(const SixSampling&) = delete;

    [[nodiscard]] MainForm& First() { return *shell_.Windows().front(); }
    [[nodiscard]] std::int64_t Samples() { return First().Window().Link.State.Counted.samples; }

  private:
    void Open(int index, int points) {
        auto instrument = simulator::MakeInstrument(simulator::Model::Corvane6, FullRate(index));
        const auto path = app_.temporaryFolder / ("w" + std::to_string(index) + ".cal");
        DiskFile file;
        (void)file.Open(path);
        file.Append(instrument->CalText());
        file.Close();
        MainForm* const form =
            shell_.NewWindow(std::make_unique<SimulatedLine>(std::move(instrument), clock_));
        form->resize(1024, 680);
        form->show();
        form->Window().LoadCalIntoWindow(path.string());
        Fill(form->Window(), points);
        form->Window().OpenWithoutQuery(index + 1, 115200, InstTypeCode::Corvane6);
        form->Window().OpenDataFiles("raw", true);
        form->InstrumentChanged();
    }

    QTemporaryDir folder_;
    MapSettings settings_;
    SystemClock clock_;
    AppContext app_;
    Pump pump_;
    Shell shell_;
};

void SixWindows(benchmark::State& state) {
    SixSampling windows(static_cast<int>(state.range(0)));
    const double simulated = SimulationShare();
    for (auto _ : state) {
        const auto countedBefore = windows.Samples();
        const double before = CpuSeconds();
        QElapsedTimer wall;
        wall.start();
        RunEventLoop(kSeconds * 1000);
        const double seconds = static_cast<double>(wall.elapsed()) / 1000;
        const double share = (CpuSeconds() - before) / seconds;
        state.SetIterationTime(seconds);
        state.counters["lines/s/window"] = static_cast<double>(windows.Samples() - countedBefore) / seconds;
        state.counters["core_%_all"] = 100 * share;
        state.counters["core_%_simulators"] = 100 * simulated;
        state.counters["core_%_program"] = 100 * (share - simulated);
    }
}
BENCHMARK(SixWindows)->Arg(1000)->Arg(95000)->Iterations(1)->UseManualTime()->Unit(benchmark::kSecond);

/// How late an event is handled: a timer is due every millisecond, and a pointer wanders over a chart.
void EventLoopDelay(benchmark::State& state) {
    constexpr int kPoints = 50000;
    SixSampling windows(kPoints);
    auto* const chart = windows.First().findChild<ChartView*>();
    for (auto _ : state) {
        std::vector<double> delays;  // ms
        QElapsedTimer sinceLast;
        QTimer probe;
        probe.setTimerType(Qt::PreciseTimer);
        QObject::connect(&probe, &QTimer::timeout, chart, [&] {
            delays.push_back(static_cast<double>(sinceLast.nsecsElapsed()) / 1e6 - 1);
            sinceLast.restart();
        });
        QTimer mouse;
        int step = 0;
        QObject::connect(&mouse, &QTimer::timeout, chart, [&] {
            ++step;
            QWidget* const under = chart->childAt(chart->rect().center());
            const QPointF at(10 + step * 7 % (under->width() - 20), 10 + step * 3 % (under->height() - 20));
            QMouseEvent move(QEvent::MouseMove, at, under->mapToGlobal(at), Qt::NoButton, Qt::NoButton, {});
            QCoreApplication::sendEvent(under, &move);
        });
        sinceLast.start();
        probe.start(1);
        mouse.start(8);
        RunEventLoop(kSeconds * 1000);
        std::sort(delays.begin(), delays.end());
        state.SetIterationTime(kSeconds);
        state.counters["delay_ms_median"] = delays[delays.size() / 2];
        state.counters["delay_ms_99%"] = delays[delays.size() * 99 / 100];
        state.counters["delay_ms_most"] = delays.back();
    }
}
BENCHMARK(EventLoopDelay)->Iterations(1)->UseManualTime()->Unit(benchmark::kSecond);

}  // namespace
