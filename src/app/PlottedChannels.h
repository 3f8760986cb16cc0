#pragma once

#include <string>
#include <vector>

#include "calibration/CalibrationDataClass.h"
#include "common/InstTypes.h"
#include "graphs/Colors.h"

namespace marisonde {

/// One channel that the window shows: its readout, its curve, and how both are named and coloured.
struct PlottedChannel {
    int box = 0;     ///< index of its DataBox
    int group = 1;   ///< chart group of its series
    int series = 0;  ///< from 1
    std::string name;
    std::string unit;  ///< empty when the calibration gives none
    PackedColor color = 0;
    bool calibrated = true;  ///< false: the calibration says nothing of it, so its values mean nothing
};

/// The channels of a model in the order of their readouts; none for a model that has no curves.
std::vector<PlottedChannel> PlottedChannels(InstTypeCode model, const CalibrationDataClass& cal);

}  // namespace marisonde
