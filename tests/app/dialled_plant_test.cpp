// The whole program with its phone book, and the plant's sites behind a modem, on the network and behind a
// gateway.
#include "plant/demo_book.h"
#include "runtime/text.h"
#include "support/plant_network.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using ::testing::ContainsRegex;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

// Places in the directory.
enum : std::size_t { with_login = 0, on_tcp = 2, on_gateway = 5, on_modem = 7, busy = 9 };
enum : std::size_t { refuses = 10, never_answers = 11 };

struct DialledPlant : testing::Test {
    TestProgram p;
    PlantNetwork plant{p};

    DialledPlant() {
        p.start();
        p.settings.telefonpfad = "c:\\telefon.par";
        p.settings.anrufer = "Techniker";
        p.settings.fbautostart = std::int16_t{1};
        p.settings.lanaktiv = std::int16_t{0};
        p.files.set_content("c:\\telefon.par", plant::phone_book(plant.sites.directory(), {true, ""}));
        for (const plant::Site& site : plant.sites.directory().sites()) {
            p.files.set_content(path(site), plant::first_protocol_line({2026, 11, 1, 8, 0, 0, 0}));
        }
        p.loop.pass(12'000);
    }
    static std::string path(const plant::Site& site) {
        return std::string(plant::protocol_folder) + '\\' + plant::protocol_name(site);
    }
    void over_the_gateway() { p.settings.lanaktiv = std::int16_t{1}; }
    void logs_in_as(const char* user, const char* password) {
        p.settings.loginauto = true;
        p.settings.loginuser = user;
        p.settings.loginpass = password;
    }
    void dials(std::size_t site) {
        p.program.phonebook_window.Form_Load();
        p.program.phonebook_lines.show(static_cast<int>(site) + 1);
        p.program.dialling.Command1_Click();
    }
    void dials(std::size_t site, int within_ms) {
        dials(site);
        p.loop.pass(within_ms);
    }
    // Without the four bytes in front of its first line.
    std::string protocol_of(std::size_t site) const {
        return p.files.content(path(plant.sites.directory().sites()[site])).substr(4);
    }
    std::string row(int number) const { return std::string(p.frmTerminal.schirm.text(number, 1, 80)); }
    bool mirrors(std::size_t site) const {
        const auto name = cp1252_from_utf8(plant.sites.directory().sites()[site].name);
        return p.frmTerminal.fernbedaktiv && plant.sites.engaged(site) &&
               row(3).find("Hauptmenü"_w) != std::string::npos &&
               projekt().starts_with("Fernbed.: " + name->substr(0, name->find("\xDF")));
    }
    std::string projekt() const { return p.frmTerminal.sbrStatus.projekt.Text; }
};

} // namespace

// ---- straight over TCP ----

TEST_F(DialledPlant, atAnAddressIsMirroredByItself) {
    dials(on_tcp);
    EXPECT_EQ(projekt(), std::string("angewählt: Krankenhaus Sankt Jörg"_w));
    p.loop.pass(8000);
    EXPECT_TRUE(mirrors(on_tcp));
    EXPECT_EQ(p.tcp.host, "127.0.1.3");
    EXPECT_EQ(p.tcp.port, 1100);
    EXPECT_THAT(p.terminal(), HasSubstr("\r\nVerbindungsversuch mit: 127.0.1.3"));
    EXPECT_THAT(p.terminal(), HasSubstr("\r\nVerbindung hergestellt"));
}

TEST_F(DialledPlant, atAnAddressIsEnteredInItsProtocolFile) {
    dials(on_tcp, 8000);
    // Each entry takes the place of the last byte, which is a line's end.
    EXPECT_EQ(protocol_of(on_tcp), "neu angelegt am:  01.11.2026\r"
                                   "\r\n\r\n15.11.2026 11:28:13  Verbindungsversuch mit: 127.0.1.3"
                                   "\r\n15.11.2026 11:28:13  CONNECT"
                                   "\r\n15.11.2026 11:28:16  *FERNBED ");
}

