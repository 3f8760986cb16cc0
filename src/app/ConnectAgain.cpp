#include "app/ConnectAgain.h"

#include <algorithm>
#include <string>

#include "app/DataWindow.h"
#include "link/Commands.h"
#include "link/Connection.h"
#include "link/Ports.h"

namespace marisonde {

namespace {

/// What the window knew of its instrument before the device vanished.
struct Lost {
    explicit Lost(const DataWindowState& state)
        : port(state.PortNumber),
          baud(state.BaudRate),
          type(state.InstType),
          serial(state.InstSerial),
          sampled(state.InstState == InstStateCode::Sampling || state.InstState == InstStateCode::NoData ||
                  state.InstState == InstStateCode::Starting) {}
    int port;
    int baud;
    InstTypeCode type;
    std::string serial;
    bool sampled;
};

bool IsThere(Ports& ports, int port) {
    const auto present = ports.Present();
    return std::any_of(present.begin(), present.end(),
                       [port](const PortEntry& entry) { return entry.number == port; });
}

/// False: the user wants something else of this window now.
QCoro::Task<bool> Pause(Operation& operation, DataWindow& window, Millis time) {
    const auto ended = [&] { return ConnectStopped(operation, window.Link); };
    co_await operation.Until(ended, time);
    co_return !ended();
}

QCoro::Task<bool> WaitForDevice(Operation& operation, DataWindow& window, int port) {
    while (!IsThere(*window.App().ports, port)) {
        const bool goOn = co_await Pause(operation, window, kLookForDevice);
        if (!goOn) co_return false;
    }
    co_return true;
}

void Restart(DataWindow& window, const Lost& lost) {
    window.Link.State.LastInputTime = window.App().clock.Steady();
    if (lost.sampled) SendCommandNow("START", window.Link);
    if (window.OnInstrumentChanged) window.OnInstrumentChanged();
}

/// An instrument that was never identified cannot be told from another: what is there is taken as before.
bool OpenUnidentified(DataWindow& window, const Lost& lost) {
    LineError error;
    if (!OpenPort(window.Link, lost.port, lost.baud, error)) return false;
    window.Link.State.Connected = true;
    window.Link.State.LastInputTime = window.App().clock.Steady();
    return true;
}

void TellOther(DataWindow& window, const Lost& lost) {
    const std::string now = window.Link.State.InstSerial;
    ClosePort(window.Link);
    window.Link.State.InstType = lost.type;
    window.Link.State.InstSerial = lost.serial;
    window.Ask().ShowError("Another instrument (" + now + ") answers on port " + std::to_string(lost.port) +
                           " in place of " + lost.serial +
                           ".  The connection is closed.  Use Connect to work with it.");
}

enum class Attempt { Failed, Back, Other };

QCoro::Task<Attempt> TryAgain(Operation& operation, DataWindow& window, const Lost& lost) {
    if (lost.serial.empty()) co_return OpenUnidentified(window, lost) ? Attempt::Back : Attempt::Failed;
    const ConnectNotes nobody;
    const ConnectionTry look = co_await TryConnection(operation, window.Link, lost.port, lost.baud, nobody);
    if (!look.Found()) co_return Attempt::Failed;
    const DataWindowState& state = window.Link.State;
    const bool same = state.InstSerial == lost.serial && state.InstType == lost.type;
    co_return same ? Attempt::Back : Attempt::Other;
}

}  // namespace

QCoro::Task<> ConnectAgain(Operation& operation, DataWindow& window) {
    const Lost lost(window.Link.State);
    DataWindowState& state = window.Link.State;
    ClosePort(window.Link);
    state.ConnectStage = 0;
    for (;;) {
        const bool there = co_await WaitForDevice(operation, window, lost.port);
        if (!there) co_return;
        const Attempt attempt = co_await TryAgain(operation, window, lost);
        if (ConnectStopped(operation, window.Link)) break;
        if (attempt == Attempt::Other) {
            TellOther(window, lost);
            co_return;
        }
        if (attempt == Attempt::Back) {
            Restart(window, lost);
            co_return;
        }
        ClosePort(window.Link);
        state.InstType = lost.type;
        const bool goOn = co_await Pause(operation, window, kAskAgain);
        if (!goOn) co_return;
    }
    ClosePort(window.Link);
}

}  // namespace marisonde
