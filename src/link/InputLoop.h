#pragma once

#include <string>
#include <string_view>

#include "link/DataWindowState.h"

namespace marisonde {

class InstrumentLink;

/// Reads the window's port once, logs what came, and handles every complete line of it.
void ProcessInput(InstrumentLink& window, LineScratch& scratch);
/// Files one complete line by its kind: the terminal's queue takes all, the data queue what carries samples.
void AddLineToQueues(InstrumentLink& window, std::string_view line);
/// The text of a message line ("!...") as the user sees it: without the "!", with the instrument's serial.
std::string InstrumentMessageText(std::string_view line, std::string_view serial);

}  // namespace marisonde
