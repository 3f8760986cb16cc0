#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace marisonde {

/// What became of the data that a dead run had left.
struct RecoveryReport {
    std::vector<std::filesystem::path> recovered;  ///< where the files lie now
    /// Files that could not be moved, each with the system's reason. They are untouched.
    struct LeftBehind {
        std::filesystem::path path;
        std::string reason;
    };
    std::vector<LeftBehind> leftBehind;
};

/// Where data go that would be in somebody's way: `best`, made when needed, or, where that cannot take a
/// file, for example on a full disk, `second` on the disk of the file.
struct SafePlaces {
    std::filesystem::path best;
    std::filesystem::path second;
};

/// True for names of data files in the temporary folder: the number of a window and ".raw" or ".dat".
bool IsTemporaryDataName(std::string_view name);

/// Moves the data files of `folder` to a safe place, under the time of their last change and their name:
/// "2026-11-21 06-29-39 0.raw", both files of a window with the same time. Never replaces a file: a name that
/// is taken gets " (2)" and so on. Empty files are deleted; other files stay. Appends to `report`.
void RecoverFiles(const std::filesystem::path& folder, const SafePlaces& places, RecoveryReport& report);
/// The same for these files; one that does not exist is passed over.
void RecoverFiles(const std::vector<std::filesystem::path>& files, const SafePlaces& places,
                  RecoveryReport& report);

}  // namespace marisonde
