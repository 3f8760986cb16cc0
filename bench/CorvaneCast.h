#pragma once

#include <array>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

#include "calibration/CalibrationDataClass.h"
#include "common/Numbers.h"
#include "optics/PureWaterParams.h"
#include "optics/SigmaParams.h"

// What the benchmarks of conversion share: lines as a Corvane-6 sends them, its calibration, and the least
// that any program must do with such a line.

namespace marisonde::bench {

inline constexpr std::size_t kSlots = 8;

inline std::string Hex(std::uint32_t value, int width) {
    std::string text(static_cast<std::size_t>(width), '0');
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit, value /= 16)
        *digit = "0123456789ABCDEF"[value % 16];
    return text;
}

/// One hexadecimal line with a clock and its checksum, without line end.
inline std::string CorvaneLine(std::uint32_t number, std::mt19937& random) {
    std::string line = "*D" + Hex(1700000000U + number, 8);
    for (std::size_t ch = 0; ch < kSlots; ++ch) line += Hex(1 + random() % 60000, 4);
    for (std::size_t ch = 0; ch < kSlots; ++ch) line += Hex(1 + random() % 5, 1);
    line += Hex(random() % 65536, 4) + Hex(100 + random() % 50, 2) + Hex(0, 2);
    unsigned sum = 0;
    for (const char c : line.substr(1)) sum += static_cast<unsigned char>(c);
    return line + Hex(sum & 0xFF, 2);
}

inline SigmaParams Sigma() {
    SigmaParams sigma;
    sigma.aStarValue = 0.05;
    return sigma;
}

inline CalibrationDataClass Calibration() {
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
    (void)cal.CheckAndUpdateAll(Sigma(), DefaultPureWaterParams());
    return cal;
}

/// The bare loop's part of one line: checksum, fields, 8 exponentials and the multiplications, with
/// everything constant beforehand.
struct Bare {
    std::array<double, kSlots> beta{}, bb{}, sigma{}, betaUncorr{}, bbUncorr{};
    std::array<double, 8> perGain{0, 2.5e-6, 2.5e-7, 2.5e-8, 2.5e-9, 2.5e-10, 0, 0};
    double time = 0, depth = 0, temp = 0;
    double c = 6.8, betaWater = 1e-4, bbWater = 8e-4, perBbTilde = 26, a = 0.01, exponent = 0.14;

    void Calculate(std::size_t ch, std::uint32_t snorm, std::uint32_t gain) {
        betaUncorr[ch] = snorm * perGain[gain & 7];
        bbUncorr[ch] = static_cast<float>((betaUncorr[ch] - betaWater) * c + bbWater);
        const double K = static_cast<float>((bbUncorr[ch] - bbWater) * perBbTilde + a);
        sigma[ch] = std::exp(exponent * K);
        beta[ch] = betaUncorr[ch] * sigma[ch];
        bb[ch] = static_cast<float>((beta[ch] - betaWater) * c + bbWater);
    }

    bool Convert(std::string_view line) {
        if (line.size() < 60 || line[0] != '*') return false;
        unsigned sum = 0;
        for (const char ch : line.substr(1, line.size() - 3)) sum += static_cast<unsigned char>(ch);
        if (HexVal(line.substr(line.size() - 2)) != (sum & 0xFF)) return false;
        time = HexVal(line.substr(2, 8)) * 1.1574074074074073e-5 + 25569;
        depth = static_cast<float>(HexVal(line.substr(50, 4)) * 0.01);
        temp = HexVal(line.substr(54, 2)) * 0.2 - 10;
        benchmark::DoNotOptimize(HexVal(line.substr(56, 2)));
        for (std::size_t ch = 0; ch < kSlots; ++ch)
            Calculate(ch, HexVal(line.substr(10 + 4 * ch, 4)), HexVal(line.substr(42 + ch, 1)));
        return true;
    }
};

}  // namespace marisonde::bench