TEST_F(DialledPlant, isReachedOnEveryPortThatARemarkNames) {
    for (std::size_t site = 1; site <= 4; ++site) {
        dials(site, 8000);
        EXPECT_TRUE(mirrors(site)) << site;
        EXPECT_EQ(p.tcp.port, plant.sites.directory().sites()[site].port);
        p.frmTerminal.tbrToolBar("HangUpPhone").Click();
        p.frmTerminal.fernbedaktiv = false;
        p.loop.pass(3000);
    }
}

TEST_F(DialledPlant, isLeftByTheKeyForHangingUp) {
    dials(on_tcp, 8000);
    p.frmTerminal.tbrToolBar("HangUpPhone").Click();
    EXPECT_FALSE(p.module1.tcpoffen);
    EXPECT_EQ(p.program.Winsock1.State(), TcpState::closed);
    EXPECT_FALSE(plant.sites.engaged(on_tcp));
}

TEST_F(DialledPlant, isLeftWhenItsDisplayEnds) {
    dials(on_tcp, 8000);
    p.program.keys.Form_KeyPress('E');
    p.loop.pass(8000);
    EXPECT_FALSE(p.frmTerminal.fernbedaktiv);
    EXPECT_THAT(p.terminal(), HasSubstr("\r\n\r\nVerbindung beendet"));
    EXPECT_FALSE(plant.sites.engaged(on_tcp));
    EXPECT_THAT(projekt(), StartsWith(std::string("online mit: Krankenhaus Sankt Jörg"_w)));
}

TEST_F(DialledPlant, thatRefusesIsToldWithItsError) {
    dials(refuses, 2000);
    EXPECT_THAT(p.terminal(), HasSubstr("\r\nWinsock Fehler 10061 Die Verbindung wurde abgelehnt"
                                        "\r\nVerbindung wird getrennt"));
    EXPECT_FALSE(p.module1.tcpoffen);
    EXPECT_FALSE(p.frmTerminal.fernbedaktiv);
}

