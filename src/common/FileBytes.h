#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

namespace marisonde {

/// All bytes of a file; nullopt, with the system's reason in `error`, when it cannot be read.
std::optional<std::string> ReadFileBytes(const std::filesystem::path& path, std::error_code& error);

}  // namespace marisonde
