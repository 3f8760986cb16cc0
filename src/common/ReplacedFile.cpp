#include "common/ReplacedFile.h"

#include <cerrno>
#include <system_error>
#include <utility>

namespace marisonde {

namespace fs = std::filesystem;

namespace {

/// Nobody writes so many copies of a file at a time; a limit keeps a broken file system from hanging a save.
constexpr int kMostBeside = 1000;

/// What a link leads to is replaced, and the link stays.
fs::path WithoutLinks(fs::path path) {
    std::error_code reason;
    if (!fs::is_symlink(path, reason)) return path;
    fs::path target = fs::canonical(path, reason);
    return reason ? path : target;
}

}  // namespace

ReplacedFile::ReplacedFile(const fs::path& destination, std::string_view mark,
                           std::unique_ptr<OutputFile> file)
    : destination_(WithoutLinks(destination)), mark_(mark), file_(std::move(file)) {}

ReplacedFile::~ReplacedFile() {
    if (!opened_) return;
    file_->Close();
    std::error_code passedOver;
    fs::remove(beside_, passedOver);
}

FileError ReplacedFile::Open() {
    // Another window or program may be writing the same file just now: each needs a name of its own.
    FileError error;
    for (int number = 1; number <= kMostBeside; ++number) {
        beside_ = destination_;
        beside_ += number == 1 ? mark_ : mark_ + std::to_string(number);
        error = file_->Open(beside_, OpenMode::Create);
        if (error.code != EEXIST) break;
    }
    opened_ = !error;
    return error;
}

FileError ReplacedFile::Commit() {
    if (FileError error = file_->Close()) return error;
    std::error_code reason;
    fs::rename(beside_, destination_, reason);
    if (reason) return ErrorOf(reason);
    opened_ = false;
    return {};
}

FileError SaveWhole(const fs::path& path, std::string_view bytes) {
    ReplacedFile file(path, ".saving");
    if (FileError error = file.Open()) return error;
    if (FileError error = file.Append(bytes)) return error;
    return file.Commit();
}

}  // namespace marisonde