TEST_F(DialledPlant, thatNeverAnswersIsGivenUpAfterTenSeconds) {
    dials(never_answers, 9900);
    EXPECT_THAT(p.terminal(), EndsWith("Verbindungsversuch mit: 127.0.1.12........."));
    p.loop.pass(20'000);
    EXPECT_THAT(p.terminal(), EndsWith("127.0.1.12..........\r\nVersuch fehlgeschlagen"));
    EXPECT_EQ(p.tcp.current, TcpState::closed);
}

TEST_F(DialledPlant, thatIsEngagedSendsTheVisitorAway) {
    const auto other = plant.sites.visit(on_tcp);
    dials(on_tcp, 8000);
    EXPECT_EQ(p.tcp.current, TcpState::closing);
    EXPECT_TRUE(p.frmTerminal.picipunterbr.Visible);
}

TEST_F(DialledPlant, isReachedAfterAnAttemptThatCameToNothing) {
    dials(never_answers, 4000);
    dials(on_tcp, 12'000);
    EXPECT_TRUE(mirrors(on_tcp));
    EXPECT_THAT(p.terminal(), Not(HasSubstr("fehlgeschlagen")));
}

// ---- the login ----

TEST_F(DialledPlant, isMirroredBehindTheRightPassword) {
    logs_in_as("service", "bhkw");
    dials(with_login, 10'000);
    EXPECT_TRUE(mirrors(with_login));
    EXPECT_THAT(p.tcp.take_written(), StartsWith("\x08service\rbhkw\r\x01"));
    EXPECT_THAT(p.terminal(), Not(HasSubstr("keine User/Password Abfrage")));
    EXPECT_THAT(p.terminal(), Not(HasSubstr("bhkw")));
}

TEST_F(DialledPlant, tellsAWrongPasswordAndStaysOutside) {
    logs_in_as("service", "falsch");
    dials(with_login, 10'000);
    EXPECT_THAT(p.terminal(), HasSubstr("Anmeldung falsch"));
    EXPECT_FALSE(mirrors(with_login));
    EXPECT_TRUE(p.module1.tcpoffen);
}

TEST_F(DialledPlant, isSentNoNameWhereNobodyAsks) {
    logs_in_as("service", "bhkw");
    plant.sites.set_login(with_login, "", "");
    dials(with_login, 7000);
    EXPECT_THAT(p.terminal(), Not(HasSubstr("Abfrage")));
    p.loop.pass(3000);
    EXPECT_THAT(p.terminal(), EndsWith("keine User/Password Abfrage\r\n"));
    EXPECT_TRUE(p.module1.tcpoffen);
    EXPECT_EQ(p.tcp.take_written(), "\x08");
}

TEST_F(DialledPlant, isSentNoNameOnOtherPorts) {
    logs_in_as("service", "bhkw");
    dials(on_tcp, 10'000);
    EXPECT_TRUE(mirrors(on_tcp));
    EXPECT_THAT(p.tcp.take_written(), Not(HasSubstr("service")));
}

// ---- the modem on the serial line ----

TEST_F(DialledPlant, behindTheModemIsMirroredByItself) {
    dials(on_modem);
    EXPECT_EQ(projekt(), std::string("angewählt: Schule Löwenstraße"_w));
    EXPECT_EQ(p.frmTerminal.sbrStatus.Settings.Text.get(), "Einstellungen: Com1  19200,n,8,1");
    p.loop.pass(10'000);
    EXPECT_TRUE(mirrors(on_modem));
    EXPECT_THAT(p.serial.written(), StartsWith("atd05550 100006\r\x11\x01"));
    EXPECT_EQ(p.tcp.connects, 0);
}

TEST_F(DialledPlant, behindTheModemIsEnteredInItsProtocolFileUntilItIsLeft) {
    dials(on_modem, 10'000);
    p.frmTerminal.mnuHangUp.Click();
    EXPECT_FALSE(plant.modem.in_call());
    EXPECT_FALSE(plant.sites.engaged(on_modem));
    EXPECT_THAT(protocol_of(on_modem),
                ContainsRegex("11:28:13  Anwahl: atd05550 100006\r\n.*  CONNECT\r\n.*  \\*FERNBED\r\n"
                              ".*  AUFGELEGT.*AUFGELEGT $"));
}

TEST_F(DialledPlant, behindTheModemIsReachedWithThePrefix) {
    p.settings.vorwahl = "0,";
    p.settings.vorwahlan = std::int16_t{1};
    dials(on_modem, 12'000);
    EXPECT_THAT(p.serial.written(), StartsWith("atd0,05550 100006\r"));
    EXPECT_TRUE(mirrors(on_modem));
}

TEST_F(DialledPlant, behindTheModemSaysThatItIsBusy) {
    dials(busy, 10'000);
    EXPECT_THAT(p.terminal(), EndsWith("\r\nBUSY\r\n"));
    EXPECT_FALSE(p.frmTerminal.fernbedaktiv);
    EXPECT_THAT(protocol_of(busy), EndsWith("  Anwahl: atd05550 100010 "));
}

TEST_F(DialledPlant, behindTheModemIsDialledAfterATcpConnection) {
    dials(on_tcp, 8000);
    p.frmTerminal.tbrToolBar("HangUpPhone").Click();
    p.frmTerminal.fernbedaktiv = false;
    dials(on_modem, 12'000);
    EXPECT_TRUE(mirrors(on_modem));
}

// ---- the gateway ----

TEST_F(DialledPlant, behindTheGatewayIsMirroredByItself) {
    over_the_gateway();
    dials(on_gateway, 25'000);
    EXPECT_TRUE(mirrors(on_gateway));
    EXPECT_THAT(p.terminal(), HasSubstr("\r\nVerbindungsversuch mit: tarnwerk Modem1 \n\r\n"
                                        "Verbindung zum tarnwerk-Modem hergestellt!"));
    EXPECT_THAT(p.terminal(), HasSubstr("\r\nModemanwahl: (Bitte auf CONNECT warten, ca. 30s)\r\n"));
    EXPECT_THAT(p.tcp.take_written(), StartsWith("\x11"
                                                 "atd05550 100008\r\x11\x01"));
    EXPECT_TRUE(plant.gateway.engaged(0));
    EXPECT_EQ(p.serial.written(), "");
}

TEST_F(DialledPlant, behindTheGatewayIsEnteredInItsProtocolFile) {
    over_the_gateway();
    dials(on_gateway, 25'000);
    EXPECT_THAT(protocol_of(on_gateway),
                ContainsRegex("11:28:13  Verbindungsversuch mit: tarnwerk Modem1\r\n.*  CONNECT\r\n\r\n"
                              ".*  Anwahl: atd05550 100008\r\n.*  CONNECT\r\n.*  \\*FERNBED $"));
}

TEST_F(DialledPlant, behindTheGatewayIsLeftByTheKeyForHangingUp) {
    over_the_gateway();
    dials(on_gateway, 25'000);
    p.frmTerminal.tbrToolBar("HangUpPhone").Click();
    EXPECT_FALSE(p.module1.tcpoffen);
    EXPECT_FALSE(plant.sites.engaged(on_gateway));
    EXPECT_FALSE(plant.gateway.engaged(0));
    EXPECT_THAT(protocol_of(on_gateway), EndsWith("  AUFGELEGT "));
}

TEST_F(DialledPlant, behindTheGatewayIsReachedByTheSecondModemIfTheFirstRefuses) {
    over_the_gateway();
    plant.gateway.set_behaviour(0, plant::Gateway::Behaviour::refuses);
    dials(on_gateway, 25'000);
    EXPECT_TRUE(mirrors(on_gateway));
    EXPECT_TRUE(plant.gateway.engaged(1));
    EXPECT_THAT(p.terminal(), HasSubstr("tarnwerk Modem1 .\r\nVersuch fehlgeschlagen\r\n"
                                        "Verbindungsversuch mit: tarnwerk Modem2 \n"));
    EXPECT_THAT(p.terminal(), Not(HasSubstr("Winsock Fehler")));
}

TEST_F(DialledPlant, behindAGatewayThatRefusesTwiceMustBeTriedAgain) {
    over_the_gateway();
    plant.gateway.set_behaviour(0, plant::Gateway::Behaviour::refuses);
    plant.gateway.set_behaviour(1, plant::Gateway::Behaviour::refuses);
    dials(on_gateway, 60'000);
    EXPECT_THAT(p.terminal(), EndsWith("tarnwerk Modem2 .\r\nVersuch fehlgeschlagen"
                                       "  Bitte nochmal versuchen"));
    plant.gateway.set_behaviour(0, plant::Gateway::Behaviour::connects);
    dials(on_gateway, 25'000);
    EXPECT_TRUE(mirrors(on_gateway));
    EXPECT_TRUE(plant.gateway.engaged(0));
}

TEST_F(DialledPlant, behindTheGatewayIsGivenUpAfterAMinuteWithoutCarrier) {
    over_the_gateway();
    plant.sites.set_behaviour(on_gateway, plant::Behaviour::never_answers);
    dials(on_gateway, 60'000);
    EXPECT_THAT(p.terminal(), Not(HasSubstr("fehlgeschlagen")));
    p.loop.pass(10'000);
    EXPECT_THAT(p.terminal(), EndsWith("\r\nModemeinwahl fehlgeschlagen (besetzt,...)"));
    EXPECT_EQ(p.tcp.current, TcpState::closed);
    EXPECT_FALSE(plant.gateway.engaged(0));
    EXPECT_FALSE(p.module1.tcpoffen);
}

TEST_F(DialledPlant, behindTheSecondModemIsGivenUpWithTheAdviceToTryAgain) {
    over_the_gateway();
    plant.gateway.set_behaviour(0, plant::Gateway::Behaviour::refuses);
    dials(busy, 90'000);
    EXPECT_THAT(p.terminal(), HasSubstr("\r\nBUSY\r\n"));
    EXPECT_THAT(p.terminal(), EndsWith("\r\nModemeinwahl fehlgeschlagen (besetzt,...)"
                                       "\r\n  Bitte nochmal versuchen\r\n"));
}

// ---- all of them ----

TEST_F(DialledPlant, isReachedByModemAndByGatewayWhereItHasANumber) {
    for (const bool gateway : {false, true}) {
        p.settings.lanaktiv = static_cast<std::int16_t>(gateway ? 1 : 0);
        for (std::size_t site = on_gateway; site < busy; ++site) {
            dials(site, 30'000);
            EXPECT_TRUE(mirrors(site)) << site << gateway;
            p.frmTerminal.tbrToolBar("HangUpPhone").Click();
            p.frmTerminal.fernbedaktiv = false;
            p.loop.pass(3000);
            EXPECT_FALSE(plant.sites.engaged(site)) << site << gateway;
        }
    }
}

} // namespace velorn::test
