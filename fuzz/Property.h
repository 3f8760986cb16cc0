#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace marisonde {

/// A property of the target, whose loss ends the search.
inline void Require(bool holds) {
    if (!holds) std::abort();
}

/// A file of this name and process, gone with the end of the search. In memory where the system has such a
/// place: thousands of files a second would only wear out a disk.
class ScratchFile {
  public:
    explicit ScratchFile(const std::string& name) {
        const std::filesystem::path memory = "/dev/shm";
        std::error_code passedOver;
        const bool there = std::filesystem::is_directory(memory, passedOver);
        path_ = (there ? memory : std::filesystem::temp_directory_path()) /
                (name + "-" + std::to_string(getpid()));
    }
    ~ScratchFile() {
        std::error_code passedOver;
        std::filesystem::remove(path_, passedOver);
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    [[nodiscard]] const std::filesystem::path& Path() const { return path_; }

  private:
    std::filesystem::path path_;
};

}  // namespace marisonde
