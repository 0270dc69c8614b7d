#include "phonebook/address.h"
#include "phonebook/dialling.h"
#include "runtime/text.h"
#include "support/sent_at.h"
#include "support/test_program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* protocol = "c:\\gelmar.txt";
constexpr const char* at_dial_time = "\r\n\r\n15.11.2026 11:28:01  "; // over the file's last byte

// A phone book of one site, selected; the person has the window open.
struct Dial : TestProgram {
    FrmTelefon& window = program.frmtelefon;
    PhoneEntry& site = program.telefonbuch[3];

    explicit Dial(std::string_view nummer, std::string_view bemerkung = {}) {
        start();
        program.phonebook_window.Form_Load();
        window.form.Visible = true;
        site.name = "Gelmar";
        site.nummer = nummer;
        site.bemerkung = bemerkung;
        site.aufnahme = "Bild";
        module1.telindex = 3;
        settings.fbautostart = std::int16_t{0};
        module1.dialalter = 500;
        frmTerminal.txtterm.set_Text({});
    }
    void with_protocol() {
        files.set_content(protocol, "abcd\r\n");
        site.protdatei = protocol;
        program.phonebook_lines.check_files();
    }
    void over_gateway() { window.telnet.Value = true; }
    void dials() {
        window.Command1.Click();
        loop.settle();
    }
    // What the protocol file got, without what stood there before.
    std::string entered() const { return files.content(protocol).substr(5); }
    std::string projekt() const { return frmTerminal.sbrStatus.projekt.Text; }
};

} // namespace

// ---- what a number is ----

TEST(Address, isWhatHoldsMoreThanDigitsBlanksAndCommas) {
    for (const char* number : {"05550123456", "0, 5550 123", "", ",", "  "})
        EXPECT_FALSE(is_address(number)) << number;
    for (const char* address : {"192.168.1.7", "regler", "0555-123", "\xFC", "5550/12"})
        EXPECT_TRUE(is_address(address)) << address;
}

// ---- the modem's route ----

TEST(DialledByModem, sendsTheNumberAsItStands) {
    Dial p("0,5550123456");
    p.dials();
    EXPECT_EQ(p.sent(), "atd0,5550123456\r");
    EXPECT_EQ(p.terminal(), "");
    EXPECT_EQ(p.tcp.connects, 0);
}

TEST(DialledByModem, putsTheTickedPrefixInFront) {
    for (const bool ticked : {true, false}) {
        Dial p("5550");
        p.with_protocol();
        p.window.txtprestrtext.Text = "01019";
        p.window.txtprestrcheck.Value = ticked;
        p.dials();
        EXPECT_EQ(p.sent(), ticked ? "atd010195550\r" : "atd5550\r");
        EXPECT_EQ(p.entered(), std::string("\r\n\r\n15.11.2026 11:28:01  Anwahl: ") +
                                   (ticked ? "atd010195550 " : "atd5550 "));
    }
}

TEST(DialledByModem, overwritesTheLastByteOfTheProtocolFile) {
    Dial p("5550");
    p.with_protocol();
    p.dials();
    EXPECT_EQ(p.files.content(protocol), "abcd\r" + std::string(at_dial_time) + "Anwahl: atd5550 ");
}

TEST(DialledByModem, makesTheSiteTheOneThatIsShown) {
    Dial p("5550");
    p.dials();
    EXPECT_EQ(p.module1.projektname, "Gelmar");
    EXPECT_EQ(p.projekt(), "angewählt: Gelmar"_w);
    EXPECT_EQ(p.frmTerminal.txtsnapshot.Text(), "Bild");
    EXPECT_EQ(p.module1.dialalter, 0);
    EXPECT_TRUE(p.module1.usernamegesehen && p.module1.passwordgesehen);
}

