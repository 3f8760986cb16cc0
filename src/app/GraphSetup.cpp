#include "app/GraphSetup.h"

#include <algorithm>

#include "app/PlottedChannels.h"
#include "graphs/ChartBatch.h"
#include "graphs/GraphDefaults.h"

namespace marisonde {

namespace {

/// Whether a channel is drawn is the window's own affair where the calibration says nothing of it.
void CopyDisplay(const DataWindow& from, DataWindow& to) {
    const auto theirs = PlottedChannels(from.Plot, from.Link.CalData);
    for (const PlottedChannel& channel : PlottedChannels(to.Plot, to.Link.CalData)) {
        const auto other = std::find_if(theirs.begin(), theirs.end(), [&](const PlottedChannel& c) {
            return c.number == channel.number && c.calibrated && channel.calibrated;
        });
        if (other == theirs.end()) continue;
        const SeriesDisplay display = from.Chart.ChartGroups(other->group).Display(other->series);
        to.Chart.ChartGroups(channel.group).SetDisplay(channel.series, display);
    }
}

}  // namespace

void LoadGraphDefaults(DataWindow& window) {
    const ChartBatch batch(window.Chart);
    if (window.App().prefs.VsTime)
        window.Plot.VsTimeCommand();
    else
        window.Plot.VsDepthCommand();
    ApplyGraphDefaults(LoadGraphDefaults(window.App().settings), window.Plot, window.Chart);
}

void CopyGraphSettings(const DataWindow& from, DataWindow& to) {
    const ChartBatch batch(to.Chart);
    to.Plot.CopyGraphSettings(from.Plot);
    CopyDisplay(from, to);
    if (to.OnInstrumentChanged) to.OnInstrumentChanged();
}

bool VsTimeCommand(DataWindow& window) {
    if (!window.Plot.VsTimeCommand()) return false;
    window.App().prefs.VsTime = true;
    return true;
}

bool VsDepthCommand(DataWindow& window) {
    if (!window.Plot.VsDepthCommand()) return false;
    window.App().prefs.VsTime = false;
    return true;
}

std::string NoSpectrumText(InstTypeCode model) {
    return IsCorvaneFamily(model) ? "" : "No spectral data available to display.";
}

}  // namespace marisonde
