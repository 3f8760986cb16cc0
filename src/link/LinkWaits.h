#pragma once

#include <QCoroTask>
#include <string>

#include "link/InstrumentLink.h"
#include "platform/Operations.h"

/// Short waits of operations on one instrument.
namespace marisonde {

/// Asks for the state of the fluorescence channels and waits for it, at most 10 s. False: not a connected
/// Corvane, no answer, or cancelled.
QCoro::Task<bool> RequestFlStatus(Operation& operation, InstrumentLink& window);
/// Waits until nothing is left to send. False: cancelled, or the line is broken.
QCoro::Task<bool> WaitForOutput(Operation& operation, InstrumentLink& window);
/// Shows the connect dialog of a window without a connection and waits until it has closed. True: there is a
/// connection, new or from before.
QCoro::Task<bool> ConnectInDialog(Operation& operation, InstrumentLink& window);
/// SendCommand for operations: waits while the connect dialog is open. False: nothing was sent.
QCoro::Task<bool> SendCommandConnected(Operation& operation, InstrumentLink& window, std::string name,
                                       std::string argument);

/// Takes a Corvane through the gain modes, `count` times slowly and as often again faster, as its bench
/// calibration needs it; `highMode` chooses mode 3, otherwise 1. False: another model, cancelled, or the line
/// is broken.
QCoro::Task<bool> SetRawMode(Operation& operation, InstrumentLink& window, bool highMode, int count);

}  // namespace marisonde
