// Calendar dates of the stored kind: a number of days since 30.12.1899, the time of day as its fraction.
// For negative numbers the fraction still counts forward from midnight of the day, as the format has it:
// -1.25 is 29.12.1899 6:00.
#pragma once

#include "runtime/variant.h"

#include <compare>

namespace velorn {

// A moment on the wall clock, in local time. Ranges: year 100 to 9999, month 1 to 12, day 1 to the month's
// length, hour 0 to 23, minute and second 0 to 59, millisecond 0 to 999.
struct DateTime {
    int year = 1899;
    int month = 12;
    int day = 30;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int millisecond = 0;

    auto operator<=>(const DateTime&) const = default;
};

// Days from 30.12.1899 to the given day of the Gregorian calendar.
long days_from_civil(int year, int month, int day);

// To the millisecond, both ways. A serial outside the years 100 to 9999 gives error 6.
DateSerial serial_of(const DateTime& moment);
Result<DateTime> date_time_of(DateSerial serial);

// Seconds since midnight, with fraction.
double seconds_since_midnight(const DateTime& moment);

// 1 Sunday to 7 Saturday.
int weekday(const DateTime& moment);

// "dd.mm.yyyy hh:mm:ss", "dd.mm.yyyy", "hh:mm:ss".
std::string date_and_time_text(const DateTime& moment);
std::string date_text(const DateTime& moment);
std::string time_text(const DateTime& moment);

} // namespace velorn
