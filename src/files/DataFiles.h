#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "calibration/CalibratedSample.h"
#include "common/Clock.h"
#include "common/OutputFile.h"

namespace marisonde {

enum class DataFileKind { Raw, Dat };
inline constexpr int kDataFileKinds = 2;

/// Where the data of one window lie. A path is empty while there is no such file.
struct DataFileState {
    std::filesystem::path rawFinal;  ///< empty until the user has named it
    std::filesystem::path rawTemporary;
    std::filesystem::path datFinal;
    std::filesystem::path datTemporary;
    bool stillToBeNamed = false;
};

/// What went wrong with a data file, for the user: which file, where its data lie now, and the system's
/// reason.
struct DataFileTrouble {
    DataFileKind kind = DataFileKind::Raw;
    std::filesystem::path name;       ///< the final path, or the temporary one while unnamed
    std::filesystem::path temporary;  ///< what had been written stays readable here
    FileError error;
};

/// What OpenDataFiles is to make. A file without a header text is not wanted; a header is never empty.
struct DataFilesRequest {
    std::filesystem::path temporaryFolder;
    std::filesystem::path
        basePath;  ///< the user's name for the files, with or without extension; may be empty
    std::string rawHeader;
    std::string datHeader;
};

/// What a copy that is begun will have of a file.
struct CopyMark {
    int recording = 0;        ///< counts the files that a window has begun
    std::uint64_t taken = 0;  ///< bytes of data
};

/// Folder, window number, extension: "/tmp/0.raw". Windows never share a file, for the number is in the name.
std::filesystem::path TemporaryDataPath(const std::filesystem::path& folder, int window, DataFileKind kind);
/// The user's name with the extension of the kind in place of its own.
std::filesystem::path FinalDataPath(const std::filesystem::path& basePath, DataFileKind kind);

/// The raw and the calibrated file of one window. Everything is written to temporary files first and reaches
/// the user's place by copying. Asks the user nothing: questions and messages are the caller's.
class DataFiles {
  public:
    using MakeFile = std::function<std::unique_ptr<OutputFile>()>;
    /// How long data may wait in memory. With a tick of 50 ms this stays well below a second.
    static constexpr Millis kFlushInterval{500};

    explicit DataFiles(
        int window, MakeFile makeFile = [] { return std::make_unique<DiskFile>(); });

    /// Closes what is open (deleting its temporary files) and opens the wanted files, each beginning with its
    /// header. A file that fails stays off while the other goes on. Returns the texts for the user, empty
    /// when all went well: "Error opening PATH: REASON."
    std::vector<std::string> OpenDataFiles(const DataFilesRequest& request);
    /// Closes the files, deletes the temporary ones unless they are to be kept, and clears the paths. Returns
    /// the texts for the user: "Error closing files: REASON".
    std::vector<std::string> CloseDataFiles(bool keepTemporary);
    /// Moves the temporary files, both or none; false when it could not.
    using MoveFiles = std::function<bool(const std::vector<std::filesystem::path>&)>;
    /// Closes the files, has the temporary ones moved, and clears the paths. When they cannot be moved the
    /// files stay where they are, unsaved and off, as after an error.
    bool SetAside(const MoveFiles& move);

    /// Adds a chunk to the raw log just as it came. Does nothing while the file is off. `now` is
    /// Clock::Steady. An error is returned once; from then on the file is off and keeps what it has.
    std::optional<DataFileTrouble> WriteRaw(std::string_view chunk, Millis now);
    /// Adds a sample to the calibrated file, in the same way.
    std::optional<DataFileTrouble> WriteSample(const CalibratedSample& sample, InstTypeCode type,
                                               bool writeBetaColumns, Millis now);
    /// To be called at every tick: hands data to the system once they have waited for kFlushInterval.
    std::vector<DataFileTrouble> FlushIfDue(Millis now);

    /// Hands everything to the system now.
    std::optional<DataFileTrouble> FlushNow(DataFileKind kind);
    /// Goes on in a file that an error has turned off, on a line of its own. Error 0: it takes data again.
    FileError OpenForAppending(DataFileKind kind);
    /// Somebody has removed the temporary file: what it held and was not saved is lost.
    [[nodiscard]] bool HasVanished(DataFileKind kind) const;
    /// Begins a file that has vanished anew. Both files are to be named again, for what was saved under their
    /// names is all that is left. Error 0: it takes data again.
    FileError BeginAnew(DataFileKind kind, std::string_view header);

    /// Copies the temporary file to `destination`, replacing what is there only once the copy is complete,
    /// and takes it as the final path. Writing goes on in the temporary file. On failure nothing has changed.
    std::optional<DataFileTrouble> SaveCopy(DataFileKind kind, const std::filesystem::path& destination);
    /// To be taken when a copy is begun that is made in other ways than by SaveCopy.
    [[nodiscard]] CopyMark MarkForCopy(DataFileKind kind) const { return {recording_, At(kind).taken}; }
    /// What SaveCopy does with the end of a copy, of a file that was flushed when the mark was taken. A copy
    /// of files that have been closed meanwhile names no others.
    std::optional<DataFileTrouble> NoteCopy(DataFileKind kind, const std::filesystem::path& destination,
                                            const CopyMark& mark, const FileError& error);
    /// The user has given the files a name but nothing is copied yet.
    void NameFiles(const std::filesystem::path& basePath);

    [[nodiscard]] const DataFileState& State() const { return state_; }
    /// The file takes data. False before opening, after closing and after an error.
    [[nodiscard]] bool IsOpen(DataFileKind kind) const;
    [[nodiscard]] bool AnyOpen() const { return IsOpen(DataFileKind::Raw) || IsOpen(DataFileKind::Dat); }
    /// Data behind a header that no copy has taken yet.
    [[nodiscard]] bool HasUnsavedData() const;

  private:
    struct Slot {
        std::unique_ptr<OutputFile> file;
        std::optional<Millis> waitingSince;  ///< when the oldest byte not yet flushed came
        std::uint64_t taken = 0;  ///< bytes behind the header, those that a full disk cost among them
        std::uint64_t saved = 0;  ///< of these: as many as the last copy had
    };
    Slot& At(DataFileKind kind) { return slots_[static_cast<std::size_t>(kind)]; }
    [[nodiscard]] const Slot& At(DataFileKind kind) const { return slots_[static_cast<std::size_t>(kind)]; }
    std::filesystem::path& FinalPath(DataFileKind kind);
    std::filesystem::path& TemporaryPath(DataFileKind kind);

    FileError OpenOne(DataFileKind kind, const std::filesystem::path& path, std::string_view header);
    std::optional<DataFileTrouble> Write(DataFileKind kind, std::string_view bytes, Millis now);
    std::optional<DataFileTrouble> Flush(DataFileKind kind);
    DataFileTrouble TurnOff(DataFileKind kind, const FileError& error);
    [[nodiscard]] DataFileTrouble TroubleOf(DataFileKind kind, const FileError& error);

    int window_;
    MakeFile makeFile_;
    DataFileState state_;
    std::array<Slot, kDataFileKinds> slots_;
    int recording_ = 0;
    std::string line_;  ///< reused, so that a sample costs no allocation
};

}  // namespace marisonde
