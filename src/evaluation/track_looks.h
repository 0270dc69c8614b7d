// Names, units, colours and flags of the tracks, as the archive keeps them, for one of its two tables. A
// track that a damaged archive has nothing for is nameless, black and not shown.
#pragma once

#include "archive/archive.h"
#include "evaluation/period.h"
#include "runtime/controls.h"

#include <span>
#include <string>
#include <vector>

namespace velorn {

inline constexpr int drawn_calculated_tracks = 4; // and one that has no order of time

struct TrackLooks {
    std::span<Variant> names, units, colours, visible, right;

    std::string name(int track) const;
    std::string unit(int track) const;
    Colour colour(int track) const;
    bool is_visible(int track) const;
    bool is_right(int track) const; // uses the right axis
    // Its sum is a quantity: kW make kWh, but degrees make nothing.
    bool has_sum(int track) const;

    // Tracks that don't exist stay so.
    static void set(std::span<Variant> table, int track, Variant value);
};

TrackLooks looks_of(ArchiveSettings& settings, Table table);

// The tracks that a chart shows, ascending: 1 to spuranz, or 0 to 3 of the calculated ones.
// Flags of tracks that the archive has no values for count for nothing.
std::vector<int> shown_tracks(Archive& archive, Table table);

// The name by which a calculated track is listed, 0 to 4.
std::string calculated_name(const ArchiveSettings& settings, int track);

// The view that is kept with the archive; a day where that makes no sense.
View view_of(const ArchiveSettings& settings);

// The archive's first year; 2000 where that makes no sense.
int first_year(const ArchiveSettings& settings);

} // namespace velorn
