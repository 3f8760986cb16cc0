#pragma once

#include <QCoroTask>
#include <array>
#include <functional>
#include <string>
#include <vector>

#include "link/InstrumentLink.h"
#include "link/PortTable.h"
#include "platform/Operations.h"

namespace marisonde {

/// Rates of a search, in its order: the usual ones first. 115200 is left out, as no instrument leaves the
/// factory with it.
inline constexpr std::array kSearchRates{19200, 9600, 38400, 57600, 4800};
/// An instrument that was awake answers within the first; the whole look takes the second.
inline constexpr Millis kIdFirstLook{1000};
inline constexpr Millis kIdAnswer{3000};
inline constexpr Millis kVersionAnswer{3000};

/// What one look at one port and rate came to.
enum class Finding {
    Found,
    Silent,          ///< opened, and nothing was heard
    NoInstrument,    ///< something was heard that does not identify itself
    Unidentified,    ///< an instrument answered, of a model that has no name among those known
    Busy,            ///< another program or window has the port
    Denied,          ///< the user may not open it
    Missing,         ///< there is no such device (any more)
    CouldNotOpen,    ///< any other reason; see the error
    StoppedWorking,  ///< opened, and lost while it was looked at
    Cancelled,
};

/// One look at one port and rate. `error` tells why the port did not open or broke.
struct ConnectionTry {
    int port = 0;
    int baud = 0;
    Finding finding = Finding::Silent;
    LineError error;
    std::string model;  ///< when found, its full name; when unidentified, what it calls itself
    [[nodiscard]] bool Found() const { return finding == Finding::Found; }
};

/// Who is told of progress; either may be empty.
struct ConnectNotes {
    std::function<void(const std::string& status)> onStatus;
    std::function<void(const ConnectionTry& look)> onLook;
};

/// "silent", "busy" and so on, for the line that a search shows of a look.
std::string FindingText(const ConnectionTry& look);

/// Opens the port and asks for the identification: for 1 s, then up to 3 s in all. An instrument that says
/// something else (it wakes, it samples) is stopped and asked once more. When found the window is Connected
/// and knows model and, where it is told, firmware. ConnectStage 22 and a broken line end it at once.
QCoro::Task<ConnectionTry> TryConnection(Operation& operation, InstrumentLink& window, int port, int baud,
                                         const ConnectNotes& notes);
/// TryConnection over all ports at all kSearchRates, up to the first instrument. The answer is the last look.
QCoro::Task<ConnectionTry> SearchPorts(Operation& operation, InstrumentLink& window,
                                       const std::vector<PortEntry>& ports, const ConnectNotes& notes);

/// True once the user, or the end of the window, has stopped what connects.
bool ConnectStopped(const Operation& operation, InstrumentLink& window);

}  // namespace marisonde
