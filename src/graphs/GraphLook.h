#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "graphs/Colors.h"

namespace marisonde {

inline constexpr int kStyledChannels = 8;
/// Stands in settings for a channel colour that follows the wavelength.
inline constexpr PackedColor kAutomaticColor = 0x8000000F;
/// The colours of a graph on which nobody has decided: a white plot with black grid lines on a light desktop.
inline constexpr PackedColor kPaperColor = 0xFFFFFF;
inline constexpr PackedColor kInkColor = 0;

/// The look of one channel's curve.
struct ChannelStyle {
    bool on = true;
    PackedColor color = kAutomaticColor;
    std::string marker = "Circle";  ///< "Circle", "Square", "Triangle" or "Cross"; anything else is no marker

    bool operator==(const ChannelStyle&) const = default;
};

/// How a graph is drawn. Channels count from 0 in the order in which their window shows them.
struct GraphLook {
    bool GridOn = true;
    std::int32_t GridStyle = 0;               ///< 0, 1 or 2
    PackedColor GraphColor = kPaperColor;     ///< inside the plot area
    PackedColor GraphExtColor = kPaperColor;  ///< around it
    PackedColor GridColor = kInkColor;
    std::int32_t LineSize = 1;
    std::int32_t MarkerSize = 1;
    std::array<ChannelStyle, kStyledChannels> channels;

    bool operator==(const GraphLook&) const = default;
};

}  // namespace marisonde
