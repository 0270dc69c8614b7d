#include "runtime/event.h"
#include "runtime/virtual_event_loop.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

namespace velorn {
namespace {

struct Loop : ::testing::Test {
    VirtualEventLoop loop;
    std::string told;

    EventLoop::Task tell(std::string_view what) {
        return [this, what] { told += what; };
    }
    // Waits until the given time, and says how it ended.
    void wait(std::int64_t until_ms, std::string_view name) {
        loop.post_at(until_ms, [] {});
        const bool held = loop.wait_until([&] { return loop.now_ms() >= until_ms; });
        told += name;
        told += held ? "+ " : "- ";
    }
};

TEST_F(Loop, runsWhatIsDueInOrderOfTime) {
    loop.post_at(30, tell("c"));
    loop.post_at(10, tell("a"));
    loop.post_at(20, tell("b"));
    loop.pass(100);
    EXPECT_EQ(told, "abc");
    EXPECT_EQ(loop.now_ms(), 100);
}

TEST_F(Loop, runsEqualTimesInOrderOfIssue) {
    loop.post_at(10, tell("a"));
    loop.post_at(5, [this] { loop.post_at(10, tell("c")); });
    loop.post_at(10, tell("b"));
    loop.pass(10);
    EXPECT_EQ(told, "abc");
}

TEST_F(Loop, whatATaskPostsRunsBehindAllThatIsDue) {
    loop.post([this] {
        told += "1";
        loop.post(tell("3"));
    });
    loop.post(tell("2"));
    loop.settle();
    EXPECT_EQ(told, "123");
    EXPECT_EQ(loop.now_ms(), 0);
}

TEST_F(Loop, aTimeGoneByCountsAsNow) {
    loop.pass(100);
    loop.post(tell("a"));
    loop.post_at(50, tell("b"));
    loop.settle();
    EXPECT_EQ(told, "ab");
}

TEST_F(Loop, theClockJumpsToWhatIsDueAndStandsWhileWorkRuns) {
    loop.post_at(3'600'000, [this] { told += std::to_string(loop.now_ms()); });
    EXPECT_TRUE(loop.wait_until([this] { return !told.empty(); }));
    EXPECT_EQ(told, "3600000");
    EXPECT_EQ(loop.now_ms(), 3'600'000);
}

TEST_F(Loop, theWallClockGoesWithTheLoops) {
    VirtualEventLoop night({2026, 12, 31, 23, 59, 59, 0});
    EXPECT_EQ(night.local_time(), (DateTime{2026, 12, 31, 23, 59, 59, 0}));
    night.pass(1001);
    EXPECT_EQ(night.local_time(), (DateTime{2027, 1, 1, 0, 0, 0, 1}));
}

TEST_F(Loop, whatIsCancelledNeverRuns) {
    const EventLoop::TaskId id = loop.post_at(10, tell("a"));
    loop.post_at(10, tell("b"));
    loop.cancel(id);
    loop.cancel(id);
    loop.cancel({});
    loop.pass(20);
    EXPECT_EQ(told, "b");
}

TEST_F(Loop, cancellingWhatHasRunDoesNothing) {
    const EventLoop::TaskId id = loop.post(tell("a"));
    loop.settle();
    loop.post(tell("b"));
    loop.cancel(id);
    loop.settle();
    EXPECT_EQ(told, "ab");
}

TEST_F(Loop, aTaskMayCancelItselfAndItsNeighbour) {
    EventLoop::TaskId self;
    EventLoop::TaskId neighbour;
    self = loop.post([&] {
        loop.cancel(self);
        loop.cancel(neighbour);
        told += "a";
    });
    neighbour = loop.post(tell("b"));
    loop.settle();
    EXPECT_EQ(told, "a");
}

TEST_F(Loop, aWaitLooksAtItsConditionFirst) {
    loop.post(tell("a"));
    EXPECT_TRUE(loop.wait_until([] { return true; }));
    EXPECT_EQ(told, "");
}

TEST_F(Loop, aWaitLooksAgainAfterEachPieceOfWork) {
    loop.post(tell("a"));
    loop.post(tell("b"));
    loop.post(tell("c"));
    EXPECT_TRUE(loop.wait_until([this] { return told == "ab"; }));
    EXPECT_EQ(told, "ab");
}

TEST_F(Loop, theWaitBegunLastEndsFirst) {
    loop.post_at(10, [this] {
        loop.post_at(20, [this] { wait(300, "inner"); });
        wait(100, "middle");
    });
    wait(50, "outer");
    EXPECT_EQ(told, "inner+ middle+ outer+ ");
    EXPECT_EQ(loop.now_ms(), 300);
}

TEST_F(Loop, anOuterWaitGoesOnOnlyWhenTheInnerIsThrough) {
    bool outer_may_go = false;
    loop.post_at(10, [&] {
        outer_may_go = true;
        wait(500, "inner");
    });
    loop.post_at(30, [] {});
    EXPECT_TRUE(loop.wait_until([&] { return outer_may_go; }));
    EXPECT_EQ(told, "inner+ ");
    EXPECT_EQ(loop.now_ms(), 500);
}

TEST_F(Loop, endingUnwindsAllWaitsFromTheInside) {
    loop.post_at(10, [this] { wait(1000, "second"); });
    loop.post_at(20, [this] { wait(1000, "third"); });
    loop.post_at(30, [this] { loop.end(); });
    loop.post_at(30, tell("never"));
    wait(1000, "first");
    EXPECT_EQ(told, "third- second- first- ");
    EXPECT_EQ(loop.now_ms(), 30);
    EXPECT_TRUE(loop.ended());
}

TEST_F(Loop, behindTheEndAWaitReturnsAtOnceAndRunsNothing) {
    loop.post(tell("never"));
    loop.end();
    EXPECT_FALSE(loop.wait_until([] { return false; }));
    EXPECT_EQ(told, "");
}

TEST_F(Loop, runGoesOnUntilTheEnd) {
    loop.post_at(10, tell("a"));
    loop.post_at(20, [this] { loop.end(); });
    loop.run();
    EXPECT_EQ(told, "a");
    EXPECT_EQ(loop.now_ms(), 20);
}

TEST_F(Loop, waitersAreListedFromTheOutside) {
    loop.post_at(10, [this] {
        loop.post_at(20, [this] {
            ASSERT_EQ(loop.waiters().size(), 2U);
            EXPECT_EQ(loop.waiters()[0].since_ms, 0);
            EXPECT_EQ(loop.waiters()[1].since_ms, 10);
            EXPECT_LT(loop.waiters()[1].where.line, loop.waiters()[0].where.line);
            EXPECT_NE(std::string(loop.waiters()[0].where.file).find("event_loop_test"), std::string::npos);
            told += "seen";
        });
        EXPECT_TRUE(loop.wait_until([this] { return !told.empty(); }));
    });
    EXPECT_TRUE(loop.wait_until([this] { return !told.empty(); }));
    EXPECT_TRUE(loop.waiters().empty());
}

TEST_F(Loop, aWaitThatNothingCanEndIsReportedByTheVirtualMake) {
    EXPECT_THROW((void)loop.wait_until([] { return false; }), std::logic_error);
    EXPECT_TRUE(loop.waiters().empty());
}

TEST_F(Loop, aWaitPastTheLimitOfVirtualTimeIsReported) {
    VirtualEventLoop short_lived({2026, 11, 15, 0, 0, 0, 0}, 1000);
    short_lived.post_at(1001, [] {});
    EXPECT_THROW((void)short_lived.wait_until([] { return false; }), std::logic_error);
}

TEST(Event, tellsItsListenersInOrderOfConnecting) {
    Event<int> event;
    std::string told;
    event.connect([&](int n) { told += "a" + std::to_string(n); });
    event.connect([&](int n) { told += "b" + std::to_string(n); });
    event(7);
    EXPECT_EQ(told, "a7b7");
}

} // namespace
} // namespace velorn
