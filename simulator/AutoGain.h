#pragma once

#include <array>

namespace marisonde::simulator {

/// Relative gain of the steps 1 to 5.
using GainSteps = std::array<double, 5>;

/// The switch of a detector's gain: it steps down before the converter is full and up when the signal drowns
/// in its steps, and stays put in between so that noise does not make it chatter.
class AutoGain {
  public:
    /// The step, 1 to 5, for a signal of `countsAtOne` at a gain of 1.
    int StepFor(double countsAtOne, const GainSteps& gains) {
        if (held_) return step_;
        while (step_ > 1 && countsAtOne * At(gains) > kFull) --step_;
        while (step_ < 5 && countsAtOne * At(gains) < kFaint) ++step_;
        return step_;
    }

    /// Stays at `step`, 1 to 5, whatever the signal, until it is released.
    void Hold(int step) {
        step_ = step;
        held_ = true;
    }
    void HoldPresent() { held_ = true; }
    void Release() { held_ = false; }
    [[nodiscard]] bool Held() const { return held_; }
    [[nodiscard]] int Step() const { return step_; }

  private:
    static constexpr double kFull = 28000;
    static constexpr double kFaint = 2200;
    [[nodiscard]] double At(const GainSteps& gains) const {
        return gains[static_cast<std::size_t>(step_ - 1)];
    }

    int step_ = 3;
    bool held_ = false;
};

}  // namespace marisonde::simulator
