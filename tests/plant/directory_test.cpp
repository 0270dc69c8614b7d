#include "plant/directory.h"
#include "plant/modem.h"
#include "plant/sites.h"
#include "plant/troubled_device.h"
#include "runtime/text.h"
#include "runtime/virtual_event_loop.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <set>
#include <string>

namespace velorn::plant {
namespace {

TEST(Directory, findsANumberHoweverItIsWritten) {
    const Directory directory = demo_directory();
    EXPECT_EQ(directory.by_number("05550100002"), 1U);
    EXPECT_EQ(directory.by_number("05550 / 100 002"), 1U);
    EXPECT_EQ(directory.by_number("0,05550100002"), 1U);
    EXPECT_EQ(directory.by_number("0101905550100002"), 1U);
    EXPECT_EQ(directory.by_number("+495550100002"), 1U);
}

TEST(Directory, doesNotFindWhatIsNotThere) {
    const Directory directory = demo_directory();
    for (const char* number : {"", "0", "01019", "+49", "1", "055501000020", "5550100002", "Hallenbad"}) {
        EXPECT_EQ(directory.by_number(number), Directory::not_found) << number;
    }
}

TEST(Directory, growsByFurtherSites) {
    Directory directory;
    Site site;
    site.number = "0,4711";
    EXPECT_EQ(directory.add(site), 0U);
    EXPECT_EQ(directory.by_number("04711"), 0U);
}

TEST(DemoSites, coverEveryRouteAndBehaviour) {
    const Directory directory = demo_directory();
    std::set<std::string> addresses;
    std::set<Route> routes;
    std::set<Behaviour> behaviours;
    std::set<std::uint64_t> seeds;
    for (const Site& site : directory.sites()) {
        addresses.insert(site.address);
        routes.insert(site.route);
        behaviours.insert(site.behaviour);
        seeds.insert(site.seed);
        EXPECT_TRUE(cp1252_from_utf8(site.name)) << site.name;
    }
    EXPECT_EQ(directory.sites().size(), 12U);
    EXPECT_EQ(addresses.size(), 12U);
    EXPECT_TRUE(addresses.contains("127.0.1.1") && addresses.contains("127.0.1.12"));
    EXPECT_EQ(routes.size(), 3U);
    EXPECT_EQ(behaviours.size(), 4U);
    EXPECT_EQ(seeds.size(), 12U);
}

TEST(DemoSites, haveTelephonesThatReachThem) {
    const Directory directory = demo_directory();
    for (std::size_t i = 0; i < directory.sites().size(); ++i) {
        EXPECT_EQ(directory.by_number(directory.sites()[i].number), i);
    }
}

struct AliveSites : testing::Test {
    VirtualEventLoop loop;
    Sites sites{loop, demo_directory()};
};

TEST_F(AliveSites, answerTheTelephoneAsTheyBehave) {
    EXPECT_EQ(sites.dial("05550100002").outcome, Call::Outcome::connects);
    EXPECT_EQ(sites.dial("05550100010").outcome, Call::Outcome::busy);
    EXPECT_EQ(sites.dial("05550100011").outcome, Call::Outcome::unknown);
    EXPECT_EQ(sites.dial("05550100012").outcome, Call::Outcome::no_answer);
    EXPECT_EQ(sites.dial("110").outcome, Call::Outcome::unknown);
    sites.set_dead(true);
    EXPECT_EQ(sites.dial("05550100002").outcome, Call::Outcome::no_dialtone);
}

TEST_F(AliveSites, takeOneVisitorAtATime) {
    auto visitor = sites.visit(1);
    ASSERT_NE(visitor, nullptr);
    EXPECT_EQ(sites.visit(1), nullptr);
    EXPECT_EQ(sites.dial("05550100002").outcome, Call::Outcome::busy);
    visitor.reset();
    EXPECT_NE(sites.visit(1), nullptr);
}

TEST_F(AliveSites, rememberWhatAnEarlierVisitorDid) {
    const auto shell = [&](std::string_view line) {
        auto visitor = sites.visit(1);
        std::string heard;
        visitor->send = [&](std::string_view bytes) { heard += bytes; };
        visitor->receive("\x01" + std::string(line) + "\r");
        loop.pass(1000);
        return heard;
    };
    EXPECT_NE(shell("DIR H0.").find("BATRAM1"), std::string::npos);
    shell("RM H0.BATRAM1");
    EXPECT_EQ(shell("DIR H0.").find("BATRAM1"), std::string::npos);
}

TEST_F(AliveSites, askForALoginOnTheNetworkOnly) {
    std::string heard;
    auto visitor = sites.visit(0);
    visitor->send = [&](std::string_view bytes) { heard += bytes; };
    visitor->connected();
    EXPECT_EQ(heard, "\r\nUsername: ");
    visitor.reset();
    heard.clear();
    const Call call = sites.dial("05550100001");
    call.far->send = [&](std::string_view bytes) { heard += bytes; };
    call.far->connected();
    call.far->receive("\x01");
    EXPECT_EQ(heard, "\r\n*");
}

TEST_F(AliveSites, changeTheirBehaviourWhileTheyLive) {
    sites.set_behaviour(1, Behaviour::busy);
    EXPECT_EQ(sites.dial("05550100002").outcome, Call::Outcome::busy);
    EXPECT_EQ(sites.visit(1), nullptr);
    sites.set_behaviour(1, Behaviour::connects);
    EXPECT_NE(sites.visit(1), nullptr);
}

struct ASiteBehindABadLine : testing::Test {
    VirtualEventLoop loop;
    std::string heard;

