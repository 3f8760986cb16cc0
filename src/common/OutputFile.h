#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "common/FileError.h"

namespace marisonde {

/// Replace empties a file that is already there; Extend goes on behind its last byte; Create fails with
/// EEXIST.
enum class OpenMode { Replace, Extend, Create };

/// A file that grows line by line while an instrument talks. After the first failure every further Append and
/// Flush gives that same error and writes nothing, so that a file never has a hole in its middle.
class OutputFile {
  public:
    virtual ~OutputFile() = default;

    /// Opens `path` for writing; an open file is closed first. The folder must exist.
    [[nodiscard]] virtual FileError Open(const std::filesystem::path& path, OpenMode mode) = 0;
    /// Adds the bytes as they are. They may wait in memory until Flush. An error also when no file is open.
    virtual FileError Append(std::string_view bytes) = 0;
    /// Hands everything to the system, and looks whether the file still stands at its path: a folder that was
    /// removed or a disk that was pulled is reported here. To be called at least once a second while data
    /// comes.
    virtual FileError Flush() = 0;
    /// Flushes and closes. Closing a closed file is no error.
    virtual FileError Close() = 0;

    [[nodiscard]] virtual bool IsOpen() const = 0;
    /// The path of the last Open, also after Close.
    [[nodiscard]] virtual const std::filesystem::path& Path() const = 0;
};

/// An OutputFile on disk. Destroying an open one flushes it and passes over errors.
class DiskFile final : public OutputFile {
  public:
    DiskFile() = default;
    ~DiskFile() override;
    DiskFile(const DiskFile&) = delete;
    DiskFile& operator=(const DiskFile&) = delete;

    [[nodiscard]] FileError Open(const std::filesystem::path& path,
                                 OpenMode mode = OpenMode::Replace) override;
    FileError Append(std::string_view bytes) override;
    FileError Flush() override;
    FileError Close() override;
    [[nodiscard]] bool IsOpen() const override { return handle_ != nullptr; }
    [[nodiscard]] const std::filesystem::path& Path() const override { return path_; }

  private:
    struct CloseHandle {
        void operator()(std::FILE* handle) const { std::fclose(handle); }
    };
    FileError WriteOut();
    const FileError& Fail(int code);

    std::filesystem::path path_;
    std::unique_ptr<std::FILE, CloseHandle> handle_;
    std::string waiting_;  ///< bytes not yet given to the system
    FileError failure_;
};

}  // namespace marisonde
