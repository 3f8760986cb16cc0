#include "graphs/ChannelOnOff.h"

#include "graphs/ChartBatch.h"
#include "graphs/PlotReadouts.h"

namespace marisonde {

namespace {

/// Where a channel's own curve stands: the attenuation side of a Tidal has the second group, from series 2.
struct CurvePlace {
    int group;
    int series;
};
CurvePlace PlaceOf(InstTypeCode model, int channel) {
    if (IsTidalFamily(model) && channel > 0) return {2, channel + 1};
    return {1, channel + 1};
}

bool HasChannel(InstTypeCode model, int channel) {
    return channel >= 0 && channel < DataBoxCount(model);
}

}  // namespace

void ChannelOnOffCommand(Chart2D& chart, InstTypeCode model, int channel, bool on) {
    if (!HasChannel(model, channel)) return;
    const ChartBatch batch(chart);
    const SeriesDisplay display = on ? SeriesDisplay::Drawn : SeriesDisplay::Kept;
    const CurvePlace place = PlaceOf(model, channel);
    chart.ChartGroups(place.group).SetDisplay(place.series, display);
    if (IsTidalFamily(model) && channel == 0) chart.ChartGroups(1).SetDisplay(2, display);
}

bool ChannelIsOn(const Chart2D& chart, InstTypeCode model, int channel) {
    if (!HasChannel(model, channel)) return false;
    const CurvePlace place = PlaceOf(model, channel);
    return chart.ChartGroups(place.group).Display(place.series) == SeriesDisplay::Drawn;
}

}  // namespace marisonde
