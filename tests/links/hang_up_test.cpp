#include "support/modem_program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ModemTest = ModemProgram;

} // namespace

TEST(HangUp, withoutAModemTakesItsTime) {
    struct Case {
        bool termecho;
        std::vector<std::string> sent;
        int ends;
    };
    const Case cases[] = {{false, {"1000 +++", "2500 +++", "4000 ATH\r"}, 5500},
                          {true, {"0 +++", "1500 +++", "3000 ATH\r"}, 4500}};
    for (const Case& one : cases) {
        ModemTest p;
        p.module1.protokollan = true;
        p.frmTerminal.termecho = one.termecho;
        const SentAt sent(p);
        EXPECT_TRUE(p.program.hang_up.mnuHangUp_Click());
        EXPECT_EQ(sent.all, one.sent);
        EXPECT_EQ(p.loop.now_ms() - sent.begin, one.ends);
        EXPECT_THAT(p.marks, IsEmpty());
    }
}

TEST(HangUp, leavesItsFirstPauseWhenTerminalOutputComesBack) {
    ModemTest p;
    p.frmTerminal.termecho = false;
    p.loop.post_at(p.loop.now_ms() + 400, [&p] { p.frmTerminal.termecho = true; });
    p.loop.post_at(p.loop.now_ms() + 400, [] {});
    const SentAt sent(p);
    p.program.hang_up.mnuHangUp_Click();
    EXPECT_EQ(sent.all.front(), "400 +++");
}

TEST(HangUp, showsTheSitesNameAndMarksTheProtocolFileWhenTheModemAgrees) {
    ModemTest p;
    p.module1.projektname = "Gelmar";
    p.module1.protokollan = true;
    SentAt sent(p);
    p.answers(sent, {1, 2});
    p.program.hang_up.mnuHangUp_Click();
    EXPECT_THAT(sent.all, ElementsAre("0 +++", "300 ATH\r"));
    EXPECT_EQ(p.frmTerminal.sbrStatus.projekt.Text.get(), "Gelmar");
    EXPECT_THAT(p.marks, ElementsAre("  AUFGELEGT "));
}

TEST(HangUp, marksNothingWithoutAProtocolFile) {
    ModemTest p;
    SentAt sent(p);
    p.answers(sent, {1, 2});
    p.program.hang_up.mnuHangUp_Click();
    EXPECT_THAT(p.marks, IsEmpty());
}

TEST(HangUp, leavesRemoteControlFirst) {
    ModemTest p;
    p.frmTerminal.fernbedaktiv = true;
    const SentAt sent(p);
    p.program.hang_up.mnuHangUp_Click();
    EXPECT_THAT(sent.all, ElementsAre("0 E", "1000 E", "2000 +++", "3500 +++", "5000 ATH\r"));
}

TEST(HangUp, sendsNothingMoreWhenTheProgramEndsInAnyOfItsWaits) {
    for (const int ms : {500, 1500, 2500, 3500, 5500}) {
        ModemTest p;
        p.frmTerminal.fernbedaktiv = true;
        p.frmTerminal.termecho = false;
        p.loop.post_at(p.loop.now_ms() + ms, [&p] { p.loop.end(); });
        SentAt sent(p);
        EXPECT_FALSE(p.program.hang_up.mnuHangUp_Click());
        const auto until_end = static_cast<int>(p.loop.now_ms() - sent.begin);
        EXPECT_LE(until_end, ms + 1);
    }
}

TEST(HangUp, sharesItsWaitWithACommandThatBeginsMeanwhile) {
    ModemTest p;
    SentAt sent(p);
    // Initialising begins in the first wait; its own waits run to their end first, on the counter's ticks.
    p.frmTerminal.modinit.Click();
    p.program.hang_up.mnuHangUp_Click();
    EXPECT_THAT(sent.all, ElementsAre("0 +++", "1000 AT\r", "1900 AT\r", "2900 +++", "4400 ATH\r"));
}

