#include "links/mscomm.h"
#include "runtime/virtual_event_loop.h"
#include "support/fake_serial_port.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

namespace velorn::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct Port {
    VirtualEventLoop loop;
    FakeSerialPort serial{loop};
    MSComm MSComm1{loop, serial};
    std::vector<int> events;
    std::vector<std::string> inputs;

    Port() {
        MSComm1.OnComm = [this] {
            events.push_back(static_cast<int>(MSComm1.CommEvent()));
            if (MSComm1.CommEvent() == CommEvent::receive) inputs.push_back(MSComm1.Input());
        };
    }
    void open() { ASSERT_TRUE(MSComm1.set_PortOpen(true).ok()); }
    void arrives(std::string_view bytes) {
        serial.arrives(bytes);
        loop.settle();
    }
};

int number_of_failure(const Outcome& outcome) { return outcome.ok() ? 0 : outcome.failure().number; }

} // namespace

TEST(MSComm, beginsWithItsDesignValues) {
    Port p;
    EXPECT_EQ(p.MSComm1.CommPort(), 1);
    EXPECT_EQ(p.MSComm1.InputLen(), 32);
    EXPECT_EQ(p.MSComm1.RThreshold(), 1);
    EXPECT_EQ(p.MSComm1.SThreshold(), 0);
    EXPECT_EQ(MSComm::InBufferSize, 16384);
    EXPECT_EQ(MSComm::OutBufferSize, 256);
    EXPECT_FALSE(p.MSComm1.PortOpen());
    EXPECT_EQ(p.MSComm1.InBufferCount(), 0);
    EXPECT_EQ(p.MSComm1.OutBufferCount(), 0);
}

TEST(MSComm, settingsAreReadBackInLowerCase) {
    const std::pair<const char*, const char*> rows[] = {{"19200,N,8,1", "19200,n,8,1"},
                                                        {"9600,E,7,2", "9600,e,7,2"},
                                                        {"300,o,5,1", "300,o,5,1"},
                                                        {"115200,M,8,1", "115200,m,8,1"},
                                                        {"4800,s,6,2", "4800,s,6,2"}};
    for (const auto& [set, read] : rows) {
        Port p;
        EXPECT_TRUE(p.MSComm1.set_Settings(set).ok()) << set;
        EXPECT_EQ(p.MSComm1.Settings(), read);
    }
}

TEST(MSComm, malformedSettingsAreRefusedAndChangeNothing) {
    for (const char* text : {"", "19200", "19200,n,8", "19200,n,8,1,", "19200,n,8,3", "19200,x,8,1",
                             "19200,nn,8,1", "19200,n,9,1", "19200,n,3,1", "0,n,8,1", "-5,n,8,1", "n,n,8,1",
                             "19200,,8,1", "99999999999,n,8,1", "19200 ,n,8,1", "19200,n,8,1 "}) {
        Port p;
        ASSERT_TRUE(p.MSComm1.set_Settings("9600,e,7,2").ok());
        EXPECT_EQ(number_of_failure(p.MSComm1.set_Settings(text)), 380) << text;
        EXPECT_EQ(p.MSComm1.Settings(), "9600,e,7,2");
    }
}

TEST(MSComm, settingsThatTheSystemCannotDoAreRefused) {
    Port p;
    for (const char* text : {"19200,n,4,1", "19200,n,8,1.5"}) {
        EXPECT_TRUE(parse_serial_settings(text).has_value()) << text;
        EXPECT_EQ(number_of_failure(p.MSComm1.set_Settings(text)), 380) << text;
    }
}

TEST(MSComm, settingsAndHandshakeReachAnOpenPortAtOnceAndAClosedOneWhenItOpens) {
    Port p;
    ASSERT_TRUE(p.MSComm1.set_Settings("9600,e,7,2").ok());
    ASSERT_TRUE(p.MSComm1.set_Handshaking(2).ok());
    p.open();
    EXPECT_EQ(p.serial.settings.baud, 9600);
    EXPECT_EQ(p.serial.handshake, Handshake::rts);
    ASSERT_TRUE(p.MSComm1.set_Settings("300,n,8,1").ok());
    ASSERT_TRUE(p.MSComm1.set_Handshaking(3).ok());
    EXPECT_EQ(p.serial.settings.baud, 300);
    EXPECT_EQ(p.serial.handshake, Handshake::rts_xon_xoff);
}

