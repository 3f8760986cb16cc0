#pragma once

#include <array>
#include <cstdint>

#include "common/InstTypes.h"

namespace marisonde {

/// One sample in physical units. One lives per stream and is reused: what a path does not set stays as it
/// was. A value whose arithmetic failed is kSentinel (32-bit fields: kSentinelF).
struct CalibratedSample {
    template <class T>
    using PerChannel = std::array<T, kChannelSlots>;

    std::int32_t SampleNo = 0;  ///< model code found in the line; files show its decimal text
    float Depth = 0;            ///< m
    float Temp = 0;             ///< degrees C
    std::int32_t Aux = 0;       ///< running count of the line
    double Time = 0;            ///< days since 30 December 1899; 0 when the line has no clock
    double Elapsed = 0;         ///< days, of samples without a clock
    PerChannel<bool> Valid{};
    PerChannel<double> bbUncorr{};    ///< 1/m, before sigma correction
    PerChannel<double> bb{};          ///< 1/m, after sigma correction
    PerChannel<double> betaUncorr{};  ///< 1/(m sr)
    PerChannel<double> beta{};        ///< 1/(m sr)
    PerChannel<double> Sigma{};       ///< sigma applied
    float TransNorm = 0;              ///< temperature-normalised transmission (Tidal)
    float K = 0;                      ///< working attenuation used by sigma, 1/m
    PerChannel<float> k{};            ///< attenuation, 1/m
    float a = 0;                      ///< absorption of the l-Tidal, 1/m

    bool operator==(const CalibratedSample&) const = default;
};

}  // namespace marisonde
