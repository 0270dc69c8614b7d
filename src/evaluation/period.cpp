#include "evaluation/period.h"

#include "archive/archive_layout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace velorn {

namespace {

constexpr int days_of_a_week = 7;

int days_walked(View view, const CalendarDay& selected) {
    switch (view) {
    case View::day: return 1;
    case View::week: return days_of_a_week;
    case View::month: return days_of_month(selected.mon, selected.jahr);
    case View::year:
        // The February that lies ahead decides.
        return leap_year(selected.mon > 2 ? selected.jahr + 1 : selected.jahr) ? 366 : 365;
    }
    return 1;
}

// Tracks that stand side by side are worked on together, as many as a machine's registers hold well.
constexpr int lanes = 4;

template <class T>
using Lanes = std::array<T, lanes>;

struct Running {
    Lanes<double> sum{};
    Lanes<std::int32_t> values{};
};

// present() on floats alone.
constexpr float least_above = -996.99F;
constexpr float most_below = -999.01F;
static_assert(present(least_above) && !present(-996.99005F));
static_assert(present(most_below) && !present(-999.0099F));

// Adds up `rows` rows of as many tracks as there are lanes, the first at `from`.
inline void add_rows(const float* from, int rows, std::ptrdiff_t columns, Running& running, Running& slot) {
    Running all = running;
    Running here;
    for (int row = 0; row < rows; ++row, from += columns) {
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            const float value = from[lane];
            const bool is_there = (value >= least_above) | (value <= most_below);
            const double counted = is_there ? value : 0.0F;
            all.sum[lane] += counted;
            here.sum[lane] += counted;
            here.values[lane] += is_there ? 1 : 0;
        }
    }
    for (std::size_t lane = 0; lane < lanes; ++lane) all.values[lane] += here.values[lane];
    running = all;
    slot = here;
}

// Tracks that are worked on together, and where in the answer each of them stands.
struct Group {
    int first = 0;      // column
    Lanes<int> place{}; // -1: not asked for
    Running running;
};

std::vector<Group> groups_of(std::span<const int> tracks, int columns) {
    std::vector<Group> groups;
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        const int track = tracks[i];
        if (groups.empty() || track >= groups.back().first + lanes) {
            groups.emplace_back().first = std::min(track, columns - lanes);
            groups.back().place.fill(-1);
        }
        groups.back().place[static_cast<std::size_t>(track - groups.back().first)] = static_cast<int>(i);
    }
    return groups;
}

void end_slot(const Group& group, const Running& slot, std::vector<TrackFigures>& figures) {
    for (std::size_t lane = 0; lane < lanes; ++lane) {
        if (group.place[lane] < 0) continue;
        figures[static_cast<std::size_t>(group.place[lane])].slots.push_back(
            slot.values[lane] > 0 ? slot.sum[lane] / slot.values[lane]
                                  : std::numeric_limits<double>::quiet_NaN());
    }
}

} // namespace

std::vector<CalendarDay> days_of_view(View view, const CalendarDay& selected, int startjahr) {
    CalendarDay day = kalenderdatum(selected, startjahr);
    std::vector<CalendarDay> days;
    for (int left = days_walked(view, day); left > 0; --left) {
        day = kalenderdatum(day, startjahr);
        days.push_back(day);
        ++day.tag;
    }
    return days;
}

std::vector<TrackFigures> figures_of(Archive& archive, Table table, int startjahr,
                                     std::span<const CalendarDay> days, std::span<const int> tracks,
                                     int slot) {
    std::vector<TrackFigures> figures(tracks.size());
    if (slot > 0) {
        for (TrackFigures& track : figures)
            track.slots.reserve(days.size() * static_cast<std::size_t>(quarters_of_a_day / slot));
    }
    const int columns = table == Table::daten ? archive.spuranz + 1 : archive_layout::calculated_tracks;
    std::vector<Group> groups = groups_of(tracks, columns);
    const int rows = slot > 0 ? slot : quarters_of_a_day;
    for (const CalendarDay& day : days) {
        const int y = day.jahr - startjahr;
        const std::span<const float> values = table == Table::daten ? archive.year(y) : archive.rechyear(y);
        const float* const first = values.data() + archive_layout::row_of(day.mon, day.tag, 1) * columns;
        for (Group& group : groups) {
            const float* from = first + group.first;
            for (int done = 0; done < quarters_of_a_day; done += rows) {
                Running of_slot;
                add_rows(from, rows, columns, group.running, of_slot);
                if (slot > 0) end_slot(group, of_slot, figures);
                from += std::ptrdiff_t{rows} * columns;
            }
        }
    }
    for (const Group& group : groups) {
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            if (group.place[lane] < 0) continue;
            TrackFigures& track = figures[static_cast<std::size_t>(group.place[lane])];
            // A quarter of a sum is exact, so it is the sum of the quarters.
            track.sum = group.running.sum[lane] * hours_of_a_quarter;
            track.values = group.running.values[lane];
        }
    }
    return figures;
}

} // namespace velorn
