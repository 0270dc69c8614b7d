#include "app/night_plan.h"

#include "plant/random.h"

#include <algorithm>
#include <cstdio>

namespace velorn::test {

namespace {

using plant::Behaviour;
using plant::Random;
using plant::Route;

bool happens(Random& random, double probability) { return random.unit() < probability; }

std::int64_t between(Random& random, std::int64_t first, std::int64_t last) {
    return first + static_cast<std::int64_t>(random.below(static_cast<std::uint64_t>(last - first + 1)));
}

template <class T, std::size_t n>
T one_of(Random& random, const T (&values)[n]) {
    return values[random.below(n)];
}

constexpr DateTime dates[] = {{2026, 11, 15, 0, 0, 0, 0}, {2026, 12, 31, 0, 0, 0, 0},
                              {2027, 1, 1, 0, 0, 0, 0},   {2027, 3, 1, 0, 0, 0, 0},
                              {2028, 2, 29, 0, 0, 0, 0},  {2028, 3, 1, 0, 0, 0, 0},
                              {2027, 7, 4, 0, 0, 0, 0},   {2027, 5, 1, 0, 0, 0, 0}};

// How an archive that takes part may be sized; small ones are the rule.
constexpr int sizes[] = {30, 30, 30, 30, 60, 60, 90, 120, 150};

plant::Faults line_of(Random& random) {
    plant::Faults faults;
    faults.seed = random.next();
    switch (random.below(12)) {
    case 0:
    case 1:
        for (double* share : {&faults.drop, &faults.repeat, &faults.garble}) {
            if (happens(random, 0.6)) *share = 0.002 * random.unit() * random.unit();
        }
        break;
    case 2:
    case 3:
        faults.bytes_per_second = between(random, 120, 3000);
        faults.delay_ms = between(random, 0, 800);
        break;
    case 4: faults.hang_up_after = random.below(15'000); break;
    case 5:
        faults.silent_after = random.below(15'000);
        faults.silent_for_ms = happens(random, 0.5) ? 0 : between(random, 1000, 40'000);
        break;
    default: break;
    }
    return faults;
}

plant::DownloadFaults controller_of(Random& random) {
    plant::DownloadFaults faults;
    faults.seed = random.next();
    if (happens(random, 0.5)) return faults;
    const auto now_and_then = [&](double& share, double most) {
        if (happens(random, 0.3)) share = most * random.unit();
    };
    now_and_then(faults.garbled_copies, 1);
    now_and_then(faults.wrong_lengths, 0.2);
    now_and_then(faults.wrong_dates, 0.1);
    now_and_then(faults.repeats, 0.3);
    now_and_then(faults.two_at_once, 0.2);
    now_and_then(faults.slow_bytes, 0.1);
    now_and_then(faults.silences, 0.02);
    now_and_then(faults.hang_ups, 0.02);
    now_and_then(faults.vain_repeats, 1);
    if (happens(random, 0.2)) faults.right_one_after_ms = 0;
    return faults;
}

plant::Site site_of(Random& random, int place) {
    plant::Site site;
    char text[32];
    (void)std::snprintf(text, sizeof text, "Wärmewerk %02d", place + 1);
    site.name = text;
    (void)std::snprintf(text, sizeof text, "05550 2000%02d", place + 1);
    site.number = text;
    site.address = "127.0.2." + std::to_string(place + 1);
    constexpr std::uint16_t ports[] = {23, 1100, 1100, 2001, 10100};
    site.port = one_of(random, ports);
    site.route = happens(random, 0.5) ? Route::tcp : Route::modem;
    if (site.port == 23 && happens(random, 0.5)) {
        site.user = "service";
        site.password = "bhkw";
    }
    if (happens(random, 0.2)) {
        constexpr Behaviour others[] = {Behaviour::busy, Behaviour::refuses, Behaviour::never_answers};
        site.behaviour = one_of(random, others);
    }
    site.seed = random.next();
    site.pick_up_ms = between(random, 1000, 15'000);
    site.faults = line_of(random);
    site.download_faults = controller_of(random);
    return site;
}

// Two digits, three digits, and now and then more than the archive has a place for.
int tracks_of(Random& random, int archive_tracks) {
    if (happens(random, 0.04)) return archive_tracks + static_cast<int>(between(random, 1, 80));
    if (archive_tracks > 100 && happens(random, 0.5))
        return static_cast<int>(between(random, 100, archive_tracks));
    return static_cast<int>(between(random, 2, std::clamp(archive_tracks, 2, 30)));
}

std::optional<Kill> kill_of(Random& random) {
    Kill kill;
    kill.by = happens(random, 0.6) ? Kill::By::changes_of_files : Kill::By::seconds;
    kill.count = kill.by == Kill::By::seconds ? between(random, 1, 6000) : between(random, 1, 4000);
    kill.share_of_write = random.unit();
    kill.away_ms = between(random, 90'000, 3 * 3'600'000);
    kill.seed = random.next();
    return happens(random, 0.5) ? std::optional(kill) : std::nullopt;
}

} // namespace

bool NightSite::sound() const {
    const plant::DownloadFaults& own = site.download_faults;
    const double any = own.garbled_copies + own.wrong_lengths + own.wrong_dates + own.repeats +
                       own.two_at_once + own.slow_bytes + own.silences + own.hang_ups + own.vain_repeats;
    return site.behaviour == Behaviour::connects && !site.faults.any() && any == 0 &&
           site.tracks <= archive_tracks;
}

bool NightPlan::numbers_can_be_reached() const {
    using enum plant::Gateway::Behaviour;
    return !telnet || gateway[0] == connects || (gateway[0] == refuses && gateway[1] == connects);
}

NightPlan plan_of(std::uint64_t seed) {
    Random random(seed);
    NightPlan plan;
    plan.seed = seed;
    plan.start = one_of(random, dates);
    plan.start.hour = static_cast<int>(random.below(24));
    plan.start.minute = static_cast<int>(random.below(60));
    plan.telnet = happens(random, 0.5);
    using enum plant::Gateway::Behaviour;
    constexpr plant::Gateway::Behaviour gateways[] = {connects, connects, connects, refuses, busy, silent};
    for (auto& behaviour : plan.gateway) behaviour = one_of(random, gateways);
    plan.up_to_yesterday = happens(random, 0.2);
    plan.always_quarters = happens(random, 0.2);
    bool first_archive = true;
    for (int i = 0; i < sites_of_a_night; ++i) {
        NightSite one;
        one.site = site_of(random, i);
        one.takes_part = happens(random, 0.95);
        one.archive_tracks = happens(random, 0.05) ? 0 : one_of(random, sizes);
        one.days_ago = happens(random, 0.1) ? 2 : 1;
        // Room for the newest day before a new year, and for a night that ends in one.
        one.startjahr = plan.start.year - 1 - static_cast<int>(random.below(8));
        one.fresh = happens(random, 0.08);
        one.four_hours = happens(random, 0.4);
        one.newest_is_full = happens(random, 0.7);
        one.site.tracks = tracks_of(random, std::max(one.archive_tracks, 30));
        // An archive of 120 tracks doesn't tell its layout, and the first of a run would be read as the old
        // one: that has its own tests.
        if (first_archive && one.archive_tracks == 120) one.archive_tracks = 150;
        if (one.has_archive() && one.takes_part) first_archive = false;
        plan.sites.push_back(std::move(one));
    }
    plan.kill = kill_of(random);
    return plan;
}

std::string archive_path(std::size_t site) { return "c:\\anlage" + std::to_string(site + 1) + ".dat"; }

} // namespace velorn::test
