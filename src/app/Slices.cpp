#include "app/Slices.h"

#include "platform/Operations.h"

namespace marisonde {

bool RunSlice(const Clock& clock, const std::function<bool()>& step) {
    constexpr int kMostSteps = 200;
    const Millis end = clock.Steady() + kSlice;
    for (int i = 0; i < kMostSteps && clock.Steady() < end; ++i)
        if (!step()) return false;
    return true;
}

QCoro::Task<> RunInSlices(Operation& operation, const Clock& clock, const std::function<bool()>& step,
                          const std::function<void()>& shown) {
    while (RunSlice(clock, step)) {
        shown();
        co_await operation.NextTurn();
        if (operation.Cancelled()) co_return;
    }
}

}  // namespace marisonde
