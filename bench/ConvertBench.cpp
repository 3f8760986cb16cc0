// Decode and convert of hexadecimal Corvane-6 lines, beside a bare loop of the same primitives over the same
// bytes: find the line end, sum the checksum, read the hexadecimal fields, 8 exponentials and the
// multiplications. The figure to quote is the ratio of the two times per line in one run; the aim is at
// most 1.3.
#include <array>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <string_view>

#include "CorvaneCast.h"
#include "calibration/Converter.h"
#include "decode/Decoders.h"

namespace {

using namespace marisonde;
using namespace marisonde::bench;

constexpr int kLines = 4096;

/// Lines as an instrument sends them, each with its carriage return.
std::string MakeLines() {
    std::mt19937 random(1);
    std::string text;
    for (std::uint32_t i = 0; i < kLines; ++i) text += CorvaneLine(i, random) + '\r';
    return text;
}

const std::string& Lines() {
    static const std::string lines = MakeLines();
    return lines;
}

template <class EachLine>
void ForEachLine(EachLine eachLine) {
    const char* at = Lines().data();
    const char* const end = at + Lines().size();
    while (at != end) {
        const auto* stop =
            static_cast<const char*>(std::memchr(at, '\r', static_cast<std::size_t>(end - at)));
        eachLine(std::string_view(at, static_cast<std::size_t>(stop - at)));
        at = stop + 1;
    }
}

void BM_DecodeAndConvert(benchmark::State& state) {
    const Converter converter(Calibration(), Sigma(), DefaultPureWaterParams());
    RawSample raw;
    CalibratedSample out;
    int converted = 0;
    for (auto _ : state) {
        ForEachLine([&](std::string_view line) {
            converted += ParseAndConvert(line, InstTypeCode::Corvane6, converter, raw, out) ? 1 : 0;
            benchmark::DoNotOptimize(out);
        });
    }
    if (converted != static_cast<int>(state.iterations()) * kLines) state.SkipWithError("lines were lost");
    state.SetItemsProcessed(state.iterations() * kLines);
}

void BM_BareLoop(benchmark::State& state) {
    Bare bare;
    int converted = 0;
    for (auto _ : state) {
        ForEachLine([&](std::string_view line) {
            converted += bare.Convert(line) ? 1 : 0;
            benchmark::DoNotOptimize(bare);
        });
    }
    if (converted != static_cast<int>(state.iterations()) * kLines) state.SkipWithError("lines were lost");
    state.SetItemsProcessed(state.iterations() * kLines);
}

/// The decoder alone, to see which part of the road costs what.
void BM_DecodeOnly(benchmark::State& state) {
    RawSample raw;
    for (auto _ : state) {
        ForEachLine([&](std::string_view line) {
            benchmark::DoNotOptimize(ParseRawLine(line, InstTypeCode::Corvane6, raw));
            benchmark::DoNotOptimize(raw);
        });
    }
    state.SetItemsProcessed(state.iterations() * kLines);
}

BENCHMARK(BM_DecodeAndConvert)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BareLoop)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DecodeOnly)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
