#include "runtime/text.h"
#include "support/sent_at.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

namespace velorn::test {

namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct ModemTest : TestProgram {
    std::vector<std::string> marks;

    ModemTest() {
        start();
        module1.txtmodinit = "e1";
        frmTerminal.txtterm.set_Text({});
        program.events.protocol_mark.connect([this](std::string_view mark) { marks.emplace_back(mark); });
    }
    // A modem answers "OK" 300 ms after each of these, the n-th one counted from 1.
    void answers(SentAt& sent, std::set<int> to) {
        sent.on_sent = [this, to = std::move(to), count = 0](std::string_view) mutable {
            if (!to.contains(++count)) return;
            loop.post_at(loop.now_ms() + 300, [this] { serial.arrives("OK\r\n"); });
        };
    }
    std::string own_words() const {
        std::string text = terminal();
        for (std::size_t at = 0; (at = text.find("OK\r\n")) != std::string::npos;) text.erase(at, 4);
        return text;
    }
};

} // namespace

// ---- initialising ----

TEST(ModemInitialisation, asksTwiceAndThenSetsTheModemUp) {
    ModemTest p;
    SentAt sent(p);
    p.answers(sent, {1, 2, 3});
    p.frmTerminal.modinit.Click();
    EXPECT_TRUE(p.frmTerminal.Timer6.Enabled);
    p.loop.pass(5000);
    EXPECT_THAT(sent.all, ElementsAre("1000 AT\r", "1300 AT\r", "1600 ATe1\r"));
    EXPECT_EQ(p.own_words(), "\ninitialisiere Modem\r\r\nModem ist initialisiert\r\n");
    EXPECT_FALSE(p.frmTerminal.Timer6.Enabled);
}

TEST(ModemInitialisation, tellsThatNobodyAnswersAfterTwoSeconds) {
    ModemTest p;
    SentAt sent(p);
    p.frmTerminal.modinit.Click();
    p.loop.pass(5000);
    EXPECT_THAT(sent.all, ElementsAre("1000 AT\r", "2000 AT\r"));
    EXPECT_EQ(p.terminal(), "\ninitialisiere Modem\r\r\n\r\nModem meldet sich nicht\r\n");
}

TEST(ModemInitialisation, doubtsTheInitialisationThatIsNotAnswered) {
    ModemTest p;
    SentAt sent(p);
    p.answers(sent, {2});
    p.frmTerminal.modinit.Click();
    p.loop.pass(6000);
    EXPECT_THAT(sent.all, ElementsAre("1000 AT\r", "2000 AT\r", "2300 ATe1\r"));
    EXPECT_EQ(p.own_words(), "\ninitialisiere Modem\r\r\nModeminitialisierung falsch?\r\n");
}

TEST(ModemInitialisation, onlyTheSecondQuestionsAnswerCounts) {
    ModemTest p;
    SentAt sent(p);
    p.answers(sent, {1});
    p.frmTerminal.modinit.Click();
    p.loop.pass(6000);
    EXPECT_THAT(p.own_words(), HasSubstr("Modem meldet sich nicht"));
}

TEST(ModemInitialisation, writesNothingMoreWhenTheProgramEndsMeanwhile) {
    ModemTest p;
    p.frmTerminal.modinit.Click();
    p.loop.post_at(p.loop.now_ms() + 1500, [&p] { p.loop.end(); });
    p.loop.pass(5000);
    EXPECT_EQ(p.terminal(), "\ninitialisiere Modem\r\r\n");
}

// ---- searching ----

