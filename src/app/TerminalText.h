#pragma once

#include <QCoroTask>
#include <string>

#include "app/Dialogs.h"

namespace marisonde {

/// Saves the text of a terminal: asks where to, again while the user does not want to replace what exists
/// there, and tells why when it cannot be written. `proposed` is the path to begin with.
QCoro::Task<> SaveTerminalText(Operation& operation, Dialogs& dialogs, std::string text,
                               std::string proposed);

}  // namespace marisonde
