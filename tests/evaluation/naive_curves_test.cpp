// The figures and curves of random archives against a plain make that goes value by value, as one would do it
// by hand.
#include "evaluation/evaluation_rig.h"
#include "runtime/number_picture.h"

#include <cmath>
#include <random>

namespace velorn::test {

namespace {

struct NaiveTrack {
    double sum = 0;
    float hours = 0;
    std::vector<std::string> strokes;

    std::string mean_text() const { return hours < 0.0001F ? "---" : format(sum / hours, "########0.00"); }
    std::string sum_text() const { return hours < 0.0001F ? "---" : format(sum, "########0.0"); }
};

struct NaiveView {
    int days, slot;
};

NaiveView view_of(int ansicht, const CalendarDay& from) {
    switch (ansicht) {
    case 1: return {1, 1};
    case 2: return {7, 8};
    case 3: {
        static constexpr int lengths[] = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        return {from.mon == 2 && from.jahr % 4 == 0 ? 29 : lengths[from.mon], 16};
    }
    default: {
        const bool leap = (from.mon <= 2 && from.jahr % 4 == 0) || (from.mon > 2 && (from.jahr + 1) % 4 == 0);
        return {leap ? 366 : 365, 96};
    }
    }
}

int x_of(int ansicht, bool quarters, int day, int quarter, int slots) {
    const double since = quarter + 96.0 * (day - 1);
    if (ansicht == 1) return 5 * quarter;
    if (ansicht == 3) return static_cast<int>(std::nearbyint(since / 2688 * 448));
    if (!quarters) return ansicht == 2 ? 6 * slots : slots;
    if (ansicht == 2) return static_cast<int>(std::nearbyint(since / 672 * 504));
    return static_cast<int>(std::nearbyint(since / 35040 * 365));
}

std::string stroke(int x1, int y1, int x2, int y2) {
    return "line " + std::to_string(x1) + ' ' + std::to_string(550 - y1) + ' ' + std::to_string(x2) + ' ' +
           std::to_string(550 - y2) + " #ff0000";
}

} // namespace

struct NaiveCurves : EvaluationRig {
    // What the chart must show of a track.
    NaiveTrack track(int number) {
        const int ansicht = static_cast<int>(archive.ansicht.number());
        const bool quarters = ansicht == 1 || c().viertelmodus == 1;
        const NaiveView view = view_of(ansicht, selected());
        const double ylimin = archive.ylimin.number();
        const double ylimax = archive.ylimax.number();
        const double yremax = archive.yremax.number();
        const auto yremin = static_cast<float>(yremax - archive.yreschritt.number() * (ylimax - ylimin) /
                                                            archive.ylischritt.number());
        const bool right = archive.spurrechts[static_cast<std::size_t>(number)].number() != 0;
        NaiveTrack result;
        double slot_sum = 0;
        int slot_count = 0;
        int slots = 0;
        int old_x = -555;
        int old_y = -555;
        CalendarDay at = selected();
        for (int day = 1; day <= view.days; ++day) {
            at = kalenderdatum(at, startjahr);
            for (int q = 1; q <= 96; ++q) {
                const double v = value(at, q, number);
                if (v > -996.99 || v < -999.01) {
                    result.sum += 0.25 * v;
                    result.hours += 0.25F;
                    slot_sum += v;
                    ++slot_count;
                }
                if (!quarters && q % view.slot != 0) continue;
                ++slots;
                const int x = x_of(ansicht, quarters, day, q, slots);
                if (slot_count > 0) {
                    const double y = quarters ? v : slot_sum / slot_count;
                    const double fraction =
                        right ? (yremin - y) / (yremin - yremax) : (ylimin - y) / (ylimin - ylimax);
                    double row = std::nearbyint(500 * fraction);
                    row = std::min(std::max(row, -1.0), 501.0);
                    const int new_x = 80 + x;
                    const int new_y = 40 + static_cast<int>(row);
                    result.strokes.push_back(old_x == -555 ? stroke(new_x, new_y, new_x, new_y)
                                                           : stroke(old_x, old_y, new_x, new_y));
                    old_x = new_x;
                    old_y = new_y;
                } else {
                    old_x = old_y = -555;
                }
                slot_sum = 0;
                slot_count = 0;
            }
            ++at.tag;
        }
        return result;
    }

