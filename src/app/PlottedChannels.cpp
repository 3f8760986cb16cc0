#include "app/PlottedChannels.h"

#include <algorithm>

#include "common/ConversionUtils.h"
#include "graphs/PlotReadouts.h"

namespace marisonde {

namespace {

constexpr const char* kPerMeter = "1/m";

/// Where the curve of a readout lies: the attenuation side of a Tidal is drawn against the second axis.
PlottedChannel PlaceOf(InstTypeCode model, int box) {
    PlottedChannel channel;
    channel.box = box;
    const bool beam = IsTidalFamily(model) && box > 0;
    channel.group = beam ? 2 : 1;
    channel.series = IsDelphFamily(model) || beam ? box + (beam ? 1 : 0) : box + 1;
    return channel;
}

/// A Delph may have more channels than its lines and its calibration carry; those give no attenuation to
/// show. Of a calibrated file only the names are known.
bool HasCalibration(InstTypeCode model, const CalibrationDataClass& cal, int index) {
    if (!IsDelphFamily(model) || cal.Attenuation(index).KL != 0) return true;
    return cal.SourceFile().empty() && !cal.Channel(index).name.empty();
}

}  // namespace

std::vector<PlottedChannel> PlottedChannels(InstTypeCode model, const CalibrationDataClass& cal) {
    std::vector<PlottedChannel> channels;
    std::vector<double> wavelengths;
    const int first = FirstDataBox(model);
    for (int i = 0; i < DataBoxCount(model); ++i) {
        PlottedChannel channel = PlaceOf(model, first + i);
        channel.number = i;
        channel.name = cal.ChannelName(i);
        const bool fluorescence = IsCorvaneFamily(model) && i >= ChannelsShown(model);
        channel.unit = fluorescence ? "" : kPerMeter;
        wavelengths.push_back(WavelengthOfChannel(FirstNumber(channel.name), cal.Channel(i).lambda));
        channel.calibrated = HasCalibration(model, cal, i);
        channels.push_back(std::move(channel));
    }
    for (std::size_t i = 0; i < channels.size(); ++i)
        channels[i].color = ColorForChannel(wavelengths, static_cast<int>(i));
    return channels;
}

std::vector<PlottedChannel> PlottedChannels(const LivePlot& plot, const CalibrationDataClass& cal) {
    std::vector<PlottedChannel> channels = PlottedChannels(plot.Model(), cal);
    for (PlottedChannel& channel : channels) {
        if (channel.number >= kStyledChannels) break;
        const ChannelStyle& style = plot.Look.channels.at(static_cast<std::size_t>(channel.number));
        channel.on = style.on;
        channel.marker = style.marker;
        if (style.color != kAutomaticColor && !plot.AutoColor(channel.number)) channel.color = style.color;
    }
    return channels;
}

}  // namespace marisonde
