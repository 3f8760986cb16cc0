#include <cmath>
#include <gtest/gtest.h>

#include "common/ConversionUtils.h"

namespace marisonde {
namespace {

TEST(Dates, KnownDays) {
    EXPECT_EQ(DateFromCivil(1899, 12, 30), 0);
    EXPECT_EQ(DateFromCivil(1900, 1, 1), 2);
    EXPECT_EQ(DateFromCivil(1970, 1, 1), kDay1970);
    EXPECT_EQ(DateFromCivil(1980, 1, 1), kDay1980);
    // 2000 is a leap year: from 1980 20 years of 365 days and five leap days, 29221 + 7305.
    EXPECT_EQ(DateFromCivil(2000, 1, 1), 36526);
    EXPECT_EQ(DateFromCivil(2000, 3, 1), 36526 + 31 + 29);
    EXPECT_EQ(DateFromCivil(1899, 12, 29), -1);
}

TEST(Dates, MonthsAndDaysOverflow) {
    EXPECT_EQ(DateFromCivil(2004, 13, 1), DateFromCivil(2005, 1, 1));
    EXPECT_EQ(DateFromCivil(2005, 0, 1), DateFromCivil(2004, 12, 1));
    EXPECT_EQ(DateFromCivil(2005, 2, 30), DateFromCivil(2005, 3, 2));
    EXPECT_EQ(DateFromCivil(2005, 3, 0), DateFromCivil(2005, 2, 28));
    EXPECT_EQ(DateFromCivil(2005, 1, 1, 24, 0, 0), DateFromCivil(2005, 1, 2));
}

TEST(Dates, EveryDayOfFourCenturiesComesBack) {
    CivilDate before = CivilFromDate(DateFromCivil(1799, 12, 31));
    for (double day = DateFromCivil(1800, 1, 1); day < DateFromCivil(2200, 1, 1); ++day) {
        const CivilDate civil = CivilFromDate(day);
        ASSERT_EQ(DateFromCivil(civil.year, civil.month, civil.day), day);
        const bool nextDay = civil.day == before.day + 1 && civil.month == before.month;
        const bool nextMonth = civil.day == 1 && (civil.month == before.month + 1 ||
                                                  (civil.month == 1 && civil.year == before.year + 1));
        ASSERT_TRUE(nextDay || nextMonth) << day;
        before = civil;
    }
}

TEST(Dates, TimesRoundToTheNearestSecond) {
    const CivilDate civil = CivilFromDate(DateFromCivil(2005, 3, 4, 6, 7, 8));
    EXPECT_EQ(civil.hour, 6);
    EXPECT_EQ(civil.minute, 7);
    EXPECT_EQ(civil.second, 8);
    const CivilDate late = CivilFromDate(DateFromCivil(2005, 3, 4, 23, 59, 59) + 0.7 / 86400);
    EXPECT_EQ(late.day, 5);
    EXPECT_EQ(late.hour, 0);
    EXPECT_EQ(late.second, 0);
}

TEST(Dates, DamagedDatesGiveTheFirstDay) {
    for (const double date : {std::nan(""), 1e300, -1e300}) EXPECT_EQ(CivilFromDate(date).year, 1899);
}

TEST(Dates, Seconds) {
    EXPECT_EQ(SecondsToDate(86400, 1970), 25570);
    EXPECT_EQ(SecondsToDate(43200, 1980), 29221.5);
    EXPECT_EQ(DateToSeconds(25570, 1970), 86400);
    EXPECT_EQ(DateToSeconds(29221 + 1.6 / 86400, 1980), 2);
    EXPECT_EQ(DateToSeconds(1e12, 1970), 2147483647);
}

TEST(Dates, YearsOfInstruments) {
    const std::pair<int, int> rows[] = {{0, 2000},   {69, 2069}, {70, 1970},   {99, 1999},
                                        {198, 2098}, {199, 199}, {1999, 1999}, {2005, 2005}};
    for (const auto& [written, year] : rows) EXPECT_EQ(FullYear(written), year) << written;
}

TEST(ParseInstrumentDate, WrittenDates) {
    const double date = DateFromCivil(2005, 3, 4, 6, 7, 8);
    const std::pair<std::string_view, double> rows[] = {
        {"03/04/05 06:07:08", date},
        {"3/4/05 6:07:08", date},
        {"3/4/2005 06:07:08", date},
        {"Set 03/04/05 06:07:08", date},
        {"03/04/05 06:07", DateFromCivil(2005, 3, 4, 6, 7)},
        {"03/04/05", DateFromCivil(2005, 3, 4)},
        {"03/04/99 00:00:00", DateFromCivil(1999, 3, 4)},
        {"03/04/69 00:00:00", DateFromCivil(2069, 3, 4)},
        {"03/04/70 00:00:00", DateFromCivil(1970, 3, 4)},
        {"03/04/198 00:00:00", DateFromCivil(2098, 3, 4)},
        {"13/04/05 00:00:00", DateFromCivil(2006, 1, 4)},
        {"a/b/c d:e:f", DateFromCivil(2000, 0, 0)},
    };
    for (const auto& [text, wanted] : rows) {
        EXPECT_EQ(ParseInstrumentDate(text, InstTypeCode::Corvane6), wanted) << text;
        EXPECT_EQ(ParseInstrumentDate(text, InstTypeCode::Delph4), wanted) << text;
    }
}

TEST(ParseInstrumentDate, SecondsByTheFamilysYear) {
    EXPECT_EQ(ParseInstrumentDate("86400", InstTypeCode::Corvane6), DateFromCivil(1970, 1, 2));
    EXPECT_EQ(ParseInstrumentDate("86400", InstTypeCode::Delph4), DateFromCivil(1980, 1, 2));
    EXPECT_EQ(ParseInstrumentDate("86400", InstTypeCode::LTidal), DateFromCivil(1980, 1, 2));
    EXPECT_EQ(ParseInstrumentDate("time=43200 s", InstTypeCode::Corvane2), 25569.5);
    EXPECT_EQ(ParseInstrumentDate("", InstTypeCode::Unknown), kDay1980);
    EXPECT_EQ(ParseInstrumentDate("/4/86400", InstTypeCode::Corvane6), 25569 + 4 / 86400.0);  // no month
    EXPECT_EQ(ParseInstrumentDate("12/86400", InstTypeCode::Corvane6), 25569 + 12 / 86400.0);
}

}  // namespace
}  // namespace marisonde
