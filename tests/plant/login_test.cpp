#include "plant/controller_device.h"
#include "plant/login.h"
#include "plant/memory_line.h"
#include "plant/random.h"
#include "runtime/virtual_event_loop.h"

#include <gtest/gtest.h>
#include <string>

namespace velorn::plant {
namespace {

struct ALogin : testing::Test {
    VirtualEventLoop loop;
    std::shared_ptr<Controller> controller = std::make_shared<Controller>(loop, 7);
    Login login{{"service", "geheim"}, std::make_unique<ControllerDevice>(controller)};
    MemoryLine line{loop, login};
    std::string heard;
    int ends = 0;

    ALogin() {
        line.received = [this](std::string_view bytes) { heard += bytes; };
        login.hung_up = [this](Ending) { ++ends; };
        login.connected();
        loop.settle();
    }

    std::string says_to(std::string_view bytes) {
        heard.clear();
        line.send(bytes);
        loop.pass(1000);
        return heard;
    }
};

TEST_F(ALogin, asksForTheNameFirst) { EXPECT_EQ(heard, "\r\nUsername: "); }

TEST_F(ALogin, echoesTheNameAndHidesThePassword) {
    EXPECT_EQ(says_to("service\r"), "service\r\nPassword: ");
    EXPECT_EQ(says_to("geheim\r"), "\r\n");
    EXPECT_TRUE(login.passed());
    EXPECT_EQ(says_to("\x01"), "\r\n*");
}

TEST_F(ALogin, passesOnWhatComesBehindThePassword) {
    EXPECT_TRUE(says_to("service\rgeheim\r\x01").ends_with("\r\n\r\n*"));
}

TEST_F(ALogin, takesRubbingOutAndLineFeeds) {
    EXPECT_EQ(says_to("\b"), "");
    EXPECT_EQ(says_to("servuc\b\bice\r\n"), "servuc\b \b\b \bice\r\nPassword: ");
    says_to("gehi\beim\r\n");
    EXPECT_TRUE(login.passed());
}

TEST_F(ALogin, asksThreeTimesAndLeaves) {
    EXPECT_EQ(says_to("service\rfalsch\r"), "service\r\nPassword: \r\nAnmeldung falsch\r\n\r\nUsername: ");
    says_to("Service\rgeheim\r");
    EXPECT_EQ(ends, 0);
    EXPECT_TRUE(says_to("service\r\r").ends_with("Anmeldung falsch, Verbindung wird getrennt\r\n"));
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(says_to("service\rgeheim\r\x01"), "");
    EXPECT_EQ(ends, 1);
}

TEST_F(ALogin, keepsTheControllersWordsFromStrangers) {
    controller->send("Betriebssystem gestartet");
    EXPECT_EQ(says_to(""), "");
}

TEST_F(ALogin, cutsAnAnswerThatNeverEnds) {
    EXPECT_EQ(says_to(std::string(100'000, 'x')).size(), Login::longest_answer);
    EXPECT_EQ(says_to("\r"), "\r\nPassword: ");
}

TEST_F(ALogin, survivesRandomBytes) {
    Random random(5);
    for (int step = 0; step < 20'000; ++step) {
        Login other({"a", "b"}, std::make_unique<ControllerDevice>(std::make_shared<Controller>(loop, 1)));
        std::size_t said = 0;
        other.send = [&](std::string_view bytes) { said += bytes.size(); };
        other.connected();
        for (std::uint64_t n = random.below(6); n > 0; --n) {
            const std::string_view likely = "aab\r\r\r\b\x01";
            const char byte = random.below(4) == 0 ? static_cast<char>(random.below(256))
                                                   : likely[random.below(likely.size())];
            other.receive({&byte, 1});
        }
        loop.settle();
        ASSERT_GE(said, 12U);
    }
}

} // namespace
} // namespace velorn::plant
