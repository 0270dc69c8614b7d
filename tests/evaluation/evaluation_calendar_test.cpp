#include "evaluation/evaluation_calendar.h"

#include <gtest/gtest.h>
#include <ostream>

namespace velorn {

static void PrintTo(const CalendarDay& day, std::ostream* out) {
    *out << day.tag << '.' << day.mon << '.' << day.jahr;
}

namespace test {

namespace {

CalendarDay date(int day, int month, int year) {
    return {static_cast<std::int16_t>(day), static_cast<std::int16_t>(month),
            static_cast<std::int16_t>(year)};
}

CalendarDay normalised(int day, int month, int year, int startjahr = 2005) {
    return kalenderdatum(date(day, month, year), startjahr);
}

} // namespace

TEST(EvaluationCalendar, rollsADayBehindItsMonthIntoTheNext) {
    EXPECT_EQ(normalised(29, 2, 2007), date(1, 3, 2007));
    EXPECT_EQ(normalised(31, 2, 2007), date(3, 3, 2007));
    EXPECT_EQ(normalised(29, 2, 2008), date(29, 2, 2008));
    EXPECT_EQ(normalised(30, 2, 2008), date(1, 3, 2008));
    for (const int month : {4, 6, 9, 11}) EXPECT_EQ(normalised(31, month, 2007), date(1, month + 1, 2007));
    for (const int month : {1, 3, 5, 7, 8, 10}) {
        EXPECT_EQ(normalised(31, month, 2007), date(31, month, 2007));
        EXPECT_EQ(normalised(35, month, 2007), date(4, month + 1, 2007));
    }
    EXPECT_EQ(normalised(32, 12, 2007), date(1, 1, 2008));
}

TEST(EvaluationCalendar, rollsADayBeforeItsMonthBack) {
    EXPECT_EQ(normalised(0, 3, 2007), date(28, 2, 2007));
    EXPECT_EQ(normalised(0, 3, 2008), date(29, 2, 2008));
    EXPECT_EQ(normalised(-6, 3, 2008), date(23, 2, 2008));
    for (const int month : {5, 7, 10, 12}) EXPECT_EQ(normalised(0, month, 2007), date(30, month - 1, 2007));
    for (const int month : {2, 4, 6, 8, 9, 11})
        EXPECT_EQ(normalised(0, month, 2007), date(31, month - 1, 2007));
    EXPECT_EQ(normalised(0, 1, 2008), date(31, 12, 2007));
}

TEST(EvaluationCalendar, rollsAMonthOutsideTheYear) {
    EXPECT_EQ(normalised(31, 13, 2007), date(31, 1, 2008));
    EXPECT_EQ(normalised(31, 0, 2007), date(31, 12, 2006));
}

TEST(EvaluationCalendar, keepsToTheTenYearsOfTheArchive) {
    EXPECT_EQ(normalised(0, 1, 2005), date(1, 1, 2005));
    EXPECT_EQ(normalised(24, 12, 2004), date(1, 1, 2005));
    EXPECT_EQ(normalised(5, 7, 2015), date(31, 12, 2014));
    EXPECT_EQ(normalised(32, 12, 2014), date(31, 12, 2014));
}

TEST(EvaluationCalendar, countsEveryFourthYearAsLeapYear) {
    EXPECT_EQ(normalised(29, 2, 2100, 2095), date(29, 2, 2100));
    EXPECT_EQ(days_of_month(2, 2100), 29);
}

TEST(EvaluationCalendar, keepsADateOfADamagedFileWithinItsTables) {
    for (const int garbage : {-32768, -40, 32767, 400}) {
        const CalendarDay day = normalised(garbage, garbage, 2007);
        EXPECT_GE(day.tag, 1);
        EXPECT_LE(day.tag, days_of_month(day.mon, day.jahr));
        EXPECT_GE(day.mon, 1);
        EXPECT_LE(day.mon, 12);
    }
}

TEST(EvaluationCalendar, knowsTheWeekday) {
    EXPECT_EQ(weekday_of(date(3, 1, 2000)), 1);
    EXPECT_STREQ(weekday_name(1), "Mo");
    EXPECT_EQ(weekday_of(date(1, 1, 2000)), 6); // a Saturday
    EXPECT_EQ(weekday_of(date(2, 1, 2000)), 7);
    EXPECT_EQ(weekday_of(date(29, 2, 2008)), 5);
    EXPECT_EQ(weekday_of(date(21, 11, 2026)), 6);
    EXPECT_EQ(weekday_of(date(31, 12, 1999)), 5);
    EXPECT_STREQ(weekday_name(8), "Mo");
}

} // namespace test
} // namespace velorn
