// What is to happen in one night, all of it drawn from one number: which sites there are, how each is reached
// and what trouble its line and its controller make, what their archives hold, and whether the program is
// killed in the middle.
#pragma once

#include "plant/directory.h"
#include "plant/gateway.h"
#include "runtime/calendar.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velorn::test {

struct NightSite {
    plant::Site site;
    bool takes_part = true;
    int archive_tracks = 30; // 0: it has no archive
    int startjahr = 2020;
    bool fresh = false;      // nothing was ever downloaded into its archive
    bool four_hours = false; // what the archive has for its packets
    int days_ago = 1;        // the archive's newest day, before the night's date
    bool newest_is_full = true;

    bool has_archive() const { return archive_tracks > 0; }
    // Its line changes bytes.
    bool noisy() const { return site.faults.drop > 0 || site.faults.repeat > 0 || site.faults.garble > 0; }
    // Nothing hinders it.
    bool sound() const;
};

// The program dies without closing anything; its files stay as they were at that moment.
struct Kill {
    enum class By { seconds, changes_of_files };
    By by = By::seconds;
    std::int64_t count = 1;    // since the run's start
    double share_of_write = 0; // of the last write that reaches its file, 0 to 1
    std::int64_t away_ms = 0;  // until somebody starts it again
    std::uint64_t seed = 1;    // of the trouble on the lines in the run after it
};

struct NightPlan {
    std::uint64_t seed = 1;
    DateTime start;
    bool telnet = false; // numbers go over the gateway
    std::array<plant::Gateway::Behaviour, plant::Gateway::modems> gateway{};
    bool up_to_yesterday = false;
    bool always_quarters = false;
    std::vector<NightSite> sites; // from index 1 of the phone book on
    std::optional<Kill> kill;

    // The way to a site that has a number, by what stands in the middle.
    bool numbers_can_be_reached() const;
};

inline constexpr int sites_of_a_night = 40;

NightPlan plan_of(std::uint64_t seed);

std::string archive_path(std::size_t site);

} // namespace velorn::test
