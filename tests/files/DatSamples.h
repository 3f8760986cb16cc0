#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>

#include "calibration/CalibratedSample.h"
#include "common/Numbers.h"

namespace marisonde {

/// Any number that a 32-bit value can be, by its bits.
inline double AnySingle(std::mt19937& random) {
    while (true) {
        const std::uint32_t bits = static_cast<std::uint32_t>(random());
        float value = 0;
        std::memcpy(&value, &bits, sizeof value);
        if (value == 0) continue;  // a negative zero is written without its sign
        if (std::isfinite(value)) return value;
        return kSentinel;
    }
}

inline float AnyFloat(std::mt19937& random) {
    const double value = AnySingle(random);
    return value == kSentinel ? kSentinelF : static_cast<float>(value);
}

/// A sample that holds what the lines of the model hold, and nothing else.
inline CalibratedSample AnySample(InstTypeCode type, bool betas, std::mt19937& random) {
    CalibratedSample sample;
    sample.Time = 30000 + static_cast<double>(random()) / 100000;
    sample.Depth = AnyFloat(random);
    const auto channels = static_cast<std::size_t>(std::max(ChannelSlots(type), 0));
    const bool scatters =
        IsCorvaneFamily(type) || type == InstTypeCode::LTidal || type == InstTypeCode::NTidal;
    for (std::size_t i = 0; scatters && i < channels; ++i) {
        sample.bb[i] = AnySingle(random);
        sample.bbUncorr[i] = AnySingle(random);
        if (betas) sample.beta[i] = AnySingle(random);
        if (betas) sample.betaUncorr[i] = AnySingle(random);
        sample.Valid[i] = true;
    }
    if (type == InstTypeCode::LTidal) sample.K = sample.k[0] = AnyFloat(random);
    if (type == InstTypeCode::LTidal) sample.a = AnyFloat(random);
    if (type == InstTypeCode::NTidal) sample.k[0] = AnyFloat(random);
    if (!IsDelphFamily(type)) return sample;
    for (std::size_t i = 0; i < static_cast<std::size_t>(DelphChannels(type)); ++i)
        sample.k[i] = AnyFloat(random);
    sample.Temp = AnyFloat(random);
    return sample;
}

}  // namespace marisonde
