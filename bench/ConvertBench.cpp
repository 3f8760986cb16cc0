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

#include "calibration/Converter.h"
#include "common/Numbers.h"
#include "decode/Decoders.h"

namespace {

using namespace marisonde;

constexpr int kLines = 4096;
constexpr std::size_t kSlots = 8;

std::string Hex(std::uint32_t value, int width) {
    std::string text(static_cast<std::size_t>(width), '0');
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit, value /= 16)
        *digit = "0123456789ABCDEF"[value % 16];
    return text;
}

/// Lines as an instrument sends them, each with its carriage return.
std::string MakeLines() {
    std::mt19937 random(1);
    std::string text;
    for (std::uint32_t i = 0; i < kLines; ++i) {
        std::string line = "*D" + Hex(1700000000U + i, 8);
        for (std::size_t ch = 0; ch < kSlots; ++ch) line += Hex(1 + random() % 60000, 4);
        for (std::size_t ch = 0; ch < kSlots; ++ch) line += Hex(1 + random() % 5, 1);
        line += Hex(random() % 65536, 4) + Hex(150, 2) + Hex(0, 2);
        unsigned sum = 0;
        for (const char c : line.substr(1)) sum += static_cast<unsigned char>(c);
        text += line + Hex(sum & 0xFF, 2) + '\r';
    }
    return text;
}

const std::string& Lines() {
    static const std::string lines = MakeLines();
    return lines;
}

Converter MakeConverter() {
    SigmaParams sigma;
    sigma.aStarValue = 0.05;
    PureWaterParams water = DefaultPureWaterParams();
    CalibrationDataClass cal;
    cal.InstType = InstTypeCode::Corvane6;
    cal.CalTemp = 20;
    cal.DepthCal = 0.01F;
    constexpr std::array kLambdas{420, 442, 470, 510, 590, 700, 676, 695};
    for (int ch = 0; ch < static_cast<int>(kSlots); ++ch) {
        cal.EditChannel(ch).lambda = static_cast<std::int16_t>(kLambdas[static_cast<std::size_t>(ch)]);
        cal.EditChannel(ch).beta2bb = 1.08;
        cal.SetMu(ch, 0.01);
        cal.SetRNominal(ch, 4000);
        cal.SetSigmaExp(ch, 0.14);
    }
    (void)cal.CheckAndUpdateAll(sigma, water);
    return {cal, sigma, water};
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
    const Converter converter = MakeConverter();
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

/// What any program must at least do with such a line.
struct Bare {
    std::array<double, kSlots> beta{}, bb{}, sigma{}, betaUncorr{}, bbUncorr{};
    std::array<double, 8> perGain{0, 2.5e-6, 2.5e-7, 2.5e-8, 2.5e-9, 2.5e-10, 0, 0};
    double time = 0, depth = 0, temp = 0;
    double c = 6.8, betaWater = 1e-4, bbWater = 8e-4, perBbTilde = 26, a = 0.01, exponent = 0.14;

    bool Convert(std::string_view line) {
        unsigned sum = 0;
        for (const char ch : line.substr(1, line.size() - 3)) sum += static_cast<unsigned char>(ch);
        if (HexVal(line.substr(line.size() - 2)) != (sum & 0xFF)) return false;
        time = HexVal(line.substr(2, 8)) * 1.1574074074074073e-5 + 25569;
        depth = static_cast<float>(HexVal(line.substr(50, 4)) * 0.01);
        temp = HexVal(line.substr(54, 2)) * 0.2 - 10;
        benchmark::DoNotOptimize(HexVal(line.substr(56, 2)));
        for (std::size_t ch = 0; ch < kSlots; ++ch) {
            betaUncorr[ch] =
                HexVal(line.substr(10 + 4 * ch, 4)) * perGain[HexVal(line.substr(42 + ch, 1)) & 7];
            bbUncorr[ch] = static_cast<float>((betaUncorr[ch] - betaWater) * c + bbWater);
            const double K = static_cast<float>((bbUncorr[ch] - bbWater) * perBbTilde + a);
            sigma[ch] = std::exp(exponent * K);
            beta[ch] = betaUncorr[ch] * sigma[ch];
            bb[ch] = static_cast<float>((beta[ch] - betaWater) * c + bbWater);
        }
        return true;
    }
};

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
