#include "runtime/text.h"
#include "support/receive_rig.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using namespace std::string_literals;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

const std::string name_40 = "Kraftwerk Gelmar, Block 2, Schaltwarte 1";
const std::string banner = " Ende: <E>      Invers: <I>             ";
const std::string exit_banner = "Fernbedienung: Ausstieg mit ";

std::string head(std::size_t before) { return std::string(before, '-') + banner + name_40 + "|"; }
std::string exit_head(std::size_t before) {
    return std::string(before, '-') + exit_banner + "1234567" + name_40 + "|";
}

} // namespace

// ---- from the links ----

TEST(Receive, overSerialLightsItsLampAndStartsTheTimer) {
    ReceiveRig r;
    r.receive_serial("a");
    EXPECT_EQ(r.frmTerminal.Picture4.BackColor.get(), colour::red);
    EXPECT_EQ(r.frmTerminal.Picture7.BackColor.get(), colour::green);
    EXPECT_TRUE(r.frmTerminal.Timer7.Enabled);
    EXPECT_EQ(r.terminal(), "a");
    EXPECT_EQ(r.module1.letzteip, "");
}

TEST(Receive, overTcpKeepsTheChunkAsItCame) {
    ReceiveRig r;
    r.module1.gatewayoffen = true;
    r.receive_tcp("\x81\0x"s);
    EXPECT_EQ(r.frmTerminal.Picture7.BackColor.get(), colour::red);
    EXPECT_EQ(r.frmTerminal.Picture4.BackColor.get(), colour::green);
    EXPECT_TRUE(r.frmTerminal.Timer7.Enabled);
    EXPECT_EQ(r.module1.letzteip, "\x81\0x"s);
    EXPECT_EQ(r.terminal(), "üx"_w);
}

TEST(Receive, overTcpShowsNothingWhileAGatewayIsDialled) {
    ReceiveRig r;
    r.module1.warteok = true;
    r.receive_tcp("nOK");
    EXPECT_EQ(r.terminal(), "");
    EXPECT_FALSE(r.module1.warteok);
    r.receive_serial("serial");
    EXPECT_EQ(r.terminal(), "serial");
}

TEST(Receive, theSendEventLightsItsLampAndTheLineEventsDoNothing) {
    ReceiveRig r;
    (void)r.MSComm1.set_SThreshold(10);
    r.serial.set_unsent(20);
    r.MSComm1.Output("x");
    r.serial.set_unsent(3);
    EXPECT_EQ(r.MSComm1.CommEvent(), CommEvent::send);
    EXPECT_EQ(r.frmTerminal.Picture3.BackColor.get(), colour::red);
    EXPECT_TRUE(r.frmTerminal.Timer8.Enabled);
    EXPECT_EQ(r.terminal(), "");
}

TEST(Receive, aNulOnlyChunkIsShownAsAnEmptyText) {
    ReceiveRig r;
    r.frmTerminal.fernbedaktiv = true;
    r.receive_serial("\0\0"s);
    EXPECT_THAT(r.take_news(), ElementsAre("screen:"));
    EXPECT_EQ(r.window(), "");
}

TEST(Receive, aRunningDownloadTakesTheWholeStream) {
    ReceiveRig r;
    r.module1.empfgrafick = r.module1.empfleeren = r.module1.warteok = r.module1.trace = true;
    r.frmTerminal.logdatei = 1;
    r.receive_serial("OK \x84\0"s);
    r.receive_tcp("more");
    EXPECT_THAT(r.take_news(), ElementsAre("emptied download:OK \xe4\0"s, "download:more"));
    EXPECT_FALSE(r.module1.empfleeren);
    EXPECT_TRUE(r.module1.warteok);
    EXPECT_EQ(r.window(), "");
    EXPECT_EQ(r.terminal(), "");
    EXPECT_THAT(r.frmTerminal.txttest10.Text(),
                ::testing::StartsWith("79 O\r\n75 K\r\n32  \r\n228 \xe4\r\n0\r\n"));
}

TEST(Receive, theTraceTellsTheCodesAsTheyCame) {
    ReceiveRig r;
    r.module1.trace = true;
    r.receive_serial("\x1f \x81\0"s);
    EXPECT_EQ(r.frmTerminal.txttest10.Text(), "31\r\n32  \r\n129 \x81\r\n0\r\n"s);
}

