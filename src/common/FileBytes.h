#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

namespace marisonde {

/// Whether there is something at `path` that is neither file nor folder. Opening it may wait for ever, and
/// what is read from it cannot be read again.
bool IsPipeOrDevice(const std::filesystem::path& path);

/// All bytes of a file; nullopt, with the system's reason in `error`, when it cannot be read.
std::optional<std::string> ReadFileBytes(const std::filesystem::path& path, std::error_code& error);

}  // namespace marisonde
