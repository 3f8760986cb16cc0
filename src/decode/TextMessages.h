#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "common/InstState.h"

namespace marisonde {

/// What a text line from the instrument says about its state.
struct TextMessage {
    std::optional<InstStateCode> state;           ///< the new InstState, if the line tells one
    std::optional<std::int16_t> startsInSeconds;  ///< only with state Starting
};

/// Rules for a complete line. Lines that begin with "*" are data: Sampling, or Downloading in a transfer.
TextMessage ReadTextLine(std::string_view line, bool transferActive);
/// Rules for text that has no line end yet (shutter messages come without one).
std::optional<InstStateCode> ReadPartialText(std::string_view partial);
/// Whether a "!" line is to be shown: not the erase prompt of a CLEARLOGCOMMAND, not "transfer complete" in
/// the line or in the window's last message.
bool IsMessageForUser(std::string_view line, std::string_view currentCommand, std::string_view lastMessage);

}  // namespace marisonde
