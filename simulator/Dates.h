#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace marisonde::simulator {

/// Tidals count from 1980; ten years with two leap days.
inline constexpr std::int64_t kFrom1970To1980 = 315532800;

/// "MM/DD/YY HH:MM:SS" of seconds since 1970.
std::string DateText(std::int64_t secondsUnix);
/// Seconds since 1970 of such a text, of the years 1980 to 2079; nullopt for anything else and for days that
/// do not exist.
std::optional<std::int64_t> DateFromText(std::string_view text);

}  // namespace marisonde::simulator
