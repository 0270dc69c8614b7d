#include "runtime/text.h"
#include "support/sent_at.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct Tcp : TestProgram {
    std::vector<std::string> news;

    explicit Tcp(bool over_gateway = false) {
        start();
        module1.telnet = over_gateway;
        settings.fbautostart = std::int16_t{0};
        frmTerminal.txtterm.set_Text({});
        module1.gatewayoffen = false;
        program.events.gateway_ready.connect([this] { tell("gateway ready"); });
        program.events.second_gateway_modem.connect([this] { tell("second modem"); });
        program.events.direct_attempt_over.connect([this] { tell("direct over"); });
        program.events.protocol_mark.connect(
            [this](std::string_view mark) { tell("mark" + std::string(mark)); });
        program.tcp_link.begin_attempt("plant", 1100);
        news.clear();
    }
    void tell(std::string what) { news.push_back(std::to_string(loop.now_ms() - begun) + ' ' + what); }
    std::int64_t begun = 1600; // after the start
};

} // namespace

// ---- connected ----

TEST(TcpLink, greetsAControllerThatIsReachedDirectly) {
    Tcp p;
    EXPECT_EQ(p.tcp.host, "plant");
    EXPECT_EQ(p.tcp.port, 1100);
    p.module1.protokollan = true;
    p.tcp.succeeds();
    p.loop.settle();
    EXPECT_TRUE(p.module1.tcpoffen);
    EXPECT_TRUE(p.module1.gatewayoffen);
    EXPECT_EQ(p.tcp.take_written(), "\x08");
    EXPECT_EQ(p.terminal(), "\n\r\nVerbindung hergestellt");
    EXPECT_THAT(p.news, ElementsAre("0 direct over", "0 mark  CONNECT "));
}

TEST(TcpLink, startsRemoteControlOnlyWhereEverythingIsReadyForIt) {
    struct Case {
        std::int16_t dialalter;
        bool wiederverbinden, autoverbindung, user, password, starts;
    };
    constexpr Case cases[] = {
        {30, false, false, true, true, true},   {31, false, false, true, true, false},
        {30, true, false, true, true, false},   {30, false, true, true, true, false},
        {30, false, false, false, true, false}, {30, false, false, true, false, false},
    };
    for (const Case& one : cases) {
        Tcp p;
        p.module1.dialalter = one.dialalter;
        p.module1.wiederverbinden = one.wiederverbinden;
        p.module1.autoverbindung = one.autoverbindung;
        p.module1.usernamegesehen = one.user;
        p.module1.passwordgesehen = one.password;
        p.tcp.succeeds();
        p.loop.settle();
        EXPECT_EQ(p.frmTerminal.Timer4.Enabled, one.starts);
        EXPECT_FALSE(p.module1.autoverbindung);
    }
}

TEST(TcpLink, waitsASecondBeforeTheGatewayIsTold) {
    Tcp p(true);
    p.module1.protokollan = true;
    p.frmTerminal.Timer23.Enabled = true;
    p.tcp.succeeds();
    p.loop.post_at(p.loop.now_ms() + 900, [&p] {
        EXPECT_TRUE(p.module1.tcpoffen);
        EXPECT_FALSE(p.module1.gatewayoffen);
        p.tcp.arrives("hidden CONNECT");
    });
    p.loop.settle();
    EXPECT_FALSE(p.frmTerminal.Timer23.Enabled);
    EXPECT_TRUE(p.module1.gatewayoffen);
    EXPECT_EQ(p.terminal(), "\n\r\nVerbindung zum tarnwerk-Modem hergestellt!");
    EXPECT_EQ(p.tcp.take_written(), "\x11\x11"); // its own, and the answer to "CONNECT"
    EXPECT_THAT(p.news,
                ElementsAre("0 direct over", "0 mark  CONNECT ", "900 mark  CONNECT ", "1000 gateway ready"));
}

TEST(TcpLink, dialsNothingThroughAGatewayThatWasLostMeanwhile) {
    Tcp p(true);
    p.tcp.succeeds();
    p.loop.post_at(p.loop.now_ms() + 500, [&p] { p.tcp.fails(10054, "weg"); });
    p.loop.settle();
    EXPECT_FALSE(p.module1.tcpoffen);
    EXPECT_THAT(p.news, ElementsAre("0 direct over"));
}

