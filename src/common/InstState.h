#pragma once

#include <cstdint>

namespace marisonde {

/// What the instrument of a window is doing, as far as its own words and data tell.
enum class InstStateCode : std::int32_t {
    Unknown = 0,
    NoConnection = 1,  ///< no connection, or the answer to ID is awaited
    Starting = 2,
    Sampling = 3,
    Stopped = 4,
    Sleeping = 5,
    Waking = 6,
    Downloading = 7,
    Pending = 8,
    StopSent = 9,
    StartSent = 10,
    NoData = 11,
    OpeningShutter = 12,
    ClosingShutter = 13,
    Deleting = 14,
};

}  // namespace marisonde