TEST(Receive, theDisplayThatIsActiveTakesTheChunk) {
    ReceiveRig r;
    r.frmTerminal.fernbedaktiv = true;
    r.receive_serial("a");
    r.receive_tcp("b");
    r.frmTerminal.visaktiv = true;
    r.receive_serial("c");
    r.receive_tcp("d");
    EXPECT_THAT(r.take_news(), ElementsAre("screen:a", "tcp screen:b", "visual:c", "tcp visual:d"));
    EXPECT_EQ(r.terminal(), "");
}

TEST(Receive, anAttachedVisualisationWithoutRemoteControlShowsInTheTerminal) {
    ReceiveRig r;
    r.frmTerminal.visaktiv = true;
    r.receive_serial("a");
    EXPECT_EQ(r.terminal(), "a");
}

// ---- clean-up, LOG, close mark, trim ----

TEST(Receive, umlautsOfTheControllersBecomeTheSystemsAndSharpSStays) {
    ReceiveRig r;
    r.receive_serial("\x81\x84\x8e\x94\x99\x9a\xe1");
    EXPECT_EQ(r.terminal(), std::string("üäÄöÖÜ"_w) + "\xe1");
    EXPECT_EQ(r.window(), r.terminal());
}

TEST(Receive, theLogHoldsTheControllersCodesWithoutNuls) {
    ReceiveRig r;
    r.frmTerminal.logdatei = 1;
    r.receive_serial("\x81\0x\n"s);
    EXPECT_THAT(r.take_news(), ElementsAre("log:\x81x\n"));
}

TEST(Receive, writesNoLogWithoutAFile) {
    ReceiveRig r;
    r.receive_serial("x");
    EXPECT_THAT(r.take_news(), IsEmpty());
}

TEST(Receive, theCloseMarkTakesEffectWithTheNextChunk) {
    ReceiveRig r;
    r.receive_serial("ab\x1b\x1b\x45");
    EXPECT_THAT(r.take_news(), IsEmpty());
    r.receive_serial("zz");
    EXPECT_THAT(r.take_news(), ElementsAre("closelog", "serial:\r", "serial:\r"));
    EXPECT_EQ(r.window(), "zz");
    r.receive_serial("y");
    EXPECT_THAT(r.take_news(), IsEmpty());
}

TEST(Receive, theCloseMarkKeepsWhatStoodBehindIt) {
    ReceiveRig r;
    r.receive_serial("\x1b\x1b\x45tail");
    r.receive_serial("\0"s);
    EXPECT_EQ(r.window(), "tail");
    EXPECT_THAT(r.take_news(), ElementsAre("closelog", "serial:\r", "serial:\r"));
}