TEST(TcpLink, dialsNothingThroughAConnectionThatCameAboutWhileTheGatewaysWaited) {
    Tcp p(true);
    p.tcp.succeeds();
    p.loop.post_at(p.loop.now_ms() + 500, [&p] {
        p.module1.istip = true;
        p.program.tcp_link.begin_attempt("direct", 1100);
        p.tcp.succeeds();
    });
    p.loop.settle();
    EXPECT_TRUE(p.module1.tcpoffen);
    EXPECT_THAT(p.news, testing::Not(testing::Contains(testing::HasSubstr("gateway ready"))));
}

TEST(TcpLink, anAddressNeverGoesOverTheGateway) {
    Tcp p(true);
    p.module1.istip = true;
    p.tcp.succeeds();
    p.loop.settle();
    EXPECT_EQ(p.terminal(), "\n\r\nVerbindung hergestellt");
}

TEST(TcpLink, stopsTheTimersOfEveryRoute) {
    for (const bool over_gateway : {false, true}) {
        Tcp p(over_gateway);
        p.frmTerminal.Timer23.Enabled = true;
        p.frmTerminal.Timer25.Enabled = true;
        p.tcp.succeeds();
        p.loop.settle();
        EXPECT_FALSE(p.frmTerminal.Timer23.Enabled);
        EXPECT_FALSE(p.frmTerminal.Timer25.Enabled);
    }
}

TEST(TcpLink, aNewAttemptStopsTheTimersOfTheOneBefore) {
    Tcp p;
    for (Timer* timer : {&p.frmTerminal.Timer23, &p.frmTerminal.Timer24, &p.frmTerminal.Timer25})
        timer->Enabled = true;
    p.module1.verbindungticks = 9;
    p.program.tcp_link.begin_attempt("other", 23);
    for (Timer* timer : {&p.frmTerminal.Timer23, &p.frmTerminal.Timer24, &p.frmTerminal.Timer25})
        EXPECT_FALSE(timer->Enabled);
    EXPECT_EQ(p.module1.verbindungticks, 0);
    EXPECT_THAT(p.news, ElementsAre("0 direct over"));
    EXPECT_EQ(p.tcp.connects, 2);
}

// ---- errors ----

TEST(TcpLink, tellsARefusalOfADirectConnection) {
    Tcp p;
    p.module1.tcpoffen = true;
    p.tcp.fails(10061, "abgelehnt");
    p.loop.settle();
    EXPECT_EQ(p.terminal(), "\n\r\nWinsock Fehler 10061 abgelehnt\r\nVerbindung wird getrennt");
    EXPECT_EQ(p.tcp.closes, 1);
    EXPECT_FALSE(p.module1.tcpoffen);
}

TEST(TcpLink, passesARefusalByTheGatewayOnToItsTimer) {
    Tcp p(true);
    p.frmTerminal.Timer23.Enabled = true;
    p.tcp.fails(10061, "abgelehnt");
    p.loop.settle();
    EXPECT_EQ(p.terminal(), "");
    EXPECT_EQ(p.module1.verbindungticks, 12);
    EXPECT_EQ(p.tcp.closes, 0);
    EXPECT_TRUE(p.frmTerminal.Timer23.Enabled);
    p.loop.pass(1000);
    EXPECT_EQ(p.terminal(), ".\r\nVersuch fehlgeschlagen");
    EXPECT_EQ(p.tcp.closes, 1);
}

TEST(TcpLink, tellsOtherErrorsOfTheGatewayToo) {
    Tcp p(true);
    p.tcp.fails(10060, "zu lange");
    p.loop.settle();
    EXPECT_EQ(p.terminal(), "\n\r\nWinsock Fehler 10060 zu lange\r\nVerbindung wird getrennt");
}

// ---- attempts that take too long ----

