#pragma once

#include <array>
#include <cstdint>

#include "common/InstTypes.h"

namespace marisonde {

/// One decoded data line: counts, gains, pressure and housekeeping before calibration. One lives per stream
/// and is reused line by line, so a short record leaves the fields it does not carry as the sample before had
/// them.
struct RawSample {
    std::int32_t Format = 0;  ///< model code found in the line: 3 for "*A", 4 for "*C"
    double Time = 0;  ///< seconds since 1970 (Corvane, Delph) or 1980 (Tidal); 0 when the line has none
    std::uint8_t Hundredths = 0;  ///< hundredths of a second
    double DayFraction = 0;       ///< elapsed time in days, of records with a running count
    std::int32_t ElapsedCount = 0;
    std::int16_t Error = 0;
    float Pressure = 0;  ///< counts
    float Temp = 0;      ///< degrees C; the raw byte for "*V"
    float Voltage = 0;   ///< volts
    float VSubB = 0;
    float VBack = 0;
    std::array<std::int16_t, kChannelSlots> Gain{};
    std::array<std::int32_t, kChannelSlots> Sig{};
    std::array<std::int16_t, kChannelSlots> SigOff{};
    std::array<std::int32_t, kChannelSlots> Ref{};
    std::array<std::int16_t, kChannelSlots> RefOff{};
    std::array<std::int32_t, kChannelSlots> Snorm{};
    std::array<float, kChannelSlots> SnormF{};
    std::array<std::int16_t, kChannelSlots> Bgnd{};
    std::int32_t Trans = 0;  ///< Tidal transmission counts
    std::int16_t TBgnd = 0;
    float LEDDrive = 0;
    float Temp2 = 0;
    float Temp3 = 0;
    double ElapsedHundredths = 0;  ///< leading time value of the records that have one, x 100

    bool operator==(const RawSample&) const = default;
};

/// The "*H" line: supply and four words for each of 8 slots, kept by position. The first three words are 0 to
/// 65535, the fourth is -128 to 127.
struct HousekeepingBlock {
    double Time = 0;
    float VoltageA = 0;  ///< volts
    float VoltageB = 0;  ///< volts
    float Status3 = 0;
    float Status4 = 0;
    std::array<std::array<std::int32_t, 4>, 8> Words{};

    bool operator==(const HousekeepingBlock&) const = default;
};

}  // namespace marisonde
