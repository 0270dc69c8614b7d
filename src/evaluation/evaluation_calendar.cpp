#include "evaluation/evaluation_calendar.h"

#include <algorithm>
#include <array>

namespace velorn {

namespace {

constexpr int years_of_an_archive = 10;
constexpr std::array month_lengths{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

} // namespace

int days_of_month(int month, int year) {
    const int length = month_lengths[static_cast<std::size_t>(std::clamp(month, 1, 12) - 1)];
    return month == 2 && leap_year(year) ? length + 1 : length;
}

CalendarDay kalenderdatum(CalendarDay date, int startjahr) {
    int day = date.tag;
    int month = date.mon;
    int year = date.jahr;
    // A month beyond the year counts as a long one until it is put right below.
    const int length = month < 1 || month > 12 ? 31 : days_of_month(month, year);
    if (day > length) {
        day -= length;
        if (++month == 13) {
            month = 1;
            ++year;
        }
    } else if (day < 1) {
        if (--month == 0) {
            month = 12;
            --year;
        }
        day += days_of_month(month, year);
    }
    if (month > 12) {
        month = 1;
        ++year;
    } else if (month < 1) {
        month = 12;
        --year;
    }
    if (year < startjahr) {
        day = month = 1;
        year = startjahr;
    } else if (year > startjahr + years_of_an_archive - 1) {
        day = 31;
        month = 12;
        year = startjahr + years_of_an_archive - 1;
    }
    day = std::clamp(day, 1, days_of_month(month, year));
    return {static_cast<std::int16_t>(day), static_cast<std::int16_t>(month),
            static_cast<std::int16_t>(year)};
}

std::int16_t weekday_of(const CalendarDay& date) {
    int days = date.tag - 1; // since 1.1.2000
    for (int year = 2000; year < date.jahr; ++year) days += leap_year(year) ? 366 : 365;
    for (int year = date.jahr; year < 2000; ++year) days -= leap_year(year) ? 366 : 365;
    for (int month = 1; month < date.mon; ++month) days += days_of_month(month, date.jahr);
    const int since_monday = ((days - 2) % 7 + 7) % 7;
    return static_cast<std::int16_t>(since_monday + 1);
}

const char* weekday_name(int weekday) {
    static constexpr std::array names{"Mo", "Di", "Mi", "Do", "Fr", "Sa", "So"};
    return names[static_cast<std::size_t>((weekday - 1) % 7)];
}

} // namespace velorn
