// Six windows at 115200 baud with about 190 lines a second each, plotted and logged, in real time: the share
// of one core that the program takes, with few and with many points held. The simulated instruments run in
// the same process; what they cost by themselves is measured beside it and taken off.
#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>
#include <benchmark/benchmark.h>
#include <ctime>
#include <memory>
#include <vector>

#include "app/forms/MainForm.h"
#include "app/forms/Shell.h"
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

void SixWindows(benchmark::State& state) {
    QTemporaryDir folder;
    MapSettings settings;
    SystemClock clock;
    AppContext app(settings, clock);
    Pump pump(clock);
    LoadPreferences(settings, folder.path().toStdString(), app.prefs);
    app.prefs.MaxGraphPoints = kMaxGraphPoints;
    app.sigma = LoadSigmaParams(settings, ProgramFolder(), DataFolder()).params;
    app.pureWater = LoadPureWaterParams(settings);
    app.temporaryFolder = folder.path().toStdString();
    Shell shell(app, pump);
    for (int i = 0; i < 6; ++i) {
        auto instrument = simulator::MakeInstrument(simulator::Model::Corvane6, FullRate(i));
        const auto path = app.temporaryFolder / ("w" + std::to_string(i) + ".cal");
        DiskFile file;
        (void)file.Open(path);
        file.Append(instrument->CalText());
        file.Close();
        MainForm* const form = shell.NewWindow(std::make_unique<SimulatedLine>(std::move(instrument), clock));
        form->resize(1024, 680);
        form->show();
        form->Window().LoadCalIntoWindow(path.string());
        Fill(form->Window(), static_cast<int>(state.range(0)));
        form->Window().OpenWithoutQuery(i + 1, 115200, InstTypeCode::Corvane6);
        form->Window().OpenDataFiles("raw", true);
        form->InstrumentChanged();
    }
    RunEventLoop(1000);
    const double simulated = SimulationShare();
    for (auto _ : state) {
        const auto countedBefore = shell.Windows().front()->Window().Link.State.Counted.samples;
        const double before = CpuSeconds();
        QElapsedTimer wall;
        wall.start();
        RunEventLoop(kSeconds * 1000);
        const double seconds = static_cast<double>(wall.elapsed()) / 1000;
        const double share = (CpuSeconds() - before) / seconds;
        state.SetIterationTime(seconds);
        const auto counted = shell.Windows().front()->Window().Link.State.Counted.samples - countedBefore;
        state.counters["lines/s/window"] = static_cast<double>(counted) / seconds;
        state.counters["core_%_all"] = 100 * share;
        state.counters["core_%_simulators"] = 100 * simulated;
        state.counters["core_%_program"] = 100 * (share - simulated);
    }
    for (MainForm* form : shell.Windows()) form->CloseWith([] {});
    for (MainForm* form : shell.Windows()) form->close();
}
BENCHMARK(SixWindows)->Arg(1000)->Arg(95000)->Iterations(1)->UseManualTime()->Unit(benchmark::kSecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
