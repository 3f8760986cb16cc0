#include "platform/SystemClock.h"

#include <chrono>
#include <cmath>

namespace marisonde {

namespace {

constexpr double kMillisPerDay = 86400000.0;
constexpr qint64 kJulianDayOfDayZero = 2415019;  ///< 30 December 1899

}  // namespace

double DaysFromDateTime(const QDateTime& stamp) {
    const qint64 days = stamp.date().toJulianDay() - kJulianDayOfDayZero;
    return static_cast<double>(days) + stamp.time().msecsSinceStartOfDay() / kMillisPerDay;
}

QDateTime DateTimeFromDays(double days) {
    const double whole = std::floor(days);
    const auto millis = static_cast<qint64>(std::llround((days - whole) * kMillisPerDay));
    const QDate date = QDate::fromJulianDay(kJulianDayOfDayZero + static_cast<qint64>(whole));
    return date.startOfDay().isValid() ? QDateTime(date, QTime(0, 0)).addMSecs(millis) : QDateTime();
}

Millis SystemClock::Steady() const {
    return std::chrono::duration_cast<Millis>(std::chrono::steady_clock::now().time_since_epoch());
}

}  // namespace marisonde
