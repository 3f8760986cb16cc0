#include "simulator/CastMemory.h"

#include <algorithm>
#include <numeric>

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
    : casts_{{1, startUnix - 4 * kDay, 300}, {2, startUnix - 3 * kDay, 600}, {3, startUnix - kDay, 120}},
      last_(3) {}

const Cast* CastMemory::Find(int number) const {
    const auto found =
        std::find_if(casts_.begin(), casts_.end(), [&](const Cast& cast) { return cast.number == number; });
    return found == casts_.end() ? nullptr : &*found;
}

void CastMemory::Delete(int number) {
    std::erase_if(casts_, [&](const Cast& cast) { return cast.number == number; });
}

void CastMemory::Clear() {
    casts_.clear();
    last_ = 0;
}

void CastMemory::Begin(std::int64_t startUnix, double period) {
    begun_ = Cast{0, startUnix, 0, period};
}

bool CastMemory::AddLine(std::string_view line) {
    if (Used() + kBytesPerLine > kMemoryBytes) return false;
    if (begun_) {
        begun_->number = ++last_;
        casts_.push_back(*begun_);
        begun_.reset();
    }
    Cast& cast = casts_.back();
    cast.text.emplace_back(line);
    ++cast.lines;
    return true;
}

long CastMemory::Used() const {
    return std::accumulate(casts_.begin(), casts_.end(), 0L,
                           [](long sum, const Cast& cast) { return sum + cast.lines * kBytesPerLine; });
}

std::string CastMemory::Listing() const {
    std::string text = "' Cast  Start              Duration  Lines\r\n";
    for (const Cast& cast : casts_) {
        text += "'" + RightAligned(std::to_string(cast.number), 5) + "  " + DateText(cast.startUnix) +
                RightAligned(DurationText(cast), 10) + RightAligned(std::to_string(cast.lines), 7) + "\r\n";
    }
    text += "'" + std::to_string((kMemoryBytes - Used()) / 1024) + " KB of " +
            std::to_string(kMemoryBytes / 1024) + " KB free\r\n";
    return text;
}

}  // namespace marisonde::simulator
