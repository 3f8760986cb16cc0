#pragma once

#include <string>

#include "graphs/Chart2D.h"

namespace marisonde {

/// The readout of a place, such as "12.3 minutes, 0.00512 /m": the value of each visible axis with three
/// digits and the unit in its title. Empty when the place lies outside the limits of X or Y.
std::string CoordinateText(const Chart2D& chart, const ChartPoint& point);

}  // namespace marisonde
