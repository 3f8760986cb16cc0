#pragma once

#include <QString>
#include <filesystem>
#include <vector>

#include "common/Settings.h"

/// Where the program finds and keeps its files. None of these makes a folder.
namespace marisonde {

/// Paths of the system as paths of the standard library, and back. Unlike the library's own conversions these
/// do not throw on names that are not UTF-8.
std::filesystem::path PathFromText(const QString& text);
QString TextFromPath(const std::filesystem::path& path);

/// The folder of the executable.
std::filesystem::path ProgramFolder();

/// The folder of the tables that come with the program ("aStar.csv"): of an installation, beside the program,
/// or of the tree it was built from. Empty when none has them.
std::filesystem::path DataFolder();
/// The first of the folders that holds "aStar.csv"; empty when none does.
std::filesystem::path DataFolderAmong(const std::vector<std::filesystem::path>& candidates);

/// A table that comes with the program: beside it, or else in the data folder.
std::filesystem::path TablePath(const char* name);

/// The temporary folder by rank: setting TempPath of section "App", environment TEMP, TMP, the system's
/// temporary folder, on Windows at last C:\TEMP. Never empty, each folder once; the first is the one to use.
std::vector<std::filesystem::path> TemporaryFolders(const Settings& settings);

/// The user's own folder for data of the program; recovered files go to "recovered" in it.
std::filesystem::path UserDataFolder();
std::filesystem::path RecoveredFolder();

/// The file of the user's settings: the one named by the environment's MARISONDE_SETTINGS, or Marisonde.ini
/// in the folder Marisonde of the user's configuration.
QString SettingsFile();

}  // namespace marisonde
