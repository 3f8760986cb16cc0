#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>

#include "common/OutputFile.h"
#include "files/LineReader.h"

namespace marisonde {

/// The copy of one data file, a block at a time, for programs that have other things to do meanwhile. Of a
/// file that still grows it takes what was there at the beginning. The copy appears only once it is complete.
class FileCopy {
  public:
    static constexpr std::size_t kBlock = std::size_t{64} * 1024;

    /// Opens both. A file is not copied onto itself: the copy ends at once, with the error.
    FileCopy(const std::filesystem::path& source, const std::filesystem::path& destination);
    FileCopy(FileCopy&&) noexcept;
    FileCopy& operator=(FileCopy&&) noexcept;
    /// A copy that has not ended leaves no file.
    ~FileCopy();

    /// Copies one block. False once it has ended; Error tells how.
    bool Run();
    [[nodiscard]] const FileError& Error() const { return error_; }
    [[nodiscard]] ReadProgress Progress() const { return progress_; }

  private:
    struct Parts;
    [[nodiscard]] FileError Open(const std::filesystem::path& source,
                                 const std::filesystem::path& destination);
    [[nodiscard]] FileError CopyBlock();
    bool End(FileError error);

    std::unique_ptr<Parts> parts_;  ///< null once it has ended
    ReadProgress progress_;
    FileError error_;
};

/// A copy in one go.
FileError CopyDataFile(const std::filesystem::path& source, const std::filesystem::path& destination);

}  // namespace marisonde
