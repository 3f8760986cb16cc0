#include "optics/EnforceLimits.h"

#include <filesystem>
#include <system_error>

#include "common/Numbers.h"

namespace marisonde {

std::optional<std::string> EnforceLimits(std::string_view text, const BoxLimits& limits) {
    std::error_code passedOver;
    if (limits.allowFile && std::filesystem::is_regular_file(std::filesystem::path(text), passedOver))
        return std::nullopt;
    const auto number = StrictNumber(text);
    if (number && *number >= limits.min && *number <= limits.max) return std::nullopt;
    std::string message = limits.allowFile
                              ? "Please enter either a valid file name or a numeric value between "
                              : "Please enter a numeric value between ";
    message += NumberText(limits.min) + " and " + NumberText(limits.max) + " for the ";
    return message.append(limits.field) + ".";
}

}  // namespace marisonde
