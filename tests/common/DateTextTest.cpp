#include <gtest/gtest.h>

#include "common/ConversionUtils.h"
#include "common/DateText.h"

namespace marisonde {
namespace {

TEST(TwoDigits, PadsWithOneZero) {
    EXPECT_EQ(TwoDigits(0), "00");
    EXPECT_EQ(TwoDigits(9), "09");
    EXPECT_EQ(TwoDigits(10), "10");
    EXPECT_EQ(TwoDigits(99), "99");
}

TEST(DateText, HasTwoDigitsEach) {
    EXPECT_EQ(DateText(DateFromCivil(2011, 7, 4, 9, 15, 22)), "07/04/11 09:15:22");
    EXPECT_EQ(DateText(DateFromCivil(1999, 12, 31, 23, 59, 59)), "12/31/99 23:59:59");
    // Day 36526 is 1 January 2000: 100 years of 365 days and 24 leap days after day 2, which was 1 January
    // 1900.
    EXPECT_EQ(DateText(36526), "01/01/00 00:00:00");
    EXPECT_EQ(DateText(0), "12/30/99 00:00:00");
    EXPECT_EQ(DateText(DateFromCivil(-1, 3, 1)), "03/01/99 00:00:00") << "any day has a text";
}

TEST(DateText, IsReadBackAsAnInstrumentsDate) {
    const double date = DateFromCivil(2005, 3, 4, 6, 7, 8);
    EXPECT_EQ(ParseInstrumentDate(DateText(date), InstTypeCode::Corvane6), date);
}

}  // namespace
}  // namespace marisonde
