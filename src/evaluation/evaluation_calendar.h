// The evaluation's calendar: a date that is walked day by day within the ten years of an archive. Every year
// divisible by 4 is a leap year, without a rule for centuries.
#pragma once

#include <compare>
#include <cstdint>

namespace velorn {

struct CalendarDay {
    std::int16_t tag = 1, mon = 1, jahr = 2000;
    bool operator==(const CalendarDay&) const = default;
};

constexpr bool leap_year(int year) { return year % 4 == 0; }

// 28 to 31 for months 1 to 12.
int days_of_month(int month, int year);

// Brings a date into the calendar and into the archive, which begins with startjahr: a day outside its month
// rolls over once, then a month outside the year; before the archive it is 1.1. of the first year, behind it
// 31.12. of the last. A date further off, as a damaged file may hold it, ends at the edge of its month.
CalendarDay kalenderdatum(CalendarDay date, int startjahr);

// 1 "Mo" to 7 "So", of a date that kalenderdatum has normalised.
std::int16_t weekday_of(const CalendarDay& date);

// "Mo" to "So"; weekday 1 to 7, and on behind 7.
const char* weekday_name(int weekday);

} // namespace velorn
