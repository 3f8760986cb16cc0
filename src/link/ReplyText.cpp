#include "link/ReplyText.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "common/ConversionUtils.h"
#include "common/Numbers.h"

namespace marisonde {

namespace {

/// Takes one whole number of at most four digits, blanks before it allowed.
bool TakeNumber(std::string_view& text, int& value) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    const char* const end = text.data() + std::min<std::size_t>(text.size(), 4);
    if (text.empty() || !IsDigitChar(text)) return false;
    const auto result = std::from_chars(text.data(), end, value);
    text.remove_prefix(static_cast<std::size_t>(result.ptr - text.data()));
    return true;
}

bool TakeMark(std::string_view& text, char mark) {
    if (text.empty() || text.front() != mark) return false;
    text.remove_prefix(1);
    return true;
}

/// hour, minute and, if it is there, second. No time at all is midnight.
bool TakeTime(std::string_view text, std::array<int, 3>& time) {
    if (Trim(text).empty()) return true;
    if (!TakeNumber(text, time[0]) || !TakeMark(text, ':') || !TakeNumber(text, time[1])) return false;
    if (TakeMark(text, ':') && !TakeNumber(text, time[2])) return false;
    return time[0] < 24 && time[1] < 60 && time[2] < 60;
}

}  // namespace

std::string_view TextBehind(std::string_view line, std::string_view mark) {
    const std::size_t at = line.find(mark);
    if (at == std::string_view::npos) return {};
    return Trim(line.substr(at + mark.size()));
}

double TailValue(std::string_view line) {
    return Val(NumericTail(line));
}

std::optional<double> WrittenDate(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_of("0123456789"), text.size()));
    int month = 0;
    int day = 0;
    int year = 0;
    std::array<int, 3> time{};
    if (!TakeNumber(text, month) || !TakeMark(text, '/') || !TakeNumber(text, day) || !TakeMark(text, '/') ||
        !TakeNumber(text, year) || !TakeTime(text, time))
        return std::nullopt;
    year = FullYear(year);
    const double date = DateFromCivil(year, month, day, time[0], time[1], time[2]);
    const CivilDate read = CivilFromDate(date);
    // A day that does not exist comes back as another one.
    if (read.month != month || read.day != day || read.year != year) return std::nullopt;
    return date;
}

}  // namespace marisonde
