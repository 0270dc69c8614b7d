// A plain reader of downloads as they were heard on the line. It shares nothing with the program's own: what
// it finds acknowledged has to be in the archives.
#pragma once

#include "app/night_line.h"
#include "app/night_plan.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velorn::test {

struct HeardSet {
    int year = 0; // calendar year
    int month = 0, day = 0, quarter = 0;
    std::vector<float> values; // track 1 first
};

struct HeardTracks {
    int count = 0;                         // as many as the archive takes
    std::vector<std::string> units, names; // cp1252
};

// What one site's turn came to.
struct HeardSite {
    int called = 0;                    // connections and calls that were asked for
    bool reached = false;              // a connection came about
    int downloads = 0;                 // begun
    std::int64_t begun_ms = 0;         // the last of them
    bool four_hours = false;           // was ordered
    bool complete = false;             // the controller's end was heard
    std::optional<HeardTracks> tracks; // the last that were acknowledged
    std::vector<HeardSet> sets;        // acknowledged, those that the archive has a place for
    std::vector<HeardSet> unanswered;  // a whole good frame was there and the line ends before its answer
};

struct HeardNight {
    std::vector<HeardSite> sites; // as in the plan
    std::vector<std::string> complaints;
};

HeardNight read_line(const NightPlan& plan, const std::vector<LineEvent>& line);

// The number that a field spells, blanks around it; -999 for one that holds "***".
std::optional<float> heard_number(std::string_view field);

} // namespace velorn::test
