#pragma once

#include <string>
#include <string_view>

#include "link/InstrumentLink.h"

/// Readers of the free-text replies to commands. None reports: a word that does not come leaves the old
/// value.
namespace marisonde {

/// The reply to ID, long or short form. Sets the four identification texts and, once the reply is long enough
/// for its model, GotIdReply, and clears CurrentCommand.
void ParseIdReply(InstrumentLink& window);
/// The full model name behind "model: "; another text comes back as it stands, lower-case or not.
std::string ModelFromReply(std::string_view line);
/// Global values of a calibration, from ResponseLines into `cal`; firmware and id also into the window.
void ParseGcfReply(InstrumentLink& window, CalibrationDataClass& cal);
/// The sampling scheme into State.Params; the line that ends the reply for the model sets ParamsReplyDone and
/// clears CurrentCommand.
void ParseSampleParams(InstrumentLink& window);
/// Values of one channel, headed by its number and name, from ResponseLines into `cal`.
void ParseCclReply(InstrumentLink& window, CalibrationDataClass& cal);
/// Bandwidth and virtual-channel numbers of one channel, in the same form.
void ParseCcfReply(InstrumentLink& window, CalibrationDataClass& cal);
/// One line of a channel, from 0. A line with "mu" in it is Mu, also one with "muRho".
void ParseChannelValue(std::string_view line, int channel, CalibrationDataClass& cal);
/// Collected calibration text (CalLines) into the window's calibration, once it is complete: sets GotIniReply
/// (and the other CalReady) and clears CurrentCommand.
void ParseIniReply(InstrumentLink& window);
void ParseMultiCal(InstrumentLink& window);
/// The same for calibration text that answers DUMPCFG. True when it was complete.
bool ParseDumpText(InstrumentLink& window);

}  // namespace marisonde
