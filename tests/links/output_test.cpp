#include "support/receive_rig.h"

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

constexpr const char* both_limits = "        out: 31\r\n        out: 32  \r\n";

}

TEST(Sendetext, goesOverTheSerialPortAsItIs) {
    ReceiveRig r;
    r.frmTerminal.Timer8.Enabled = false;
    r.output.sendetext(std::string_view("a\0\xff\r", 4));
    EXPECT_EQ(r.sent(), std::string("a\0\xff\r", 4));
    EXPECT_EQ(r.tcp.take_written(), "");
    EXPECT_EQ(r.frmTerminal.Picture3.BackColor.get(), colour::green) << "its lamp is the port's own event's";
    EXPECT_FALSE(r.frmTerminal.Timer8.Enabled);
}

TEST(Sendetext, goesOverTcpWhileThatIsTheLinkAndLightsItsLamp) {
    ReceiveRig r;
    r.module1.tcpoffen = true;
    r.tcp.current = TcpState::connected;
    r.frmTerminal.Timer8.Enabled = false;
    r.output.sendetext("abc");
    EXPECT_EQ(r.tcp.take_written(), "abc");
    EXPECT_EQ(r.sent(), "");
    EXPECT_EQ(r.frmTerminal.Picture8.BackColor.get(), colour::red);
    EXPECT_TRUE(r.frmTerminal.Timer8.Enabled);
    EXPECT_FALSE(r.frmTerminal.picipunterbr.Visible);
}

TEST(Sendetext, isLostOnAnInterruptedTcpLinkThoughTheSerialPortIsOpen) {
    for (int state = 0; state <= 9; ++state) {
        if (state == 7) continue;
        ReceiveRig r;
        r.module1.tcpoffen = true;
        r.frmTerminal.Timer8.Enabled = false;
        r.tcp.current = static_cast<TcpState>(state);
        r.output.sendetext("abc");
        EXPECT_TRUE(r.frmTerminal.picipunterbr.Visible) << state;
        EXPECT_EQ(r.sent() + r.tcp.take_written(), "");
        EXPECT_EQ(r.frmTerminal.Picture8.BackColor.get(), colour::green);
        EXPECT_FALSE(r.frmTerminal.Timer8.Enabled);
    }
}

TEST(Sendetext, onAClosedPortIsLostInSilence) {
    ReceiveRig r;
    ASSERT_TRUE(r.MSComm1.set_PortOpen(false).ok());
    r.output.sendetext("abc");
    EXPECT_EQ(r.sent(), "");
    EXPECT_FALSE(r.frmTerminal.picipunterbr.Visible);
}

TEST(Sendetext, isTracedWithTheCharacterAboveCode31) {
    ReceiveRig r;
    r.module1.trace = true;
    r.output.sendetext("\x1f ");
    EXPECT_EQ(r.frmTerminal.txttest10.Text(), both_limits);
    EXPECT_EQ(r.sent(), "\x1f ");
}

TEST(Sendetext, isTracedOnAClosedPortAndOnAnInterruptedLinkToo) {
    ReceiveRig r;
    r.module1.trace = true;
    ASSERT_TRUE(r.MSComm1.set_PortOpen(false).ok());
    r.output.sendetext("\x1f ");
    EXPECT_EQ(r.frmTerminal.txttest10.Text(), both_limits);
    r.module1.tcpoffen = true;
    r.output.sendetext("A");
    EXPECT_EQ(r.frmTerminal.txttest10.Text(), std::string(both_limits) + "        out: 65 A\r\n");
}

TEST(Sendetext, isTracedAtTheSelection) {
    ReceiveRig r;
    r.module1.trace = true;
    r.frmTerminal.txttest10.set_Text("ab");
    r.frmTerminal.txttest10.select(1);
    r.output.sendetext("\r");
    EXPECT_EQ(r.frmTerminal.txttest10.Text(), "a        out: 13\r\nb");
}

TEST(Sendetext, leavesNoTraceWhileThatIsOff) {
    ReceiveRig r;
    r.output.sendetext("A");
    EXPECT_EQ(r.frmTerminal.txttest10.Text(), "");
}

TEST(Output, oneOpenWayOutIsEnoughForKeys) {
    ReceiveRig r;
    EXPECT_TRUE(r.output.link_is_open());
    ASSERT_TRUE(r.MSComm1.set_PortOpen(false).ok());
    EXPECT_FALSE(r.output.link_is_open());
    r.module1.tcpoffen = true;
    EXPECT_TRUE(r.output.link_is_open());
}

} // namespace velorn::test
