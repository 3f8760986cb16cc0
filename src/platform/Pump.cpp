#include "platform/Pump.h"

#include <algorithm>
#include <utility>

namespace marisonde {

bool Waiter::State::Due(Millis now) {
    try {
        wasMet = met();
    } catch (...) {
        // Belongs to the coroutine that asked; the others of this turn must not suffer from it.
        failure = std::current_exception();
    }
    return wasMet || failure || now - start >= limit;
}

bool Waiter::await_ready() {
    state_->wasMet = state_->met();
    return state_->wasMet;
}

void Waiter::await_suspend(std::coroutine_handle<> handle) {
    state_->handle = handle;
    pump_->waiting_.push_back(state_);
    if (state_->limit == Millis{0} && pump_->OnWorkAtHand) pump_->OnWorkAtHand();
}

bool Waiter::await_resume() const {
    if (state_->failure) std::rethrow_exception(state_->failure);
    return state_->wasMet;
}

Waiter Pump::Until(std::function<bool()> met, Millis limit) {
    auto state = std::make_shared<Waiter::State>();
    state->met = std::move(met);
    state->start = clock_.Steady();
    state->limit = limit;
    return {*this, std::move(state)};
}

Pump::States Pump::TakeDue() {
    const Millis now = clock_.Steady();
    // Taken out whole: a condition that starts a coroutine adds to the list that is walked here otherwise.
    States looked = std::exchange(waiting_, {});
    States due;
    States later;
    for (const auto& entry : looked) {
        const auto state = entry.lock();
        if (state) (state->Due(now) ? due : later).push_back(entry);
    }
    waiting_.insert(waiting_.begin(), later.begin(), later.end());
    return due;
}

void Pump::ResumeReady() {
    if (turning_) return;
    struct Turn {
        explicit Turn(bool& flag) : flag_(flag) { flag_ = true; }
        ~Turn() { flag_ = false; }
        bool& flag_;
    } turn(turning_);
    for (const auto& entry : TakeDue()) {
        // A coroutine resumed before may have destroyed this one. The lock is not held while resuming, so
        // that the condition dies with the frame it refers to.
        std::coroutine_handle<> handle;
        if (const auto state = entry.lock()) handle = state->handle;
        if (handle) handle.resume();
    }
}

std::size_t Pump::WaitingCount() const {
    return static_cast<std::size_t>(
        std::count_if(waiting_.begin(), waiting_.end(), [](const auto& entry) { return !entry.expired(); }));
}

}  // namespace marisonde
