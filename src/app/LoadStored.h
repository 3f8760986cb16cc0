#pragma once

#include <string>

#include "app/FileLoading.h"
#include "app/StoredFile.h"

namespace marisonde {

class DataWindow;

/// Reads a data file into a window's graph while the window lives on: raw ones through its calibration, which
/// must fit; calibrated ones as they are, with their channel names. Ends a load that runs. How it went is
/// told in the status line. The file stays selected whatever part of it was read; one that cannot be opened
/// leaves the window as it was. Without `Running` nothing is done.
void StartLoad(DataWindow& window, StoredFile file);
/// Reads the file that the window shows again, through the calibration of now: the same points of it.
void StartReload(DataWindow& window);

}  // namespace marisonde
