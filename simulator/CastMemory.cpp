#include "simulator/CastMemory.h"

#include <algorithm>

#include "simulator/Dates.h"

namespace marisonde::simulator {

namespace {

constexpr std::int64_t kDay = 86400;
constexpr long kMemoryBytes = 2 * 1024 * 1024;
constexpr long kBytesPerLine = 32;

std::string RightAligned(const std::string& text, std::size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

/// "0:02:30".
std::string DurationText(const Cast& cast) {
    const auto total = static_cast<long>(static_cast<double>(cast.lines) * cast.period);
    const auto two = [](long value) { return (value < 10 ? "0" : "") + std::to_string(value); };
    return std::to_string(total / 3600) + ":" + two(total / 60 % 60) + ":" + two(total % 60);
}

}  // namespace

CastMemory::CastMemory(std::int64_t startUnix)
    : casts_{{1, startUnix - 4 * kDay, 300}, {2, startUnix - 3 * kDay, 600}, {3, startUnix - kDay, 120}} {}

const Cast* CastMemory::Find(int number) const {
    const auto found =
        std::find_if(casts_.begin(), casts_.end(), [&](const Cast& cast) { return cast.number == number; });
    return found == casts_.end() ? nullptr : &*found;
}

void CastMemory::Delete(int number) {
    std::erase_if(casts_, [&](const Cast& cast) { return cast.number == number; });
}

std::string CastMemory::Listing() const {
    std::string text = "' Cast  Start              Duration  Lines\r\n";
    long used = 0;
    for (const Cast& cast : casts_) {
        text += "'" + RightAligned(std::to_string(cast.number), 5) + "  " + DateText(cast.startUnix) +
                RightAligned(DurationText(cast), 10) + RightAligned(std::to_string(cast.lines), 7) + "\r\n";
        used += cast.lines * kBytesPerLine;
    }
    text += "'" + std::to_string((kMemoryBytes - used) / 1024) + " KB of " +
            std::to_string(kMemoryBytes / 1024) + " KB free\r\n";
    return text;
}

}  // namespace marisonde::simulator
