#include "link/LinkWaits.h"

#include <array>
#include <memory>

#include "link/Commands.h"

namespace marisonde {

namespace {

constexpr Millis kFlAnswer{10000};
/// How long the gain is held: a slow pass and a faster one. A list written in the loop would not outlive its
/// waits.
constexpr std::array kHolds{Millis(1000), Millis(500)};

/// False when the operation or the line has ended.
QCoro::Task<bool> Pause(Operation& operation, InstrumentLink& window, Millis time) {
    const auto over = [&] { return window.LineBroken(); };
    co_await operation.Until(over, time);
    co_return !window.LineBroken() && !operation.Cancelled();
}

/// The gain is held while the mode changes, and let go again.
QCoro::Task<bool> ChangeMode(Operation& operation, InstrumentLink& window, bool highMode, Millis hold) {
    window.QueueOutput("am,0\r");
    window.QueueOutput(highMode ? "mode,0,3\r" : "mode,0,1\r");
    // Named: g++ 12 frees the awaited task too early when it stands in a condition.
    const bool held = co_await Pause(operation, window, hold);
    if (!held) co_return false;
    window.QueueOutput("am,1\r");
    co_return co_await Pause(operation, window, Millis(1000));
}

}  // namespace

QCoro::Task<bool> RequestFlStatus(Operation& operation, InstrumentLink& window) {
    const DataWindowState& state = window.State;
    if (!state.Connected || !IsCorvaneFamily(state.InstType)) co_return false;
    SendCommandNow("FL", window);
    const auto over = [&] { return state.ParamsReplyDone || window.LineBroken(); };
    co_await operation.Until(over, kFlAnswer);
    co_return state.ParamsReplyDone && !operation.Cancelled();
}

QCoro::Task<bool> WaitForOutput(Operation& operation, InstrumentLink& window) {
    const auto over = [&] { return OutputDone(window) || window.LineBroken(); };
    co_await operation.Until(over);
    co_return OutputDone(window) && !window.LineBroken() && !operation.Cancelled();
}

QCoro::Task<bool> ConnectInDialog(Operation& operation, InstrumentLink& window) {
    if (window.State.Connected) co_return true;
    if (!window.ShowConnectForm) co_return false;
    // On the heap: the dialog may close after this operation has been ended.
    const auto closed = std::make_shared<bool>(false);
    window.ShowConnectForm([closed] { *closed = true; });
    const auto over = [&] { return *closed; };
    co_await operation.Until(over);
    const bool stopped = operation.Cancelled() || window.State.CancelRequest == kCancelStop;
    co_return window.State.Connected && !stopped;
}

QCoro::Task<bool> SendCommandConnected(Operation& operation, InstrumentLink& window, std::string name,
                                       std::string argument) {
    const bool connected = co_await ConnectInDialog(operation, window);
    if (connected) SendCommandNow(name, window, argument);
    co_return connected;
}

QCoro::Task<bool> SetRawMode(Operation& operation, InstrumentLink& window, bool highMode, int count) {
    if (!IsCorvaneFamily(window.State.InstType)) co_return false;
    for (const Millis hold : kHolds) {
        for (int i = 0; i < count; ++i) {
            const bool changed = co_await ChangeMode(operation, window, highMode, hold);
            if (!changed) co_return false;
        }
    }
    co_return true;
}

}  // namespace marisonde
