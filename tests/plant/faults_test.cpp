#include "plant/faults.h"
#include "plant/memory_line.h"
#include "runtime/virtual_event_loop.h"

#include <gtest/gtest.h>
#include <string>

namespace velorn::plant {
namespace {

struct ALine {
    VirtualEventLoop loop;
    Line line;
    std::string outside;
    std::string inside;
    int hang_ups = 0;

    explicit ALine(const Faults& faults) : line(loop, faults) {
        line.at_outside = [this](std::string_view bytes) { outside += bytes; };
        line.at_controller = [this](std::string_view bytes) { inside += bytes; };
        line.hung_up = [this] { ++hang_ups; };
    }
};

template <class Set>
Faults with(Set set) {
    Faults faults;
    set(faults);
    return faults;
}

std::string text(int size) {
    std::string out;
    for (int i = 0; i < size; ++i) out += static_cast<char>('a' + i % 26);
    return out;
}

std::string through(const Faults& faults, std::size_t piece = 5000) {
    ALine a(faults);
    const std::string all = text(5000);
    for (std::size_t at = 0; at < all.size(); at += piece) a.line.from_controller(all.substr(at, piece));
    a.loop.pass(1000);
    return a.outside;
}

TEST(PlantLine, carriesBothDirectionsUntouchedWithoutFaults) {
    ALine a({});
    a.line.from_controller("hin");
    a.line.from_outside("her");
    EXPECT_EQ(a.outside, "");
    a.loop.settle();
    EXPECT_EQ(a.outside, "hin");
    EXPECT_EQ(a.inside, "her");
}

TEST(PlantLine, makesEqualTroubleForEqualSeedsHoweverTheBytesAreCut) {
    Faults faults;
    faults.drop = faults.repeat = faults.garble = 0.1;
    Faults other = faults;
    other.seed = 43;
    EXPECT_EQ(through(faults), through(faults, 7));
    EXPECT_NE(through(faults), through(other));
}

TEST(PlantLine, dropsAboutTheShareThatWasOrdered) {
    const std::size_t left = through(with([](Faults& f) { f.drop = 0.2; })).size();
    EXPECT_GT(left, 3800u);
    EXPECT_LT(left, 4200u);
    EXPECT_EQ(through(with([](Faults& f) { f.drop = 1; })), "");
}

TEST(PlantLine, repeatsBytesInPlace) {
    ALine a(with([](Faults& f) { f.repeat = 1; }));
    a.line.from_outside("abc");
    a.loop.settle();
    EXPECT_EQ(a.inside, "aabbcc");
}

TEST(PlantLine, garblesEveryByteIntoAnotherOne) {
    const std::string before = text(5000);
    const std::string after = through(with([](Faults& f) { f.garble = 1; }));
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t i = 0; i < after.size(); ++i) ASSERT_NE(after[i], before[i]) << i;
}

TEST(PlantLine, garblesTheSamePlacesWhetherOrNotBytesAreAlsoRepeated) {
    Faults faults;
    faults.garble = 0.01;
    const std::string garbled = through(faults);
    EXPECT_NE(garbled, text(5000));
    faults.repeat = 1;
    const std::string both = through(faults);
    ASSERT_EQ(both.size(), 2 * garbled.size());
    for (std::size_t i = 0; i < garbled.size(); ++i) ASSERT_EQ(both[2 * i], garbled[i]) << i;
}

TEST(PlantLine, delaysWithoutChangingTheOrder) {
    ALine a(with([](Faults& f) { f.delay_ms = 50; }));
    a.line.from_controller("erst ");
    a.loop.pass(49);
    EXPECT_EQ(a.outside, "");
    a.line.from_controller("dann");
    a.loop.pass(1);
    EXPECT_EQ(a.outside, "erst ");
    a.loop.pass(49);
    EXPECT_EQ(a.outside, "erst dann");
}

TEST(PlantLine, carriesASlowLinesBytesPerSecond) {
    ALine a(with([](Faults& f) { f.bytes_per_second = 1000; }));
    a.line.from_controller(text(2500));
    a.loop.pass(1000);
    EXPECT_EQ(a.outside.size(), 1000u);
    EXPECT_EQ(a.line.waiting_outward(), 1500u);
    a.loop.pass(1500);
    EXPECT_EQ(a.outside, text(2500));
}

TEST(PlantLine, fallsSilentInBothDirectionsForTheTimeOrdered) {
    ALine a(with([](Faults& f) { f.silent_after = 4, f.silent_for_ms = 1000; }));
    a.line.from_controller("12345");
    a.line.from_outside("x");
    a.loop.pass(999);
    EXPECT_EQ(a.outside, "1234");
    EXPECT_EQ(a.inside, "");
    a.loop.pass(1);
    a.line.from_outside("y");
    a.loop.settle();
    EXPECT_EQ(a.inside, "y");
}

TEST(PlantLine, staysSilentForGoodWithoutATime) {
    ALine a(with([](Faults& f) { f.silent_after = 0; }));
    a.line.from_outside("x");
    a.loop.pass(3'600'000);
    a.line.from_outside("y");
    a.loop.pass(1000);
    EXPECT_EQ(a.inside, "");
    EXPECT_EQ(a.hang_ups, 0);
}

TEST(PlantLine, hangsUpOnceAndBehindTheBytesThatWereOnTheWay) {
    ALine a(with([](Faults& f) { f.delay_ms = 20, f.bytes_per_second = 100, f.hang_up_after = 5; }));
    a.line.from_controller("1234567");
    a.line.from_outside("x");
    a.loop.pass(69);
    EXPECT_EQ(a.hang_ups, 0);
    a.loop.pass(1000);
    EXPECT_EQ(a.outside, "12345");
    EXPECT_EQ(a.inside, "");
    EXPECT_EQ(a.hang_ups, 1);
}

TEST(PlantLine, takesItsWorkAlongWhenItGoes) {
    VirtualEventLoop loop;
    bool arrived = false;
    {
        Line line(loop, with([](Faults& f) { f.delay_ms = 10, f.hang_up_after = 1; }));
        line.at_outside = [&](std::string_view) { arrived = true; };
        line.from_controller("ab");
    }
    loop.pass(1000);
    EXPECT_FALSE(arrived);
}

TEST(PlantMemoryLine, carriesTroubleToTheTest) {
    struct Echo {
        std::function<void(std::string_view)> send;
        void receive(std::string_view bytes) const { send(bytes); }
    } echo;
    VirtualEventLoop loop;
    std::string heard;
    bool gone = false;
    MemoryLine line(loop, echo, with([](Faults& f) { f.hang_up_after = 5; }));
    line.received = [&](std::string_view bytes) { heard += bytes; };
    line.hung_up = [&] { gone = true; };
    line.send("abc");
    loop.pass(10);
    EXPECT_EQ(heard, "ab");
    EXPECT_TRUE(gone);
}

} // namespace
} // namespace velorn::plant
