#include "app/PreferencesEntry.h"

#include <array>
#include <string_view>
#include <utility>

#include "app/DataWindow.h"
#include "app/LoadStored.h"
#include "common/Numbers.h"
#include "graphs/LivePlot.h"

namespace marisonde {

namespace {

constexpr std::array<std::string_view, 5> kSavedAtOnce{"ConnectOnStartup", "NameFilesOnOpen", "UserHeader",
                                                       "RecallLastCal", "MaxGraphPoints"};

/// A file that is being read is read again: the groups of the other limit would lose points without a word.
void TakeGraphPoints(DataWindow& window, int most) {
    if (std::exchange(window.Plot.MaxGraphPoints, most) == most) return;
    if (window.LoadProgress) StartReload(window);
}

}  // namespace

PreferencesEntry EntryOf(const Preferences& prefs) {
    PreferencesEntry entry;
    entry.ConnectOption = prefs.ConnectOnStartup;
    entry.FileNameOnDetect = prefs.NameFilesOnOpen;
    entry.HeaderText = prefs.UserHeader;
    entry.RecallLastCal = prefs.RecallLastCal;
    entry.MaxGraphPoints = std::to_string(prefs.MaxGraphPoints);
    entry.ORCA = prefs.ORCA;
    return entry;
}

std::string ValidatePreferences(const PreferencesEntry& entry) {
    if (StrictNumber(entry.MaxGraphPoints)) return "";
    return "Please enter a numeric value between " + std::to_string(kLeastGraphPoints) + " and " +
           std::to_string(kMostGraphPoints) + " for the points of a graph.";
}

void TakePreferences(AppContext& app, const PreferencesEntry& entry) {
    Preferences& prefs = app.prefs;
    prefs.ConnectOnStartup = entry.ConnectOption;
    prefs.NameFilesOnOpen = entry.FileNameOnDetect;
    prefs.UserHeader = entry.HeaderText;
    prefs.RecallLastCal = entry.RecallLastCal;
    prefs.MaxGraphPoints = ClampGraphPoints(SafeVal(entry.MaxGraphPoints));
    prefs.ORCA = entry.ORCA;
    for (const std::string_view key : kSavedAtOnce) SavePreference(app.settings, prefs, key);
    for (DataWindow* window : app.windows)
        if (window != nullptr) TakeGraphPoints(*window, prefs.MaxGraphPoints);
}

}  // namespace marisonde
