#pragma once

#include <QCoroTask>
#include <cstddef>
#include <functional>

#include "app/BatchConversion.h"
#include "common/Clock.h"

namespace marisonde {

class Dialogs;
class Operation;

/// How far a batch is: which of the selected files, and how far in it.
struct BatchProgress {
    std::size_t file = 0;
    std::size_t files = 0;
    ReadProgress within;
};

/// What a batch needs of the form that runs it. The functions may be empty.
struct BatchHost {
    const Clock& clock;
    Dialogs& dialogs;
    std::function<void(const BatchProgress&)> progress;
    /// A file has ended: the form unselects it.
    std::function<void(std::size_t file, const ConversionResult&)> fileDone;
    /// The user wants no further file; the one at work is finished.
    std::function<bool()> stop;
};

/// Runs the choice of the form that processes files: says what stands against it, asks before files are
/// replaced, and converts one file after the other while the rest of the program goes on. A failed file is
/// reported and the others go on. True: every file that was selected has been tried. All references outlive
/// the task.
QCoro::Task<bool> ProcessFiles(Operation& operation, ProcessFilesChoice choice, HeaderStamp stamp,
                               const SigmaParams& sigma, const PureWaterParams& water, const BatchHost& host);

}  // namespace marisonde
