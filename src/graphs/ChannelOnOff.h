#pragma once

#include "common/InstTypes.h"
#include "graphs/Chart2D.h"

namespace marisonde {

/// Draws the curves of a channel or keeps them undrawn; the points stay. Channels count from 0 in the order
/// of the readouts. The scattering of a Tidal goes together with its other form, which stands in the series
/// behind it. A channel that the model does not have changes nothing.
void ChannelOnOffCommand(Chart2D& chart, InstTypeCode model, int channel, bool on);
/// Whether the channel's own curve is drawn.
bool ChannelIsOn(const Chart2D& chart, InstTypeCode model, int channel);

}  // namespace marisonde