TEST(Receive, theWindowIsTrimmedFromIts500thCharacterBeforeTheAppend) {
    ReceiveRig r;
    std::string text;
    for (int i = 0; i < 5; ++i) {
        const std::string block = std::to_string(i) + std::string(9'999, 'a');
        r.receive_serial(block);
        text += block;
    }
    r.receive_serial("b");
    EXPECT_EQ(r.window(), text + "b");
    r.receive_serial("c");
    EXPECT_EQ(r.window(), text.substr(499) + "bc");
}

TEST(Receive, aFloodLeavesTheLast50000AndTheChunk) {
    ReceiveRig r;
    for (int i = 0; i < 30; ++i) r.receive_serial(std::string(16'000, static_cast<char>('a' + i)));
    EXPECT_LE(r.receive.txtvergl.length(), 66'000U);
    r.receive_serial("!");
    EXPECT_EQ(r.receive.txtvergl.length(), 50'001U);
}

// ---- remote control ----

TEST(Receive, fernbedEntersRemoteControl) {
    ReceiveRig r;
    r.module1.protokollan = r.frmTerminal.cursorinv = true;
    r.frmTerminal.fbzustand = 3;
    r.frmTerminal.zeile = r.frmTerminal.spalte = 9;
    r.receive_serial("x*FERNBEDy");
    EXPECT_TRUE(r.frmTerminal.fernbedaktiv);
    EXPECT_FALSE(r.frmTerminal.txtterm.Visible);
    EXPECT_TRUE(r.frmTerminal.Picture1.Visible);
    EXPECT_FALSE(r.frmTerminal.cursorinv);
    EXPECT_EQ(r.frmTerminal.fbzustand, 0);
    EXPECT_EQ(r.frmTerminal.zeile, 1);
    EXPECT_EQ(r.frmTerminal.spalte, 1);
    EXPECT_EQ(r.window(), "");
    EXPECT_THAT(r.take_news(), ElementsAre("mark:  *FERNBED ", "screen:x*FERNBEDy"));
}

TEST(Receive, fernbedWhileRemoteControlIsOnOnlyEmptiesTheWindow) {
    ReceiveRig r;
    r.frmTerminal.fernbedaktiv = r.module1.protokollan = true;
    r.frmTerminal.fbzustand = 3;
    r.receive_serial("*FERNBED");
    EXPECT_EQ(r.frmTerminal.fbzustand, 3);
    EXPECT_EQ(r.window(), "");
    EXPECT_THAT(r.take_news(), ElementsAre("screen:*FERNBED"));
}

TEST(Receive, edinfoEntersWithAnInverseCursorAlsoWhenOn) {
    ReceiveRig r;
    r.frmTerminal.fernbedaktiv = true;
    r.frmTerminal.fbzustand = 3;
    r.module1.protokollan = true;
    r.receive_serial("*EDINFOrest");
    EXPECT_TRUE(r.frmTerminal.cursorinv);
    EXPECT_EQ(r.frmTerminal.fbzustand, 0);
    EXPECT_EQ(r.window(), "");
    EXPECT_THAT(r.take_news(), Not(Contains("mark:  *FERNBED ")));
}

TEST(Receive, bothEndMarksLeaveRemoteControl) {
    for (const char* mark : {" - OFFLINE - ", "   Fernbedienung beendet   "}) {
        ReceiveRig r;
        r.module1.projektname = "Gelmar";
        show_mirrored_display(r.frmTerminal, false);
        r.frmTerminal.visaktiv = true;
        r.receive_serial("a"s + mark + "b");
        EXPECT_EQ(r.frmTerminal.sbrStatus.projekt.Text.get(), "online mit: Gelmar") << mark;
        EXPECT_FALSE(r.frmTerminal.fernbedaktiv);
        EXPECT_FALSE(r.frmTerminal.termecho);
        EXPECT_TRUE(r.frmTerminal.Timer3.Enabled);
        EXPECT_TRUE(r.frmTerminal.txtterm.Visible);
        EXPECT_FALSE(r.frmTerminal.Picture1.Visible);
        EXPECT_FALSE(r.frmTerminal.visaktiv);
        EXPECT_EQ(r.frmTerminal.txttovis.Text.get(), "BEENDEN");
        EXPECT_EQ(r.window(), "");
        EXPECT_EQ(r.terminal(), "");
    }
}

TEST(Receive, anEndMarkWithoutRemoteControlOnlySetsThePanel) {
    ReceiveRig r;
    r.frmTerminal.visaktiv = true;
    r.receive_serial(" - OFFLINE - ");
    EXPECT_EQ(r.frmTerminal.sbrStatus.projekt.Text.get(), "online mit: ");
    EXPECT_TRUE(r.frmTerminal.termecho);
    EXPECT_FALSE(r.frmTerminal.Timer3.Enabled);
    EXPECT_TRUE(r.frmTerminal.visaktiv);
    EXPECT_EQ(r.frmTerminal.txttovis.Text.get(), "");
    EXPECT_EQ(r.window(), "");
}

TEST(Receive, anEndMarkInThePauseCountsToo) {
    ReceiveRig r;
    r.frmTerminal.fbpause = true;
    r.receive_serial(" - OFFLINE - ");
    EXPECT_TRUE(r.frmTerminal.Timer3.Enabled);
    EXPECT_FALSE(r.frmTerminal.termecho);
}

TEST(Receive, theBannerNamesTheSiteAndStays) {
    ReceiveRig r;
    r.module1.protokollan = true;
    r.receive_serial(head(0));
    EXPECT_EQ(r.module1.projektname, name_40);
    EXPECT_EQ(r.frmTerminal.sbrStatus.projekt.Text.get(), "Fernbed.: " + name_40);
    EXPECT_THAT(r.take_news(), ElementsAre("mark:  *FERNBED "));
    EXPECT_EQ(r.window(), head(0));
    r.receive_serial("x");
    EXPECT_THAT(r.take_news(), ElementsAre("mark:  *FERNBED "));
    r.frmTerminal.fernbedaktiv = true;
    r.receive_serial("x");
    EXPECT_THAT(r.take_news(), ElementsAre("screen:x"));
}

TEST(Receive, theOtherBannerNamesTheSiteToo) {
    ReceiveRig r;
    r.module1.protokollan = true;
    r.receive_serial(exit_head(3));
    EXPECT_EQ(r.module1.projektname, name_40);
    EXPECT_EQ(r.frmTerminal.sbrStatus.projekt.Text.get(), "Fernbed.: " + name_40);
    EXPECT_THAT(r.take_news(), ElementsAre("mark:  *FERNBED "));
    EXPECT_EQ(r.window(), exit_head(3));
}

TEST(Receive, aBannerIsTakenUpToPosition40) {
    for (const auto& text : {std::function(head), std::function(exit_head)}) {
        ReceiveRig taken, late;
        taken.receive_serial(text(39));
        EXPECT_EQ(taken.module1.projektname, name_40);
        late.receive_serial(text(40));
        EXPECT_EQ(late.module1.projektname, "");
        EXPECT_EQ(late.frmTerminal.sbrStatus.projekt.Text.get(), "");
    }
}

TEST(Receive, aBannerIsTakenOnceItsLengthIsThere) {
    ReceiveRig r;
    const std::string whole = banner + name_40; // length p + 79
    r.receive_serial(whole);
    EXPECT_EQ(r.module1.projektname, "");
    r.receive_serial("|");
    EXPECT_EQ(r.module1.projektname, name_40);
}

TEST(Receive, theOtherBannerIsTakenOnceItsLengthIsThere) {
    ReceiveRig r;
    std::string whole = exit_banner + std::string(43, '#');
    r.receive_serial(whole); // 71 characters: length p + 70
    EXPECT_EQ(r.module1.projektname, "");
    r.receive_serial("+");
    EXPECT_EQ(r.module1.projektname, (whole + "+").substr(35, 40));
}

// ---- the prompt for a name ----

TEST(Receive, thePromptForANameIsAnswered) {
    ReceiveRig r;
    r.receive_serial("Name: " + std::string(38, '.'));
    EXPECT_EQ(r.sent(), "Benutzer");
    EXPECT_EQ(r.window(), "");
    EXPECT_EQ(r.frmTerminal.tastenrest, 6);
}

TEST(Receive, dotsWithTooLittleBehindThemAreNoPrompt) {
    ReceiveRig r;
    r.receive_serial("1" + std::string(34, '.') + "12"); // p 2: too short below 39
    EXPECT_EQ(r.sent(), "");
    r.receive_serial("3");
    EXPECT_EQ(r.sent(), "");
    r.receive_serial("4");
    EXPECT_EQ(r.sent(), "Benutzer");
}

TEST(Receive, twoBlanksAnd32DotsAreAPromptToo) {
    ReceiveRig r;
    r.receive_serial("ab  " + std::string(32, '.'));
    EXPECT_EQ(r.sent(), "Benutzer");
    EXPECT_EQ(r.frmTerminal.tastenrest, 6);
    EXPECT_EQ(r.window(), "");
    r.receive_serial("ab " + std::string(32, '.'));
    EXPECT_EQ(r.sent(), "");
}

// ---- waits ----

TEST(Receive, okEndsAWaitForItAndSoDoesOkk) {
    for (const char* text : {"OK", "xOKKx"}) {
        ReceiveRig r;
        r.module1.warteok = r.module1.warteantwort = true;
        r.receive_serial(text);
        EXPECT_FALSE(r.module1.warteok);
        EXPECT_EQ(r.window(), "");
        EXPECT_TRUE(r.module1.warteantwort) << "the window was empty for the answer";
    }
}

TEST(Receive, okStaysInTheWindowWhileNobodyWaits) {
    ReceiveRig r;
    r.receive_serial("OK");
    EXPECT_EQ(r.window(), "OK");
    r.module1.warteok = true;
    r.receive_serial("\0"s);
    EXPECT_FALSE(r.module1.warteok);
}

TEST(Receive, aLineFeedEndsAWaitForIt) {
    ReceiveRig r;
    r.module1.wartelf = true;
    r.receive_serial("ab\r");
    EXPECT_TRUE(r.module1.wartelf);
    r.receive_serial("\n");
    EXPECT_FALSE(r.module1.wartelf);
    EXPECT_EQ(r.window(), "");
}

TEST(Receive, aWordInTwoChunksIsFound) {
    ReceiveRig r;
    r.module1.warteok = true;
    r.receive_serial("O");
    r.receive_serial("K");
    EXPECT_FALSE(r.module1.warteok);
}

TEST(Receive, theThreeAnswersEndTheWaitForOne) {
    const std::pair<const char*, int> rows[] = {{"ERR", 1}, {"OKK", 2}, {"NEUV2.0", 10}};
    for (const auto& [text, code] : rows) {
        ReceiveRig r;
        r.module1.warteantwort = true;
        r.receive_serial(text);
        EXPECT_EQ(r.module1.antwortcode, code) << text;
        EXPECT_FALSE(r.module1.warteantwort);
        EXPECT_EQ(r.window(), "");
    }
}

TEST(Receive, theFirstAnswerOfTheListHidesTheOthers) {
    ReceiveRig r;
    r.receive_serial("NEUV2.0 OKK ERR");
    EXPECT_EQ(r.module1.antwortcode, 1);
}

TEST(Receive, duringACaptureNoAnswerCounts) {
    ReceiveRig r;
    r.module1.protokollaktiv = r.module1.warteantwort = true;
    r.receive_serial("OKK");
    EXPECT_TRUE(r.module1.warteantwort);
    EXPECT_EQ(r.module1.antwortcode, 0);
    EXPECT_EQ(r.window(), "OKK");
}

TEST(Receive, theSmsPromptIsSeenAndKept) {
    ReceiveRig r;
    r.module1.smsprompt = true;
    r.receive_serial("<");
    EXPECT_FALSE(r.module1.smsprompt);
    EXPECT_EQ(r.window(), "<");
}

TEST(Receive, theLoginPromptsAreSeenWhileTheLoginIsYoung) {
    ReceiveRig r;
    r.module1.loginalter = 14;
    r.receive_serial("Username:");
    EXPECT_TRUE(r.module1.usernamegesehen);
    EXPECT_FALSE(r.module1.passwordgesehen);
    EXPECT_EQ(r.window(), "");
    r.receive_serial("Password:");
    EXPECT_TRUE(r.module1.passwordgesehen);

    ReceiveRig old;
    old.module1.loginalter = 15;
    old.receive_serial("Username: Password:");
    EXPECT_FALSE(old.module1.usernamegesehen || old.module1.passwordgesehen);
    EXPECT_EQ(old.window(), "Username: Password:");
}

TEST(Receive, theResumePositionStandsInFrontOfItsWords) {
    const std::pair<std::string, int> rows[] = {{"9900012345Fortsetzung Datei", 12345},
                                                {"   77Fortsetzung Datei", 77},
                                                {"Fortsetzung Datei", 0},
                                                {"99999999Fortsetzung Datei", 99999999},
                                                {"    -500Fortsetzung Datei", 0}};
    for (const auto& [text, position] : rows) {
        ReceiveRig r;
        r.module1.wartefortsetzung = true;
        r.receive_serial(text);
        EXPECT_EQ(r.module1.dateipos, position) << text;
        EXPECT_FALSE(r.module1.wartefortsetzung);
        EXPECT_EQ(r.window(), text);
    }
}

// ---- CONNECT ----

TEST(Receive, aConnectSoonAfterDiallingStartsRemoteControl) {
    ReceiveRig r;
    r.module1.dialalter = 30;
    r.module1.protokollan = true;
    r.frmTerminal.Timer24.Enabled = true;
    r.receive_serial("CONNECT 9600");
    EXPECT_FALSE(r.frmTerminal.Timer24.Enabled);
    EXPECT_TRUE(r.frmTerminal.Timer4.Enabled);
    EXPECT_EQ(r.window(), "");
    EXPECT_THAT(r.take_news(), ElementsAre("serial:\x11", "mark:  CONNECT "));
}

TEST(Receive, aConnectOfACollectionIsLogged) {
    ReceiveRig r;
    r.module1.dialalter = 31;
    r.module1.autoverbindung = r.module1.autolog = r.module1.protokollan = true;
    r.files.set_content(ReceiveRig::collection_log, "before");
    r.receive_serial("CONNECT");
    EXPECT_FALSE(r.module1.autoverbindung);
    EXPECT_FALSE(r.frmTerminal.Timer4.Enabled);
    EXPECT_EQ(r.files.content(ReceiveRig::collection_log), "before\r\n\r\n11:28:00 CONNECT  \r\n");
    EXPECT_THAT(r.take_news(), ElementsAre("serial:\x11", "mark:  CONNECT "));
    EXPECT_EQ(r.window(), "");
}

TEST(Receive, aConnectOfAYoungCollectionStartsNoRemoteControl) {
    ReceiveRig r;
    r.module1.autoverbindung = true;
    r.receive_serial("CONNECT");
    EXPECT_FALSE(r.module1.autoverbindung);
    EXPECT_FALSE(r.frmTerminal.Timer4.Enabled);
    EXPECT_FALSE(r.files.exists(ReceiveRig::collection_log));
}

TEST(Receive, aConnectWhoseLogCannotBeWrittenGoesOn) {
    ReceiveRig r;
    r.files.make_read_only(ReceiveRig::collection_log);
    r.module1.autoverbindung = r.module1.autolog = true;
    r.receive_serial("CONNECT");
    EXPECT_FALSE(r.module1.autoverbindung);
    EXPECT_EQ(r.terminal(), "CONNECT");
}

TEST(Receive, aLateConnectStaysAndXonGoesOutAgain) {
    ReceiveRig r;
    r.module1.dialalter = 31;
    r.frmTerminal.Timer24.Enabled = true;
    r.receive_serial("CONNECT");
    EXPECT_EQ(r.sent(), "\x11");
    EXPECT_FALSE(r.frmTerminal.Timer24.Enabled);
    EXPECT_FALSE(r.frmTerminal.Timer4.Enabled);
    EXPECT_EQ(r.window(), "CONNECT");
    r.receive_serial("x");
    EXPECT_EQ(r.sent(), "\x11");
}

// ---- captures and block transfer ----

TEST(Receive, aCaptureMarkCutsTheWindowAndStartsTheCapture) {
    ReceiveRig r;
    r.receive_serial("ab\x1b\x1b\x50zz");
    EXPECT_THAT(r.take_news(), ElementsAre("capture begins", "capture:zz"));
    EXPECT_EQ(r.window(), "zz");
}

TEST(Receive, withoutACaptureItsCounterAndNoticeGo) {
    ReceiveRig r;
    r.frmTerminal.protbytes = 7;
    r.frmTerminal.txtprotschreib.Visible = true;
    r.receive_serial("x");
    EXPECT_EQ(r.frmTerminal.protbytes, 0);
    EXPECT_FALSE(r.frmTerminal.txtprotschreib.Visible);

    r.module1.protokollaktiv = true;
    r.frmTerminal.protbytes = 7;
    r.frmTerminal.txtprotschreib.Visible = true;
    r.receive_serial("x");
    EXPECT_EQ(r.frmTerminal.protbytes, 7);
    EXPECT_TRUE(r.frmTerminal.txtprotschreib.Visible);
}

TEST(Receive, theBlockTransferLooksLast) {
    ReceiveRig r;
    r.frmTerminal.batempfang = r.module1.protokollaktiv = true;
    r.receive_serial("ab");
    EXPECT_THAT(r.take_news(), ElementsAre("capture:ab", "block:ab"));
}

// ---- order ----

TEST(Receive, wordsBehindOneThatEmptiesTheWindowAreLostForLaterSteps) {
    ReceiveRig r;
    r.module1.warteok = true;
    r.module1.dialalter = 5;
    r.receive_serial("CONNECT OK");
    EXPECT_FALSE(r.module1.warteok);
    EXPECT_FALSE(r.frmTerminal.Timer4.Enabled) << "OK comes before CONNECT, whatever the text's order";
}

TEST(Receive, answersGoOutOverTcpWhileItIsTheLink) {
    ReceiveRig r;
    r.module1.tcpoffen = true;
    r.tcp.current = TcpState::connected;
    r.receive_tcp(std::string(38, '.'));
    EXPECT_EQ(r.tcp.take_written(), "Benutzer");
    EXPECT_EQ(r.sent(), "");
}

} // namespace velorn::test
