#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace marisonde {

/// Whether there is something at `path` that is neither file nor folder. Opening it may wait for ever, and
/// what is read from it cannot be read again.
bool IsPipeOrDevice(const std::filesystem::path& path);

/// All bytes of a file; nullopt, with the system's reason in `error`, when it cannot be read.
std::optional<std::string> ReadFileBytes(const std::filesystem::path& path, std::error_code& error);

/// Makes these bytes the file at `path`, or the one that a link there leads to. An older one is replaced once
/// they are all written; an error, which is the system's reason, leaves it as it was.
std::error_code WriteFileBytes(const std::filesystem::path& path, std::string_view bytes);

}  // namespace marisonde
