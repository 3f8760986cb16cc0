#pragma once

#include <QCoroTask>
#include <optional>
#include <string>

#include "app/StoredFile.h"
#include "calibration/CalibrationDataClass.h"

namespace marisonde {

class DataWindow;
class Operation;

/// A data file that can be opened, and the calibration to open it with.
struct DataChoice {
    StoredFile file;
    std::string calFile;  ///< empty: the window's own calibration
};

/// Finds out what a file holds and whether the calibration of the window fits; asks for another one where it
/// does not. nullopt: it cannot be opened in that way, which the user has been told, or the user gave up.
QCoro::Task<std::optional<DataChoice>> CheckDataFile(Operation& operation, DataWindow& window,
                                                     std::string path);

/// A calibration chosen by the user, from the folder used last, which is kept. Empty: cancelled. One that
/// is not there is told and counts as cancelled.
QCoro::Task<std::string> ChooseCalFile(Operation& operation, DataWindow& window);

}  // namespace marisonde
