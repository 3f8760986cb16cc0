#pragma once

#include <QCoroTask>

namespace marisonde {

class DataWindow;
class Operation;

/// Begins new files for what the instrument sends; connects one first if there is none. The files before are
/// closed, which the user may refuse.
QCoro::Task<> NewFileCommand(Operation& operation, DataWindow& window);
/// Asks for the name of files that are recorded already. Cancelled: they stay unnamed.
QCoro::Task<> NameFilesCommand(Operation& operation, DataWindow& window);

}  // namespace marisonde
