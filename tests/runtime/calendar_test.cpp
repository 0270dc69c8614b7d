#include "runtime/calendar.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace velorn {
namespace {

std::string shown(double days) {
    const Result<DateTime> moment = date_time_of({days});
    return moment ? date_and_time_text(*moment) : moment.failure().text;
}

TEST(Calendar, daysCountFromThe30thOfDecember1899) {
    EXPECT_EQ(days_from_civil(1899, 12, 30), 0);
    EXPECT_EQ(days_from_civil(1899, 12, 31), 1);
    EXPECT_EQ(days_from_civil(1899, 12, 29), -1);
    EXPECT_EQ(days_from_civil(2000, 1, 1), 36526);
    EXPECT_EQ(days_from_civil(100, 1, 1), -657434);
    EXPECT_EQ(days_from_civil(9999, 12, 31), 2958465);
}

TEST(Calendar, centuriesAreLeapYearsOnlyEveryFourHundredYears) {
    EXPECT_EQ(days_from_civil(2000, 3, 1) - days_from_civil(2000, 2, 28), 2);
    EXPECT_EQ(days_from_civil(1900, 3, 1) - days_from_civil(1900, 2, 28), 1);
    EXPECT_EQ(days_from_civil(2024, 3, 1) - days_from_civil(2024, 2, 28), 2);
    EXPECT_EQ(days_from_civil(2026, 3, 1) - days_from_civil(2026, 2, 28), 1);
}

TEST(Calendar, theTimeOfDayIsTheFraction) {
    EXPECT_EQ(shown(0.25), "30.12.1899 06:00:00");
    EXPECT_EQ(shown(46341.5), "15.11.2026 12:00:00");
    EXPECT_EQ(serial_of({2026, 11, 15, 18, 0, 0, 0}).days, 46341.75);
}

TEST(Calendar, theFractionCountsForwardBeforeTheEpochToo) {
    EXPECT_EQ(shown(-1.25), "29.12.1899 06:00:00");
    EXPECT_EQ(shown(-0.25), "30.12.1899 06:00:00");
    EXPECT_EQ(serial_of({1899, 12, 29, 6, 0, 0, 0}).days, -1.25);
    EXPECT_EQ(serial_of({1899, 12, 30, 6, 0, 0, 0}).days, 0.25);
}

TEST(Calendar, theLastHalfMillisecondOfADayBelongsToTheNext) {
    EXPECT_EQ(shown(46341 + 86'399'999.6 / 86'400'000), "16.11.2026 00:00:00");
    EXPECT_EQ(shown(46341 + 86'399'999.4 / 86'400'000), "15.11.2026 23:59:59");
    EXPECT_EQ(shown(-5 - 86'399'999.6 / 86'400'000), shown(-4));
}

TEST(Calendar, keepsEveryMillisecondOfADay) {
    for (int ms = 0; ms < 86'400'000; ms += 60'013) {
        const DateTime moment{2026, 2, 28, ms / 3'600'000, ms / 60'000 % 60, ms / 1000 % 60, ms % 1000};
        ASSERT_EQ(date_time_of(serial_of(moment)).value(), moment) << ms;
    }
}

TEST(Calendar, keepsEveryDayAtNoon) {
    for (long day = -657'434; day <= 2'958'465; day += 7) {
        const double serial = static_cast<double>(day) + (day < 0 ? -0.5 : 0.5);
        ASSERT_EQ(serial_of(date_time_of({serial}).value()).days, serial);
    }
}

TEST(Calendar, reachesFromTheYear100To9999) {
    EXPECT_EQ(shown(-657434), "01.01.0100 00:00:00");
    EXPECT_EQ(shown(-657434.999), "01.01.0100 23:58:33");
    EXPECT_EQ(shown(2958465.5), "31.12.9999 12:00:00");
}

TEST(Calendar, refusesWhatLiesOutside) {
    const double infinite = std::numeric_limits<double>::infinity();
    for (const double days : {-657435.0, 2958466.0, 2958466 - 1e-9, 1e300, -1e300, infinite, -infinite,
                              std::numeric_limits<double>::quiet_NaN()}) {
        const Result<DateTime> moment = date_time_of({days});
        ASSERT_FALSE(moment) << days;
        EXPECT_EQ(moment.failure().number, 6);
    }
}

TEST(Calendar, weekdaysBeginOnSunday) {
    EXPECT_EQ(weekday({2026, 11, 15, 0, 0, 0, 0}), 1);
    EXPECT_EQ(weekday({2026, 11, 16, 23, 59, 59, 999}), 2);
    EXPECT_EQ(weekday({1899, 12, 30, 0, 0, 0, 0}), 7);
    EXPECT_EQ(weekday({1899, 12, 24, 0, 0, 0, 0}), 1);
    EXPECT_EQ(weekday({1899, 12, 23, 0, 0, 0, 0}), 7);
    EXPECT_EQ(weekday({100, 1, 1, 0, 0, 0, 0}), 6);
}

TEST(Calendar, secondsCountFromMidnight) {
    EXPECT_EQ(seconds_since_midnight({2026, 11, 15, 0, 0, 0, 0}), 0.0);
    EXPECT_EQ(seconds_since_midnight({2026, 11, 15, 23, 59, 59, 500}), 86399.5);
}

TEST(Calendar, textsArePaddedWithZeros) {
    const DateTime moment{2026, 1, 2, 3, 4, 5, 6};
    EXPECT_EQ(date_text(moment), "02.01.2026");
    EXPECT_EQ(time_text(moment), "03:04:05");
    EXPECT_EQ(date_and_time_text(moment), "02.01.2026 03:04:05");
}

} // namespace
} // namespace velorn
