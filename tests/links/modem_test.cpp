#include "runtime/text.h"
#include "support/modem_program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ModemTest = ModemProgram;

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
    EXPECT_FALSE(p.frmTerminal.Timer6.Enabled);
}

TEST(ModemInitialisation, doubtsTheInitialisationThatIsNotAnswered) {
    ModemTest p;
    SentAt sent(p);
    p.answers(sent, {2});
    p.frmTerminal.modinit.Click();
    p.loop.pass(6000);
    EXPECT_THAT(sent.all, ElementsAre("1000 AT\r", "2000 AT\r", "2300 ATe1\r"));
    EXPECT_EQ(p.own_words(), "\ninitialisiere Modem\r\r\nModeminitialisierung falsch?\r\n");
    EXPECT_FALSE(p.frmTerminal.Timer6.Enabled);
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

TEST(ModemSearch, findsAModemThatAnswersTheSecondTry) {
    ModemTest p;
    SentAt sent(p);
    p.answers(sent, {2});
    p.dialogs.expect("Modem gefunden, soll dieser Anschlu", 4, Answer::yes);
    p.frmTerminal.modsearch.Click();
    p.loop.pass(10'000);
    EXPECT_THAT(sent.all, ElementsAre("1000 AT\r", "2000 AT\r"));
    EXPECT_EQ(p.settings.comport, Variant(std::int16_t{1}));
}

TEST(ModemSearch, asksWithTheStoredSettingsAndHandshake) {
    ModemTest p;
    SentAt sent(p);
    p.answers(sent, {1});
    p.settings.comsettings = "9600,e,7,2";
    p.settings.comhandshake = std::int16_t{2};
    p.dialogs.expect("Modem gefunden, soll dieser Anschlu", 4, Answer::yes);
    p.frmTerminal.modsearch.Click();
    p.loop.pass(10'000);
    EXPECT_EQ(serial_settings_text(p.serial.settings), "9600,e,7,2");
    EXPECT_EQ(static_cast<int>(p.serial.handshake), 2);
}

TEST(ModemSearch, tellsOfSettingsThatThePortRefusesAndGoesOn) {
    ModemTest p;
    p.settings.comsettings = "schnell";
    p.frmTerminal.modsearch.Click();
    p.loop.post_at(p.loop.now_ms() + 4500, [&p] { p.loop.end(); });
    p.loop.pass(10'000);
    EXPECT_THAT(p.terminal(), HasSubstr("teste COM1 Fehler 380   kein Modem gefunden \r\nteste COM2"));
}

TEST(ModemSearch, endsALineBehindANoAndNoneBehindAYes) {
    ModemTest p;
    SentAt sent(p);
    p.answers(sent, {1, 2});
    p.dialogs.expect("Modem gefunden, soll dieser Anschlu", 4, Answer::no);
    p.dialogs.expect("Modem gefunden, soll dieser Anschlu", 4, Answer::yes);
    p.frmTerminal.modsearch.Click();
    p.loop.pass(10'000);
    EXPECT_EQ(p.own_words(), "\nsuche Modem an COM1 - COM128\r\r\nteste COM1\r\nteste COM2");
}

} // namespace velorn::test
