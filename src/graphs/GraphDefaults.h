#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "common/Settings.h"
#include "graphs/Colors.h"
#include "graphs/LivePlot.h"

namespace marisonde {

inline constexpr int kStyledChannels = 8;
/// Stands in settings for a channel colour that follows the wavelength.
inline constexpr PackedColor kAutomaticColor = 0x8000000F;

/// The look of one channel's curve.
struct ChannelStyle {
    bool on = true;
    PackedColor color = kAutomaticColor;
    std::string marker = "Circle";  ///< "Circle", "Square", "Triangle" or "Cross"; anything else is no marker

    bool operator==(const ChannelStyle&) const = default;
};

/// The user's defaults for a new graph, section "GraphDefaults".
struct GraphDefaults {
    bool GridOn = true;
    std::int32_t GridStyle = 0;  ///< 0, 1 or 2
    PackedColor GraphColor = 0xFFFFFF;
    PackedColor GraphExtColor = 0xFFFFFF;
    PackedColor GridColor = 0;
    std::int32_t LineSize = 1;
    std::int32_t MarkerSize = 1;
    std::array<ChannelStyle, kStyledChannels> channels;
    bool AutoDataMin = true, AutoDataMax = true, AutoDataMin2 = true, AutoDataMax2 = true;
    bool AutoDepthMin = true, AutoDepthMax = true, AutoTimeMin = true, AutoTimeMax = true;
    double DataMin = 0, DataMax = 0.01, DataMin2 = 0, DataMax2 = 0.1;
    double DepthMin = 0, DepthMax = 100, TimeMin = 0, TimeMax = 100;
    bool Units = true;  ///< depth in metres

    bool operator==(const GraphDefaults&) const = default;
};

/// Reads every key; missing ones get their default, bad numbers read as 0.
GraphDefaults LoadGraphDefaults(const Settings& settings);
/// Writes every key.
void SaveGraphDefaults(Settings& settings, const GraphDefaults& defaults);
/// Sets limits, automatic limits, colour flags and the depth unit of a window's graph. The look of lines and
/// grid is the view's.
void ApplyGraphDefaults(const GraphDefaults& defaults, LivePlot& plot, Chart2D& chart);

}  // namespace marisonde
