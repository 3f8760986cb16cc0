#pragma once

#include <string>

namespace marisonde {

class DataWindow;
struct PlottedChannel;

/// What the opened row of a channel tells beside its current value. A text is empty where the model has no
/// such thing, and "---" while there is no value yet.
struct ChannelDetails {
    std::string minimum;  ///< of the points in the graph
    std::string maximum;
    std::string counts;     ///< signal as the instrument sent it last
    std::string reference;  ///< reference counts beside it; empty when the signal is relative to it already
    std::string gain;       ///< gain step of the newest sample
};

/// Looks at every point in the graph: for rows that are open, and not at every sample.
ChannelDetails DetailsOf(const DataWindow& window, const PlottedChannel& channel);

}  // namespace marisonde
