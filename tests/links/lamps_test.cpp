#include "links/lamps.h"
#include "runtime/text.h"
#include "support/test_program.h"

#include <gtest/gtest.h>

namespace velorn::test {

TEST(Lamps, areGreenAtRest) {
    TestProgram p;
    p.start();
    for (const Lamp* lamp : {&p.frmTerminal.Picture3, &p.frmTerminal.Picture4, &p.frmTerminal.Picture7,
                             &p.frmTerminal.Picture8}) {
        EXPECT_EQ(lamp->BackColor.get(), 65280U);
    }
}

TEST(Lamps, theSerialReceiveLampIsRedFor100ms) {
    TestProgram p;
    p.start();
    p.receive("x");
    EXPECT_EQ(p.frmTerminal.Picture4.BackColor.get(), 255U);
    p.loop.pass(99);
    EXPECT_EQ(p.frmTerminal.Picture4.BackColor.get(), 255U);
    p.loop.pass(1);
    EXPECT_EQ(p.frmTerminal.Picture4.BackColor.get(), 65280U);
    EXPECT_FALSE(p.frmTerminal.Timer7.Enabled);
}

TEST(Lamps, theTwoOfAPairGoOutTogether) {
    TestProgram p;
    p.start();
    p.receive("x");
    p.loop.pass(60);
    p.tcp.arrives("y");
    p.loop.settle();
    EXPECT_EQ(p.frmTerminal.Picture7.BackColor.get(), 255U);
    p.loop.pass(40);
    EXPECT_EQ(p.frmTerminal.Picture4.BackColor.get(), 65280U);
    EXPECT_EQ(p.frmTerminal.Picture7.BackColor.get(), 65280U);
}

TEST(Lamps, theSendLampsGoOutTogether) {
    TestProgram p;
    p.start();
    p.module1.tcpoffen = true;
    p.tcp.current = TcpState::connected;
    p.program.output.sendetext("x");
    EXPECT_EQ(p.frmTerminal.Picture8.BackColor.get(), 255U);
    p.frmTerminal.Picture3.BackColor = colour::red;
    p.loop.pass(100);
    EXPECT_EQ(p.frmTerminal.Picture8.BackColor.get(), 65280U);
    EXPECT_EQ(p.frmTerminal.Picture3.BackColor.get(), 65280U);
    EXPECT_FALSE(p.frmTerminal.Timer8.Enabled);
}

TEST(Lamps, theSerialSendLampFollowsTheSendThreshold) {
    TestProgram p;
    p.start();
    p.program.output.sendetext("x");
    EXPECT_EQ(p.frmTerminal.Picture3.BackColor.get(), 65280U);
    ASSERT_TRUE(p.program.MSComm1.set_SThreshold(5).ok());
    p.serial.set_unsent(9);
    p.program.output.sendetext("x");
    p.serial.set_unsent(2);
    EXPECT_EQ(p.frmTerminal.Picture3.BackColor.get(), 255U);
    p.loop.pass(100);
    EXPECT_EQ(p.frmTerminal.Picture3.BackColor.get(), 65280U);
    p.serial.set_unsent(0);
}

TEST(Lamps, theTcpStateIsShownEverySecond) {
    struct Row {
        int state;
        std::string_view text;
        Colour colour;
        bool hides;
    };
    const Row rows[] = {
        {0, "TCP/IP geschl. (0)"_w, colour::red, true},
        {1, "TCP/IP offen (1)"_w, colour::red, false},
        {2, "TCP/IP lauschen (2)"_w, colour::red, false},
        {3, "TCP/IP Verb. anstehend (3)"_w, colour::red, false},
        {4, "TCP/IP Host Name auflösen (4)"_w, colour::red, false},
        {5, "TCP/IP Host Name aufgelöst (5)"_w, colour::red, false},
        {6, "TCP/IP connecting (6)"_w, colour::red, false},
        {7, "TCP/IP verbunden (7)"_w, colour::green, true},
        {8, "TCP/IP Partner beendet (8)"_w, colour::red, false},
        {9, "TCP/IP Fehler (9)"_w, colour::red, false},
    };
    TestProgram p;
    p.start();
    for (const Row& row : rows) {
        p.frmTerminal.picipunterbr.Visible = true;
        p.tcp.current = static_cast<TcpState>(row.state);
        p.loop.pass(1000);
        EXPECT_EQ(p.frmTerminal.Label5.Caption.get(), row.text);
        EXPECT_EQ(p.frmTerminal.Picture6.BackColor.get(), row.colour) << row.text;
        EXPECT_EQ(p.frmTerminal.picipunterbr.Visible.get(), !row.hides) << row.text;
    }
}

TEST(Lamps, anUnknownTcpStateChangesNothing) {
    TestProgram p;
    p.start();
    p.tcp.current = TcpState::connected;
    p.loop.pass(1000);
    p.tcp.current = static_cast<TcpState>(10);
    p.loop.pass(1000);
    EXPECT_EQ(p.frmTerminal.Label5.Caption.get(), "TCP/IP verbunden (7)");
    EXPECT_EQ(p.frmTerminal.Picture6.BackColor.get(), colour::green);
}

TEST(Lamps, bearTheirTooltips) {
    TestProgram p;
    FrmTerminal& f = p.frmTerminal;
    EXPECT_EQ(f.Picture3.ToolTipText.get(), "Daten zum Modem");
    EXPECT_EQ(f.Picture8.ToolTipText.get(), "Daten zum Modem");
    EXPECT_EQ(f.Picture4.ToolTipText.get(), "Daten vom Modem");
    EXPECT_EQ(f.Picture7.ToolTipText.get(), "Daten vom Modem");
    EXPECT_EQ(f.Label7.ToolTipText.get(), "Daten zu TCP/IP");
    EXPECT_EQ(f.Label6.ToolTipText.get(), "Daten von TCP/IP");
    EXPECT_EQ(f.Label5.ToolTipText.get(), "Zustand von TCP/IP");
    EXPECT_EQ(f.Label4.ToolTipText.get(), "Zustand des Communikationsanschlusses");
    EXPECT_EQ(f.Picture5.ToolTipText.get(), "Mit Click umschalten");
    EXPECT_EQ(f.Picture6.ToolTipText.get(), "Mit Click umschalten");
}

} // namespace velorn::test
