#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/Settings.h"

namespace marisonde {

/// The per-user settings of the application; those of sigma, pure water and graph defaults live with their
/// models.
struct Preferences {
    std::string Path;                   ///< the program's folder as last run; empty means a new user
    std::int32_t ConnectOnStartup = 0;  ///< 0 no, 1 restore the previous connection, 2 search
    bool NameFilesOnOpen = false;
    std::string UserHeader;  ///< text for the [UserHeader] of data files
    bool RecallLastCal = true;
    std::string SavePath;  ///< last folders, with a closing separator
    std::string OpenPath;
    std::string OpenCalPath;
    std::string CalFile;  ///< last calibration file
    bool ORCA = false;
    std::int32_t MaxGraphPoints = 50000;  ///< points a graph holds, kLeastGraphPoints to kMostGraphPoints
    double OrcaX = 2.7;
    double OrcaCThreshold = 0.02;
    double OrcaInherentC = 0.2;
    bool OrcaVertical = false;
    std::int32_t Port = 0;  ///< 0: none stored
    std::int32_t Baud = 9600;
    bool LoadCal = true;
    bool Sigma = true;  ///< last state of the view options: sigma correction, view against time
    bool VsTime = false;
};

/// Reads every row; missing ones get their defaults, a bad number reads as 0. The three folders default to
/// `programFolder`. True when the user is new (no `Path` stored): it is stored now.
bool LoadPreferences(Settings& settings, std::string_view programFolder, Preferences& prefs);
/// Writes every row but `Path`.
void SavePreferences(Settings& settings, const Preferences& prefs);
/// Writes the row of that key of section "App" alone.
void SavePreference(Settings& settings, const Preferences& prefs, std::string_view key);
/// The notice for a new user.
std::string NewUserNotice();
/// Held to kLeastGraphPoints..kMostGraphPoints, as the preferences dialog does.
std::int32_t ClampGraphPoints(double typed);

/// Truth of a stored flag: "TRUE" in any case, or a number other than 0.
bool FlagFromText(std::string_view text);

}  // namespace marisonde
