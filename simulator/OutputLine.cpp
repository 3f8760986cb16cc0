#include "simulator/OutputLine.h"

#include <algorithm>

namespace marisonde::simulator {

namespace {

constexpr std::int64_t kNanosOfTenBits = 10'000'000'000;
// A line that is never idle must not keep what it has sent: long runs are cut.
constexpr std::size_t kLongestRun = 1U << 14U;

}  // namespace

Nanos OutputLine::Duration(std::size_t bytes, int baud) {
    return Nanos{static_cast<std::int64_t>(bytes) * kNanosOfTenBits / baud};
}

void OutputLine::Send(std::string_view bytes, Nanos now) {
    if (bytes.empty()) return;
    const bool joins = !runs_.empty() && now <= busyUntil_ && runs_.back().baud == baud_ &&
                       runs_.back().bytes.size() < kLongestRun;
    if (!joins) runs_.push_back({std::max(now, busyUntil_), baud_, {}, 0});
    Run& run = runs_.back();
    run.bytes += bytes;
    busyUntil_ = run.start + Duration(run.bytes.size(), baud_);
}

void OutputLine::TakeFrom(Run& run, Nanos now, std::string& out) {
    if (now <= run.start) return;
    const auto elapsed = (now - run.start).count();
    // Seconds and rest apart: nanoseconds of hours times the rate do not fit 64 bits.
    const auto seconds = elapsed / 1'000'000'000;
    const auto rest = elapsed % 1'000'000'000;
    const auto through =
        static_cast<std::size_t>((seconds * run.baud + rest * run.baud / 1'000'000'000) / 10);
    const std::size_t upTo = std::min(through, run.bytes.size());
    if (upTo <= run.taken) return;
    out.append(run.bytes, run.taken, upTo - run.taken);
    run.taken = upTo;
}

std::string OutputLine::Take(Nanos now) {
    std::string out;
    while (!runs_.empty()) {
        Run& run = runs_.front();
        if (run.baud != takenRate_ && !out.empty()) break;
        takenRate_ = run.baud;
        TakeFrom(run, now, out);
        if (run.taken < run.bytes.size()) break;
        runs_.pop_front();
    }
    return out;
}

}  // namespace marisonde::simulator
