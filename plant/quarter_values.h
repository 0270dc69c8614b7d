// What a site has recorded, quarter-hour by quarter-hour: a pure function of the site's seed, the track and
// the time, so that years of it need no memory and whoever asks twice gets the same answer. Plausible for the
// years 2000 to 2050.
//
// The generator runs in blocks that follow the time of day, the weekday and the season; temperatures have one
// decimal; meters only rise; now and then a track has a gap that lasts some quarters.
#pragma once

#include "runtime/calendar.h"

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

namespace velorn::plant {

inline constexpr int quarters_of_day = 96;
inline constexpr int most_tracks = 999; // what three digits can tell

// A quarter-hour; number 1 ends at 0:15, number 96 at midnight.
struct Quarter {
    long day = 0;   // days_from_civil()
    int number = 1; // 1 to 96

    auto operator<=>(const Quarter&) const = default;
};

Quarter quarter_after(const Quarter& quarter, int count); // 0 and more
Quarter quarter_before(const Quarter& quarter, int count);
// The last quarter that was complete at the given moment.
Quarter newest_quarter(const DateTime& now);
// Its day.
DateTime date_of(const Quarter& quarter);

struct Recording {
    std::uint64_t seed = 1;
    int tracks = 12; // 1 to most_tracks
};

// Tracks count from 1. Code page 437, padded with blanks to 14 and to 5 characters.
std::string track_name(int track);
std::string track_unit(int track);

// As the controller sends it: 8 characters, right-aligned, decimal comma; "     ***" is a gap.
inline constexpr std::size_t value_length = 8;
std::string value(const Recording& site, int track, const Quarter& when);
// All tracks, one after the other.
std::string values(const Recording& site, const Quarter& when);
// What an archive has to hold for such a text: its number, -999 for a gap.
float stored(std::string_view value_text);
float stored(const Recording& site, int track, const Quarter& when);

} // namespace velorn::plant
