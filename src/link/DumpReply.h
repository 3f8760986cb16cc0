#pragma once

#include "link/InstrumentLink.h"

namespace marisonde {

/// The reply to DUMPCFG, step by step once a tick: waits for the echo, lets the binary receiver run (or the
/// text come in), reads the calibration into the window, and sets GotIniReply. The received image is kept as
/// "temp.bin" in the window's temporary folder.
void HandleDump(InstrumentLink& window);

}  // namespace marisonde
