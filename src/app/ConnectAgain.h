#pragma once

#include <QCoroTask>

#include "common/Clock.h"

namespace marisonde {

class DataWindow;
class Operation;

/// How often a vanished device is looked for, and how long an instrument that does not answer is left alone.
inline constexpr Millis kLookForDevice{1000};
inline constexpr Millis kAskAgain{5000};

/// For a window whose device has vanished: waits for the device, opens it again and asks for the
/// identification. The same serial goes on as before, sampling again if it sampled; another one is told to
/// the user and the port is closed. Ends when the connect dialog opens or the window is disconnected.
QCoro::Task<> ConnectAgain(Operation& operation, DataWindow& window);

}  // namespace marisonde
