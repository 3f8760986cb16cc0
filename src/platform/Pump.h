#pragma once

#include <coroutine>
#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <vector>

#include "common/Clock.h"

namespace marisonde {

class Pump;

/// The limit of a wait for what takes as long as it takes: an answer of the user, the end of another wait.
inline constexpr Millis kNoLimit = Millis::max();

/// What `co_await pump.Until(...)` waits on; gives true when the condition was met, false when the limit
/// passed. An exception of the condition comes out of the co_await.
class Waiter {
  public:
    bool await_ready();
    void await_suspend(std::coroutine_handle<> handle);
    bool await_resume() const;

  private:
    friend class Pump;
    struct State {
        std::function<bool()> met;
        Millis start;
        Millis limit;
        std::coroutine_handle<> handle;
        bool wasMet = false;
        std::exception_ptr failure;
        [[nodiscard]] bool Due(Millis now);
    };
    Waiter(Pump& pump, std::shared_ptr<State> state) : pump_(&pump), state_(std::move(state)) {}

    Pump* pump_;
    // Compilers copy awaitables on their way into a coroutine's frame; all copies must mean the same wait.
    std::shared_ptr<State> state_;
};

/// Resumes waiting coroutines from one place, after each tick, so that nothing nests and nothing sleeps.
/// Must outlive every coroutine that waits on it.
class Pump {
  public:
    explicit Pump(const Clock& clock) : clock_(clock) {}
    Pump(const Pump&) = delete;
    Pump& operator=(const Pump&) = delete;

    /// Waits until `met` gives true, at most for `limit` from now. A condition that is true already does not
    /// suspend; one that comes true in the turn in which the limit passes counts as met. A limit of 0 waits
    /// for one turn. `met` is called once a turn and may refer to the waiting coroutine's own variables.
    [[nodiscard]] Waiter Until(std::function<bool()> met, Millis limit);

    /// One turn: every waiter whose time has come is taken out first, then all are resumed in the order in
    /// which they began to wait. Those that wait again are looked at in the next turn. A call from within a
    /// turn does nothing.
    void ResumeReady();

    /// Called when a coroutine begins to wait for nothing but the next turn: it has more work at hand, and
    /// lets the rest of the program in only in between. Who turns the pump by a slow clock does so at once
    /// then, from the event loop; without it the work goes on with the next tick.
    std::function<void()> OnWorkAtHand;

    /// True when no coroutine waits. A coroutine that was destroyed while it waited does not count.
    [[nodiscard]] bool Idle() const { return WaitingCount() == 0; }
    [[nodiscard]] std::size_t WaitingCount() const;
    /// True inside ResumeReady.
    [[nodiscard]] bool Turning() const { return turning_; }

  private:
    friend class Waiter;
    using States = std::vector<std::weak_ptr<Waiter::State>>;
    [[nodiscard]] States TakeDue();

    const Clock& clock_;
    States waiting_;  ///< weak: a frame that dies takes its waiter along
    bool turning_ = false;
};

}  // namespace marisonde