TEST(DialledByModem, closesTheWindowWithoutSavingTheBookUnlessACollectionRuns) {
    for (const bool collecting : {false, true}) {
        Dial p("5550");
        p.module1.autoholen = collecting;
        p.window.txtanrufer.Text = "Weber";
        p.dials();
        EXPECT_EQ(p.window.geladen, collecting);
        EXPECT_EQ(p.window.form.Visible, collecting);
        EXPECT_EQ(p.window.countdown, 295);
        EXPECT_EQ(p.settings.anrufer.text() == "Weber", !collecting);
        EXPECT_EQ(p.files.content("c:\\velorn\\telefon.par"), "");
    }
}

TEST(DialledByModem, endsATcpConnection) {
    Dial p("5550");
    p.module1.tcpoffen = true;
    p.module1.gatewayoffen = true;
    p.tcp.current = TcpState::connected;
    p.dials();
    EXPECT_FALSE(p.module1.tcpoffen);
    EXPECT_FALSE(p.module1.gatewayoffen);
    EXPECT_EQ(p.sent(), "atd5550\r") << "over the serial port";
    EXPECT_EQ(p.tcp.take_written(), "");
    EXPECT_EQ(p.tcp.current, TcpState::closed) << "nobody else would ever close it";
}

TEST(Dialling, tellsThatNothingIsSelected) {
    Dial p("5550");
    p.module1.telindex = -1;
    p.dialogs.expect("Index außerhalb des gültigen Bereichs"_w.data(), 48, Answer::ok);
    p.dials();
    EXPECT_EQ(p.sent(), "");
    EXPECT_TRUE(p.window.form.Visible);
    p.loop.pass(6000);
    EXPECT_FALSE(p.window.form.Visible) << "the countdown stands at 295 all the same";
}

TEST(Dialling, byDoubleClickOnALineDoesTheSame) {
    Dial p("5550");
    p.window.zeilen[3].Picture1.DblClick();
    EXPECT_EQ(p.sent(), "atd5550\r");
}

// ---- keywords of the remark ----

TEST(Speed, isTakenFromTheRemark) {
    struct Row {
        const char* remark;
        const char* settings;
    };
    constexpr Row rows[] = {
        {"57600", "57600,n,8,1"},    {"19200", "19200,n,8,1"},     {"mit 9600 Baud", "9600,n,8,1"},
        {"4800", "4800,n,8,1"},      {"2400", "2400,n,8,1"},       {"1200", "1200,n,8,1"},
        {"2400 1200", "1200,n,8,1"}, {"1200 57600", "1200,n,8,1"}, {"x19200y", "19200,n,8,1"},
    };
    for (const Row& row : rows) {
        Dial p("5550", row.remark);
        (void)p.program.MSComm1.set_Settings("300,n,8,1");
        p.dials();
        EXPECT_EQ(p.program.MSComm1.Settings(), row.settings) << row.remark;
        EXPECT_EQ(p.frmTerminal.sbrStatus.Settings.Text.get(),
                  std::string("Einstellungen: Com1  ") + row.settings);
    }
}

TEST(Speed, staysWithoutAKeyword) {
    Dial p("5550", "Modemzugang 300");
    (void)p.program.MSComm1.set_Settings("2400,e,7,1");
    const std::string panel = p.frmTerminal.sbrStatus.Settings.Text;
    p.dials();
    EXPECT_EQ(p.program.MSComm1.Settings(), "2400,e,7,1");
    EXPECT_EQ(p.frmTerminal.sbrStatus.Settings.Text.get(), panel);
}

TEST(Speed, isSetForAnAddressTooButNotThroughTheGateway) {
    Dial direct("regler", "19200 port 1100");
    (void)direct.program.MSComm1.set_Settings("300,n,8,1");
    direct.dials();
    EXPECT_EQ(direct.program.MSComm1.Settings(), "19200,n,8,1");
    EXPECT_EQ(direct.tcp.port, 1100);

    Dial gateway("5550", "9600");
    gateway.over_gateway();
    (void)gateway.program.MSComm1.set_Settings("300,n,8,1");
    gateway.dials();
    EXPECT_EQ(gateway.program.MSComm1.Settings(), "300,n,8,1");
}

