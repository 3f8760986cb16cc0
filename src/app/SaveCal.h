#pragma once

#include <QCoroTask>

namespace marisonde {

class DataWindow;
class Operation;

/// Saves the calibration of a window under a name that the user gives: its own, or its serial number in the
/// last folder of calibrations. False: cancelled, or it could not be saved, which the user has been told.
QCoro::Task<bool> SaveCalFileAs(Operation& operation, DataWindow& window);
/// Asks before edits of a window's calibration are lost. False: cancelled, or they could not be saved.
QCoro::Task<bool> SaveCalIfChanged(Operation& operation, DataWindow& window);

}  // namespace marisonde
