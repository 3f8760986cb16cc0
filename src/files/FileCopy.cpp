#include "files/FileCopy.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "common/ReplacedFile.h"

namespace marisonde {

namespace fs = std::filesystem;

struct FileCopy::Parts {
    std::ifstream source;
    std::optional<ReplacedFile> copy;
    std::string block;
};

FileCopy::FileCopy(const fs::path& source, const fs::path& destination) : parts_(std::make_unique<Parts>()) {
    if (FileError error = Open(source, destination)) End(std::move(error));
}
FileCopy::FileCopy(FileCopy&&) noexcept = default;
FileCopy& FileCopy::operator=(FileCopy&&) noexcept = default;
FileCopy::~FileCopy() = default;

FileError FileCopy::Open(const fs::path& source, const fs::path& destination) {
    std::error_code reason;
    // Saving a file onto itself would only look like a save: a temporary file is deleted at the end.
    if (fs::equivalent(source, destination, reason))
        return ErrorOf(std::make_error_code(std::errc::device_or_resource_busy));
    progress_.size = fs::file_size(source, reason);
    if (reason) return ErrorOf(reason);
    errno = 0;
    parts_->source.open(source, std::ios::binary);
    if (!parts_->source) return ErrorOf(errno);
    parts_->copy.emplace(destination, ".saving");
    return parts_->copy->Open();
}

bool FileCopy::Run() {
    if (!parts_) return false;
    if (FileError error = CopyBlock()) return End(std::move(error));
    if (progress_.done < progress_.size) return true;
    return End(parts_->copy->Commit());
}

FileError FileCopy::CopyBlock() {
    std::string& block = parts_->block;
    block.resize(static_cast<std::size_t>(std::min<std::uint64_t>(kBlock, progress_.size - progress_.done)));
    errno = 0;
    // A file that has become shorter is another one by now.
    if (!parts_->source.read(block.data(), static_cast<std::streamsize>(block.size()))) return ErrorOf(errno);
    progress_.done += block.size();
    return parts_->copy->Append(block);
}

bool FileCopy::End(FileError error) {
    error_ = std::move(error);
    parts_.reset();
    return false;
}

FileError CopyDataFile(const fs::path& source, const fs::path& destination) {
    FileCopy copy(source, destination);
    while (copy.Run()) {
    }
    return copy.Error();
}

}  // namespace marisonde
