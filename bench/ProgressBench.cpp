// What it costs to show the progress of a conversion: the form that processes files, with its bar and in the
// event loop of the program, beside the same conversion alone. The figure to quote is the ratio of the CPU
// times of one run, at most 1.03. MARISONDE_BENCH_MB sets the size of the raw file, 50 MB if not given.
#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>
#include <benchmark/benchmark.h>
#include <memory>

#include "RawCast.h"
#include "app/forms/MainForm.h"
#include "app/forms/ProcessFilesForm.h"
#include "app/forms/Shell.h"
#include "common/Settings.h"
#include "files/ConvertFile.h"
#include "link/SimulatedLine.h"
#include "platform/Paths.h"
#include "platform/SystemClock.h"
#include "simulator/Instrument.h"

namespace {

using namespace marisonde;
using namespace marisonde::bench;

constexpr HeaderStamp kStamp{"", 45000};

/// The program with one window and its form, the cast selected in it.
class Desk {
  public:
    Desk() : app_(settings_, clock_), pump_(clock_), shell_(app_, pump_) {
        app_.sigma = Sigma();
        app_.pureWater = DefaultPureWaterParams();
        MainForm* const window = shell_.NewWindow(
            std::make_unique<SimulatedLine>(simulator::MakeInstrument(simulator::Model::Corvane6), clock_));
        window->show();
        window->findChild<QAction*>("ProcessFilesItem")->trigger();
        form_ = window->findChild<ProcessFilesForm*>();
        const auto cal = Cast().Destination("instrument.cal");
        (void)Calibration().SaveAsFile(cal, app_.pureWater);
        Fill("SourceFileText", Cast().Source().parent_path());
        Fill("DatFileText", Cast().Destination("out"));
        Fill("CalFileText", cal);
    }

    /// Until the form is ready for the next files.
    void Process() {
        std::filesystem::remove_all(Cast().Destination("out"));
        std::filesystem::create_directory(Cast().Destination("out"));
        form_->findChild<QListWidget*>("List1")->selectAll();
        auto* const process = form_->findChild<QPushButton*>("ProcessButton");
        process->click();
        while (!process->isEnabled()) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

  private:
    void Fill(const char* box, const std::filesystem::path& path) {
        form_->findChild<QLineEdit*>(box)->setText(TextFromPath(path));
    }
    MapSettings settings_;
    SystemClock clock_;
    AppContext app_;
    Pump pump_;
    Shell shell_;
    ProcessFilesForm* form_ = nullptr;
};

void Finish(benchmark::State& state, const std::filesystem::path& written) {
    std::error_code missing;
    if (std::filesystem::file_size(written, missing) < static_cast<std::uintmax_t>(Cast().Lines()) || missing)
        state.SkipWithError("lines were lost");
    state.SetItemsProcessed(state.iterations() * Cast().Lines());
}

void BM_ConvertAlone(benchmark::State& state) {
    const CalibrationDataClass cal = Calibration();
    const SigmaParams sigma = Sigma();
    const PureWaterParams water = DefaultPureWaterParams();
    const auto written = Cast().Destination("alone.dat");
    for (auto _ : state)
        benchmark::DoNotOptimize(ConvertRawToDat(Cast().Source(), written, kStamp, cal, sigma, water));
    Finish(state, written);
}

void BM_ConvertInForm(benchmark::State& state) {
    Desk desk;
    for (auto _ : state) desk.Process();
    Finish(state, Cast().Destination("out") / "cast.dat");
}

BENCHMARK(BM_ConvertAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ConvertInForm)->Unit(benchmark::kMillisecond);

}  // namespace
