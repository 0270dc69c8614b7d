#include "runtime/timer.h"
#include "runtime/virtual_event_loop.h"

#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace velorn {
namespace {

struct Timers : ::testing::Test {
    VirtualEventLoop loop;
    std::vector<std::int64_t> ticks;
    Timer timer{loop, 100};

    Timers() {
        timer.Tick = [this] { ticks.push_back(loop.now_ms()); };
    }
    using Times = std::vector<std::int64_t>;
};

TEST_F(Timers, isOffUntilSwitchedOn) {
    loop.pass(1000);
    EXPECT_FALSE(timer.Enabled);
    EXPECT_EQ(ticks, Times{});
}

TEST_F(Timers, ticksAtEachFullInterval) {
    timer.Enabled = true;
    loop.pass(350);
    EXPECT_EQ(ticks, (Times{100, 200, 300}));
}

TEST_F(Timers, mayBeOnFromTheStart) {
    Timer other(loop, 50, true);
    other.Tick = timer.Tick;
    loop.pass(100);
    EXPECT_TRUE(other.Enabled);
    EXPECT_EQ(ticks, (Times{50, 100}));
}

TEST_F(Timers, switchingOnWhatIsOnDoesNothing) {
    timer.Enabled = true;
    loop.pass(60);
    timer.Enabled = true;
    loop.pass(100);
    EXPECT_EQ(ticks, Times{100});
}

TEST_F(Timers, switchingOnWhatIsOffStartsAFullInterval) {
    timer.Enabled = true;
    loop.pass(60);
    timer.Enabled = false;
    timer.Enabled = true;
    loop.pass(150);
    EXPECT_EQ(ticks, Times{160});
}

TEST_F(Timers, switchedOffItTicksNoMore) {
    timer.Enabled = true;
    loop.post_at(100, [this] { timer.Enabled = false; });
    loop.pass(500);
    EXPECT_EQ(ticks, Times{100}); // its tick was issued before the task
}

TEST_F(Timers, mayStopInItsOwnTick) {
    timer.Enabled = true;
    timer.Tick = [this] {
        ticks.push_back(loop.now_ms());
        timer.Enabled = false;
    };
    loop.pass(500);
    EXPECT_EQ(ticks, Times{100});
}

TEST_F(Timers, aNewIntervalStartsInFull) {
    timer.Enabled = true;
    loop.pass(60);
    timer.set_Interval(30);
    EXPECT_EQ(timer.Interval(), 30);
    loop.pass(60);
    EXPECT_EQ(ticks, (Times{90, 120}));
}

TEST_F(Timers, aNewIntervalLeavesATimerThatIsOffOff) {
    timer.set_Interval(30);
    loop.pass(200);
    EXPECT_EQ(ticks, Times{});
}

TEST_F(Timers, neverTicksInsideItselfWhileOthersGoOn) {
    Timer other(loop, 100, true);
    int others = 0;
    other.Tick = [&] { ++others; };
    int depth = 0;
    timer.Tick = [&] {
        EXPECT_EQ(++depth, 1);
        ticks.push_back(loop.now_ms());
        const std::int64_t until = loop.now_ms() + 450;
        loop.post_at(until, [] {});
        EXPECT_TRUE(loop.wait_until([&] { return loop.now_ms() >= until; }));
        --depth;
    };
    timer.Enabled = true;
    EXPECT_TRUE(loop.wait_until([&] { return ticks.size() == 2 && depth == 0; }));
    EXPECT_EQ(ticks, (Times{100, 600})); // 200 to 500 were dropped
    EXPECT_EQ(others, 10);
}

TEST_F(Timers, aTickThatWaitsMayRestartItsTimer) {
    timer.Tick = [this] {
        ticks.push_back(loop.now_ms());
        timer.Enabled = false;
        const std::int64_t until = loop.now_ms() + 30;
        loop.post_at(until, [] {});
        EXPECT_TRUE(loop.wait_until([&] { return loop.now_ms() >= until; }));
        timer.Enabled = true;
    };
    timer.Enabled = true;
    loop.pass(300);
    EXPECT_EQ(ticks, (Times{100, 230}));
}

TEST_F(Timers, twoOfEqualBeatTickInOrderOfSwitchingOn) {
    std::string order;
    Timer second(loop, 100);
    second.Tick = [&] { order += "b"; };
    timer.Tick = [&] { order += "a"; };
    second.Enabled = true;
    timer.Enabled = true;
    loop.pass(300);
    EXPECT_EQ(order, "bababa");
}

TEST_F(Timers, withoutAnActionItRunsInSilence) {
    timer.Tick = nullptr;
    timer.Enabled = true;
    loop.pass(500);
    EXPECT_TRUE(timer.Enabled);
}

TEST_F(Timers, leavesNothingInTheLoopWhenItGoes) {
    auto gone = std::make_unique<Timer>(loop, 10, true);
    gone->Tick = timer.Tick;
    gone.reset();
    loop.pass(100);
    EXPECT_EQ(ticks, Times{});
}

TEST_F(Timers, endingTheProgramEndsAWaitInATick) {
    bool held = true;
    timer.Tick = [&] { held = loop.wait_until([] { return false; }); };
    timer.Enabled = true;
    loop.post_at(250, [this] { loop.end(); });
    loop.run();
    EXPECT_FALSE(held);
    EXPECT_EQ(loop.now_ms(), 250);
}

} // namespace
} // namespace velorn
