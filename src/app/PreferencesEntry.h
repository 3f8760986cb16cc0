#pragma once

#include <cstdint>
#include <string>

#include "app/AppContext.h"

namespace marisonde {

/// What stands in the preferences dialog, as the user typed it.
struct PreferencesEntry {
    std::int32_t ConnectOption = 0;  ///< as Preferences::ConnectOnStartup
    bool FileNameOnDetect = false;
    std::string HeaderText;  ///< one line
    bool RecallLastCal = true;
    std::string MaxGraphPoints;
    bool ORCA = false;
};

PreferencesEntry EntryOf(const Preferences& prefs);
/// The text for the user when the points of a graph are no number; empty when all is right.
std::string ValidatePreferences(const PreferencesEntry& entry);
/// Keeps the entry. What changes the settings is saved at once, ORCA with the end of the program; the graphs
/// of all windows take the new limit without losing points.
void TakePreferences(AppContext& app, const PreferencesEntry& entry);

}  // namespace marisonde
