#pragma once

#include <string>

namespace marisonde {

class DataWindow;
struct AppContext;

/// To be called when the sigma or pure-water parameters, and the calibrations with them, have changed: puts
/// the samples of every open window through them again.
void RecalculateAllWindows(AppContext& app);

/// Puts the samples of a window through its calibration of now, and shows them again: those of a raw file by
/// reading it once more, live ones from the raw log. Those of a calibrated file stay as they are, and so do
/// live ones that were not all recorded; the status line says so. The window lives on meanwhile, and no live
/// sample is lost.
void RecalculateWindow(DataWindow& window);

/// To be called when another form of the values is to be plotted: shows the samples again, those of a
/// calibrated file too, for it holds both forms.
void ReplotWindow(DataWindow& window);

}  // namespace marisonde
