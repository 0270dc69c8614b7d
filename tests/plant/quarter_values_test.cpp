#include "plant/directory.h"
#include "plant/quarter_values.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <string>

namespace velorn::plant {
namespace {

constexpr int load = 1;
constexpr int flow = 3;
constexpr int return_flow = 4;
constexpr int outside = 5;
constexpr int electricity = 6;
constexpr int starts = 20;

Quarter at(int year, int month, int day, int number = 1) {
    return {days_from_civil(year, month, day), number};
}

TEST(Quarters, goOnOverMidnightAndYears) {
    EXPECT_EQ(quarter_after(at(2007, 12, 31, 96), 1), at(2008, 1, 1, 1));
    EXPECT_EQ(quarter_after(at(2008, 2, 28, 50), 96), at(2008, 2, 29, 50));
    EXPECT_EQ(quarter_before(at(2008, 1, 1, 1), 1), at(2007, 12, 31, 96));
    EXPECT_EQ(quarter_before(at(2008, 3, 1, 50), 95), at(2008, 2, 29, 51));
    EXPECT_EQ(quarter_before(at(2008, 3, 1, 50), 49), at(2008, 3, 1, 1));
}

TEST(Quarters, areRecordedOnceTheyAreComplete) {
    EXPECT_EQ(newest_quarter({2008, 3, 1, 0, 14, 59}), at(2008, 2, 29, 96));
    EXPECT_EQ(newest_quarter({2008, 3, 1, 0, 15, 0}), at(2008, 3, 1, 1));
    EXPECT_EQ(newest_quarter({2008, 3, 1, 23, 59, 59}), at(2008, 3, 1, 95));
}

TEST(QuarterValues, areTheSameWheneverAndHoweverTheyAreAsked) {
    const Recording site{101, 28};
    const std::string all = values(site, at(2026, 11, 14, 40));
    ASSERT_EQ(all.size(), 28U * 8);
    for (int track = 1; track <= 28; ++track)
        EXPECT_EQ(all.substr(static_cast<std::size_t>(track - 1) * 8, 8),
                  value(site, track, at(2026, 11, 14, 40)));
    EXPECT_NE(all, values({102, 28}, at(2026, 11, 14, 40)));
    EXPECT_NE(all, values(site, at(2026, 11, 14, 41)));
}

// A comma, a sign or none, and figures, right-aligned in eight characters.
bool well_formed(const std::string& text) {
    if (text.size() != value_length) return false;
    const std::size_t begin = text.find_first_not_of(' ');
    if (begin == std::string::npos || text.substr(begin) == "***") return begin == 5;
    const std::string number = text.substr(text[begin] == '-' ? begin + 1 : begin);
    return !number.empty() && number.find_first_not_of("0123456789,") == std::string::npos &&
           std::count(number.begin(), number.end(), ',') <= 1 && number.front() != ',' &&
           number.back() != ',';
}

TEST(QuarterValues, haveEightCharactersInEveryYearOfEverySite) {
    const Directory directory = demo_directory();
    for (const Site& site : directory.sites()) {
        for (int year = 2000; year <= 2050; ++year) {
            for (const Quarter& when : {at(year, 1, 1, 1), at(year, 7, 2, 34), at(year, 12, 31, 96)}) {
                const std::string all = values({site.seed, 40}, when);
                for (std::size_t i = 0; i < all.size(); i += 8)
                    ASSERT_TRUE(well_formed(all.substr(i, 8))) << year << " '" << all.substr(i, 8) << "'";
            }
        }
    }
}

TEST(QuarterValues, areStoredAsTheirTextSays) {
    const Recording site{101, 8};
    int negative = 0;
    for (int i = 0; i < 400; ++i) {
        const Quarter when = quarter_after(at(2026, 1, 10), i);
        std::string text = value(site, outside, when);
        if (text == "     ***") continue;
        std::replace(text.begin(), text.end(), ',', '.');
        EXPECT_EQ(stored(site, outside, when), static_cast<float>(std::stod(text)));
        negative += stored(site, outside, when) < 0 ? 1 : 0;
    }
    EXPECT_GT(negative, 0);
}

TEST(QuarterValues, showAGeneratorThatRunsInBlocks) {
    const Recording site{103, 8};
    int running = 0;
    int switched = 0;
    float highest = 0;
    float lowest = 1e9F;
    float before = 0;
    for (int i = 0; i < 14 * quarters_of_day; ++i) {
        const float now = stored(site, load, quarter_after(at(2026, 11, 2), i));
        if (now < 0) continue;
        running += now > 0 ? 1 : 0;
        switched += (now > 0) != (before > 0) ? 1 : 0;
        highest = std::max(highest, now);
        if (now > 0) lowest = std::min(lowest, now);
        before = now;
    }
    EXPECT_GT(running, 14 * 30);
    EXPECT_LT(running, 14 * 90);
    EXPECT_GT(switched, 14);
    EXPECT_LT(switched, 14 * 12);
    EXPECT_GE(lowest * 2.01F, highest); // half to full load
}

TEST(QuarterValues, showLessLoadOnSundaysAndInSummer) {
    const auto sum = [](const Quarter& from, int step_days, int days) {
        float all = 0;
        for (int day = 0; day < days; ++day) {
            for (int i = 0; i < quarters_of_day; ++i)
                all += std::max(0.0F, stored({104, 8}, load, {from.day + day * step_days, i + 1}));
        }
        return all;
    };
    EXPECT_LT(sum(at(2026, 11, 1), 7, 4), sum(at(2026, 11, 3), 7, 4)); // Sundays, Tuesdays
    EXPECT_LT(sum(at(2026, 7, 1), 1, 14), sum(at(2026, 1, 1), 1, 14));
}

TEST(QuarterValues, showAWarmerSupplyThanReturnAndColdWinters) {
    float january = 0;
    float july = 0;
    for (int i = 0; i < 28 * quarters_of_day; ++i) {
        const Quarter winter = quarter_after(at(2030, 1, 1), i);
        const float supply = stored({105, 8}, flow, winter);
        const float back = stored({105, 8}, return_flow, winter);
        if (supply > 0 && back > 0) {
            ASSERT_GT(supply, back);
        }
        january += std::max(-50.0F, stored({105, 8}, outside, winter));
        july += std::max(-50.0F, stored({105, 8}, outside, quarter_after(at(2030, 7, 1), i)));
    }
    EXPECT_LT(january / (28 * 96), 6);
    EXPECT_GT(july / (28 * 96), 12);
}

TEST(QuarterValues, haveMetersThatOnlyRise) {
    for (const int track : {electricity, 7, 8, 9, starts, 29}) {
        const Recording site{106, 30};
        float before = 0;
        for (const Quarter& from : {at(2000, 1, 1), at(2003, 12, 20), at(2024, 2, 20), at(2050, 12, 1)}) {
            for (int i = 0; i < 8 * quarters_of_day; ++i) {
                const float now = stored(site, track, quarter_after(from, i));
                if (now == -999.0F) continue;
                ASSERT_GE(now, before) << track;
                before = now;
            }
        }
        EXPECT_GT(before, 1000) << track;
    }
}

TEST(QuarterValues, haveRareGapsThatLast) {
    const Recording site{107, 8};
    int gaps = 0;
    int runs = 0;
    int all = 0;
    for (int track = 1; track <= 8; ++track) {
        bool before = false;
        for (int i = 0; i < 120 * quarters_of_day; ++i, ++all) {
            const bool gap = stored(site, track, quarter_after(at(2025, 1, 1), i)) == -999.0F;
            gaps += gap ? 1 : 0;
            runs += gap && !before ? 1 : 0;
            before = gap;
        }
    }
    EXPECT_GT(gaps, all / 2000);
    EXPECT_LT(gaps, all / 100);
    EXPECT_GT(gaps, 3 * runs);
}

TEST(Tracks, haveNamesAndUnitsOfTheirLengthInTheControllersLetters) {
    EXPECT_EQ(track_name(1), "BHKW Leistung ");
    EXPECT_EQ(track_unit(1), "kW   ");
    EXPECT_EQ(track_name(2), "BHKW W\x84rme    ");
    EXPECT_EQ(track_name(5), "Aussentemp.   ");
    EXPECT_EQ(track_unit(5), "\xB0"
                             "C   ");
    EXPECT_EQ(track_name(120), "F\x81hler 120    ");
    std::set<std::string> names;
    for (int track = 1; track <= 120; ++track) {
        EXPECT_EQ(track_name(track).size(), 14U);
        EXPECT_EQ(track_unit(track).size(), 5U);
        names.insert(track_name(track));
    }
    EXPECT_EQ(names.size(), 120U);
}

TEST(Tracks, areAsManyAsTheDemosArchivesTake) {
    const Directory directory = demo_directory();
    for (const Site& site : directory.sites()) {
        EXPECT_GE(site.tracks, 8) << site.name;
        EXPECT_LE(site.tracks, 28) << site.name;
    }
}

} // namespace
} // namespace velorn::plant
