#pragma once

#include "common/InstTypes.h"

namespace marisonde {

/// Steps of the electronic gain; index 0 of an array by step is not used.
inline constexpr int kFirstGain = 1;
inline constexpr int kLastGain = 5;

/// What walks all channels leaves the last slot alone.
inline constexpr int kWalkedChannels = 12;

/// Whether an index from 0 lies within the arrays by channel.
inline bool IsChannel(int ch) {
    return ch >= 0 && ch < kChannelSlots;
}

}  // namespace marisonde
