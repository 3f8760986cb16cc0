#pragma once

#include <QDateTime>

#include "common/Clock.h"

namespace marisonde {

/// Date and time of day as days since 30 December 1899, as the stamp shows it: no time zone is applied.
double DaysFromDateTime(const QDateTime& stamp);
/// The inverse, rounded to milliseconds, in local time.
QDateTime DateTimeFromDays(double days);

/// The computer's own time.
class SystemClock final : public Clock {
  public:
    [[nodiscard]] Millis Steady() const override;
    [[nodiscard]] double Now() const override { return DaysFromDateTime(QDateTime::currentDateTime()); }
};

}  // namespace marisonde
