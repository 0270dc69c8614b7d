#include "evaluation/period.h"

#include "archive/archive_layout.h"

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define VELORN_SSE2
#endif

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

// So many rows of the widest archive stay in a processor's innermost cache while all tracks are worked on.
constexpr int rows_at_once = 24;

struct Running {
    Lanes<double> sum{};
    Lanes<std::int32_t> values{};
};

// present() on floats alone.
constexpr float least_above = -996.99F;
constexpr float most_below = -999.01F;
static_assert(present(least_above) && !present(-996.99005F));
static_assert(present(most_below) && !present(-999.0099F));

#ifdef VELORN_SSE2

// Adds rows of as many tracks as there are lanes, the first at `from`, to the sums of the whole period and to
// those of the slot; how many there are is counted in the slot.
void add_rows(const float* from, int rows, std::ptrdiff_t columns, Running& running, Running& slot) {
    const __m128 above = _mm_set1_ps(least_above);
    const __m128 below = _mm_set1_ps(most_below);
    __m128d all_low = _mm_loadu_pd(&running.sum[0]);
    __m128d all_high = _mm_loadu_pd(&running.sum[2]);
    __m128d here_low = _mm_loadu_pd(&slot.sum[0]);
    __m128d here_high = _mm_loadu_pd(&slot.sum[2]);
    __m128i count = _mm_loadu_si128(reinterpret_cast<const __m128i*>(slot.values.data()));
    for (int row = 0; row < rows; ++row, from += columns) {
        const __m128 values = _mm_loadu_ps(from);
        const __m128 there = _mm_or_ps(_mm_cmpge_ps(values, above), _mm_cmple_ps(values, below));
        const __m128 counted = _mm_and_ps(values, there);
        const __m128d low = _mm_cvtps_pd(counted);
        const __m128d high = _mm_cvtps_pd(_mm_movehl_ps(counted, counted));
        count = _mm_sub_epi32(count, _mm_castps_si128(there));
        all_low = _mm_add_pd(all_low, low);
        all_high = _mm_add_pd(all_high, high);
        here_low = _mm_add_pd(here_low, low);
        here_high = _mm_add_pd(here_high, high);
    }
    _mm_storeu_pd(&running.sum[0], all_low);
    _mm_storeu_pd(&running.sum[2], all_high);
    _mm_storeu_pd(&slot.sum[0], here_low);
    _mm_storeu_pd(&slot.sum[2], here_high);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(slot.values.data()), count);
}

#else // a plain machine

void add_rows(const float* from, int rows, std::ptrdiff_t columns, Running& running, Running& slot) {
    for (int row = 0; row < rows; ++row, from += columns) {
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            if (!present(from[lane])) continue;
            running.sum[lane] += from[lane];
            slot.sum[lane] += from[lane];
            ++slot.values[lane];
        }
    }
}

#endif

// Tracks that are worked on together, and where in the answer each of them stands.
struct Group {
    int first = 0;      // column
    Lanes<int> place{}; // -1: not asked for
    Running running;
    Running slot;
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

void end_slot(Group& group, bool wanted, std::vector<TrackFigures>& figures) {
    for (std::size_t lane = 0; lane < lanes; ++lane) {
        group.running.values[lane] += group.slot.values[lane];
        if (!wanted || group.place[lane] < 0) continue;
        figures[static_cast<std::size_t>(group.place[lane])].slots.push_back(
            group.slot.values[lane] > 0 ? group.slot.sum[lane] / group.slot.values[lane]
                                        : std::numeric_limits<double>::quiet_NaN());
    }
    group.slot = {};
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
    const int rows_of_a_slot = slot > 0 ? slot : quarters_of_a_day;
    const int rows = std::min(rows_of_a_slot, rows_at_once);
    for (const CalendarDay& day : days) {
        const int y = day.jahr - startjahr;
        const std::span<const float> values = table == Table::daten ? archive.year(y) : archive.rechyear(y);
        const float* from = values.data() + archive_layout::row_of(day.mon, day.tag, 1) * columns;
        for (int done = rows; done <= quarters_of_a_day;
             done += rows, from += std::ptrdiff_t{rows} * columns) {
            for (Group& group : groups) {
                add_rows(from + group.first, rows, columns, group.running, group.slot);
                if (done % rows_of_a_slot == 0) end_slot(group, slot > 0, figures);
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
