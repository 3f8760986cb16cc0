#pragma once

#include <QCoroTask>

namespace marisonde {

class DataWindow;
class Operation;

/// How long an instrument may take to confirm that it goes to sleep.
inline constexpr int kSleepConfirmSeconds = 3;

/// Closes the data files of a window, asking first when data would be lost, and clears its
/// graph. False: the user wants to go on.
QCoro::Task<bool> CloseDataFiles(Operation& operation, DataWindow& window, bool ask);
/// Closes the connection, asking whether to put the instrument to sleep first. False: stay connected.
QCoro::Task<bool> DisconnectCommand(Operation& operation, DataWindow& window);
/// The one gate of all closing of a window: files, calibration, then connection. False: the window stays
/// open.
QCoro::Task<bool> PrepToCloseForm(Operation& operation, DataWindow& window);

}  // namespace marisonde
