#pragma once

#include <string_view>

#include "link/DataWindowState.h"

namespace marisonde {

class InstrumentLink;

/// Takes what has arrived when it belongs to a binary transfer or to a reply that is collected whole. False:
/// the input is text in lines. An instrument that answers the request for its image with calibration text is
/// found out here by its first printable character.
bool TakeBinary(InstrumentLink& window, std::string_view chunk);
/// True while the reply to the current command is calibration text, whose lines are collected without the
/// limit of ResponseLines.
bool CarriesCalText(const DataWindowState& state);
/// True when the first of these bytes that says anything says "text": printable, and not the letter that asks
/// for a block, which some instruments echo.
bool BeginsAsText(std::string_view bytes);
/// Ends a binary transfer in whatever state it is.
void EndDump(DataWindowState& state);

}  // namespace marisonde
