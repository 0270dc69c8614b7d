// One night carried out: the whole program in virtual time, its archives on a disk in memory, the plant at
// the far end of its lines. What comes of it is kept for the judge: what was heard on the lines, what the
// terminal and the log tell, the archives before and after.
#pragma once

#include "app/night_line.h"
#include "app/night_plan.h"
#include "support/block_files.h"

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace velorn::test {

// New archives, each kind made once and then shared.
class ArchiveTemplates {
  public:
    // `used`: a download has been there before and has left the texts of all tracks.
    BlockFiles::Content archive(int tracks, int startjahr, bool used, bool four_hours);

  private:
    using Kind = std::tuple<int, int, bool, bool>;
    std::map<Kind, BlockFiles::Content> made_;
};

// The time from the person's order to the end of its run, or from a start that finds a run interrupted.
struct Watch {
    enum class Kind { run, continuation };
    enum class End { finished, killed, endless };
    Kind kind = Kind::run;
    End end = End::finished;
    DateTime clock_at_0; // of the events' time
    std::vector<LineEvent> line;
    std::string terminal;
    std::string log;
    std::vector<std::string> complaints; // what should never happen at all
};

struct Night {
    BlockFiles files;
    std::vector<BlockFiles::Content> before; // by site; empty where it has none
    std::vector<Watch> watches;
};

void run_night(const NightPlan& plan, ArchiveTemplates& templates, Night& night);

// Over all files, the terminals and the logs.
std::uint64_t digest_of(const Night& night);

// The clock so many milliseconds later.
DateTime later(const DateTime& clock, std::int64_t ms);

} // namespace velorn::test
