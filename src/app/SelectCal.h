#pragma once

#include <QCoroTask>
#include <string>

namespace marisonde {

class DataWindow;
class Operation;

/// Lets the user choose a calibration file for a window, with the questions that what it holds calls for.
/// False: cancelled, or the file was not usable; the calibration is as it was.
QCoro::Task<bool> SelectCalCommand(Operation& operation, DataWindow& window);
/// The same with a file that is chosen already. A raw file on the graph is read again through it.
QCoro::Task<bool> SelectCalFile(Operation& operation, DataWindow& window, std::string path);

}  // namespace marisonde