TEST(ModemSearch, triesEveryPortAndGoesBackToTheStoredOne) {
    ModemTest p;
    p.serial.there = false;
    p.settings.comport = std::int16_t{7};
    p.frmTerminal.modsearch.Click();
    p.loop.pass(300'000);
    const std::string& text = p.terminal();
    EXPECT_THAT(text, testing::StartsWith("\nsuche Modem an COM1 - COM128\r\r\nteste COM1"));
    EXPECT_THAT(text, HasSubstr("teste COM127" + std::string(" ungültige Anschlussnummer "_w) +
                                "   kein Modem gefunden \r\nteste COM128"));
    EXPECT_THAT(text, EndsWith("   kein Modem gefunden \r\n"));
    EXPECT_EQ(p.program.MSComm1.CommPort(), 7);
    EXPECT_FALSE(p.frmTerminal.Timer11.Enabled);
    EXPECT_FALSE(p.frmTerminal.mnuOpen.Checked);
    EXPECT_EQ(p.frmTerminal.Picture5.BackColor.get(), colour::red);
}

TEST(ModemSearch, namesTheErrorAndGoesOn) {
    struct Case {
        Failure failure;
        std::string said;
    };
    const Case cases[] = {
        {failure(RunTimeError::invalid_port), std::string(" ungültige Anschlussnummer "_w)},
        {failure(RunTimeError::port_already_open), std::string(" Anschluß ist bereits geöffnet "_w)},
        {failure(RunTimeError::permission_denied), " Fehler 70"},
        {failure(RunTimeError::device_io), " Fehler 57"},
    };
    for (const Case& one : cases) {
        ModemTest p;
        p.serial.refuses_to_open = one.failure;
        SentAt sent(p);
        p.frmTerminal.modsearch.Click();
        p.loop.post_at(p.loop.now_ms() + 4500, [&p] { p.loop.end(); });
        p.loop.pass(10'000);
        EXPECT_THAT(p.terminal(),
                    HasSubstr("teste COM1" + one.said + "   kein Modem gefunden \r\nteste COM2"));
        EXPECT_THAT(sent.all, IsEmpty()); // it went nowhere
    }
}

TEST(ModemSearch, takesThePortThatThePersonAgreesTo) {
    ModemTest p;
    SentAt sent(p);
    p.answers(sent, {3, 4});
    p.dialogs.expect("Modem gefunden, soll dieser Anschlu", 4, Answer::no);
    p.dialogs.expect("Modem gefunden, soll dieser Anschlu", 4, Answer::yes);
    p.frmTerminal.modsearch.Click();
    p.loop.pass(10'000);
    // COM1 doesn't answer, COM2 is declined, COM3 is taken.
    EXPECT_THAT(sent.all, ElementsAre("1000 AT\r", "2000 AT\r", "3000 AT\r", "3300 AT\r"));
    EXPECT_EQ(p.dialogs.shown().back(), "Modem gefunden, soll dieser Anschluß genutzt werden?"_w);
    EXPECT_EQ(p.dialogs.last_box_title, "Modemsuche");
    EXPECT_EQ(p.settings.comport, Variant(std::int16_t{3}));
    EXPECT_EQ(p.program.MSComm1.CommPort(), 3);
    EXPECT_TRUE(p.program.MSComm1.PortOpen());
    EXPECT_EQ(p.frmTerminal.sbrStatus.Settings.Text.get(), "Einstellungen: Com3  19200,n,8,1");
    EXPECT_FALSE(p.frmTerminal.Timer11.Enabled);
    TestProgram next;
    next.files.set_content("c:\\velorn\\einst.par", p.files.content("c:\\velorn\\einst.par"));
    next.start();
    EXPECT_EQ(next.program.MSComm1.CommPort(), 3);
}

TEST(ModemSearch, askedTwiceRunsOnce) {
    ModemTest p;
    p.serial.there = false;
    p.frmTerminal.modsearch.Click();
    p.loop.post_at(p.loop.now_ms() + 20'000, [&p] { p.frmTerminal.modsearch.Click(); });
    p.loop.pass(400'000);
    const std::string& text = p.terminal();
    EXPECT_EQ(text.find("suche"), text.rfind("suche"));
}

// ---- hanging up ----

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

} // namespace velorn::test
