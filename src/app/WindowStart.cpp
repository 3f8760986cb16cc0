#include "app/WindowStart.h"

#include <filesystem>
#include <system_error>

#include "app/DataWindow.h"
#include "common/Version.h"

namespace marisonde {

void LoadRecalledCalibration(DataWindow& window) {
    const Preferences& prefs = window.App().prefs;
    if (!prefs.RecallLastCal || prefs.CalFile.empty()) return;
    const std::string path = prefs.CalFile;
    std::error_code missing;
    if (std::filesystem::exists(path, missing)) window.LoadCalIntoWindow(path);
}

std::vector<StartNotice> StartNotices(const StartFacts& facts, const Settings& settings) {
    std::vector<StartNotice> notices;
    if (facts.newUser) notices.push_back({NewUserNotice()});
    for (const std::string& problem : facts.problems) notices.push_back({problem});
    if (facts.missingSigmaFiles > 0)
        notices.push_back(
            {"Files needed for sigma correction were not found.  Please check the parameter settings.",
             AfterNotice::CheckSigmaParams});
    const std::string version(kVersion);
    if (facts.offerReleaseNotes && !FlagFromText(settings.GetSetting("App", version)))
        notices.push_back({"This appears to be the first time you have run Marisonde version " + version +
                               " on this computer.  Would you like to view the release notes (will open a "
                               "browser window)?",
                           AfterNotice::OfferReleaseNotes});
    return notices;
}

void NoteVersionSeen(Settings& settings) {
    const std::string version(kVersion);
    settings.SaveSetting("App", "Version", version);
    settings.SaveSetting("App", version, "TRUE");
}

}  // namespace marisonde