TEST(MSComm, handshakesRunFrom0To3) {
    Port p;
    for (int number = 0; number <= 3; ++number) {
        EXPECT_TRUE(p.MSComm1.set_Handshaking(number).ok());
        EXPECT_EQ(p.MSComm1.Handshaking(), number);
    }
    EXPECT_EQ(number_of_failure(p.MSComm1.set_Handshaking(4)), 380);
    EXPECT_EQ(number_of_failure(p.MSComm1.set_Handshaking(-1)), 380);
    EXPECT_EQ(p.MSComm1.Handshaking(), 3);
}

TEST(MSComm, portsRunFrom1To255) {
    Port p;
    for (const int bad : {0, -1, 256}) EXPECT_EQ(number_of_failure(p.MSComm1.set_CommPort(bad)), 380) << bad;
    EXPECT_TRUE(p.MSComm1.set_CommPort(255).ok());
    p.open();
    EXPECT_EQ(p.serial.open_port, 255);
}

TEST(MSComm, theNumberOfAnOpenPortStays) {
    Port p;
    p.open();
    EXPECT_EQ(number_of_failure(p.MSComm1.set_CommPort(2)), 8005);
    EXPECT_EQ(p.MSComm1.CommPort(), 1);
    EXPECT_TRUE(p.MSComm1.set_PortOpen(false).ok());
    EXPECT_TRUE(p.MSComm1.set_CommPort(2).ok());
}

TEST(MSComm, openingTwiceFailsAndClosingTwiceDoesNot) {
    Port p;
    p.open();
    EXPECT_EQ(number_of_failure(p.MSComm1.set_PortOpen(true)), 8005);
    EXPECT_TRUE(p.MSComm1.PortOpen());
    EXPECT_TRUE(p.MSComm1.set_PortOpen(false).ok());
    EXPECT_TRUE(p.MSComm1.set_PortOpen(false).ok());
}

TEST(MSComm, aMissingPortCannotBeOpened) {
    Port p;
    p.serial.there = false;
    EXPECT_EQ(number_of_failure(p.MSComm1.set_PortOpen(true)), 8002);
    EXPECT_FALSE(p.MSComm1.PortOpen());
}

TEST(MSComm, inputLenGivesPortions) {
    Port p;
    p.MSComm1.OnComm = nullptr;
    p.open();
    ASSERT_TRUE(p.MSComm1.set_InputLen(4).ok());
    p.arrives("abcdefghij");
    EXPECT_EQ(p.MSComm1.InBufferCount(), 10);
    EXPECT_EQ(p.MSComm1.Input(), "abcd");
    EXPECT_EQ(p.MSComm1.InBufferCount(), 6);
    ASSERT_TRUE(p.MSComm1.set_InputLen(0).ok());
    EXPECT_EQ(p.MSComm1.Input(), "efghij");
    EXPECT_EQ(p.MSComm1.Input(), "");
}

TEST(MSComm, whatAPortionLeavesGetsItsOwnEvents) {
    Port p;
    p.open();
    p.arrives(std::string(32, 'a') + std::string(32, 'b') + "c");
    EXPECT_THAT(p.inputs, ElementsAre(std::string(32, 'a'), std::string(32, 'b'), "c"));
}

