#pragma once

#include "common/Settings.h"
#include "graphs/GraphLook.h"
#include "graphs/LivePlot.h"

namespace marisonde {

/// The user's defaults for a new graph, section "GraphDefaults".
struct GraphDefaults : GraphLook {
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
/// Gives a window's graph this look, these limits and automatic limits, and the depth unit.
void ApplyGraphDefaults(const GraphDefaults& defaults, LivePlot& plot, Chart2D& chart);

}  // namespace marisonde
