#pragma once

#include <string>

namespace marisonde {

class DataWindow;

/// What a window shows: its files, else what it is connected to, else "No connection".
std::string WindowSubject(const DataWindow& window);
/// The caption of the data window, and that of its terminal.
std::string WindowTitle(const DataWindow& window);
std::string TerminalTitle(const DataWindow& window);
/// A caption without the program's name at its end.
std::string CutCaption(const std::string& caption);

}  // namespace marisonde
