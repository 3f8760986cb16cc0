// Loading a stored file of a Corvane-6 into a chart: the raw file, and the calibrated file of the same
// samples, beside decoding and conversion of the lines alone, from memory. The figures to quote are ratios of
// the CPU times of one run (--benchmark_enable_random_interleaving=true --benchmark_repetitions=9): the raw
// file to its conversion, the calibrated file to the raw file.
#include <benchmark/benchmark.h>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "CorvaneCast.h"
#include "calibration/Converter.h"
#include "decode/Decoders.h"
#include "files/DatFile.h"
#include "files/DatFileReader.h"
#include "files/GroupLoad.h"
#include "files/RawFile.h"
#include "files/RawFileReader.h"
#include "graphs/LivePlot.h"

namespace {

using namespace marisonde;
using namespace marisonde::bench;
namespace fs = std::filesystem;

constexpr int kSamples = 20000;

const Converter& TheConverter() {
    static const Converter converter(Calibration(), Sigma(), DefaultPureWaterParams());
    return converter;
}

/// The same cast as lines and as two files; gone at the end of the run.
class Cast {
  public:
    Cast() : folder_(fs::temp_directory_path() / ("load-bench-" + std::to_string(std::random_device{}()))) {
        fs::create_directories(folder_);
        const CalibrationDataClass cal = Calibration();
        std::string raw;
        std::string dat;
        WriteRawHeader(raw, {"", 45000}, "raw", cal.InstType, &cal);
        WriteDatHeader(dat, {"", 45000}, "", cal, Sigma(), DefaultPureWaterParams());
        std::mt19937 random(1);
        RawSample sample;
        CalibratedSample out;
        for (std::uint32_t i = 0; i < kSamples; ++i) {
            lines_.push_back(CorvaneLine(i, random));
            raw += lines_.back() + "\r\n";
            ParseAndConvert(lines_.back(), cal.InstType, TheConverter(), sample, out);
            WriteDatLine(dat, out, cal.InstType, false);
        }
        Write(Raw(), raw);
        Write(Dat(), dat);
    }
    ~Cast() { fs::remove_all(folder_); }
    Cast(const Cast&) = delete;
    Cast& operator=(const Cast&) = delete;

    [[nodiscard]] const std::vector<std::string>& Lines() const { return lines_; }
    [[nodiscard]] fs::path Raw() const { return folder_ / "cast.raw"; }
    [[nodiscard]] fs::path Dat() const { return folder_ / "cast.dat"; }

  private:
    static void Write(const fs::path& path, const std::string& text) {
        std::FILE* file = std::fopen(path.c_str(), "wb");
        std::fwrite(text.data(), 1, text.size(), file);
        std::fclose(file);
    }
    fs::path folder_;
    std::vector<std::string> lines_;
};

const Cast& TheCast() {
    static const Cast cast;
    return cast;
}

/// The points of a window.
class ChartSink final : public SampleSink {
  public:
    ChartSink() { plot_.SetupChartForInstrument(InstTypeCode::Corvane6); }
    void Clear() override { plot_.ClearGraph(); }
    void Expect(int samples) override { plot_.ExpectPoints(samples); }
    void Append(const RawSample& raw, const CalibratedSample& sample) override {
        if (left_ == 0) left_ = plot_.BeginTick(kRawLinesPerService);
        plot_.AddSample(raw, sample);
        if (--left_ == 0) plot_.EndTick();
    }
    [[nodiscard]] int Points() const { return plot_.PlotIndex() - 1; }

  private:
    Chart2D chart_;
    LivePlot plot_{chart_};
    int left_ = 0;
};

void Load(benchmark::State& state, SampleReader& reader, const fs::path& path, int linesPerService) {
    for (auto _ : state) {
        ChartSink sink;
        if (reader.Open(path)) state.SkipWithError("no file");
        GroupLoad load(reader, sink, 100000);
        load.NextGroup();
        while (load.Run(linesPerService) == GroupLoad::Step::Working) {
        }
        if (sink.Points() != kSamples) state.SkipWithError("samples were lost");
    }
    state.SetItemsProcessed(state.iterations() * kSamples);
}

void BM_DecodeAndConvert(benchmark::State& state) {
    const Cast& cast = TheCast();
    RawSample raw;
    CalibratedSample out;
    for (auto _ : state)
        for (const std::string& line : cast.Lines()) {
            benchmark::DoNotOptimize(ParseAndConvert(line, InstTypeCode::Corvane6, TheConverter(), raw, out));
            benchmark::DoNotOptimize(out);
        }
    state.SetItemsProcessed(state.iterations() * kSamples);
}

void BM_LoadRaw(benchmark::State& state) {
    RawFileReader reader(InstTypeCode::Corvane6, TheConverter());
    Load(state, reader, TheCast().Raw(), kRawLinesPerService);
}

/// As a window does, whose graph shows one form of backscattering at a time.
void BM_LoadDat(benchmark::State& state, DatScattering shown) {
    DatFileReader reader;
    reader.Read(shown);
    Load(state, reader, TheCast().Dat(), kDatLinesPerService);
}

BENCHMARK(BM_DecodeAndConvert)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadRaw)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_LoadDat, corrected, DatScattering::Corrected)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_LoadDat, uncorrected, DatScattering::Uncorrected)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