TEST(HangUp, atTheEndOfADownloadIsSilent) {
    ModemTest p;
    p.frmTerminal.fernbedaktiv = true;
    p.frmTerminal.termecho = false;
    p.settings.fbautostart = std::int16_t{0};
    const SentAt sent(p);
    p.frmTerminal.Timer31.Enabled = true;
    // The end of remote control comes while it hangs up, and asks nothing.
    p.loop.post_at(p.loop.now_ms() + 21'000, [&p] { p.frmTerminal.Timer3.Enabled = true; });
    p.loop.pass(40'000);
    EXPECT_THAT(sent.all, ElementsAre("20000 +++", "21500 +++", "23000 ATH\r"));
    EXPECT_TRUE(p.frmTerminal.termecho);
    EXPECT_FALSE(p.frmTerminal.fernbedaktiv);
    EXPECT_TRUE(p.frmTerminal.txtterm.Visible);
    EXPECT_FALSE(p.frmTerminal.Timer31.Enabled);
    EXPECT_FALSE(p.frmTerminal.Timer3.Enabled);
    p.dialogs.expect("Soll das Modem aufgelegt werden", 36, Answer::no);
    p.frmTerminal.Timer3.Enabled = true;
    p.loop.pass(2000);
}

TEST(HangUp, endsByWhatTheModemAnswersLast) {
    struct Case {
        std::set<int> answered;
        std::vector<std::string> sent;
        bool hung_up;
    };
    const Case cases[] = {{{1}, {"0 +++", "300 ATH\r"}, false},
                          {{2}, {"0 +++", "1500 +++", "1800 ATH\r"}, false},
                          {{3}, {"0 +++", "1500 +++", "3000 ATH\r"}, true},
                          {{}, {"0 +++", "1500 +++", "3000 ATH\r"}, false}};
    for (const Case& one : cases) {
        ModemTest p;
        p.module1.projektname = "Gelmar";
        p.module1.protokollan = true;
        p.frmTerminal.sbrStatus.projekt.Text = "online mit: Gelmar";
        SentAt sent(p);
        p.answers(sent, one.answered);
        p.program.hang_up.mnuHangUp_Click();
        EXPECT_EQ(sent.all, one.sent);
        EXPECT_EQ(p.frmTerminal.sbrStatus.projekt.Text.get(), one.hung_up ? "Gelmar" : "online mit: Gelmar");
        EXPECT_EQ(p.marks,
                  one.hung_up ? std::vector<std::string>{"  AUFGELEGT "} : std::vector<std::string>{});
    }
}

TEST(HangUp, atTheEndOfADownloadStaysSilentForFiveSecondsMore) {
    ModemTest p;
    p.settings.fbautostart = std::int16_t{0};
    const std::int64_t begin = p.loop.now_ms();
    p.frmTerminal.Timer31.Enabled = true; // hangs up from 20 s to 24.5 s
    p.loop.post_at(begin + 26'300, [&p] { p.frmTerminal.Timer3.Enabled = true; });
    p.loop.post_at(begin + 27'600, [&p] { EXPECT_FALSE(p.frmTerminal.Timer3.Enabled); });
    p.loop.post_at(begin + 29'400, [&p] { EXPECT_TRUE(p.frmTerminal.Timer31.Enabled); });
    p.loop.post_at(begin + 29'600, [&p] { EXPECT_FALSE(p.frmTerminal.Timer31.Enabled); });
    p.loop.pass(31'000);
    EXPECT_THAT(p.dialogs.shown(), IsEmpty());
}

// ---- after remote control has ended ----

TEST(EndOfRemoteControl, asksWhetherTheModemIsToHangUp) {
    for (const Answer answer : {Answer::yes, Answer::no}) {
        ModemTest p;
        p.settings.fbautostart = std::int16_t{0};
        p.frmTerminal.termecho = false;
        p.dialogs.expect("Soll das Modem aufgelegt werden", 36, answer);
        const SentAt sent(p);
        p.frmTerminal.Timer3.Enabled = true;
        p.loop.pass(10'000);
        EXPECT_TRUE(p.frmTerminal.termecho);
        EXPECT_EQ(sent.all.size(), answer == Answer::yes ? 3U : 0U);
        EXPECT_FALSE(p.frmTerminal.Timer3.Enabled);
    }
}

TEST(EndOfRemoteControl, hangsUpByItselfWhereRemoteControlStartsByItself) {
    ModemTest p;
    p.settings.fbautostart = std::int16_t{1};
    const SentAt sent(p);
    p.frmTerminal.Timer3.Enabled = true;
    p.loop.pass(10'000);
    EXPECT_THAT(sent.all, ElementsAre("1200 +++", "2700 +++", "4200 ATH\r"));
    EXPECT_FALSE(p.frmTerminal.Timer3.Enabled);
}

TEST(EndOfRemoteControl, asksWhetherTheConnectionIsToBeClosed) {
    for (const Answer answer : {Answer::yes, Answer::no}) {
        ModemTest p;
        p.settings.fbautostart = std::int16_t{0};
        p.module1.tcpoffen = true;
        p.tcp.current = TcpState::connected;
        p.dialogs.expect("Soll die TCP/IP Verbindung getrennt werden", 36, answer);
        p.frmTerminal.Timer3.Enabled = true;
        p.loop.pass(3000);
        EXPECT_EQ(p.module1.tcpoffen, answer == Answer::no);
        EXPECT_EQ(p.tcp.closes, answer == Answer::yes ? 1 : 0);
        EXPECT_EQ(p.terminal(), answer == Answer::yes ? "\r\n\r\nVerbindung beendet" : "");
        EXPECT_FALSE(p.frmTerminal.Timer3.Enabled);
    }
}

TEST(EndOfRemoteControl, closesByItselfAndTellsOfTheGateway) {
    ModemTest p;
    p.settings.fbautostart = std::int16_t{1};
    p.module1.telnet = true;
    p.module1.tcpoffen = true;
    p.frmTerminal.Timer3.Enabled = true;
    p.loop.pass(3000);
    EXPECT_EQ(p.terminal(),
              "\r\n\r\nVorgang abgeschlossen, Verbindung zum tarnwerk-Modem wieder unterbrochen!");
    EXPECT_FALSE(p.module1.tcpoffen);
}

TEST(EndOfRemoteControl, tellsOfTheGatewayOnlyWhereTheCallWentOverIt) {
    ModemTest p;
    p.settings.fbautostart = std::int16_t{1};
    p.module1.telnet = true;
    p.module1.istip = true;
    p.module1.tcpoffen = true;
    p.frmTerminal.Timer3.Enabled = true;
    p.loop.pass(3000);
    EXPECT_EQ(p.terminal(), "\r\n\r\nVerbindung beendet");
}

} // namespace velorn::test
