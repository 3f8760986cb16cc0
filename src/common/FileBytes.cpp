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

std::error_code WriteFileBytes(const std::filesystem::path& path, std::string_view bytes) {
    std::error_code reason;
    const std::filesystem::path linked = std::filesystem::canonical(path, reason);
    const std::filesystem::path& place = reason ? path : linked;
    std::filesystem::path beside = place;
    beside += ".saving";
    errno = 0;
    std::ofstream file(beside, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    const bool opened = file.is_open();
    file.close();
    reason = std::error_code(file.fail() ? errno : 0, std::generic_category());
    if (!reason) std::filesystem::rename(beside, place, reason);
    std::error_code passedOver;
    if (opened && reason) std::filesystem::remove(beside, passedOver);
    return reason;
}

}  // namespace marisonde
