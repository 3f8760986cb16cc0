// Conversion of a raw file of hexadecimal Corvane-6 lines into a calibrated file, one thread, file in the
// page cache, beside a bare loop of the same primitives (read large blocks, find the line end, sum the
// checksum, read the hexadecimal fields, 8 exponentials and the multiplications, 18 numbers by std::to_chars
// into a buffer written in large blocks) and beside the same work with QTextStream and QString. The figures
// to quote are the ratios of the times in one run: product to bare loop at most 1.3, aim 0.8; Qt to product
// at least 4. MARISONDE_BENCH_MB sets the size of the raw file, 50 MB if not given.
#include <QFile>
#include <QString>
#include <QTextStream>
#include <array>
#include <benchmark/benchmark.h>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "CorvaneCast.h"
#include "RawCast.h"
#include "files/ConvertFile.h"

namespace {

using namespace marisonde;
using namespace marisonde::bench;
namespace fs = std::filesystem;

constexpr std::size_t kBlock = std::size_t{1} << 20;  ///< bytes, of the bare loop

void Finish(benchmark::State& state, std::int64_t lines) {
    if (lines != Cast().Lines()) state.SkipWithError("lines were lost");
    state.SetItemsProcessed(state.iterations() * Cast().Lines());
}

void BM_Convert(benchmark::State& state) {
    const CalibrationDataClass cal = Calibration();
    const SigmaParams sigma = Sigma();
    const PureWaterParams water = DefaultPureWaterParams();
    ConversionHost host;
    int calls = 0;
    host.progress = [&calls](const ReadProgress&) { return ++calls > 0; };
    std::int64_t lines = 0;
    (void)Cast();
    for (auto _ : state) {
        const ConversionResult result = ConvertRawToDat(Cast().Source(), Cast().Destination("product.dat"),
                                                        {"", 45000}, cal, sigma, water, host);
        lines = static_cast<std::int64_t>(result.counts.samples);
    }
    Finish(state, lines);
}

/// The 18 numbers of a line and its end.
char* Write(const Bare& bare, char* out) {
    out = std::to_chars(out, out + 32, bare.time).ptr;
    *out++ = ',';
    out = std::to_chars(out, out + 32, static_cast<float>(bare.depth)).ptr;
    *out++ = ',';
    for (const auto* values : {&bare.bb, &bare.bbUncorr}) {
        for (const double value : *values) {
            out = std::to_chars(out, out + 32, static_cast<float>(value)).ptr;
            *out++ = ',';
        }
    }
    *out++ = '\r';
    *out++ = '\n';
    return out;
}

void BM_BareLoop(benchmark::State& state) {
    std::vector<char> in(2 * kBlock);
    std::vector<char> out(kBlock + 1024);
    std::int64_t lines = 0;
    (void)Cast();
    for (auto _ : state) {
        lines = 0;
        Bare bare;
        std::FILE* source = std::fopen(Cast().Source().c_str(), "rb");
        std::FILE* destination = std::fopen(Cast().Beside("bare.dat").c_str(), "wb");
        std::setvbuf(source, nullptr, _IONBF, 0);
        std::setvbuf(destination, nullptr, _IONBF, 0);
        std::size_t kept = 0;
        char* write = out.data();
        while (true) {
            const std::size_t read = std::fread(in.data() + kept, 1, kBlock, source);
            if (read == 0) break;
            const char* at = in.data();
            const char* const end = at + kept + read;
            while (const void* stop = std::memchr(at, '\n', static_cast<std::size_t>(end - at))) {
                const auto* lineEnd = static_cast<const char*>(stop);
                if (bare.Convert({at, static_cast<std::size_t>(lineEnd - 1 - at)})) {
                    write = Write(bare, write);
                    ++lines;
                }
                at = lineEnd + 1;
                if (write < out.data() + kBlock) continue;
                std::fwrite(out.data(), 1, static_cast<std::size_t>(write - out.data()), destination);
                write = out.data();
            }
            kept = static_cast<std::size_t>(end - at);
            std::memmove(in.data(), at, kept);
        }
        std::fwrite(out.data(), 1, static_cast<std::size_t>(write - out.data()), destination);
        std::fclose(source);
        std::fclose(destination);
        Cast().Replace("bare.dat");
    }
    Finish(state, lines);
}

bool ConvertQt(const QString& line, Bare& bare) {
    if (line.size() < 60 || line.at(0) != QLatin1Char('*')) return false;
    uint sum = 0;
    for (qsizetype i = 1; i + 2 < line.size(); ++i) sum += line.at(i).unicode();
    if (line.right(2).toUInt(nullptr, 16) != (sum & 0xFF)) return false;
    bare.time = line.mid(2, 8).toUInt(nullptr, 16) * 1.1574074074074073e-5 + 25569;
    bare.depth = static_cast<float>(line.mid(50, 4).toUInt(nullptr, 16) * 0.01);
    bare.temp = line.mid(54, 2).toUInt(nullptr, 16) * 0.2 - 10;
    for (int ch = 0; ch < static_cast<int>(kSlots); ++ch)
        bare.Calculate(static_cast<std::size_t>(ch), line.mid(10 + 4 * ch, 4).toUInt(nullptr, 16),
                       line.mid(42 + ch, 1).toUInt(nullptr, 16));
    return true;
}

void BM_QtTextStream(benchmark::State& state) {
    std::int64_t lines = 0;
    (void)Cast();
    for (auto _ : state) {
        lines = 0;
        Bare bare;
        QFile source(QString::fromStdString(Cast().Source().string()));
        QFile destination(QString::fromStdString(Cast().Beside("qt.dat").string()));
        if (!source.open(QIODevice::ReadOnly) || !destination.open(QIODevice::WriteOnly)) break;
        QTextStream in(&source);
        QTextStream out(&destination);
        QString line;
        while (in.readLineInto(&line)) {
            if (!ConvertQt(line, bare)) continue;
            out << QString::number(bare.time, 'g', 16) << ',' << QString::number(bare.depth, 'g', 9) << ',';
            for (const auto* values : {&bare.bb, &bare.bbUncorr})
                for (const double value : *values) out << QString::number(value, 'g', 9) << ',';
            out << "\r\n";
            ++lines;
        }
        out.flush();
        destination.close();
        Cast().Replace("qt.dat");
    }
    Finish(state, lines);
}

BENCHMARK(BM_Convert)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BareLoop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QtTextStream)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
