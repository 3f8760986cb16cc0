#pragma once

#include <QCoroTask>

namespace marisonde {

class DataWindow;
class Operation;

/// Lets the user choose a calibration file for a window, with the questions that what it holds calls for.
/// False: cancelled, or the file was not usable; the calibration is as it was.
QCoro::Task<bool> SelectCalCommand(Operation& operation, DataWindow& window);

}  // namespace marisonde
