// The days that a view walks, and the running figures of many tracks over them.
#pragma once

#include "archive/archive.h"
#include "evaluation/evaluation_calendar.h"

#include <cstdint>
#include <span>
#include <vector>

namespace velorn {

enum class View { day = 1, week = 2, month = 3, year = 4 };

// The days of a view from the selected one, each brought into the calendar: 1, 7, as many as the selected
// month has, or 365 or 366. Beyond the archive's end its last day comes again and again.
std::vector<CalendarDay> days_of_view(View view, const CalendarDay& selected, int startjahr);

// A value that is there: neither a gap nor not yet transferred. What is no number is missing, too.
constexpr bool present(float value) { return value > -996.99 || value < -999.01; }

inline constexpr int quarters_of_a_day = 96;
inline constexpr double hours_of_a_quarter = 0.25;

// Which of the archive's tables.
enum class Table { daten, rechdaten };

// What one track has come to.
struct TrackFigures {
    double sum = 0;          // of value times hours, added up in the order of time
    std::int32_t values = 0; // how many are present
    // Mean of each slot in the order of time, NaN where it has no value; none were asked for: empty.
    std::vector<double> slots;

    float hours() const { return static_cast<float>(values * hours_of_a_quarter); }
    double mean() const { return sum / hours(); }
};

// Figures of some tracks, ascending, over the days. slot: quarter-hours that are taken together, 8, 16 or 96,
// or 0 for no slots. What lies side by side in the archive is gone through once, whatever is asked for.
std::vector<TrackFigures> figures_of(Archive& archive, Table table, int startjahr,
                                     std::span<const CalendarDay> days, std::span<const int> tracks,
                                     int slot);

} // namespace velorn
