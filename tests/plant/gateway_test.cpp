#include "plant/gateway.h"
#include "plant/memory_line.h"
#include "plant/random.h"
#include "plant/sites.h"
#include "runtime/virtual_event_loop.h"

#include <array>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace velorn::plant {
namespace {

using Way = Gateway::Behaviour;

struct AGateway : testing::Test {
    VirtualEventLoop loop;
    Sites sites{loop, demo_directory()};
    Gateway gateway{loop, sites};
    std::unique_ptr<Device> modem;
    std::unique_ptr<MemoryLine> line;
    std::string heard;

    ~AGateway() override { leave(); }

    // False: nobody takes the connection.
    bool come(std::size_t which = 0) {
        modem = gateway.connect(which);
        if (!modem) return false;
        line = std::make_unique<MemoryLine>(loop, *modem);
        line->received = [this](std::string_view bytes) { heard += bytes; };
        modem->connected();
        return true;
    }
    void leave() {
        line.reset();
        if (modem) modem->disconnected();
        modem.reset();
    }
    std::string says_to(std::string_view bytes, std::int64_t within_ms = 100) {
        heard.clear();
        line->send(bytes);
        loop.pass(within_ms);
        return heard;
    }
    std::string dials(std::string_view number, std::int64_t within_ms = 60'000) {
        says_to("\x11", 1000);
        const std::string all = says_to("atd" + std::string(number) + "\r", within_ms);
        return all.substr(number.size() + 4); // behind the echo
    }
};

TEST_F(AGateway, isStillUntilSomebodyDials) {
    ASSERT_TRUE(come());
    loop.pass(60'000);
    EXPECT_EQ(heard, "");
}

TEST_F(AGateway, dialsASiteAndJoinsItsController) {
    ASSERT_TRUE(come());
    EXPECT_EQ(dials("05550 100008"), "\r\nCONNECT 9600\r\n");
    EXPECT_EQ(says_to("\x01"), "\r\n*");
    EXPECT_TRUE(sites.engaged(5));
}

TEST_F(AGateway, saysWhyASiteCannotBeReached) {
    ASSERT_TRUE(come());
    EXPECT_EQ(dials("05550 100010"), "\r\nBUSY\r\n");
    EXPECT_EQ(dials("05550 100011"), "\r\nNO CARRIER\r\n");
    EXPECT_EQ(dials("05550 100012", 44'999), "");
    leave();
    ASSERT_TRUE(come());
    EXPECT_EQ(dials("4711"), "\r\nNO CARRIER\r\n");
}

TEST_F(AGateway, hangsUpByModemCommandsOrByClosing) {
    ASSERT_TRUE(come());
    dials("05550100008");
    EXPECT_EQ(says_to("+++", 1500), "\r\nOK\r\n");
    EXPECT_EQ(says_to("ATH\r"), "ATH\r\r\nOK\r\n");
    EXPECT_FALSE(sites.engaged(5));
    dials("05550100008");
    EXPECT_TRUE(sites.engaged(5));
    leave();
    EXPECT_FALSE(sites.engaged(5));
}

TEST_F(AGateway, takesOneConnectionForEachModem) {
    ASSERT_TRUE(come(0));
    EXPECT_EQ(gateway.connect(0), nullptr);
    const auto second = gateway.connect(1);
    EXPECT_NE(second, nullptr);
    leave();
    EXPECT_NE(gateway.connect(0), nullptr);
}

TEST_F(AGateway, saysBusyForASiteThatItsOtherModemHolds) {
    const auto other = gateway.connect(1);
    other->receive("atd05550100008\r");
    loop.pass(20'000);
    ASSERT_TRUE(come(0));
    EXPECT_EQ(dials("05550100008"), "\r\nBUSY\r\n");
}

TEST_F(AGateway, behavesAsItIsTold) {
    gateway.set_behaviour(0, Way::refuses);
    EXPECT_FALSE(come(0));
    gateway.set_behaviour(0, Way::busy);
    ASSERT_TRUE(come(0));
    EXPECT_EQ(dials("05550100008"), "\r\nBUSY\r\n");
    leave();
    gateway.set_behaviour(0, Way::silent);
    ASSERT_TRUE(come(0));
    EXPECT_EQ(says_to("\x11"
                      "AT\ratd05550100008\r",
                      60'000),
              "");
    leave();
    ASSERT_TRUE(come(1));
    EXPECT_EQ(says_to("AT\r"), "AT\r\r\nOK\r\n");
}

TEST_F(AGateway, survivesRandomBytesAndVisitors) {
    Random random(3);
    constexpr std::string_view likely = "\x11"
                                        "atd05550100008\r\x01"
                                        "AT+++\rH";
    int visits = 0;
    for (int step = 0; step < 20'000; ++step) {
        if (random.below(20) == 0) leave();
        if (random.below(50) == 0) gateway.set_behaviour(0, static_cast<Way>(random.below(4)));
        if (!modem && !come(0)) continue;
        ++visits;
        std::string bytes;
        for (std::uint64_t n = random.below(10); n > 0; --n) {
            bytes += random.below(3) == 0 ? static_cast<char>(random.below(256))
                                          : likely[random.below(likely.size())];
        }
        switch (random.below(6)) {
        case 0: bytes = "\ratd0555010000" + std::to_string(random.below(10)) + "\r"; break;
        case 1: bytes = "+++"; break;
        default: break;
        }
        line->send(bytes);
        loop.pass(static_cast<std::int64_t>(random.below(4000)));
        heard.clear();
    }
    EXPECT_GT(visits, 1000);
    leave();
    loop.pass(60'000);
    for (std::size_t i = 0; i < sites.directory().sites().size(); ++i) EXPECT_FALSE(sites.engaged(i));
}

} // namespace
} // namespace velorn::plant