TEST(MSComm, theInputBufferHolds16384) {
    Port p;
    ASSERT_TRUE(p.MSComm1.set_InputLen(0).ok());
    p.open();
    p.arrives(std::string(40'000, 'x'));
    ASSERT_EQ(p.inputs.size(), 3U);
    EXPECT_EQ(p.inputs[0].size(), 16384U);
    EXPECT_EQ(p.inputs[1].size(), 16384U);
    EXPECT_EQ(p.inputs[2].size(), 40'000U - 2 * 16384U);
}

TEST(MSComm, theReceiveThresholdHoldsEventsBack) {
    Port p;
    ASSERT_TRUE(p.MSComm1.set_RThreshold(5).ok());
    p.open();
    p.arrives("abcd");
    EXPECT_THAT(p.events, IsEmpty());
    p.arrives("e");
    EXPECT_THAT(p.inputs, ElementsAre("abcde"));
}

TEST(MSComm, aReceiveThresholdOf0TellsNobodyAndLoweringItDeliversWhatIsThere) {
    Port p;
    ASSERT_TRUE(p.MSComm1.set_RThreshold(0).ok());
    p.open();
    p.arrives("abc");
    EXPECT_THAT(p.events, IsEmpty());
    ASSERT_TRUE(p.MSComm1.set_RThreshold(1).ok());
    p.loop.settle();
    EXPECT_THAT(p.inputs, ElementsAre("abc"));
}

TEST(MSComm, theSendEventComesWhenTheQueueFallsBelowItsThreshold) {
    Port p;
    p.open();
    ASSERT_TRUE(p.MSComm1.set_SThreshold(10).ok());
    p.serial.set_unsent(30);
    p.MSComm1.Output("x");
    p.serial.set_unsent(10);
    EXPECT_THAT(p.events, IsEmpty());
    p.serial.set_unsent(9);
    EXPECT_THAT(p.events, ElementsAre(1));
    p.serial.set_unsent(3);
    EXPECT_THAT(p.events, ElementsAre(1));
}

TEST(MSComm, aSendThresholdOf0GivesNoEvent) {
    Port p;
    p.open();
    p.serial.set_unsent(30);
    p.MSComm1.Output("x");
    p.serial.set_unsent(0);
    EXPECT_THAT(p.events, IsEmpty());
}

TEST(MSComm, limitsOutsideTheirRangeAreRefused) {
    Port p;
    for (const int bad : {-1, 32768}) {
        EXPECT_EQ(number_of_failure(p.MSComm1.set_InputLen(bad)), 380);
        EXPECT_EQ(number_of_failure(p.MSComm1.set_RThreshold(bad)), 380);
        EXPECT_EQ(number_of_failure(p.MSComm1.set_SThreshold(bad)), 380);
    }
    EXPECT_EQ(p.MSComm1.InputLen(), 32);
    EXPECT_EQ(p.MSComm1.RThreshold(), 1);
    EXPECT_EQ(p.MSComm1.SThreshold(), 0);
}

TEST(MSComm, theOutputBufferCanBeDropped) {
    Port p;
    p.open();
    p.serial.set_unsent(30);
    EXPECT_EQ(p.MSComm1.OutBufferCount(), 30);
    p.MSComm1.drop_output();
    EXPECT_EQ(p.MSComm1.OutBufferCount(), 0);
}

TEST(MSComm, outputGoesToTheOpenPort) {
    Port p;
    p.MSComm1.Output("lost");
    p.open();
    p.MSComm1.Output(std::string_view("a\0\xff", 3));
    p.MSComm1.Output("b");
    EXPECT_EQ(p.serial.take_written(), std::string("a\0\xff"
                                                   "b",
                                                   4));
}

TEST(MSComm, dtrFollowsItsSwitchAlsoOverClosingAndOpening) {
    Port p;
    EXPECT_TRUE(p.MSComm1.DTREnable());
    p.open();
    EXPECT_TRUE(p.serial.dtr);
    p.MSComm1.set_DTREnable(false);
    EXPECT_FALSE(p.serial.dtr);
    ASSERT_TRUE(p.MSComm1.set_PortOpen(false).ok());
    p.serial.dtr = true;
    p.open();
    EXPECT_FALSE(p.serial.dtr);
}

TEST(MSComm, theLinesAreThoseOfThePort) {
    Port p;
    p.open();
    p.serial.line_states.carrier = true;
    EXPECT_TRUE(p.MSComm1.CDHolding());
    EXPECT_FALSE(p.MSComm1.CTSHolding());
    p.serial.line_states = {};
    p.serial.line_states.clear_to_send = true;
    EXPECT_TRUE(p.MSComm1.CTSHolding());
    p.serial.line_states = {};
    p.serial.line_states.data_set_ready = true;
    EXPECT_TRUE(p.MSComm1.DSRHolding());
    EXPECT_FALSE(p.MSComm1.CDHolding());
}

TEST(MSComm, theFirstCharacterReplacesParityErrorsAndAnEmptyTextNone) {
    Port p;
    ASSERT_TRUE(p.MSComm1.set_ParityReplace("xyz").ok());
    EXPECT_EQ(p.MSComm1.ParityReplace(), "x");
    p.open();
    EXPECT_EQ(p.serial.parity_replacement, 'x');
    ASSERT_TRUE(p.MSComm1.set_ParityReplace("").ok());
    EXPECT_EQ(p.serial.parity_replacement, std::nullopt);
    EXPECT_EQ(p.MSComm1.ParityReplace(), "");
}

TEST(MSComm, alsoWithoutAReplacementAReopenedPortReplacesNothing) {
    Port p;
    p.open();
    ASSERT_TRUE(p.MSComm1.set_ParityReplace("").ok());
    ASSERT_TRUE(p.MSComm1.set_PortOpen(false).ok());
    p.open();
    EXPECT_EQ(p.serial.parity_replacement, std::nullopt);
}

} // namespace velorn::test
