#include "app/night_judge.h"

#include "plant/quarter_values.h"

#include <algorithm>

namespace velorn::test {

namespace {

using plant::Quarter;

Quarter quarter_of(const HeardSet& set) {
    return {days_from_civil(set.year, set.month, set.day), set.quarter};
}

std::string told(const Quarter& quarter) {
    const DateTime day = plant::date_of(quarter);
    return std::to_string(day.day) + '.' + std::to_string(day.month) + '.' + std::to_string(day.year) + " q" +
           std::to_string(quarter.number);
}

// Where no byte can have changed on the way the values are those of the plant.
void judge_values(const NightSite& planned, const HeardSite& heard, const std::string& who,
                  std::vector<std::string>& complaints) {
    if (planned.noisy()) return;
    // A frame of too many tracks is refused by its length, but where the controller leaves out just a track's
    // width of it.
    if (planned.site.tracks > planned.archive_tracks && planned.site.download_faults.wrong_lengths > 0)
        return;
    const plant::Recording recording{planned.site.seed, planned.site.tracks};
    for (const HeardSet& set : heard.sets) {
        for (std::size_t t = 0; t < set.values.size(); ++t) {
            const float own = plant::stored(recording, static_cast<int>(t) + 1, quarter_of(set));
            if (set.values[t] == own) continue;
            complaints.push_back(who + ": " + told(quarter_of(set)) + " track " + std::to_string(t + 1) +
                                 " isn't what the plant has");
            return;
        }
    }
}

// Nothing hinders this site: it has to be collected as a whole, from the day after its archive's newest on.
// `newest_day` is the archive's, by what had been collected before.
void judge_sound_site(const NightPlan& plan, const NightSite& planned, const HeardSite& heard,
                      const Watch& watch, Quarter first, const std::string& who,
                      std::vector<std::string>& complaints) {
    if (watch.end != Watch::End::finished) return;
    if (!heard.complete) {
        complaints.push_back(who + ": nothing hinders it, and it wasn't collected to the end");
        return;
    }
    if (heard.four_hours != (planned.four_hours && !plan.always_quarters))
        complaints.push_back(who + ": the packets are of the wrong kind");
    const DateTime ordered = later(watch.clock_at_0, heard.begun_ms);
    Quarter last = plant::newest_quarter(ordered);
    if (plan.up_to_yesterday) {
        const long today = days_from_civil(ordered.year, ordered.month, ordered.day);
        last = std::min(last, Quarter{today - 1, plant::quarters_of_day});
    }
    Quarter next = first;
    for (const HeardSet& set : heard.sets) {
        if (quarter_of(set) != next) {
            complaints.push_back(who + ": " + told(next) + " was due and " + told(quarter_of(set)) + " came");
            return;
        }
        next = plant::quarter_after(next, 1);
    }
    // While it was dialled and asked the next quarter may have become complete.
    if (next <= last || next > plant::quarter_after(last, 3))
        complaints.push_back(who + ": it ended before " + told(next) + " instead of behind " + told(last));
}

} // namespace

std::vector<std::string> judge(const NightPlan& plan, const Night& night) {
    std::vector<std::string> complaints;
    std::vector<HeardNight> heard;
    for (const Watch& watch : night.watches) {
        heard.push_back(read_line(plan, watch.line));
        for (const auto& some : {watch.complaints, heard.back().complaints})
            complaints.insert(complaints.end(), some.begin(), some.end());
        judge_words(plan, watch, heard.back(), complaints);
    }
    for (std::size_t i = 0; i < plan.sites.size(); ++i) {
        const NightSite& planned = plan.sites[i];
        const std::string who = "site " + std::to_string(i + 1);
        const bool reachable = planned.site.route == plant::Route::tcp || plan.numbers_can_be_reached();
        bool collected = false; // data sets of an earlier watch shift the beginning
        for (std::size_t w = 0; w < heard.size(); ++w) {
            if (night.watches[w].kind != Watch::Kind::run) continue;
            judge_values(planned, heard[w].sites[i], who, complaints);
            if (planned.takes_part && planned.has_archive() && planned.sound() && reachable && !collected) {
                const DateTime newest = later(plan.start, -86'400'000LL * planned.days_ago);
                Quarter first{days_from_civil(newest.year, newest.month, newest.day), 1};
                if (planned.newest_is_full) ++first.day;
                judge_sound_site(plan, planned, heard[w].sites[i], night.watches[w], first, who, complaints);
            }
            collected = collected || !heard[w].sites[i].sets.empty() || !heard[w].sites[i].unanswered.empty();
        }
        if (planned.has_archive()) judge_archive(plan, night, heard, i, complaints);
    }
    return complaints;
}

} // namespace velorn::test