TEST(Port, isTakenFromTheRemarkElseFromTheStandard) {
    struct Row {
        const char* remark;
        int port;
    };
    constexpr Row rows[] = {
        {"", 4711},
        {"port23", 23},
        {"Port 23", 23},
        {"PORT1100", 1100},
        {"port 1100", 1100},
        {"port2001", 2001},
        {"x port 2001 y", 2001},
        {"port 10100", 10100},
        {"port10100", 10100},
        {"port234", 23},
        {"port 10100 port23", 10100},
        {"port  23", 4711},
        {"port2001 port1100", 2001},
    };
    for (const Row& row : rows) EXPECT_EQ(port_of(row.remark, "4711").value(), row.port) << row.remark;
}

TEST(Port, ofTheStandardBoxMustBeOne) {
    for (const char* bad : {"", "abc", "0", "65536", "-1", "1e9"}) {
        Dial p("regler");
        p.window.mdexport.Text = bad;
        p.dialogs.expect("Standard-Port-NR. IP-Verbindungen", 48, Answer::ok);
        p.dials();
        EXPECT_EQ(p.tcp.connects, 0) << bad;
        EXPECT_TRUE(p.window.form.Visible);
        EXPECT_EQ(p.tcp.closes, 1) << "what was connected would be heard by nobody";
    }
    EXPECT_EQ(port_of("", " 65535 ").value(), 65535);
}

// ---- the direct route ----

TEST(DialledDirectly, connectsToTheAddress) {
    Dial p("regler.gelmar", "port2001");
    p.with_protocol();
    p.dials();
    EXPECT_EQ(p.tcp.host, "regler.gelmar");
    EXPECT_EQ(p.tcp.port, 2001);
    EXPECT_EQ(p.terminal(), "\r\nVerbindungsversuch mit: regler.gelmar");
    EXPECT_EQ(p.entered(), std::string(at_dial_time) + "Verbindungsversuch mit: regler.gelmar ");
    EXPECT_EQ(p.sent(), "");
    EXPECT_EQ(p.projekt(), "angewählt: Gelmar"_w);
    EXPECT_FALSE(p.window.form.Visible);
}

TEST(DialledDirectly, neverGoesToTheGateway) {
    Dial p("192.168.1.7");
    p.over_gateway();
    p.dials();
    EXPECT_EQ(p.tcp.host, "192.168.1.7");
    EXPECT_FALSE(p.frmTerminal.Timer23.Enabled);
}

TEST(DialledDirectly, isConnectedAndRemoteControlBegins) {
    Dial p("regler");
    p.dials();
    p.loop.pass(3000);
    p.tcp.succeeds();
    p.loop.settle();
    EXPECT_EQ(p.terminal(), "\r\nVerbindungsversuch mit: regler...\n\r\nVerbindung hergestellt");
    EXPECT_FALSE(p.window.Timer4.Enabled);
    EXPECT_TRUE(p.frmTerminal.Timer4.Enabled);
    EXPECT_TRUE(p.module1.tcpoffen);
}

