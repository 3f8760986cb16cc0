#pragma once

#include <cstddef>

#ifdef __unix__
#include <csignal>
#include <sys/resource.h>
#endif

namespace marisonde {

/// No file of this program grows beyond so many bytes while the limit lives: on a real disk, the next one
/// fails, as on a full disk.
class FileSizeLimit {
  public:
#ifdef __unix__
    explicit FileSizeLimit(std::size_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        rlimit limit = before_;
        limit.rlim_cur = bytes;
        refuses_ = setrlimit(RLIMIT_FSIZE, &limit) == 0;
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }
#else
    explicit FileSizeLimit(std::size_t) {}
#endif
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

    /// False on systems that have no such limit.
    [[nodiscard]] bool Refuses() const {
        return refuses_;
    }

  private:
    bool refuses_ = false;
#ifdef __unix__
    void (*handler_)(int);
    rlimit before_{};
#endif
};

}  // namespace marisonde
