#include "runtime/calendar.h"

#include <chrono>
#include <cmath>

namespace velorn {

namespace {

using namespace std::chrono;

constexpr sys_days epoch{year{1899} / December / 30};
constexpr double ms_per_day = 86'400'000.0;

void append_digits(std::string& text, int number, int digits) {
    std::string spelled = std::to_string(number);
    text.append(spelled.size() < static_cast<std::size_t>(digits)
                    ? static_cast<std::size_t>(digits) - spelled.size()
                    : 0,
                '0');
    text += spelled;
}

long days_of(const DateTime& moment) { return days_from_civil(moment.year, moment.month, moment.day); }

} // namespace

long days_from_civil(int y, int m, int d) {
    const year_month_day date{year{y}, month{static_cast<unsigned>(m)}, day{1}};
    return (sys_days{date} - epoch).count() + d - 1;
}

DateSerial serial_of(const DateTime& moment) {
    const double days = static_cast<double>(days_of(moment));
    const double fraction =
        (((moment.hour * 60.0 + moment.minute) * 60.0 + moment.second) * 1000.0 + moment.millisecond) /
        ms_per_day;
    // Before the epoch the fraction still counts forward from midnight, away from zero.
    return {days < 0 ? days - fraction : days + fraction};
}

Result<DateTime> date_time_of(DateSerial serial) {
    constexpr double least = -657'435;   // below 1.1.100
    constexpr double beyond = 2'958'466; // 1.1.10000
    if (!(serial.days > least) || !(serial.days < beyond)) return failure(RunTimeError::overflow);
    double whole = std::trunc(serial.days);
    auto ms = static_cast<std::int64_t>(std::llround(std::fabs(serial.days - whole) * ms_per_day));
    if (ms >= static_cast<std::int64_t>(ms_per_day)) {
        ms = 0;
        whole += 1;
    }
    const year_month_day date{epoch + days{static_cast<long>(whole)}};
    if (int(date.year()) < 100 || int(date.year()) > 9999) return failure(RunTimeError::overflow);
    DateTime moment;
    moment.year = int(date.year());
    moment.month = static_cast<int>(unsigned(date.month()));
    moment.day = static_cast<int>(unsigned(date.day()));
    moment.hour = static_cast<int>(ms / 3'600'000);
    moment.minute = static_cast<int>(ms / 60'000 % 60);
    moment.second = static_cast<int>(ms / 1000 % 60);
    moment.millisecond = static_cast<int>(ms % 1000);
    return moment;
}

double seconds_since_midnight(const DateTime& moment) {
    return (moment.hour * 60 + moment.minute) * 60 + moment.second + moment.millisecond / 1000.0;
}

int weekday(const DateTime& moment) {
    // 30.12.1899 was a Saturday.
    const long days = (days_of(moment) + 6) % 7;
    return static_cast<int>(days < 0 ? days + 7 : days) + 1;
}

std::string date_text(const DateTime& moment) {
    std::string text;
    append_digits(text, moment.day, 2);
    text += '.';
    append_digits(text, moment.month, 2);
    text += '.';
    append_digits(text, moment.year, 4);
    return text;
}

std::string time_text(const DateTime& moment) {
    std::string text;
    append_digits(text, moment.hour, 2);
    text += ':';
    append_digits(text, moment.minute, 2);
    text += ':';
    append_digits(text, moment.second, 2);
    return text;
}

std::string date_and_time_text(const DateTime& moment) { return date_text(moment) + ' ' + time_text(moment); }

} // namespace velorn