    void compare(int number) {
        const NaiveTrack expected = track(number);
        EXPECT_EQ(lines_of("#ff0000"), expected.strokes);
        const auto row = static_cast<std::size_t>(number);
        EXPECT_EQ(c().schnittkanal[row].Caption.get(), expected.mean_text());
        EXPECT_EQ(c().summkanal[row].Caption.get(), expected.sum_text());
        EXPECT_EQ(c().viertist.Caption.get(),
                  std::to_string(static_cast<int>(std::lround(expected.hours * 4))));
    }
};

TEST_F(NaiveCurves, agreesOnRandomArchives) {
    std::mt19937 random(20261121);
    const auto below = [&](unsigned limit) { return static_cast<int>(random() % limit); };
    for (int round = 0; round < 5; ++round) {
        opens(30, narrow);
        const int number = 1 + below(30);
        shows(number);
        selects(1 + below(28), 1 + below(12), startjahr + below(9));
        archive.ylimin = static_cast<double>(below(3) * -10);
        archive.ylimax = 50.0 + below(200);
        archive.ylischritt = 1.0 + below(20);
        archive.yremax = 10.0 + below(300);
        archive.yreschritt = 0.5 + below(30);
        archive.spurrechts[static_cast<std::size_t>(number)] = below(2) == 1;
        // Two weeks of values with holes, the rest of the year is zero.
        CalendarDay day = selected();
        for (int i = 0; i < 14; ++i, ++day.tag) {
            day = kalenderdatum(day, startjahr);
            for (int quarter = 1; quarter <= 96; ++quarter) {
                const int kind = below(10);
                set(day, quarter, number,
                    kind == 0   ? -999.0F
                    : kind == 1 ? -997.0F
                    : kind == 2 ? -1000.0F
                                : static_cast<float>(below(200000)) / 777.0F - 20.0F);
            }
        }
        for (int ansicht = 1; ansicht <= 4; ++ansicht) {
            archive.ansicht = static_cast<std::int16_t>(ansicht);
            for (const int quarters : {0, 1}) {
                c().viertelmodus = static_cast<std::int16_t>(quarters);
                SCOPED_TRACE("round " + std::to_string(round) + ", view " + std::to_string(ansicht) +
                             ", quarters " + std::to_string(quarters));
                compare(number);
            }
        }
    }
}

// Each track alone gives what it gives among all.
TEST_F(NaiveCurves, givesEveryTrackItsOwnFigures) {
    opens(60, wide);
    std::mt19937 random(4711);
    selects(28, 12, 2009);
    CalendarDay day = selected();
    for (int i = 0; i < 7; ++i, ++day.tag) {
        day = kalenderdatum(day, startjahr);
        for (int quarter = 1; quarter <= 96; ++quarter) {
            for (int number = 1; number <= 60; ++number)
                set(day, quarter, number,
                    random() % 7 == 0 ? -997.0F : static_cast<float>(random() % 90000) / 911);
        }
    }
    archive.ansicht = std::int16_t{2};
    for (const unsigned step : {1U, 3U, 4U, 7U}) {
        for (auto& visible : archive.spursichtbar) visible = false;
        for (unsigned number = step; number <= 60; number += step) shows(static_cast<int>(number));
        evaluation->neuzeichnen();
        for (unsigned number = step; number <= 60; number += step) {
            const NaiveTrack expected = track(static_cast<int>(number));
            EXPECT_EQ(c().schnittkanal[number].Caption.get(), expected.mean_text()) << number;
            EXPECT_EQ(c().summkanal[number].Caption.get(), expected.sum_text()) << number;
            EXPECT_EQ(evaluation->curves.spursumme[number], static_cast<float>(expected.sum));
        }
    }
}

} // namespace velorn::test
