#pragma once

#include "app/DataWindow.h"

namespace marisonde {

/// Gives the graph of a new window the view it had when the program last ended, and the user's defaults.
void LoadGraphDefaults(DataWindow& window);
/// Gives the window the graph of another: view, scale, look, and which channels are drawn, as far as both
/// windows have them. Colours that follow the wavelength are those of the window's own channels.
void CopyGraphSettings(const DataWindow& from, DataWindow& to);

/// Change the view, and keep it for the next start. False: it is in force already, nothing was done.
bool VsTimeCommand(DataWindow& window);
bool VsDepthCommand(DataWindow& window);

/// Why a window has no spectrum to show; empty when it has.
std::string NoSpectrumText(InstTypeCode model);

}  // namespace marisonde
