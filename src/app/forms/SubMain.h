#pragma once

#include "app/CommandLine.h"

namespace marisonde {

/// The program behind its command line: instance, preferences, first window or demonstration, event loop.
/// Needs a QApplication. Returns the exit status.
int SubMain(const CommandLine& line);

}  // namespace marisonde
