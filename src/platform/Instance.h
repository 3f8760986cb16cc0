#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "common/Settings.h"
#include "platform/Recovery.h"

class QLockFile;

namespace marisonde {

/// Where an Instance works.
struct InstancePlaces {
    std::vector<std::filesystem::path>
        temporaryFolders;             ///< at least one; the first is used, all are searched
    std::filesystem::path recovered;  ///< for what dead runs left
};

/// The places of this user on this computer.
InstancePlaces UsualPlaces(const Settings& settings);

/// This running copy of the program. Its temporary files lie in a folder of its own, so that two copies do
/// not meet although each names its files by window number alone ("0.raw"):
///
///     <temporary folder>/Marisonde-<user>/<instance number>/      the folder
///     <temporary folder>/Marisonde-<user>/<instance number>.lock  held while the copy runs
///
/// A folder whose lock nobody holds belongs to a dead run. Its data files are moved to safety before anything
/// can replace them; its other files stay (a calibration fetched from an instrument is loaded again by its
/// path).
class Instance {
  public:
    /// Recovers what dead runs left, then takes a number: 1, or with an earlier copy running (PrevInstance)
    /// the stored `Instance` plus 1, or the next one that is free. Saves it as `Instance` of section "App".
    Instance(const InstancePlaces& places, Settings& settings);
    /// Gives the number free. The folder goes when it is empty.
    ~Instance();
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    [[nodiscard]] int Number() const { return number_; }
    [[nodiscard]] bool PrevInstance() const { return prevInstance_; }
    /// The folder for temporary files. Made already, unless Problem tells why not.
    [[nodiscard]] const std::filesystem::path& Folder() const { return folder_; }
    [[nodiscard]] const RecoveryReport& Recovered() const { return recovered_; }
    /// For data of this run that would be in the way of others.
    [[nodiscard]] SafePlaces Safe() const { return {recoveredFolder_, root_ / "recovered"}; }
    /// Why there is no folder for temporary files; empty when all is well.
    [[nodiscard]] const std::string& Problem() const { return problem_; }

  private:
    void RecoverDead(const std::filesystem::path& root);
    bool Take(int number);
    void NextNumber(int first);

    std::filesystem::path root_;
    std::filesystem::path recoveredFolder_;
    std::filesystem::path folder_;
    std::unique_ptr<QLockFile> lock_;
    RecoveryReport recovered_;
    std::string problem_;
    int number_ = 1;
    bool prevInstance_ = false;
};

}  // namespace marisonde
