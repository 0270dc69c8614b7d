#include "plant/operation.h"

#include <gtest/gtest.h>

namespace velorn::plant {
namespace {

DateTime at(int day, int hour, int minute = 0) { return {2026, 11, day, hour, minute, 0, 0}; }

TEST(Operation, isAFunctionOfSeedAndTime) {
    EXPECT_EQ(readings_at(5, at(15, 9)).power_kw, readings_at(5, at(15, 9)).power_kw);
    EXPECT_NE(readings_at(5, at(15, 9)).power_kw, readings_at(5, at(15, 9, 1)).power_kw);
    EXPECT_NE(meters_at(5, at(15, 9)).electricity_kwh, meters_at(6, at(15, 9)).electricity_kwh);
}

TEST(Operation, standsInTheSmallHoursAndRunsHighInTheMorning) {
    for (std::uint64_t seed = 0; seed < 50; ++seed) {
        EXPECT_EQ(readings_at(seed, at(15, 2)).power_kw, 0.0);
        const Readings morning = readings_at(seed, at(15, 8));
        EXPECT_GT(morning.power_kw, 0.8 * morning.rated_kw);
        EXPECT_GT(morning.flow, morning.return_flow);
    }
}

TEST(Operation, metersNeverGoBack) {
    Meters before = meters_at(9, at(14, 0));
    for (int minute = 7; minute < 3 * 1440; minute += 7) {
        const Meters now = meters_at(9, at(14 + minute / 1440, minute / 60 % 24, minute % 60));
        ASSERT_GE(now.electricity_kwh, before.electricity_kwh - 1e-6) << minute;
        ASSERT_GE(now.hours, before.hours - 1e-6) << minute;
        ASSERT_GE(now.starts, before.starts) << minute;
        before = now;
    }
}

TEST(Operation, metersShowWhatThePowerHasMade) {
    const double made = meters_at(9, at(15, 9)).electricity_kwh - meters_at(9, at(15, 8)).electricity_kwh;
    EXPECT_NEAR(made, readings_at(9, at(15, 8, 30)).power_kw, 0.05 * made);
}

TEST(Operation, faultsLieInThePastNewestFirst) {
    bool any = false;
    for (std::uint64_t seed = 0; seed < 20; ++seed) {
        DateTime newer = at(15, 11);
        for (const Fault& fault : faults_before(seed, at(15, 11))) {
            EXPECT_LE(fault.moment, newer);
            newer = fault.moment;
            any = true;
        }
    }
    EXPECT_TRUE(any);
}

TEST(Operation, holdsOnTheEdgesOfTheCalendar) {
    EXPECT_EQ(meters_at(1, {1990, 1, 1, 12, 0, 0, 0}).electricity_kwh, 0.0);
    EXPECT_LE(faults_before(1, {100, 1, 1, 0, 0, 0, 0}).size(), 14u);
    EXPECT_GT(meters_at(1, {9999, 12, 31, 23, 59, 59, 999}).hours, 0.0);
}

} // namespace
} // namespace velorn::plant
