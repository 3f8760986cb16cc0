#pragma once

#include <span>
#include <string_view>

#include "link/InstrumentLink.h"

namespace marisonde {

/// How the reply to one command is recognised and what is done with it.
struct ReplyRule {
    std::string_view command;  ///< upper case, as in DataWindowState::CurrentCommand
    void (*handle)(InstrumentLink& window);
};
std::span<const ReplyRule> ReplyTable();

/// Once a tick, after ProcessInput: looks at the lines collected for the current command, and when the reply
/// has come reads it, sets its flag and clears CurrentCommand. Commands without a rule expect no reply.
void HandleResponse(InstrumentLink& window);

}  // namespace marisonde
