#pragma once

#include <chrono>

namespace marisonde {

using Millis = std::chrono::milliseconds;

/// The only source of time. Limits and pacing use Steady(); stamps on data use Now().
class Clock {
  public:
    virtual ~Clock() = default;
    /// Time since some fixed start; never goes back.
    [[nodiscard]] virtual Millis Steady() const = 0;
    /// Local date and time in days since 30 December 1899; may jump when the user sets the computer's clock.
    [[nodiscard]] virtual double Now() const = 0;
};

/// Time that moves only when told: a limit of a minute costs a test microseconds.
class VirtualClock final : public Clock {
  public:
    explicit VirtualClock(double startDate = 40000.0) : startDate_(startDate) {}
    [[nodiscard]] Millis Steady() const override { return elapsed_; }
    [[nodiscard]] double Now() const override {
        return startDate_ + static_cast<double>(elapsed_.count()) / 86400000.0;
    }
    void AdvanceBy(Millis step) { elapsed_ += step; }
    /// What happens when somebody sets the computer's clock: dates jump, limits do not.
    void SetDate(double date) { startDate_ = date - static_cast<double>(elapsed_.count()) / 86400000.0; }

  private:
    double startDate_;
    Millis elapsed_{0};
};

}  // namespace marisonde
