#pragma once

#include <memory>

namespace marisonde {

/// The desktop's way to keep the computer from falling asleep.
class SleepInhibitor {
  public:
    virtual ~SleepInhibitor() = default;
    virtual void Hold() = 0;
    virtual void Release() = 0;
};

/// That of this computer; on a system without a known one, an inhibitor that does nothing.
std::unique_ptr<SleepInhibitor> SystemSleepInhibitor();

/// Keeps the computer awake while it is needed; the inhibitor hears of changes only.
class KeepAwake {
  public:
    /// Null: nothing is kept awake.
    explicit KeepAwake(std::unique_ptr<SleepInhibitor> inhibitor = nullptr)
        : inhibitor_(std::move(inhibitor)) {}
    ~KeepAwake() { Update(false); }
    KeepAwake(const KeepAwake&) = delete;
    KeepAwake& operator=(const KeepAwake&) = delete;

    void Use(std::unique_ptr<SleepInhibitor> inhibitor);
    void Update(bool needed);

  private:
    std::unique_ptr<SleepInhibitor> inhibitor_;
    bool held_ = false;
};

}  // namespace marisonde
