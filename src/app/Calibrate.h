#pragma once

#include <QCoroTask>
#include <string>

namespace marisonde {

class DataWindow;
class Operation;

/// Why the instrument of this window cannot be calibrated now; empty when it can.
std::string NoCalibratingText(const DataWindow& window);

/// Begins to calibrate the instrument of a window, after the questions that this calls for: a Delph takes
/// over a calibration file, every other model is measured in the workbench, for which the data files of the
/// window are closed. Only while NoCalibratingText is empty.
QCoro::Task<> CalibrateCommand(Operation& operation, DataWindow& window);

}  // namespace marisonde
