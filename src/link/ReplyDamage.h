#pragma once

#include <span>
#include <string>
#include <string_view>

/// Replies with calibration carry no check sum. These tests find damage that shows: characters that are never
/// sent, and forms that no calibration has. A digit that has become another digit stays hidden.
namespace marisonde {

/// True when a character stands in the line that no instrument sends.
bool LooksDamaged(std::string_view line);
/// True when the text begins as a number and does not go on as one (or as a date) up to a blank, comma, colon
/// or "//".
bool NumberLooksDamaged(std::string_view text);
/// Lines of a calibration file: sections, keys with values, comments.
bool CalTextLooksDamaged(std::span<const std::string> lines);
/// Lines of a global or channel reply: "name: value", values of channels numeric.
bool ReplyLooksDamaged(std::span<const std::string> lines);

}  // namespace marisonde
