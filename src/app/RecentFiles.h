#pragma once

#include <string>
#include <vector>

#include "common/Settings.h"

namespace marisonde {

inline constexpr int kRecentFiles = 8;

/// The data files opened last, the newest first; at most kRecentFiles.
std::vector<std::string> RecentFiles(const Settings& settings);
/// Puts a file to the front of the list.
void NoteRecentFile(Settings& settings, const std::string& path);

}  // namespace marisonde
