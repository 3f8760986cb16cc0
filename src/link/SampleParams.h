#pragma once

#include <cstdint>

namespace marisonde {

/// The sampling scheme of an instrument as it told it last. What a reply leaves out keeps its old value.
struct SampleParams {
    float SamplePeriod = 0;       ///< seconds
    std::int32_t StartDelay = 0;  ///< seconds
    bool SleepOnFull = false;
    bool PowerFlag = false;        ///< starts when power is applied
    std::int32_t WarmupTime = 0;   ///< seconds
    std::int32_t BurstLength = 0;  ///< samples or seconds, by model
    float BurstCycle = 0;
    float TotalDuration = 0;
    bool BurstMode = false;
    bool ShutterEnabled = false;
    float ShutterCloseTime = 0;     ///< seconds
    bool ShutterDirection = false;  ///< false: counter-clockwise
    bool ShutterAutoOpen = false;
    bool DataFormatHex = false;

    bool operator==(const SampleParams&) const = default;
};

}  // namespace marisonde
