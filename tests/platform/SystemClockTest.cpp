#include <gtest/gtest.h>

#include "platform/SystemClock.h"

namespace marisonde {
namespace {

TEST(SystemClockTest, DaysCountFrom30December1899) {
    EXPECT_EQ(DaysFromDateTime(QDateTime(QDate(1899, 12, 30), QTime(0, 0))), 0.0);
    EXPECT_EQ(DaysFromDateTime(QDateTime(QDate(1970, 1, 1), QTime(0, 0))), 25569.0);
    EXPECT_EQ(DaysFromDateTime(QDateTime(QDate(1980, 1, 1), QTime(0, 0))), 29221.0);
    // 6 h of 24 h is a quarter of a day.
    EXPECT_EQ(DaysFromDateTime(QDateTime(QDate(1980, 1, 1), QTime(6, 0))), 29221.25);
    EXPECT_EQ(DaysFromDateTime(QDateTime(QDate(1899, 12, 29), QTime(12, 0))), -0.5);
}

TEST(SystemClockTest, DaysAndDatesAreInverse) {
    const QDateTime stamp(QDate(2011, 7, 4), QTime(9, 15, 22, 125));
    EXPECT_EQ(DateTimeFromDays(DaysFromDateTime(stamp)), stamp);
}

TEST(SystemClockTest, NowIsTheLocalDateAndSteadyNeverGoesBack) {
    const SystemClock clock;
    const double before = DaysFromDateTime(QDateTime::currentDateTime());
    const double now = clock.Now();
    EXPECT_GE(now, before);
    EXPECT_LT(now - before, 1.0 / 1440);
    const Millis first = clock.Steady();
    EXPECT_GE(clock.Steady(), first);
}

}  // namespace
}  // namespace marisonde
