#pragma once

#include <QCoroTask>
#include <functional>

#include "common/Clock.h"

namespace marisonde {

class Operation;

/// Most time between two looks at the instruments: they must not notice what else is being done.
inline constexpr Millis kSlice{25};

/// Takes steps of a long work for one slice of time; few enough for clocks that stand still meanwhile. False
/// once `step` has told that there are no more.
bool RunSlice(const Clock& clock, const std::function<bool()>& step);

/// Takes all steps, in slices between which the rest of the program goes on. `shown` is called after each
/// slice but the last. Ends early, with steps left, when the operation is cancelled. All references outlive
/// the task.
QCoro::Task<> RunInSlices(Operation& operation, const Clock& clock, const std::function<bool()>& step,
                          const std::function<void()>& shown);

}  // namespace marisonde