    // A modem that has called it.
    std::unique_ptr<Modem> call(Sites& sites) {
        auto modem = std::make_unique<Modem>(loop, sites);
        modem->send = [this](std::string_view bytes) { heard += bytes; };
        modem->receive("ATE0D1\r");
        loop.pass(10'000);
        EXPECT_TRUE(heard.ends_with("\r\nCONNECT 9600\r\n")) << heard;
        heard.clear();
        return modem;
    }
    static Directory directory(const Faults& faults) {
        Site site;
        site.number = "1";
        site.faults = faults;
        return Directory({site});
    }
};

TEST_F(ASiteBehindABadLine, losesTheCallerAndIsFreeAgain) {
    Faults faults;
    faults.hang_up_after = 8;
    Sites sites(loop, directory(faults));
    const auto modem = call(sites);
    modem->receive("\x01");
    loop.pass(1000);
    EXPECT_EQ(heard, "\r\n*");
    modem->receive("HELP\r");
    loop.pass(1000);
    EXPECT_TRUE(heard.ends_with("\r\nNO CARRIER\r\n"));
    EXPECT_FALSE(sites.engaged(0));
}

TEST_F(ASiteBehindABadLine, isSlow) {
    Faults faults;
    faults.bytes_per_second = 10;
    Sites sites(loop, directory(faults));
    const auto modem = call(sites);
    modem->receive("\x01");
    loop.pass(250);
    EXPECT_EQ(heard, "\r");
    loop.pass(1000);
    EXPECT_EQ(heard, "\r\n*");
}

TEST_F(ASiteBehindABadLine, losesWhatItHasNoRoomFor) {
    struct Counts final : Device {
        std::size_t& count;
        explicit Counts(std::size_t& where) : count(where) {}
        void receive(std::string_view bytes) override { count += bytes.size(); }
    };
    Faults faults;
    faults.bytes_per_second = 1000;
    std::size_t arrived = 0;
    TroubledDevice device(loop, std::make_unique<Counts>(arrived), faults);
    for (int i = 0; i < 1000; ++i) device.receive(std::string(1000, 'x'));
    loop.pass(3'600'000);
    EXPECT_EQ(arrived, 17'000u);
}

} // namespace
} // namespace velorn::plant
