#pragma once

#include <cerrno>
#include <cstddef>
#include <limits>
#include <string>
#include <system_error>

#include "common/OutputFile.h"

namespace marisonde {

/// A file in memory on a disk of limited size: after `room` bytes it fails as a full disk does, having taken
/// what still fitted. Other accidents are set by the test.
class FailingOutputFile final : public OutputFile {
  public:
    explicit FailingOutputFile(std::size_t room = std::numeric_limits<std::size_t>::max()) : room_(room) {}

    [[nodiscard]] FileError Open(const std::filesystem::path& path, OpenMode mode) override {
        path_ = path;
        failure_ = {};
        ++opened;
        if (openFailsWith != 0) return ErrorOf(openFailsWith);
        if (mode == OpenMode::Replace) text.clear();
        open_ = true;
        return {};
    }
    FileError Append(std::string_view bytes) override {
        if (failure_) return failure_;
        if (!open_) return ErrorOf(EBADF);
        const std::size_t fits = bytes.substr(0, room_ - text.size()).size();
        text += bytes.substr(0, fits);
        if (fits < bytes.size()) failure_ = ErrorOf(ENOSPC);
        return failure_;
    }
    FileError Flush() override {
        if (failure_) return failure_;
        if (!open_) return ErrorOf(EBADF);
        flushedBytes = text.size();
        ++flushes;
        if (flushFailsWith != 0) failure_ = ErrorOf(flushFailsWith);
        return failure_;
    }
    FileError Close() override {
        if (!open_) return {};
        FileError error = Flush();
        open_ = false;
        failure_ = {};
        return error;
    }
    [[nodiscard]] bool IsOpen() const override { return open_; }
    [[nodiscard]] const std::filesystem::path& Path() const override { return path_; }

    std::string text;              ///< everything written and not lost
    std::size_t flushedBytes = 0;  ///< length of `text` at the last Flush
    int flushes = 0;
    int opened = 0;          ///< calls of Open, failed ones too
    int openFailsWith = 0;   ///< system error number, e.g. EACCES
    int flushFailsWith = 0;  ///< e.g. ENOENT: the folder was removed

  private:
    static FileError ErrorOf(int code) { return {code, std::generic_category().message(code)}; }

    std::size_t room_;
    bool open_ = false;
    std::filesystem::path path_;
    FileError failure_;
};

}  // namespace marisonde
