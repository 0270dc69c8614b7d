#include "plant/memory_line.h"
#include "plant/modem.h"
#include "plant/random.h"
#include "runtime/virtual_event_loop.h"

#include <gtest/gtest.h>
#include <string>

namespace velorn::plant {
namespace {

// Who picks up: remembers, and does what the test says.
struct Far {
    Device* device = nullptr;
    std::string heard;
    int connects = 0;
    int ends = 0;
};

class FarEnd final : public Device {
  public:
    explicit FarEnd(Far& far) : far_(far) { far_.device = this; }
    ~FarEnd() override { far_.device = nullptr; }
    void connected() override {
        ++far_.connects;
        say("HALLO");
    }
    void disconnected() override { ++far_.ends; }
    void receive(std::string_view bytes) override { far_.heard += bytes; }

  private:
    Far& far_;
};

struct Network final : Exchange {
    Far far;
    Call::Outcome outcome = Call::Outcome::connects;
    std::int64_t after_ms = 3000;
    std::string dialled;
    std::int64_t dialled_at_ms = 0;
    EventLoop* loop = nullptr;

    Call dial(std::string_view number) override {
        dialled = number;
        dialled_at_ms = loop->now_ms();
        Call call{outcome, after_ms, nullptr};
        if (outcome == Call::Outcome::connects) call.far = std::make_unique<FarEnd>(far);
        return call;
    }
};

struct AModem : testing::Test {
    VirtualEventLoop loop;
    Network network;
    Modem modem{loop, network};
    MemoryLine line{loop, modem};
    std::string heard;

    AModem() {
        network.loop = &loop;
        line.received = [this](std::string_view bytes) { heard += bytes; };
    }

