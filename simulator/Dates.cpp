#include "simulator/Dates.h"

#include <array>
#include <chrono>

#include "simulator/FieldText.h"

namespace marisonde::simulator {

namespace {

using namespace std::chrono;

std::string TwoDigits(std::int64_t value) {
    return (value < 10 ? "0" : "") + std::to_string(value);
}

/// Six numbers with one other character between any two.
std::optional<std::array<int, 6>> SixNumbers(std::string_view text) {
    std::array<int, 6> numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        std::size_t digits = 0;
        while (digits < text.size() && digits < 2 && text[digits] >= '0' && text[digits] <= '9')
            numbers[i] = numbers[i] * 10 + (text[digits++] - '0');
        if (digits == 0) return std::nullopt;
        text.remove_prefix(digits);
        constexpr std::string_view kBetween = "// ::";
        if (i == kBetween.size()) break;
        if (text.empty() || text[0] != kBetween[i]) return std::nullopt;
        text.remove_prefix(1);
    }
    if (!text.empty()) return std::nullopt;
    return numbers;
}

}  // namespace

std::string DateText(std::int64_t secondsUnix) {
    const sys_seconds time{seconds{secondsUnix}};
    const auto day = floor<days>(time);
    const year_month_day date{day};
    const hh_mm_ss clock{time - day};
    return TwoDigits(static_cast<unsigned>(date.month())) + "/" +
           TwoDigits(static_cast<unsigned>(date.day())) + "/" +
           TwoDigits(static_cast<int>(date.year()) % 100) + " " + TwoDigits(clock.hours().count()) + ":" +
           TwoDigits(clock.minutes().count()) + ":" + TwoDigits(clock.seconds().count());
}

std::optional<std::int64_t> DateFromText(std::string_view text) {
    const auto numbers = SixNumbers(Trimmed(text));
    if (!numbers) return std::nullopt;
    const auto [month, day, shortYear, hour, minute, second] = *numbers;
    constexpr int kFirstShortYear = 80;
    const int fullYear = shortYear + (shortYear < kFirstShortYear ? 2000 : 1900);
    const year_month_day date{year{fullYear}, std::chrono::month{static_cast<unsigned>(month)},
                              std::chrono::day{static_cast<unsigned>(day)}};
    if (!date.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
    const sys_seconds time = sys_days{date} + hours{hour} + minutes{minute} + seconds{second};
    return time.time_since_epoch().count();
}

}  // namespace marisonde::simulator
