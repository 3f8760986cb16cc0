#include "app/ConnectAgain.h"

#include <optional>
#include <string>
#include <vector>

#include "app/DataWindow.h"
#include "link/Commands.h"
#include "link/Connection.h"
#include "link/Ports.h"

namespace marisonde {

namespace {

/// What the window knew of its instrument before the device vanished.
struct Lost {
    Lost(const DataWindowState& state, Ports& ports)
        : adapter(ports.Known(state.PortNumber).value_or(PortEntry{})),
          port(state.PortNumber),
          baud(state.BaudRate),
          type(state.InstType),
          model(state.InstModelName),
          serial(state.InstSerial),
          sampled(state.InstState == InstStateCode::Sampling || state.InstState == InstStateCode::NoData ||
                  state.InstState == InstStateCode::Starting) {}
    PortEntry adapter;  ///< empty: not known
    int port;           ///< where the device is, or was
    int baud;
    InstTypeCode type;
    std::string model;
    std::string serial;
    bool sampled;
};

/// Adapters with serials are told by them: a hub may bring them back under each other's numbers. Of the
/// others only the number is known.
bool IsAdapter(const PortEntry& entry, const Lost& lost) {
    if (entry.serial.empty() || lost.adapter.serial.empty()) return entry.number == lost.port;
    return entry.serial == lost.adapter.serial && entry.description == lost.adapter.description;
}

/// The number under which the device is there now, or nothing. Of several that look alike it is the one that
/// has kept its number.
std::optional<int> WhereIsIt(Ports& ports, const Lost& lost) {
    std::vector<PortEntry> alike = ports.Present();
    std::erase_if(alike, [&](const PortEntry& entry) { return !IsAdapter(entry, lost); });
    for (const PortEntry& entry : alike)
        if (entry.number == lost.port) return lost.port;
    return alike.size() == 1 ? std::optional(alike.front().number) : std::nullopt;
}

/// False: the user wants something else of this window now.
QCoro::Task<bool> Pause(Operation& operation, DataWindow& window, Millis time) {
    const auto ended = [&] { return ConnectStopped(operation, window.Link); };
    co_await operation.Until(ended, time);
    co_return !ended();
}

QCoro::Task<bool> WaitForDevice(Operation& operation, DataWindow& window, Lost& lost) {
    for (;;) {
        const std::optional<int> port = WhereIsIt(*window.App().ports, lost);
        if (port) {
            lost.port = *port;
            co_return true;
        }
        const bool goOn = co_await Pause(operation, window, kLookForDevice);
        if (!goOn) co_return false;
    }
}

void Restart(DataWindow& window, const Lost& lost) {
    window.Link.State.LastInputTime = window.App().clock.Steady();
    if (lost.sampled) SendCommandNow("START", window.Link);
    if (window.OnInstrumentChanged) window.OnInstrumentChanged();
}

/// An instrument that was never identified cannot be told from another: what is there is taken as before.
bool OpenUnidentified(DataWindow& window, const Lost& lost) {
    if (window.Link.OpenPort(lost.port, lost.baud)) return false;
    window.Link.State.Connected = true;
    window.Link.State.PortNumber = static_cast<std::int16_t>(lost.port);
    window.Link.State.BaudRate = lost.baud;
    window.Link.State.LastInputTime = window.App().clock.Steady();
    return true;
}

/// Whatever answered meanwhile: the window stays that of the instrument it has lost.
void CloseAs(DataWindow& window, const Lost& lost) {
    window.Link.ClosePort();
    DataWindowState& state = window.Link.State;
    state.InstType = lost.type;
    state.InstModelName = lost.model;
    state.InstSerial = lost.serial;
}

void TellOther(DataWindow& window, const Lost& lost) {
    const DataWindowState& state = window.Link.State;
    const std::string now = state.InstModelName + " " + state.InstSerial;
    CloseAs(window, lost);
    std::string text = "Another instrument (" + now + ") answers on port " + std::to_string(lost.port) +
                       " in place of " + lost.model + " " + lost.serial +
                       ".  The connection is closed.  Use Connect to work with it.";
    if (window.Files.AnyOpen())
        text += "  The data of " + lost.serial + " are kept, and nothing was added to them.";
    window.Ask().ShowError(text);
    if (window.OnInstrumentChanged) window.OnInstrumentChanged();
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
    Lost lost(window.Link.State, *window.App().ports);
    DataWindowState& state = window.Link.State;
    window.Link.ClosePort();
    state.ConnectStage = 0;
    for (;;) {
        const bool there = co_await WaitForDevice(operation, window, lost);
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
        CloseAs(window, lost);
        const bool goOn = co_await Pause(operation, window, kAskAgain);
        if (!goOn) co_return;
    }
    window.Link.ClosePort();
}

}  // namespace marisonde
