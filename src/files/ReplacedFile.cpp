#include "files/ReplacedFile.h"

#include <system_error>
#include <utility>

namespace marisonde {

namespace fs = std::filesystem;

ReplacedFile::ReplacedFile(fs::path destination, std::string_view mark, std::unique_ptr<OutputFile> file)
    : destination_(std::move(destination)), beside_(destination_), file_(std::move(file)) {
    beside_ += mark;
}

ReplacedFile::~ReplacedFile() {
    if (!opened_) return;
    file_->Close();
    std::error_code passedOver;
    fs::remove(beside_, passedOver);
}

FileError ReplacedFile::Open() {
    FileError error = file_->Open(beside_, OpenMode::Replace);
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

}  // namespace marisonde
