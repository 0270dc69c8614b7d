#include "evaluation/period.h"

#include "archive/archive_layout.h"

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define VELORN_SSE2
#endif

#include <algorithm>
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

// present() on floats alone.
constexpr float least_above = -996.99F;
constexpr float most_below = -999.01F;
static_assert(present(least_above) && !present(-996.99005F));
static_assert(present(most_below) && !present(-999.0099F));

// Tracks that stand side by side are worked on together.
constexpr int lanes = 4;

// Running sums of some groups of tracks, `lanes` entries for each group. Rows are taken as they follow each
// other in memory, which is what a machine reads fastest.
class Sums {
  public:
    Sums(std::span<const int> tracks, int columns) {
        for (std::size_t i = 0; i < tracks.size(); ++i) {
            if (firsts_.empty() || tracks[i] >= firsts_.back() + lanes) {
                firsts_.push_back(std::min(tracks[i], columns - lanes));
                place_.resize(firsts_.size() * lanes, nowhere);
            }
            place_[(firsts_.size() - 1) * lanes + static_cast<std::size_t>(tracks[i] - firsts_.back())] = i;
        }
        period_.resize(place_.size());
        slot_.resize(place_.size());
        values_.resize(place_.size());
        slot_values_.resize(place_.size());
    }

    void add_row(const float* row);

    // The slot ends: its means go to the tracks that are asked for, and the next one begins.
    void end_slot(bool wanted, std::vector<TrackFigures>& figures) {
        for (std::size_t i = 0; i < place_.size(); ++i) {
            values_[i] += slot_values_[i];
            if (wanted && place_[i] != nowhere) {
                figures[place_[i]].slots.push_back(slot_values_[i] > 0
                                                       ? slot_[i] / slot_values_[i]
                                                       : std::numeric_limits<double>::quiet_NaN());
            }
            slot_[i] = 0;
            slot_values_[i] = 0;
        }
    }

    void end(std::vector<TrackFigures>& figures) const {
        for (std::size_t i = 0; i < place_.size(); ++i) {
            if (place_[i] == nowhere) continue;
            // A quarter of a sum is exact, so it is the sum of the quarters.
            figures[place_[i]].sum = period_[i] * hours_of_a_quarter;
            figures[place_[i]].values = values_[i];
        }
    }

  private:
    static constexpr auto nowhere = static_cast<std::size_t>(-1);

    std::vector<int> firsts_;        // the groups' first columns
    std::vector<std::size_t> place_; // where in the answer; tracks in between are nowhere
    std::vector<double> period_, slot_;
    std::vector<std::int32_t> values_, slot_values_;
};

#ifdef VELORN_SSE2

void Sums::add_row(const float* row) {
    const __m128 above = _mm_set1_ps(least_above);
    const __m128 below = _mm_set1_ps(most_below);
    double* period = period_.data();
    double* slot = slot_.data();
    auto* count = reinterpret_cast<__m128i*>(slot_values_.data());
    const auto add = [](double* to, __m128d what) { _mm_storeu_pd(to, _mm_add_pd(_mm_loadu_pd(to), what)); };
    for (const int first : firsts_) {
        const __m128 values = _mm_loadu_ps(row + first);
        const __m128 there = _mm_or_ps(_mm_cmpge_ps(values, above), _mm_cmple_ps(values, below));
        const __m128 counted = _mm_and_ps(values, there);
        const __m128d low = _mm_cvtps_pd(counted);
        const __m128d high = _mm_cvtps_pd(_mm_movehl_ps(counted, counted));
        _mm_storeu_si128(count, _mm_sub_epi32(_mm_loadu_si128(count), _mm_castps_si128(there)));
        add(period, low);
        add(period + 2, high);
        add(slot, low);
        add(slot + 2, high);
        period += lanes;
        slot += lanes;
        ++count;
    }
}

#else // a plain machine

void Sums::add_row(const float* row) {
    std::size_t i = 0;
    for (const int first : firsts_) {
        for (int lane = 0; lane < lanes; ++lane, ++i) {
            const float value = row[first + lane];
            if (!present(value)) continue;
            period_[i] += value;
            slot_[i] += value;
            ++slot_values_[i];
        }
    }
}

#endif

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
    Sums sums(tracks, columns);
    const int rows_of_a_slot = slot > 0 ? slot : quarters_of_a_day;
    for (const CalendarDay& day : days) {
        const int y = day.jahr - startjahr;
        const std::span<const float> values = table == Table::daten ? archive.year(y) : archive.rechyear(y);
        const float* row = values.data() + archive_layout::row_of(day.mon, day.tag, 1) * columns;
        for (int quarter = 1; quarter <= quarters_of_a_day; ++quarter, row += columns) {
            sums.add_row(row);
            if (quarter % rows_of_a_slot == 0) sums.end_slot(slot > 0, figures);
        }
    }
    sums.end(figures);
    return figures;
}

} // namespace velorn
