#include "desktop/qt_event_loop.h"
#include "patience.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <gtest/gtest.h>
#include <iostream>
#include <string>
#include <sys/resource.h>

namespace velorn {

namespace {

long processor_us() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec * 1'000'000 + usage.ru_utime.tv_usec + usage.ru_stime.tv_sec * 1'000'000 +
           usage.ru_stime.tv_usec;
}

} // namespace

TEST(QtEventLoop, whatIsDueRunsInOrderOfTimeAndThenOfIssue) {
    QtEventLoop loop;
    std::string order;
    const std::int64_t soon = loop.now_ms() + 5;
    loop.post_at(soon + 2, [&] { order += 'd'; });
    loop.post_at(soon, [&] { order += 'b'; });
    loop.post_at(soon, [&] { order += 'c'; });
    loop.post([&] { order += 'a'; });
    ASSERT_TRUE(loop.wait_until([&] { return order.size() == 4; }));
    EXPECT_EQ(order, "abcd");
}

TEST(QtEventLoop, nothingRunsBeforeItsTime) {
    for (const double speed : {1.0, 7.0}) {
        QtEventLoop loop{speed};
        int early = 0;
        int ran = 0;
        for (std::int64_t due = 1; due <= 40; due += 3) {
            loop.post_at(due, [&, due] {
                ++ran;
                if (loop.now_ms() < due) ++early;
            });
        }
        ASSERT_TRUE(loop.wait_until([&] { return ran == 14; }));
        EXPECT_EQ(early, 0);
    }
}

TEST(QtEventLoop, anInnerWaitEndsBeforeTheOuterOne) {
    QtEventLoop loop;
    std::string order;
    bool inner = false;
    bool outer = false;
    loop.post([&] {
        loop.post([&] { outer = true; });
        loop.post_at(loop.now_ms() + 10, [&] { inner = true; });
        EXPECT_TRUE(loop.wait_until([&] { return inner; }));
        EXPECT_TRUE(outer);
        order += "inner ";
    });
    ASSERT_TRUE(loop.wait_until([&] { return outer; }));
    order += "outer";
    EXPECT_EQ(order, "inner outer");
}

TEST(QtEventLoop, anIdleLoopSleeps) {
    QtEventLoop loop;
    test::pass(loop, 20);
    int turns = 0;
    bool over = false;
    loop.post_at(loop.now_ms() + 300, [&] { over = true; });
    const long before = processor_us();
    ASSERT_TRUE(loop.wait_until([&] {
        ++turns;
        return over;
    }));
    std::cout << "idle for 300 ms: " << processor_us() - before << " us of processor time, " << turns
              << " turns\n";
    EXPECT_LT(turns, 30);
}

TEST(QtEventLoop, aFloodOfDueWorkDoesNotKeepTheToolkitOut) {
    QtEventLoop loop;
    bool toolkit = false;
    long rounds = 0;
    QTimer::singleShot(5, [&] { toolkit = true; });
    std::function<void()> again = [&] {
        if (toolkit || ++rounds > 50'000'000) return;
        loop.post(again);
    };
    loop.post(again);
    ASSERT_TRUE(loop.wait_until([&] { return toolkit || rounds > 50'000'000; }));
    EXPECT_TRUE(toolkit);
}

TEST(QtEventLoop, newsFromTheToolkitWakesAWaitThatHasNothingQueued) {
    QtEventLoop loop;
    bool came = false;
    QTimer::singleShot(15, [&] { came = true; });
    EXPECT_TRUE(loop.wait_until([&] { return came; }));
}

TEST(QtEventLoop, theEndComesThroughAllWaitsAlsoFromTheToolkit) {
    QtEventLoop loop;
    int ended = 0;
    loop.post([&] {
        QTimer::singleShot(5, [&] { loop.end(); });
        if (!loop.wait_until([] { return false; })) ++ended;
    });
    loop.run();
    EXPECT_EQ(ended, 1);
}

TEST(QtEventLoop, whatIsToBeDeletedLaterGoesOnceTheOutermostWaitComesRound) {
    QtEventLoop loop;
    QPointer<QObject> object = new QObject;
    bool there_in_nested_wait = false;
    loop.post([&] {
        object->deleteLater();
        test::pass(loop, 5);
        there_in_nested_wait = !object.isNull();
    });
    EXPECT_TRUE(test::comes_true(loop, [&] { return object.isNull(); }));
    EXPECT_TRUE(there_in_nested_wait);
}

TEST(QtEventLoop, aQuickClockTakesTheWallClockAlong) {
    QtEventLoop loop{1000};
    const DateTime start = loop.local_time();
    const std::int64_t begun = loop.now_ms();
    test::pass(loop, 3000);
    const double seconds = (serial_of(loop.local_time()).days - serial_of(start).days) * 86400;
    EXPECT_GE(seconds, 2.9);
    EXPECT_GE(loop.now_ms() - begun, 3000);
}

} // namespace velorn
