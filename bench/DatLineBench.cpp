// One line of a Corvane-6 in a calibrated file: 18 numbers. The reference writes the same numbers with the
// standard library's shortest form, commas between, and nothing else. The figure to quote is the ratio of
// both.
#include <array>
#include <benchmark/benchmark.h>
#include <charconv>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "files/DatFile.h"

namespace marisonde {
namespace {

constexpr int kChannels = 8;
constexpr std::size_t kSamples = 4096;  // enough that no branch predictor learns the digits by heart

/// A profile through clear and turbid water: bb from 1E-4 to 1E-1 1/m, one sample a second.
std::vector<CalibratedSample> Samples() {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> exponent(-4, -1);
    std::uniform_real_distribution<float> depth(0, 300);
    std::vector<CalibratedSample> samples(kSamples);
    double seconds = 0;
    for (CalibratedSample& sample : samples) {
        sample.Time = 40000 + ++seconds / 86400;
        sample.Depth = depth(random);
        for (std::size_t ch = 0; ch < kChannels; ++ch) {
            sample.bb[ch] = std::pow(10, exponent(random));
            sample.bbUncorr[ch] = sample.bb[ch] * 0.97;
        }
    }
    return samples;
}

template <class T>
char* AppendShortest(char* end, char* limit, T value) {
    end = std::to_chars(end, limit, value).ptr;
    *end++ = ',';
    return end;
}

void BM_ToChars(benchmark::State& state) {
    const std::vector<CalibratedSample> samples = Samples();
    std::array<char, 1024> line;
    char* const limit = line.data() + line.size();
    std::size_t i = 0;
    for (auto _ : state) {
        const CalibratedSample& sample = samples[i++ % kSamples];
        char* end = AppendShortest(line.data(), limit, sample.Time);
        end = AppendShortest(end, limit, sample.Depth);
        for (std::size_t ch = 0; ch < kChannels; ++ch)
            end = AppendShortest(end, limit, static_cast<float>(sample.bb[ch]));
        for (std::size_t ch = 0; ch < kChannels; ++ch)
            end = AppendShortest(end, limit, static_cast<float>(sample.bbUncorr[ch]));
        benchmark::DoNotOptimize(end);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_ToChars);

void BM_WriteDatLine(benchmark::State& state) {
    const std::vector<CalibratedSample> samples = Samples();
    std::string out;
    std::size_t i = 0;
    for (auto _ : state) {
        out.clear();
        WriteDatLine(out, samples[i++ % kSamples], InstTypeCode::Corvane6, false);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_WriteDatLine);

}  // namespace
}  // namespace marisonde

BENCHMARK_MAIN();
