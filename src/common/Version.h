#pragma once

#include <string_view>

namespace marisonde {

/// Version of this program, as it stands in file headers and settings.
inline constexpr std::string_view kVersion = "2.85";

}  // namespace marisonde
