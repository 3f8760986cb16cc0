#pragma once

#include <string>
#include <string_view>

#include "link/InstrumentLink.h"

namespace marisonde {

/// Sends one command by the command table and notes it as the one whose reply is awaited. True also when the
/// command has nothing to send. Without a connection it opens the connect dialog and answers false; the
/// command follows by itself if the user has connected then.
bool SendCommand(std::string_view name, InstrumentLink& window, std::string_view argument = "");
/// The same without looking at the connection.
void SendCommandNow(std::string_view name, InstrumentLink& window, std::string_view argument = "");

/// Sends "fl", channel name, "," and state for each fluorescence channel whose status is known; returns the
/// text.
std::string SetFlStatus(InstrumentLink& window);
/// Sets the gain step of a channel (from 0). Models without selectable gains get nothing.
void SetChannelGain(InstrumentLink& window, int channel, int gain);
/// Nothing is left to send, neither here nor in the port.
bool OutputDone(const InstrumentLink& window);

}  // namespace marisonde