    // What comes back within the time.
    std::string says_to(std::string_view bytes, std::int64_t within_ms = 100) {
        heard.clear();
        line.send(bytes);
        loop.pass(within_ms);
        return heard;
    }
    void dial() {
        says_to("ATE0\r");
        EXPECT_EQ(says_to("atd055501\r", 3000), "\r\nCONNECT 9600\r\nHALLO");
        loop.pass(2000);
    }
    void escape() {
        dial();
        EXPECT_EQ(says_to("+++", 1000), "\r\nOK\r\n");
    }
};

TEST_F(AModem, echoesAndAnswersInEitherCase) {
    EXPECT_EQ(says_to("AT\r"), "AT\r\r\nOK\r\n");
    EXPECT_EQ(says_to("ate0\r"), "ate0\r\r\nOK\r\n");
    EXPECT_EQ(says_to("at\r"), "\r\nOK\r\n");
    EXPECT_EQ(says_to("ATE1\r"), "\r\nOK\r\n");
    EXPECT_EQ(says_to("ATZ\r"), "ATZ\r\r\nOK\r\n");
}

TEST_F(AModem, ignoresWhatStandsBeforeTheCommand) {
    says_to("ATE0\r");
    EXPECT_EQ(says_to("\x11"), "");
    EXPECT_EQ(says_to("AT\r"), "\r\nOK\r\n");
    EXPECT_EQ(says_to("EE+++ATH\r"), "\r\nOK\r\n");
    EXPECT_EQ(says_to("AATE0\r"), "\r\nOK\r\n");
    EXPECT_EQ(says_to("S\r\r\n"), "");
}

TEST_F(AModem, takesSeveralCommandsInALineWithBlanksAndRubbing) {
    EXPECT_TRUE(says_to("AT E0 V1 &F0X7\b4&C1 &D2\\N3S0=0\r").ends_with("\r\r\nOK\r\n"));
    EXPECT_EQ(says_to("AT&FE0\r"), "AT&FE0\r\r\nOK\r\n");
}

TEST_F(AModem, answersEverythingUnknownWithError) {
    says_to("ATE0\r");
    for (const char* wrong : {"ATK\r", "ATE2\r", "ATX5\r", "AT&\r", "ATS64=1\r", "ATS7=256\r", "AT+QUATSCH\r",
                              "AT E0=\r", "ATD5550x\r", "ATO\r", "AT99999999999\r", "AT\xE4\r"}) {
        EXPECT_EQ(says_to(wrong), "\r\nERROR\r\n") << wrong;
    }
    EXPECT_EQ(says_to("ATX3K&D0\r"), "\r\nERROR\r\n");
}

TEST_F(AModem, answersALineThatIsTooLongWithError) {
    says_to("ATE0\r");
    EXPECT_EQ(says_to("AT" + std::string(Modem::longest_line, ' ') + "\r"), "\r\nOK\r\n");
    EXPECT_EQ(says_to("AT" + std::string(100'000, ' ') + "\r"), "\r\nERROR\r\n");
}

TEST_F(AModem, keepsRegistersAndListsThem) {
    says_to("ATE0\r");
    EXPECT_EQ(says_to("ATS7?\r"), "\r\n045\r\n\r\nOK\r\n");
    EXPECT_EQ(says_to("ATS7=9 S7?\r"), "\r\n009\r\n\r\nOK\r\n");
    EXPECT_EQ(says_to("AT&FE0S7?\r"), "\r\n045\r\n\r\nOK\r\n");
}

TEST_F(AModem, answersInNumbersOrNotAtAllIfTold) {
    says_to("ATE0V0\r");
    EXPECT_EQ(says_to("AT\r"), "0\r");
    EXPECT_EQ(says_to("ATK\r"), "4\r");
    EXPECT_EQ(says_to("ATQ1\r"), "");
    EXPECT_EQ(says_to("ATK\r"), "");
    EXPECT_EQ(says_to("ATQ0V1\r"), "\r\nOK\r\n");
}

TEST_F(AModem, knowsTheWordsOfRadioModems) {
    for (const char* known : {"ATE0&D0\r", "AT+CRC=1\r", "AT+CBST=7,0,1\r", "AT+CSNS=4,2\r", "AT+FCLASS=0\r",
                              "ATS0=1\r", "AT&D0\r", "AT&W0\r", "AT+CMGF=1\r"}) {
        EXPECT_TRUE(says_to(known).ends_with("\r\nOK\r\n")) << known;
    }
    EXPECT_EQ(says_to("AT+CPIN?\r"), "\r\n+CPIN: READY\r\n\r\nOK\r\n");
    EXPECT_EQ(says_to("AT+CSQ\r"), "\r\n+CSQ: 21,99\r\n\r\nOK\r\n");
}

TEST_F(AModem, takesATextMessage) {
    says_to("ATE0\r");
    EXPECT_EQ(says_to("AT+CMGS=\"0555012\"\r"), "\r\n> ");
    EXPECT_EQ(says_to("St\xF6rung\x1A"), "\r\n+CMGS: 1\r\n\r\nOK\r\n");
    says_to("AT+CMGS=\"0555012\"\r");
    EXPECT_EQ(says_to(std::string(100'000, 'x') + "\x1A"), "\r\nERROR\r\n");
    EXPECT_EQ(says_to("AT\r"), "\r\nOK\r\n");
}

TEST_F(AModem, dialsTheDigitsAndPausesAtCommas) {
    says_to("ATE0\r");
    EXPECT_EQ(says_to("ATDT 0,,05550 / 12-34\r", 6999), "");
    EXPECT_EQ(network.dialled, "0055501234");
    EXPECT_EQ(network.dialled_at_ms, 4100);
    loop.pass(1);
    EXPECT_EQ(heard, "\r\nCONNECT 9600\r\nHALLO");
    EXPECT_EQ(network.far.connects, 1);
}

TEST_F(AModem, joinsTheFarEndUntouched) {
    dial();
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    EXPECT_EQ(says_to(all), "");
    EXPECT_EQ(network.far.heard, all);
    heard.clear();
    network.far.device->send(all);
    loop.settle();
    EXPECT_EQ(heard, all);
}

TEST_F(AModem, saysWhyACallFails) {
    says_to("ATE0\r");
    network.outcome = Call::Outcome::busy;
    EXPECT_EQ(says_to("ATD1\r", 3000), "\r\nBUSY\r\n");
    network.outcome = Call::Outcome::no_dialtone;
    EXPECT_EQ(says_to("ATD1\r", 3000), "\r\nNO DIALTONE\r\n");
    network.outcome = Call::Outcome::unknown;
    EXPECT_EQ(says_to("ATD1\r", 3000), "\r\nNO CARRIER\r\n");
    network.outcome = Call::Outcome::no_answer;
    EXPECT_EQ(says_to("ATD1\r", 44'999), "");
    EXPECT_EQ(says_to("", 1), "\r\nNO CARRIER\r\n");
    EXPECT_EQ(says_to("ATD1@\r", 45'000), "\r\nNO ANSWER\r\n");
}

TEST_F(AModem, waitsNoLongerForACarrierThanItWasTold) {
    says_to("ATE0S7=2\r");
    EXPECT_EQ(says_to("ATD1\r", 2000), "\r\nNO CARRIER\r\n");
    EXPECT_EQ(network.far.device, nullptr);
    network.outcome = Call::Outcome::busy;
    EXPECT_EQ(says_to("ATX0D1\r", 2000), "\r\nNO CARRIER\r\n");
}

TEST_F(AModem, givesUpDialingAtAnyKey) {
    says_to("ATE0\r");
    EXPECT_EQ(says_to("ATD1\r\n\x11", 1000), "");
    EXPECT_EQ(says_to("x", 10'000), "\r\nNO CARRIER\r\n");
    EXPECT_EQ(network.far.device, nullptr);
    EXPECT_EQ(says_to("AT\r"), "\r\nOK\r\n");
}

TEST_F(AModem, comesBackToItsCommandsByThreePlusesWithinSilence) {
    dial();
    EXPECT_EQ(says_to("+++", 999), "");
    EXPECT_EQ(says_to("", 1), "\r\nOK\r\n");
    EXPECT_TRUE(modem.in_call());
    EXPECT_EQ(says_to("ATD1\r"), "\r\nERROR\r\n");
    EXPECT_EQ(says_to("ATO\r"), "\r\nCONNECT 9600\r\n");
    EXPECT_TRUE(modem.online());
}

TEST_F(AModem, takesPlusesWithoutSilenceForData) {
    dial();
    says_to("E", 999);
    EXPECT_EQ(says_to("+++", 5000), "");
    EXPECT_EQ(says_to("+++", 999), "");
    EXPECT_EQ(says_to("x", 5000), "");
    EXPECT_EQ(says_to("++++", 5000), "");
    EXPECT_EQ(says_to("++", 1000), "");
    EXPECT_EQ(says_to("+", 5000), "");
    EXPECT_EQ(network.far.heard, "E++++++x+++++++");
}

TEST_F(AModem, hearsASecondTryAfterAFailedOne) {
    dial();
    says_to("E", 900);
    EXPECT_EQ(says_to("+++", 1500), "");
    EXPECT_EQ(says_to("+++", 1500), "\r\nOK\r\n");
    EXPECT_EQ(says_to("ATH\r"), "\r\nOK\r\n");
}

TEST_F(AModem, hangsUpAndTellsTheFarEnd) {
    escape();
    EXPECT_EQ(says_to("ATH\r"), "\r\nOK\r\n");
    EXPECT_EQ(network.far.ends, 1);
    EXPECT_EQ(network.far.device, nullptr);
    EXPECT_EQ(says_to("ATH\r"), "\r\nOK\r\n");
}

TEST_F(AModem, reportsThatTheFarEndHasLeft) {
    dial();
    heard.clear();
    network.far.device->hung_up(Ending::close);
    EXPECT_NE(network.far.device, nullptr);
    loop.pass(10);
    EXPECT_EQ(heard, "\r\nNO CARRIER\r\n");
    EXPECT_EQ(network.far.device, nullptr);
    EXPECT_EQ(says_to("AT\r"), "\r\nOK\r\n");
}

TEST_F(AModem, keepsABoundedRestOfWhatTheFarEndSaysMeanwhile) {
    escape();
    heard.clear();
    network.far.device->send("nachher");
    loop.pass(10);
    EXPECT_EQ(heard, "");
    EXPECT_EQ(says_to("ATO\r"), "\r\nCONNECT 9600\r\nnachher");
    loop.pass(1000);
    says_to("+++", 1000);
    for (int i = 0; i < 1000; ++i) network.far.device->send(std::string(1000, 'y'));
    EXPECT_EQ(says_to("ATO\r").size(), 16 + Modem::most_held);
}

TEST_F(AModem, forgetsTheCallAndItsSettingsWhenItsOwnLineGoes) {
    dial();
    modem.disconnected();
    EXPECT_EQ(network.far.ends, 1);
    EXPECT_EQ(says_to("AT\r"), "AT\r\r\nOK\r\n");
}

TEST_F(AModem, repeatsTheLastLine) {
    says_to("ATE0\r");
    says_to("ATS7?\r");
    EXPECT_EQ(says_to("A/"), "\r\n045\r\n\r\nOK\r\n");
}

// All of a modem's commands and its own noise; far ends that come and go.
TEST_F(AModem, survivesRandomBytes) {
    Random random(11);
    constexpr std::string_view likely = "AaTt+++\rDd0123,;&SsOoHhEe1=?\x1A\"@/\b ";
    for (int step = 0; step < 20'000; ++step) {
        network.outcome = static_cast<Call::Outcome>(random.below(5));
        network.after_ms = static_cast<std::int64_t>(random.below(2000));
        std::string bytes;
        for (std::uint64_t n = random.below(12); n > 0; --n) {
            bytes += random.below(4) == 0 ? static_cast<char>(random.below(256))
                                          : likely[random.below(likely.size())];
        }
        switch (random.below(8)) {
        case 0: bytes = "\rATD1\r"; break;
        case 1: bytes = "+++"; break;
        case 2:
            if (network.far.device != nullptr && network.far.device->hung_up) {
                network.far.device->hung_up(static_cast<Ending>(random.below(3)));
            }
            break;
        default: break;
        }
        line.send(bytes);
        loop.pass(static_cast<std::int64_t>(random.below(2500)));
        if (heard.size() > 100'000) heard.clear();
    }
    EXPECT_GT(network.far.connects, 100);
    modem.disconnected();
    EXPECT_EQ(says_to("AT\r"), "AT\r\r\nOK\r\n");
    EXPECT_EQ(network.far.device, nullptr);
}

} // namespace
} // namespace velorn::plant
