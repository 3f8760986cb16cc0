#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "common/OutputFile.h"

namespace marisonde {

/// A file that is written under another name beside its place and takes its place only when it is complete:
/// one that fails halfway costs nobody an earlier file of that name. Unless it is committed, nothing is left
/// of it.
class ReplacedFile {
  public:
    /// `mark` is added to the name while the file is written, and a number where that is taken.
    ReplacedFile(const std::filesystem::path& destination, std::string_view mark,
                 std::unique_ptr<OutputFile> file = std::make_unique<DiskFile>());
    ReplacedFile(const ReplacedFile&) = delete;
    ReplacedFile& operator=(const ReplacedFile&) = delete;
    ~ReplacedFile();

    [[nodiscard]] FileError Open();
    FileError Append(std::string_view bytes) { return file_->Append(bytes); }
    [[nodiscard]] FileError Commit();

  private:
    std::filesystem::path destination_;
    std::string mark_;
    std::filesystem::path beside_;
    std::unique_ptr<OutputFile> file_;
    bool opened_ = false;
};

/// Makes these bytes the file at `path`; with an error, what was there is left as it was.
[[nodiscard]] FileError SaveWhole(const std::filesystem::path& path, std::string_view bytes);

}  // namespace marisonde
