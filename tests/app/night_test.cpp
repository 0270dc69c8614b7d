// Unattended nights in virtual time: forty sites with trouble of all kinds, and a judge for every archive.
// VELORN_NIGHTS nights from VELORN_NIGHT_SEED on are run by tools/nights.sh.
#include "app/night_judge.h"

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <iostream>
#include <optional>

namespace velorn::test {

namespace {

std::optional<std::uint64_t> number_from_outside(const char* name) {
    const char* const text = std::getenv(name);
    std::uint64_t number = 0;
    if (!text || std::from_chars(text, text + std::strlen(text), number).ec != std::errc{})
        return std::nullopt;
    return number;
}

// False: something was wrong, and it is told; after it, where wanted, all that the program told.
bool is_good(std::uint64_t seed, ArchiveTemplates& templates, bool at_length = false) {
    const NightPlan plan = plan_of(seed);
    Night night;
    run_night(plan, templates, night);
    const std::vector<std::string> complaints = judge(plan, night);
    for (const std::string& complaint : complaints) ADD_FAILURE() << "night " << seed << ": " << complaint;
    if (complaints.empty()) return true;
    for (const Watch& watch : night.watches) {
        if (at_length)
            std::cout << "-------- terminal\n" << watch.terminal << "\n-------- log\n" << watch.log;
    }
    return false;
}

constexpr std::uint64_t nights_of_a_group = 5;

struct Nights : testing::TestWithParam<std::uint64_t> {};

} // namespace

TEST_P(Nights, storeWhatWasAcknowledgedAndTellWhatHappened) {
    ArchiveTemplates templates;
    for (std::uint64_t seed = GetParam(); seed < GetParam() + nights_of_a_group; ++seed)
        (void)is_good(seed, templates);
}

INSTANTIATE_TEST_SUITE_P(From, Nights, testing::Values(1, 6, 11, 16), testing::PrintToStringParamName());

TEST(ANight, isTheSameEveryTime) {
    ArchiveTemplates templates;
    std::uint64_t digests[2] = {};
    for (std::uint64_t& digest : digests) {
        Night night;
        run_night(plan_of(2), templates, night);
        digest = digest_of(night);
    }
    EXPECT_EQ(digests[0], digests[1]);
}

// In that night a controller loses just so many bytes of a frame that the archive takes the rest for a whole
// one.
constexpr std::uint64_t night_of_a_frame_that_fits = 589;

TEST(ALongSeries, isOfOneNightUnlessMoreAreOrdered) {
    const std::uint64_t count = number_from_outside("VELORN_NIGHTS").value_or(1);
    const std::uint64_t first = number_from_outside("VELORN_NIGHT_SEED").value_or(night_of_a_frame_that_fits);
    ArchiveTemplates templates;
    for (std::uint64_t seed = first; seed < first + count; ++seed) {
        const bool good = is_good(seed, templates, true);
        std::cout << "night " << seed << (good ? " good" : " BAD") << std::endl;
        if (!good) break;
    }
}

} // namespace velorn::test