TEST(TcpAttempts, ofTheGatewayModemEndsAfterTenSeconds) {
    for (const bool second : {false, true}) {
        Tcp p(true);
        p.module1.modem2versucht = second;
        p.frmTerminal.Timer23.Enabled = true;
        p.loop.pass(9999);
        EXPECT_EQ(p.terminal(), ".........");
        p.loop.pass(1);
        EXPECT_EQ(p.terminal(), std::string("..........\r\nVersuch fehlgeschlagen") +
                                    (second ? "  Bitte nochmal versuchen" : ""));
        EXPECT_EQ(p.news.empty(), second);
        EXPECT_TRUE(p.module1.modem2versucht);
        EXPECT_FALSE(p.frmTerminal.Timer23.Enabled);
        EXPECT_EQ(p.tcp.closes, 1);
        p.loop.pass(20'000); // the second modem is not tried for no site
        EXPECT_EQ(p.tcp.closes, second ? 1 : 2);
        EXPECT_FALSE(p.frmTerminal.Timer23.Enabled);
    }
}

TEST(TcpAttempts, ofTheGatewaysDialEndsAfterAMinute) {
    for (const bool second : {false, true}) {
        Tcp p(true);
        p.module1.tcpoffen = true;
        p.module1.modem2versucht = second;
        p.frmTerminal.Timer24.Enabled = true;
        p.loop.pass(60'000);
        EXPECT_EQ(p.terminal(), std::string(60, '.') + "\r\nModemeinwahl fehlgeschlagen (besetzt,...)" +
                                    (second ? "\r\n  Bitte nochmal versuchen\r\n" : ""));
        EXPECT_FALSE(p.frmTerminal.Timer24.Enabled);
        EXPECT_FALSE(p.module1.tcpoffen);
        EXPECT_EQ(p.tcp.closes, 1);
    }
}

TEST(TcpAttempts, ofTheUnusedTimerEndAfterTenSecondsToo) {
    Tcp p;
    p.frmTerminal.Timer23.Enabled = false;
    p.frmTerminal.Timer25.Enabled = true;
    p.loop.pass(10'000);
    EXPECT_EQ(p.terminal(), "..........\r\nVersuch fehlgeschlagen");
    EXPECT_FALSE(p.frmTerminal.Timer25.Enabled);
}

TEST(TcpAttempts, ofTheUnusedTimerStopTheGatewaysTimerAndCloseOnce) {
    Tcp p;
    p.module1.verbindungticks = 9;
    p.frmTerminal.Timer25.Enabled = true;
    p.loop.post_at(p.loop.now_ms() + 500, [&p] { p.frmTerminal.Timer23.Enabled = true; });
    p.loop.pass(1000);
    EXPECT_FALSE(p.frmTerminal.Timer23.Enabled);
    p.loop.pass(5000);
    EXPECT_EQ(p.terminal(), ".\r\nVersuch fehlgeschlagen");
    EXPECT_EQ(p.tcp.closes, 1);
    EXPECT_THAT(p.news, IsEmpty());
}

TEST(TcpAttempts, stopCountingWhenTheSiteConnects) {
    Tcp p(true);
    p.module1.gatewayoffen = true;
    p.frmTerminal.Timer24.Enabled = true;
    p.tcp.arrives("CONNECT 9600");
    p.loop.settle();
    EXPECT_FALSE(p.frmTerminal.Timer24.Enabled);
}

// ---- closing ----

TEST(TcpClosing, byTheToolbarIsImmediateOnADirectConnection) {
    Tcp p;
    p.module1.tcpoffen = true;
    p.tcp.current = TcpState::connected;
    p.frmTerminal.tbrToolBar("HangUpPhone").Click();
    EXPECT_EQ(p.tcp.closes, 1);
    EXPECT_FALSE(p.module1.tcpoffen);
    EXPECT_EQ(p.tcp.take_written(), "");
    EXPECT_EQ(p.loop.now_ms(), 1600);
}

TEST(TcpClosing, byTheToolbarLeavesTheDisplayFirst) {
    Tcp p;
    p.module1.tcpoffen = true;
    p.tcp.current = TcpState::connected;
    p.frmTerminal.fernbedaktiv = true;
    p.frmTerminal.tbrToolBar("HangUpPhone").Click();
    EXPECT_EQ(p.tcp.take_written(), "E");
    EXPECT_EQ(p.loop.now_ms(), 1600 + 2000);
    EXPECT_EQ(p.tcp.closes, 1);
    EXPECT_FALSE(p.module1.tcpoffen);
}

TEST(TcpClosing, byTheToolbarHangsUpTheModemWhereTcpIsNotOpen) {
    Tcp p;
    const SentAt sent(p);
    p.frmTerminal.tbrToolBar("HangUpPhone").Click();
    EXPECT_THAT(sent.all, ElementsAre("0 +++", "1500 +++", "3000 ATH\r"));
    EXPECT_EQ(p.tcp.closes, 0);
}

TEST(TcpClosing, byTheToolbarHangsUpTheGatewaysModemAndWaitsTwoSeconds) {
    Tcp p(true);
    p.module1.tcpoffen = true;
    p.tcp.current = TcpState::connected;
    p.frmTerminal.tbrToolBar("HangUpPhone").Click();
    EXPECT_EQ(p.tcp.take_written(), "++++++ATH\r");
    EXPECT_EQ(p.loop.now_ms(), 1600 + 4500 + 2000);
    EXPECT_EQ(p.tcp.closes, 1);
    EXPECT_FALSE(p.module1.tcpoffen);
}

TEST(TcpClosing, byTheToolbarOverTheGatewayWhereTcpIsNotOpen) {
    Tcp p(true);
    const SentAt sent(p);
    p.frmTerminal.tbrToolBar("HangUpPhone").Click();
    EXPECT_THAT(sent.all, ElementsAre("0 +++", "1500 +++", "3000 ATH\r"));
    EXPECT_EQ(p.loop.now_ms(), sent.begin + 4500 + 2000);
    EXPECT_EQ(p.tcp.closes, 1);
}

TEST(TcpClosing, afterADownload) {
    struct Case {
        bool over_gateway, tcp_open;
        std::string terminal;
        std::string tcp_sent, serial_sent;
        int closes;
        int takes;
    };
    const Case cases[] = {
        {true, true, "", "++++++ATH\r", "", 1, 6500},
        {true, false, "", "", "++++++ATH\r", 1, 6500},
        {false, true, "\r\n\r\nVerbindung beendet", "", "", 1, 0},
        {false, false, "", "", "++++++ATH\r", 0, 4500},
    };
    for (const Case& one : cases) {
        Tcp p(one.over_gateway);
        p.module1.tcpoffen = one.tcp_open;
        p.tcp.current = one.tcp_open ? TcpState::connected : TcpState::closed;
        p.frmTerminal.Timer20.Enabled = true;
        p.loop.pass(1000);
        EXPECT_FALSE(p.frmTerminal.Timer20.Enabled);
        p.loop.settle();
        EXPECT_EQ(p.terminal(), one.terminal);
        EXPECT_EQ(p.tcp.take_written(), one.tcp_sent);
        EXPECT_EQ(p.sent(), one.serial_sent);
        EXPECT_EQ(p.tcp.closes, one.closes);
        EXPECT_FALSE(p.module1.tcpoffen);
        EXPECT_GE(p.loop.now_ms(), 1600 + 1000 + one.takes);
    }
}

TEST(TcpClosing, leavesTheInterruptionShownUntilTheStateIsClosed) {
    Tcp p;
    p.module1.tcpoffen = true;
    p.tcp.current = TcpState::closing;
    p.program.output.sendetext("lost");
    EXPECT_TRUE(p.frmTerminal.picipunterbr.Visible);
    p.loop.pass(3000);
    EXPECT_TRUE(p.frmTerminal.picipunterbr.Visible);
    p.tcp.current = TcpState::closed;
    p.loop.pass(1000);
    EXPECT_FALSE(p.frmTerminal.picipunterbr.Visible);
}

// ---- the login's flags ----

TEST(TcpLogin, isSeenForThirtySeconds) {
    for (const int age : {14, 15}) {
        Tcp p;
        p.module1.gatewayoffen = true;
        p.module1.loginalter = static_cast<std::int16_t>(age);
        p.tcp.arrives("Username:");
        p.loop.settle();
        p.tcp.arrives("Password:");
        p.loop.settle();
        EXPECT_EQ(p.module1.usernamegesehen, age < 15);
        EXPECT_EQ(p.module1.passwordgesehen, age < 15);
    }
}

} // namespace velorn::test
