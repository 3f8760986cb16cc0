#pragma once

#include <QCoroTask>
#include <functional>
#include <string>
#include <vector>

#include "app/CheckDataFile.h"

namespace marisonde {

/// A new window, shown; nullptr when all are open.
using ShowNewWindow = std::function<DataWindow*()>;

/// Lets the user choose a data file and opens it, with the calibration that it needs, by the rule of
/// OpenFile.
QCoro::Task<> OpenFileCommand(Operation& operation, DataWindow& window, ShowNewWindow newWindow);

/// Opens the file in this window, or in a new one when this one holds something already, or `forceNew`. A new
/// window gets this one's calibration and graph settings. The file is read by an operation of its window.
QCoro::Task<> OpenFile(Operation& operation, DataWindow& window, DataChoice choice, bool forceNew,
                       ShowNewWindow newWindow);

/// Opens what was given by name, as by dropping files on the window. Calibrations come first, so that the
/// data beside them meet the right one.
QCoro::Task<> OpenGivenFiles(Operation& operation, DataWindow& window, std::vector<std::string> paths,
                             ShowNewWindow newWindow);

}  // namespace marisonde
