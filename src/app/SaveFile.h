#pragma once

#include <QCoroTask>

namespace marisonde {

class DataWindow;
class Operation;

/// Saves the data of a window under names that the user gives: recorded ones by copying, calibrated ones that
/// were not recorded by converting the raw ones. False: cancelled, or not everything could be saved, which
/// the user has been told.
QCoro::Task<bool> SaveAsMenuCommand(Operation& operation, DataWindow& window);
/// Saves what a window has recorded under the names it has, or asks for them. Recording goes on, and is taken
/// up again where a full disk had ended it. Where somebody has removed the temporary files it begins anew,
/// which the status line tells. False as above.
QCoro::Task<bool> SaveFileMenuCommand(Operation& operation, DataWindow& window);
/// Waits while data of the window are being saved.
QCoro::Task<> SaveHasEnded(Operation& operation, DataWindow& window);

}  // namespace marisonde
