#include <algorithm>
#include <cmath>

#include "common/ConversionUtils.h"
#include "common/Numbers.h"

namespace marisonde {

namespace {

constexpr double kSecondsPerDay = 86400;
constexpr std::int64_t kDaysPerEra = 146097;  // 400 Gregorian years
// From 1 March of year 0, where the count below starts, to 30 December 1899.
constexpr std::int64_t kEpochFromMarchZero = 693899;
constexpr double kFarthestDate = 1e8;  // some 270 000 years; beyond it a day count is damage

std::int64_t FloorDiv(std::int64_t a, std::int64_t b) {
    return a / b - (a % b < 0 ? 1 : 0);
}

/// Days since 30 December 1899. Years run from March, so that the leap day is their last day.
std::int64_t DaysFromCivil(std::int64_t year, std::int64_t month, std::int64_t day) {
    const std::int64_t monthsFromMarch = month - 3;
    year += FloorDiv(monthsFromMarch, 12);
    const std::int64_t marchMonth = monthsFromMarch - 12 * FloorDiv(monthsFromMarch, 12);
    const std::int64_t era = FloorDiv(year, 400);
    const std::int64_t yearOfEra = year - era * 400;
    const std::int64_t dayOfYear = (153 * marchMonth + 2) / 5 + day - 1;
    return era * kDaysPerEra + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear -
           kEpochFromMarchZero;
}

void SetDay(CivilDate& civil, std::int64_t date) {
    const std::int64_t days = date + kEpochFromMarchZero;
    const std::int64_t era = FloorDiv(days, kDaysPerEra);
    const std::int64_t dayOfEra = days - era * kDaysPerEra;
    const std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / (kDaysPerEra - 1)) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t marchMonth = (5 * dayOfYear + 2) / 153;
    civil.day = static_cast<int>(dayOfYear - (153 * marchMonth + 2) / 5 + 1);
    civil.month = static_cast<int>(marchMonth < 10 ? marchMonth + 3 : marchMonth - 9);
    civil.year = static_cast<int>(yearOfEra + era * 400 + (civil.month <= 2 ? 1 : 0));
}

/// The text from a position counted from 1; positions before the text read from its start.
std::string_view From(std::string_view text, std::ptrdiff_t position) {
    const auto start = static_cast<std::size_t>(std::max<std::ptrdiff_t>(position, 1) - 1);
    return start < text.size() ? text.substr(start) : std::string_view{};
}

/// Position, counted from 1, of `mark` behind position `after`; 0 when there is none.
std::ptrdiff_t Place(std::string_view text, char mark, std::ptrdiff_t after = 0) {
    const std::size_t found = text.find(mark, static_cast<std::size_t>(after));
    return found == std::string_view::npos ? 0 : static_cast<std::ptrdiff_t>(found) + 1;
}

double ParseWrittenDate(std::string_view text, std::ptrdiff_t slash1, std::ptrdiff_t slash2) {
    const int month = FirstInteger(From(text, slash1 < 3 ? slash1 - 1 : slash1 - 2));
    const int day = FirstInteger(From(text, slash1 + 1));
    const int year = FullYear(FirstInteger(From(text, slash2 + 1)));
    const std::ptrdiff_t colon1 = Place(text, ':');
    // A date alone means midnight; without this the month would be taken for the minute.
    if (colon1 == 0) return DateFromCivil(year, month, day);
    const std::ptrdiff_t colon2 = Place(text, ':', colon1);
    const int hour = FirstInteger(From(text, colon1 - 2));
    const int minute = FirstInteger(From(text, colon1 + 1));
    const int second = colon2 != 0 ? FirstInteger(From(text, colon2 + 1)) : 0;
    return DateFromCivil(year, month, day, hour, minute, second);
}

}  // namespace

double DateFromCivil(int year, int month, int day, int hour, int minute, int second) {
    const double seconds = hour * 3600.0 + minute * 60.0 + second;
    return static_cast<double>(DaysFromCivil(year, month, day)) + seconds / kSecondsPerDay;
}

CivilDate CivilFromDate(double date) {
    CivilDate civil;
    if (!(std::fabs(date) < kFarthestDate)) return civil;
    double day = std::floor(date);
    auto seconds = static_cast<int>(RoundHalfEven((date - day) * kSecondsPerDay));
    if (seconds == 86400) {
        seconds = 0;
        day += 1;
    }
    SetDay(civil, static_cast<std::int64_t>(day));
    civil.hour = seconds / 3600;
    civil.minute = seconds / 60 % 60;
    civil.second = seconds % 60;
    return civil;
}

double SecondsToDate(double seconds, int year) {
    return DateFromCivil(year, 1, 1) + seconds / kSecondsPerDay;
}

std::int32_t DateToSeconds(double date, int year) {
    return ToInt32((date - DateFromCivil(year, 1, 1)) * kSecondsPerDay);
}

int FullYear(int year) {
    if (year < 70) return year + 2000;
    return year < 199 ? year + 1900 : year;
}

double ParseInstrumentDate(std::string_view text, InstTypeCode type) {
    const std::ptrdiff_t slash1 = Place(text, '/');
    const std::ptrdiff_t slash2 = slash1 != 0 ? Place(text, '/', slash1) : 0;
    if (slash2 > slash1 && slash1 >= 2) return ParseWrittenDate(text, slash1, slash2);
    return Val(NumericTail(text)) / kSecondsPerDay + (IsCorvaneFamily(type) ? kDay1970 : kDay1980);
}

}  // namespace marisonde
