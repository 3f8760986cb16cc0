#pragma once

#include <string>
#include <vector>

#include "calibration/CalibrationDataClass.h"
#include "common/InstTypes.h"
#include "graphs/Colors.h"
#include "graphs/LivePlot.h"

namespace marisonde {

/// One channel that the window shows: its readout, its curve, and how both are named and coloured.
struct PlottedChannel {
    int number = 0;  ///< from 0 in the order of the readouts
    int box = 0;     ///< index of its DataBox
    int group = 1;   ///< chart group of its series
    int series = 0;  ///< from 1
    std::string name;
    std::string unit;  ///< empty when the calibration gives none
    PackedColor color = 0;
    std::string marker;      ///< on the curve, as GraphLook names it
    bool on = true;          ///< drawn when the graph is set up
    bool calibrated = true;  ///< false: the calibration says nothing of it, so its values mean nothing
};

/// The channels of a model in the order of their readouts, in their automatic colours; none for a model that
/// has no curves.
std::vector<PlottedChannel> PlottedChannels(InstTypeCode model, const CalibrationDataClass& cal);
/// The same with the look that the user has given the graph.
std::vector<PlottedChannel> PlottedChannels(const LivePlot& plot, const CalibrationDataClass& cal);

}  // namespace marisonde
