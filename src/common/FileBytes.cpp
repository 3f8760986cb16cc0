#include "common/FileBytes.h"

#include <array>
#include <cerrno>
#include <fstream>

namespace marisonde {

bool IsPipeOrDevice(const std::filesystem::path& path) {
    std::error_code unknown;
    return std::filesystem::is_other(path, unknown);
}

std::optional<std::string> ReadFileBytes(const std::filesystem::path& path, std::error_code& error) {
    error.clear();
    if (IsPipeOrDevice(path)) {
        error = std::make_error_code(std::errc::not_supported);
        return std::nullopt;
    }
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
        error = std::make_error_code(std::errc::is_a_directory);
        return std::nullopt;
    }
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    std::string bytes;
    std::array<char, 4096> chunk{};
    while (file) {
        file.read(chunk.data(), chunk.size());
        bytes.append(chunk.data(), static_cast<std::size_t>(file.gcount()));
    }
    if (file.eof()) return bytes;
    error = std::error_code(errno, std::generic_category());
    return std::nullopt;
}

}  // namespace marisonde