TEST(DialledDirectly, isGivenUpAfterTenSeconds) {
    Dial p("regler");
    p.dials();
    p.loop.pass(9999);
    EXPECT_EQ(p.terminal(), "\r\nVerbindungsversuch mit: regler.........");
    EXPECT_EQ(p.tcp.current, TcpState::connecting);
    p.loop.pass(1);
    EXPECT_EQ(p.terminal(), "\r\nVerbindungsversuch mit: regler..........\r\nVersuch fehlgeschlagen");
    EXPECT_EQ(p.tcp.current, TcpState::closed);
    EXPECT_FALSE(p.window.Timer4.Enabled);
    p.loop.pass(60'000);
    EXPECT_EQ(p.tcp.connects, 1) << "no further try";
}

TEST(DialledDirectly, keepsItsDotsAfterARefusal) {
    Dial p("regler");
    p.dials();
    p.tcp.fails(10061, "abgelehnt");
    p.loop.pass(10'000);
    EXPECT_EQ(p.terminal(),
              "\r\nVerbindungsversuch mit: regler\n\r\nWinsock Fehler 10061 abgelehnt\r\nVerbindung wird "
              "getrennt..........\r\nVersuch fehlgeschlagen");
}

TEST(DialledDirectly, aSecondAttemptCountsAnew) {
    Dial p("regler");
    p.dials();
    p.loop.pass(7000);
    p.program.dialling.Command1_Click();
    p.loop.pass(9000);
    EXPECT_THAT(p.terminal(), Not(HasSubstr("fehlgeschlagen")));
    p.loop.pass(1000);
    EXPECT_THAT(p.terminal(), EndsWith("regler..........\r\nVersuch fehlgeschlagen"));
}

TEST(DialledDirectly, anAttemptLeavesNothingBehindForAModem) {
    Dial p("regler");
    p.dials();
    p.loop.pass(3000);
    p.site.nummer = "5550";
    p.program.dialling.Command1_Click();
    const std::string before = p.terminal();
    p.loop.pass(60'000);
    EXPECT_EQ(p.terminal(), before);
    EXPECT_EQ(p.tcp.current, TcpState::closed);
}

// ---- login ----

namespace {

struct Login : Dial {
    explicit Login(std::string_view remark = "port23") : Dial("regler", remark) {
        settings.loginauto = true;
        settings.loginuser = "technik";
        settings.loginpass = "geheim";
        loop.pass(20'000); // the program has been up for a while
        module1.usernamegesehen = module1.passwordgesehen = true;
        frmTerminal.txtterm.set_Text({});
        window.countdown = 0;
    }
    void connects() {
        dials();
        tcp.succeeds();
        loop.settle();
        (void)tcp.take_written();
    }
    void asks(std::string_view prompt) {
        tcp.arrives(prompt);
        loop.pass(100);
    }
};

} // namespace

TEST(AutomaticLogin, answersBothPromptsAndThenStartsRemoteControl) {
    Login p;
    p.connects();
    EXPECT_FALSE(p.frmTerminal.Timer4.Enabled) << "not before the login";
    p.asks("Username:");
    EXPECT_EQ(p.tcp.take_written(), "technik\r");
    p.loop.pass(500);
    EXPECT_EQ(p.tcp.take_written(), "");
    p.asks("Password:");
    EXPECT_EQ(p.tcp.take_written(), "geheim\r");
    EXPECT_FALSE(p.frmTerminal.Timer4.Enabled);
    p.loop.pass(100);
    EXPECT_TRUE(p.frmTerminal.Timer4.Enabled);
    EXPECT_FALSE(p.window.Timer20.Enabled);
    EXPECT_THAT(p.terminal(), Not(HasSubstr("keine User")));
}

TEST(AutomaticLogin, startsNoRemoteControlWhileACollectionRuns) {
    Login p;
    p.module1.autoholen = true;
    p.connects();
    p.asks("Username:");
    p.asks("Password:");
    p.loop.pass(500);
    EXPECT_FALSE(p.frmTerminal.Timer4.Enabled);
    EXPECT_FALSE(p.window.Timer20.Enabled);
}

TEST(AutomaticLogin, tellsAfterEightSecondsThatNobodyAsked) {
    Login p;
    p.connects();
    p.loop.pass(7900);
    EXPECT_THAT(p.terminal(), Not(HasSubstr("keine User")));
    p.loop.pass(100);
    EXPECT_THAT(p.terminal(), EndsWith("keine User/Password Abfrage\r\n"));
    EXPECT_TRUE(p.module1.tcpoffen) << "the connection stays";
    p.loop.pass(20'000);
    p.asks("Username:");
    EXPECT_EQ(p.tcp.take_written(), "");
}

TEST(AutomaticLogin, keepsSilentAboutThatInTheFirstTenSeconds) {
    Login p;
    p.connects();
    p.module1.globalsek = 2;
    p.loop.pass(8000);
    EXPECT_THAT(p.terminal(), Not(HasSubstr("keine User")));
    EXPECT_FALSE(p.window.Timer20.Enabled);
}

TEST(AutomaticLogin, answersNobodyOnTheSerialLine) {
    Login p;
    p.dials();
    p.receive("Username:");
    p.receive("Password:");
    p.loop.pass(1000);
    EXPECT_EQ(p.sent(), "");
    EXPECT_EQ(p.tcp.take_written(), "");
}

TEST(AutomaticLogin, beginsAnewWithEachCall) {
    Login p;
    p.module1.loginalter = 900;
    p.module1.usergesendet = p.module1.passgesendet = true;
    p.connects();
    EXPECT_LT(p.module1.loginalter, 5);
    p.asks("Username:");
    EXPECT_EQ(p.tcp.take_written(), "technik\r");
}

TEST(AutomaticLogin, isForPort23Alone) {
    for (const char* remark : {"port1100", "port 2001", "port10100"}) {
        Login p(remark);
        p.connects();
        EXPECT_TRUE(p.module1.usernamegesehen && p.module1.passwordgesehen);
        EXPECT_TRUE(p.frmTerminal.Timer4.Enabled);
        p.asks("Username:");
        EXPECT_EQ(p.tcp.take_written(), "");
    }
}

TEST(AutomaticLogin, isOnlyMadeWhereItIsOn) {
    Login p;
    p.settings.loginauto = false;
    p.connects();
    EXPECT_FALSE(p.window.Timer20.Enabled);
    p.asks("Username:");
    EXPECT_EQ(p.tcp.take_written(), "");
}

TEST(AutomaticLogin, saysNothingWhenTheWindowsTimerEndsAtTheProgramsStart) {
    TestProgram p;
    EXPECT_TRUE(p.program.frmtelefon.Timer20.Enabled);
    p.start();
    EXPECT_FALSE(p.program.frmtelefon.Timer20.Enabled);
    EXPECT_THAT(p.terminal(), Not(HasSubstr("keine User")));
}

TEST(AutomaticLogin, showsNoPasswordInTheTrace) {
    Login p;
    p.module1.trace = true;
    p.with_protocol();
    p.connects();
    p.asks("Username:");
    p.asks("Password:");
    const std::string trace = p.frmTerminal.txttest10.Text();
    EXPECT_THAT(trace, Not(HasSubstr("geheim")));
    EXPECT_THAT(p.entered(), Not(HasSubstr("geheim")));
    EXPECT_THAT(p.terminal(), Not(HasSubstr("geheim")));
}

// ---- the gateway's route ----

namespace {

struct OverGateway : Dial {
    OverGateway() : Dial("0555 77") {
        with_protocol();
        over_gateway();
    }
    std::string modem_attempt(int modem) const {
        return "\r\nVerbindungsversuch mit: tarnwerk Modem" + std::to_string(modem) + ' ';
    }
    void answers() {
        tcp.succeeds();
        loop.settle();
    }
};

} // namespace

TEST(DialledThroughTheGateway, asksForTheFirstModem) {
    OverGateway p;
    p.module1.modem2versucht = true;
    p.dials();
    EXPECT_EQ(p.tcp.host, "gateway");
    EXPECT_EQ(p.tcp.port, 23);
    EXPECT_EQ(p.terminal(), p.modem_attempt(1));
    EXPECT_EQ(p.entered(), std::string(at_dial_time) + "Verbindungsversuch mit: tarnwerk Modem1 ");
    EXPECT_TRUE(p.frmTerminal.Timer23.Enabled);
    EXPECT_FALSE(p.module1.modem2versucht);
    EXPECT_FALSE(p.window.form.Visible);
    EXPECT_EQ(p.sent(), "");
}

TEST(DialledThroughTheGateway, dialsOnceTheModemHasAnswered) {
    OverGateway p;
    p.window.txtprestrcheck.Value = true;
    p.window.txtprestrtext.Text = "0,";
    p.dials();
    p.answers();
    EXPECT_EQ(p.tcp.take_written(), "\x11");
    p.loop.pass(499); // the gateway's second is over by now
    EXPECT_EQ(p.tcp.take_written(), "");
    p.frmTerminal.txtterm.set_Text({});
    p.loop.pass(1);
    EXPECT_EQ(p.tcp.take_written(), "atd0555 77\r") << "the prefix is never used here";
    EXPECT_EQ(
        p.terminal(),
        "\r\nModemanwahl: (Bitte auf CONNECT warten, ca. 30s)\r\nUm die Fernbedienung später zu beenden, "
        "bitte blauen Button --durchgestrichenes FB-- betätigen!\r\n"_w);
    EXPECT_FALSE(p.module1.txtprestrcheck);
    EXPECT_FALSE(p.window.txtprestrcheck.Value);
    EXPECT_TRUE(p.settings.vorwahlan == Variant(std::int16_t{0}));
    EXPECT_THAT(p.entered(), HasSubstr("  CONNECT"));
    EXPECT_THAT(p.entered(), EndsWith("\r\n\r\n15.11.2026 11:28:03  Anwahl: atd0555 77 "));
    EXPECT_EQ(p.projekt(), "angewählt: Gelmar"_w);
    EXPECT_TRUE(p.frmTerminal.Timer24.Enabled);
    EXPECT_FALSE(p.window.Timer14.Enabled);
}

TEST(DialledThroughTheGateway, stopsCountingAtTheSitesConnect) {
    OverGateway p;
    p.dials();
    p.answers();
    p.loop.pass(10'000);
    p.tcp.arrives("\r\nCONNECT 9600\r\n");
    p.loop.settle();
    EXPECT_FALSE(p.frmTerminal.Timer24.Enabled);
    EXPECT_TRUE(p.frmTerminal.Timer4.Enabled);
}

TEST(DialledThroughTheGateway, goesOnToTheSecondModemAfterTenSeconds) {
    OverGateway p;
    p.dials();
    p.loop.pass(10'000);
    EXPECT_EQ(p.terminal(), p.modem_attempt(1) + "..........\r\nVersuch fehlgeschlagen");
    p.frmTerminal.txtterm.set_Text({});
    p.loop.pass(500);
    EXPECT_EQ(p.terminal(), p.modem_attempt(2));
    EXPECT_EQ(p.tcp.port, 24);
    EXPECT_THAT(p.entered(), EndsWith("  Verbindungsversuch mit: tarnwerk Modem2 "));
    EXPECT_TRUE(p.module1.modem2versucht);
    EXPECT_TRUE(p.frmTerminal.Timer23.Enabled);
}

TEST(DialledThroughTheGateway, goesOnToTheSecondModemAtTheNextTickAfterARefusal) {
    OverGateway p;
    p.dials();
    p.tcp.fails(10061, "abgelehnt");
    p.loop.pass(1500);
    EXPECT_EQ(p.terminal(), p.modem_attempt(1) + ".\r\nVersuch fehlgeschlagen" + p.modem_attempt(2));
    EXPECT_EQ(p.tcp.port, 24);
}

TEST(DialledThroughTheGateway, endsWithBothMessagesAndBeginsWithTheFirstModemAgain) {
    OverGateway p;
    p.dials();
    p.tcp.fails(10061, "abgelehnt");
    p.loop.pass(1500);
    p.frmTerminal.txtterm.set_Text({});
    p.loop.pass(10'000);
    EXPECT_EQ(p.terminal(), "..........\r\nVersuch fehlgeschlagen  Bitte nochmal versuchen");
    p.loop.pass(30'000);
    EXPECT_EQ(p.tcp.connects, 2);
    p.program.dialling.Command1_Click();
    EXPECT_EQ(p.tcp.port, 23);
}

TEST(DialledThroughTheGateway, tellsAfterAMinuteThatNobodyIsThere) {
    for (const bool second : {false, true}) {
        OverGateway p;
        p.dials();
        p.answers();
        p.loop.pass(500);
        p.module1.modem2versucht = second;
        p.frmTerminal.txtterm.set_Text({});
        p.loop.pass(60'000);
        EXPECT_EQ(p.terminal(), std::string(60, '.') + "\r\nModemeinwahl fehlgeschlagen (besetzt,...)" +
                                    (second ? "\r\n  Bitte nochmal versuchen\r\n" : ""));
        EXPECT_FALSE(p.module1.tcpoffen);
    }
}

TEST(DialledThroughTheGateway, dialsNothingOnceAnotherAttemptHasBegun) {
    OverGateway p;
    p.dials();
    p.answers();
    p.loop.pass(300);
    EXPECT_TRUE(p.window.Timer14.Enabled);
    p.site.nummer = "regler";
    p.program.dialling.Command1_Click();
    (void)p.tcp.take_written();
    p.loop.pass(5000);
    EXPECT_EQ(p.tcp.take_written(), "");
    EXPECT_FALSE(p.frmTerminal.Timer24.Enabled);
}

TEST(DialledThroughTheGateway, dialsTheSiteThatWasSelectedWhenItBegan) {
    OverGateway p;
    p.program.telefonbuch[4].name = "Nachbar";
    p.program.telefonbuch[4].nummer = "0555 99";
    p.dials();
    p.module1.telindex = 4;
    p.answers();
    p.loop.pass(5000);
    EXPECT_THAT(p.tcp.take_written(), HasSubstr("atd0555 77\r"));
    EXPECT_EQ(p.module1.projektname, "Gelmar");
}

TEST(DialledThroughTheGateway, needsItsAddress) {
    TestProgram p;
    p.program.world.gateway.address.clear();
    p.start();
    p.program.telefonbuch[0].nummer = "5550";
    p.module1.telindex = 0;
    p.module1.telnet = true;
    p.dialogs.expect("[Gateway] adresse=", 48, Answer::ok);
    p.program.dialling.Command1_Click();
    EXPECT_EQ(p.tcp.connects, 0);
    // Nobody would answer a box at night.
    p.module1.autoholen = true;
    p.program.dialling.Command1_Click();
    EXPECT_THAT(p.terminal(), EndsWith("[Gateway] adresse=)"));
}

TEST(DialledThroughTheGateway, doesNothingForASiteThatIsNoLongerSelected) {
    OverGateway p;
    p.dials();
    p.module1.telindex = -1;
    p.tcp.fails(10061, "abgelehnt");
    p.loop.pass(30'000);
    EXPECT_EQ(p.tcp.connects, 1);
    p.module1.tcpoffen = true;
    p.tcp.current = TcpState::connected;
    p.program.dialling.DIALTELNET();
    EXPECT_EQ(p.tcp.take_written(), "");
    EXPECT_EQ(p.sent(), "");
    EXPECT_FALSE(p.frmTerminal.Timer24.Enabled);
}

TEST(DialledThroughTheGateway, dialsNothingOnTheSerialLineWhereTheGatewayIsLost) {
    OverGateway p;
    p.dials();
    p.answers();
    p.tcp.fails(10054, "abgebrochen");
    p.loop.pass(5000);
    EXPECT_EQ(p.sent(), "");
    EXPECT_FALSE(p.frmTerminal.Timer24.Enabled);
}

TEST(DialledThroughTheGateway, closesWhatWasConnectedBefore) {
    OverGateway p;
    p.module1.tcpoffen = p.module1.gatewayoffen = true;
    p.tcp.current = TcpState::connected;
    p.dials();
    EXPECT_FALSE(p.module1.tcpoffen || p.module1.gatewayoffen);
    EXPECT_GE(p.tcp.closes, 1);
}

TEST(DialledThroughTheGateway, leavesTheWindowAsItIsWhileACollectionRuns) {
    OverGateway p;
    p.module1.autoholen = true;
    p.dials();
    EXPECT_TRUE(p.window.geladen);
    p.answers();
    p.loop.pass(500);
    EXPECT_TRUE(p.window.geladen);
}

TEST(DialledThroughTheGateway, entersNothingWithoutAProtocolFile) {
    Dial p("0555 77");
    p.files.set_content(protocol, "abcd\r\n");
    p.module1.protokollname = protocol;
    p.over_gateway();
    p.dials();
    p.tcp.succeeds();
    p.loop.pass(2000);
    EXPECT_TRUE(p.frmTerminal.Timer24.Enabled);
    EXPECT_EQ(p.files.content(protocol), "abcd\r\n");
}

// ---- hanging up while dialling ----

TEST(HangingUp, endsAnAttemptAtTheGatewayForGood) {
    OverGateway p;
    p.dials();
    p.loop.pass(3000);
    p.frmTerminal.tbrToolBar("HangUpPhone").Click();
    EXPECT_EQ(p.tcp.current, TcpState::closed);
    p.loop.pass(60'000);
    EXPECT_EQ(p.tcp.connects, 1) << "no second modem";
    EXPECT_FALSE(p.frmTerminal.Timer23.Enabled);
}

TEST(HangingUp, leavesTheConnectionAloneThatWasDialledMeanwhile) {
    Dial p("regler");
    p.dials();
    p.tcp.succeeds();
    p.loop.settle();
    p.frmTerminal.fernbedaktiv = true;
    p.loop.post_at(p.loop.now_ms() + 500, [&p] {
        p.program.dialling.Command1_Click();
        p.module1.dialalter = 500; // remote control isn't what this is about
        p.tcp.succeeds();
    });
    p.frmTerminal.tbrToolBar("HangUpPhone").Click();
    p.loop.pass(3000);
    EXPECT_EQ(p.tcp.current, TcpState::connected);
    EXPECT_TRUE(p.module1.tcpoffen);
}

TEST(HangingUp, sendsNothingMoreOnceAnotherNumberIsDialled) {
    Dial p("5550");
    SentAt sent(p);
    p.loop.post_at(p.loop.now_ms() + 1500, [&p] { p.program.dialling.Command1_Click(); });
    press(p.frmTerminal.mnuHangUp);
    p.loop.pass(20'000);
    EXPECT_EQ(sent.all.back(), "1500 atd5550\r");
}

TEST(HangingUp, byTwoClicksIsOneOverTheGateway) {
    OverGateway p;
    p.dials();
    p.answers();
    p.loop.pass(2000);
    SentAt sent(p);
    p.loop.post_at(p.loop.now_ms() + 300, [&p] { p.frmTerminal.tbrToolBar("HangUpPhone").Click(); });
    p.frmTerminal.tbrToolBar("HangUpPhone").Click();
    p.loop.pass(20'000);
    EXPECT_THAT(sent.all, IsEmpty()) << "nothing of it on the serial line";
    EXPECT_FALSE(p.module1.tcpoffen);
}

TEST(Dialling, stopsTheHangUpOfTheCallBefore) {
    Dial p("5550");
    p.frmTerminal.Timer31.Enabled = true;
    p.frmTerminal.Timer20.Enabled = true;
    p.frmTerminal.Timer3.Enabled = true;
    p.dials();
    (void)p.sent();
    p.loop.pass(60'000);
    EXPECT_EQ(p.sent(), "");
}

} // namespace velorn::test
