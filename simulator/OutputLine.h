#pragma once

#include <chrono>
#include <deque>
#include <string>
#include <string_view>

namespace marisonde::simulator {

using Nanos = std::chrono::nanoseconds;

/// The sending half of a serial line: bytes come out one after another, 10 bits each.
class OutputLine {
  public:
    explicit OutputLine(int baud) : baud_(baud) {}

    /// Queues bytes behind those still on their way.
    void Send(std::string_view bytes, Nanos now);
    /// The bytes that are through by `now`, since the last call, as far as they have one rate.
    std::string Take(Nanos now);
    /// Of the bytes that the last Take gave.
    [[nodiscard]] int TakenRate() const { return takenRate_; }
    /// When the last byte queued so far is through.
    [[nodiscard]] Nanos BusyUntil() const { return busyUntil_; }
    [[nodiscard]] int Rate() const { return baud_; }
    /// For bytes sent from now on.
    void SetRate(int baud) { baud_ = baud; }

  private:
    /// Bytes without a gap between them.
    struct Run {
        Nanos start;
        int baud;
        std::string bytes;
        std::size_t taken = 0;
    };
    [[nodiscard]] static Nanos Duration(std::size_t bytes, int baud);
    static void TakeFrom(Run& run, Nanos now, std::string& out);

    int baud_;
    int takenRate_ = baud_;
    Nanos busyUntil_{0};
    std::deque<Run> runs_;
};

}  // namespace marisonde::simulator
