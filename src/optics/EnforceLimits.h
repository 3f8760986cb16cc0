#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace marisonde {

/// What a box of a parameter form takes.
struct BoxLimits {
    std::string_view field;  ///< as the message names it
    bool allowFile = false;  ///< the name of an existing file is right too
    double min = 0;
    double max = 0;
};

/// What to tell the user when the text of a box is not right; nullopt when it is.
std::optional<std::string> EnforceLimits(std::string_view text, const BoxLimits& limits);

}  // namespace marisonde
