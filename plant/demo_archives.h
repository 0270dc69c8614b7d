// The archives of quarter-hour values that the demo brings, so that a collection has somewhere to store and
// the evaluation something to show: for each site that takes part in the collection one file of 30 tracks,
// filled with what the site has recorded in the year that ended two days ago. The plant lays the bytes down
// itself, so that the program's reading of them is measured by another hand.
//
// The file is a calendar cube of 32-bit floats without a header: ten years x 13 months x 32 days x 97
// quarters x 31 tracks, the zero of each unused, then settings as tagged values, a second cube of five
// calculated tracks, and their texts. -997 is a cell that was never stored, -999 one that the site had no
// value for.
#pragma once

#include "plant/directory.h"
#include "runtime/calendar.h"
#include "runtime/failure.h"
#include "runtime/files.h"

#include <string>
#include <vector>

namespace velorn::plant {

constexpr int archive_tracks = 30;
constexpr int recorded_days = 365;
constexpr int days_behind = 2; // the newest day in the archive is that of the day before yesterday

// Writes the archive of one site. Its first year is the one in which the recorded days begin.
Outcome write_archive(const Site& site, const DateTime& today, BinaryFile& file);

// Writes those that aren't there yet into `folder` (UTF-8, a path of this machine) and gives their paths.
Result<std::vector<std::string>> write_archives(const Directory& directory, const std::string& folder,
                                                const DateTime& today);

} // namespace velorn::plant
