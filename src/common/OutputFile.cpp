#include "common/OutputFile.h"

#include <array>
#include <cerrno>
#include <system_error>

namespace marisonde {

namespace {

/// Enough for a second of the fastest instrument, so that the system is called about once per flush.
constexpr std::size_t kWaitingLimit = std::size_t{64} * 1024;

/// For the library, by OpenMode.
#ifdef _WIN32
constexpr std::array kModes{L"wb", L"ab", L"wbx"};
#else
constexpr std::array kModes{"wb", "ab", "wbx"};
#endif

std::FILE* OpenHandle(const std::filesystem::path& path, OpenMode mode) {
    errno = 0;
    const auto* const named = kModes.at(static_cast<std::size_t>(mode));
#ifdef _WIN32
    return _wfopen(path.c_str(), named);
#else
    return std::fopen(path.c_str(), named);
#endif
}

}  // namespace

DiskFile::~DiskFile() {
    Close();
}

FileError DiskFile::Open(const std::filesystem::path& path, OpenMode mode) {
    Close();
    path_ = path;
    failure_ = {};
    handle_.reset(OpenHandle(path, mode));
    if (!handle_) return ErrorOf(errno);
    // One buffer is enough: with the library's own behind ours a failed write would leave unclear what is on
    // disk.
    std::setvbuf(handle_.get(), nullptr, _IONBF, 0);
    return {};
}

FileError DiskFile::Append(std::string_view bytes) {
    if (failure_) return failure_;
    if (!handle_) return ErrorOf(EBADF);
    waiting_ += bytes;
    return waiting_.size() < kWaitingLimit ? FileError{} : WriteOut();
}

FileError DiskFile::Flush() {
    if (failure_) return failure_;
    if (!handle_) return ErrorOf(EBADF);
    if (FileError error = WriteOut()) return error;
    // Systems that let an open file be deleted go on taking bytes for it, which nobody will ever see again.
    std::error_code reason;
    if (std::filesystem::exists(path_, reason)) return {};
    return Fail(reason ? reason.value() : ENOENT);
}

FileError DiskFile::Close() {
    if (!handle_) return {};
    FileError error = Flush();
    errno = 0;
    if (std::fclose(handle_.release()) != 0 && !error) error = ErrorOf(errno);
    waiting_.clear();
    failure_ = {};
    return error;
}

FileError DiskFile::WriteOut() {
    if (waiting_.empty()) return {};
    errno = 0;
    const std::size_t written = std::fwrite(waiting_.data(), 1, waiting_.size(), handle_.get());
    const bool complete = written == waiting_.size();
    waiting_.clear();
    if (complete) return {};
    return Fail(errno);
}

const FileError& DiskFile::Fail(int code) {
    failure_ = ErrorOf(code);
    waiting_.clear();
    return failure_;
}

}  // namespace marisonde
