#include "app/ChannelDetails.h"

#include <cmath>
#include <limits>
#include <string_view>

#include "app/DataWindow.h"
#include "app/PlottedChannels.h"
#include "calibration/Sentinel.h"
#include "graphs/PlotReadouts.h"

namespace marisonde {

namespace {

constexpr const char* kNoValue = "---";
constexpr int kDecimals = 5;
constexpr int kDelphDecimals = 4;

struct Limits {
    double least = std::numeric_limits<double>::infinity();
    double most = -std::numeric_limits<double>::infinity();
};

Limits LimitsOf(const ChartGroup& group, int series) {
    Limits limits;
    int left = group.LastPoint();
    for (const double value : group.YData(series)) {
        if (left-- <= 0) break;
        if (!IsValue(value)) continue;
        limits.least = std::min(limits.least, value);
        limits.most = std::max(limits.most, value);
    }
    return limits;
}

std::string LimitText(double value, InstTypeCode model) {
    if (!std::isfinite(value)) return kNoValue;
    // Cut as the readout is, or the newest value could seem to lie outside its limits.
    ReadoutText text;
    text.SetCut(value, IsDelphFamily(model) ? kDelphDecimals : kDecimals);
    return std::string(text.View());
}

void ReadRaw(const DataWindowState& state, InstTypeCode model, std::size_t channel, ChannelDetails& details) {
    const RawSample& raw = state.CurrentRaw;
    const auto text = [&](std::int32_t counts) {
        return state.HasSample ? std::to_string(counts) : std::string(kNoValue);
    };
    if (IsTidalFamily(model)) {
        details.counts = text(channel == 0 ? raw.Sig[0] : raw.Trans);
        if (channel == 0) details.gain = text(raw.Gain[0]);
        return;
    }
    // Most lines of a Corvane carry the signal relative to its reference, and not the two apart.
    const bool apart = IsDelphFamily(model) || raw.Ref[channel] != 0;
    details.counts = text(apart ? raw.Sig[channel] : raw.Snorm[channel]);
    if (apart) details.reference = text(raw.Ref[channel]);
    if (IsCorvaneFamily(model)) details.gain = text(raw.Gain[channel]);
}

}  // namespace

ChannelDetails DetailsOf(const DataWindow& window, const PlottedChannel& channel) {
    const InstTypeCode model = window.Plot.Model();
    const Limits limits = LimitsOf(window.Chart.ChartGroups(channel.group), channel.series);
    ChannelDetails details;
    details.minimum = LimitText(limits.least, model);
    details.maximum = LimitText(limits.most, model);
    ReadRaw(window.Link.State, model, static_cast<std::size_t>(channel.box - FirstDataBox(model)), details);
    return details;
}

}  // namespace marisonde
