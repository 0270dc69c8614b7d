#include "runtime/text.h"
#include "support/test_program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using namespace std::string_literals;

constexpr const char* name = "c:\\gelmar.txt";
const std::string begin_mark = "\x1b\x1bP";
const std::string end_mark = "\x1b\x1bO";

struct WithProtocol : TestProgram {
    explicit WithProtocol(std::string_view content = "head\r\n") {
        files.set_content(name, content);
        start();
        module1.protokollan = true;
        module1.protokollname = name;
        (void)sent();
    }
    std::string file() const { return files.content(name); }
    ToolButton& button() { return frmTerminal.tbrToolBar("protokoll"); }
    std::string now() { return date_and_time_text(loop.local_time()); }
};

} // namespace

// ---- marks ----

TEST(ProtocolFile, takesAMarkOverItsLastByte) {
    WithProtocol p("head\r\n");
    p.program.protocol_file.write_mark("  CONNECT ");
    EXPECT_EQ(p.file(), "head\r\r\n" + p.now() + "  CONNECT ");
}

TEST(ProtocolFile, takesAMarkAtItsBeginningWhenItIsEmpty) {
    WithProtocol p("");
    p.program.protocol_file.write_mark("  AUFGELEGT ");
    EXPECT_EQ(p.file(), "\r\n" + p.now() + "  AUFGELEGT ");
}

TEST(ProtocolFile, isMarkedWhenRemoteControlBegins) {
    WithProtocol p;
    p.receive("*FERNBED");
    EXPECT_THAT(p.file(), testing::EndsWith("  *FERNBED "));
}

TEST(ProtocolFile, thatCantBeOpenedIsLeftAlone) {
    WithProtocol p;
    p.files.make_read_only(name);
    p.program.protocol_file.write_mark("  CONNECT ");
    p.receive(begin_mark + "x" + end_mark);
    EXPECT_EQ(p.file(), "head\r\n");
}

// ---- beginning ----

TEST(Capture, withoutAProtocolFileWarnsForTenSeconds) {
    WithProtocol p;
    p.module1.protokollan = false;
    p.receive(begin_mark);
    EXPECT_TRUE(p.frmTerminal.txtprotwarn.Visible);
    EXPECT_FALSE(p.frmTerminal.txtprotschreib.Visible);
    EXPECT_EQ(p.frmTerminal.txtprotwarn.Text.get(), "ACHTUNG!!!  keine Protokolldatei ausgewählt   10"_w);
    EXPECT_FALSE(p.module1.protokollaktiv);
    EXPECT_FALSE(p.button().Pressed);
    p.loop.pass(9000);
    EXPECT_EQ(p.frmTerminal.txtprotwarn.Text.get(), "ACHTUNG!!!  keine Protokolldatei ausgewählt   1"_w);
    EXPECT_EQ(p.sent(), "");
    p.loop.pass(1000);
    EXPECT_FALSE(p.frmTerminal.txtprotwarn.Visible);
    EXPECT_FALSE(p.frmTerminal.Timer10.Enabled);
    EXPECT_EQ(p.sent(), "\x08"); // whether or not a file was open
}

TEST(Capture, isShownWhileItRuns) {
    WithProtocol p;
    p.receive(begin_mark);
    EXPECT_TRUE(p.module1.protokollaktiv);
    EXPECT_TRUE(p.frmTerminal.txtprotschreib.Visible);
    EXPECT_EQ(p.frmTerminal.txtprotschreib.Text.get(), "Protokoll wird in Datei geschrieben   50");
    EXPECT_TRUE(p.button().Pressed);
    EXPECT_TRUE(p.frmTerminal.Timer10.Enabled);
    EXPECT_NE(p.frmTerminal.protdatei, 0);
    p.loop.pass(1000);
    EXPECT_EQ(p.frmTerminal.txtprotschreib.Text.get(), "Protokoll wird in Datei geschrieben   49");
}

TEST(Capture, isBegunOnceForAMarkThatScannerAndDisplayBothSee) {
    WithProtocol p;
    p.receive("*FERNBED");
    (void)p.sent();
    const std::string before = p.file();
    p.receive(begin_mark + "text" + end_mark);
    EXPECT_FALSE(p.module1.protokollaktiv);
    EXPECT_EQ(p.file(), before.substr(0, before.size() - 1) + "text\r\n\r\n");
    EXPECT_EQ(p.sent(), "\x08");
}

TEST(Capture, isBegunByTheDisplayWhereTheScannerMissedTheMark) {
    WithProtocol p;
    p.receive("*FERNBED");
    p.module1.warteok = true;
    p.receive("OK" + begin_mark); // the scanner forgets what stands behind "OK"
    EXPECT_TRUE(p.module1.protokollaktiv);
}

// ---- writing ----

TEST(Capture, holds52CharactersBackAndWrites53ButFor28) {
    for (const std::size_t count : {52U, 53U}) {
        WithProtocol p("");
        p.receive(begin_mark);
        p.receive(std::string(count, 'x'));
        EXPECT_EQ(p.file(), std::string(count == 52 ? 0 : 25, 'x'));
        EXPECT_EQ(p.program.receive.txtvergl.length(), count == 52 ? 52U : 28U);
        EXPECT_EQ(p.frmTerminal.protbytes, count == 52 ? 0 : 25);
    }
}

TEST(Capture, writesFromTheStartMarkToTheEndMark) {
    WithProtocol p;
    p.receive("before" + begin_mark + "Bericht\r\n");
    for (int i = 0; i < 10; ++i) p.receive("Zeile " + std::to_string(i) + " des Berichts\r\n");
    p.receive("\x1b");
    p.receive("\x1bOafter");
    std::string expected = "head\rBericht\r\n";
    for (int i = 0; i < 10; ++i) expected += "Zeile " + std::to_string(i) + " des Berichts\r\n";
    EXPECT_EQ(p.file(), expected + "\r\n\r\n");
    EXPECT_EQ(p.sent(), "\x08");
    EXPECT_FALSE(p.module1.protokollaktiv);
    EXPECT_FALSE(p.button().Pressed);
    EXPECT_FALSE(p.frmTerminal.Timer10.Enabled);
    EXPECT_EQ(p.frmTerminal.protdatei, 0);
    EXPECT_EQ(p.program.receive.txtvergl.text(), "after");
    p.receive("x");
    EXPECT_FALSE(p.frmTerminal.txtprotschreib.Visible);
}

TEST(Capture, holdsCp1252Umlauts) {
    WithProtocol p("");
    p.receive(begin_mark + "Z\x84hler" + end_mark);
    EXPECT_EQ(p.file(), std::string("Zähler\r\n\r\n"_w));
}

TEST(Capture, endsAbove8000Characters) {
    WithProtocol p("");
    p.receive(begin_mark);
    p.receive(std::string(8028, 'x'));
    EXPECT_EQ(p.frmTerminal.protbytes, 8000);
    EXPECT_TRUE(p.module1.protokollaktiv);
    p.receive(std::string(25, 'y'));
    EXPECT_FALSE(p.module1.protokollaktiv);
    EXPECT_EQ(p.file(), std::string(8025, 'x').substr(0, 8025) + "\r\n\r\n"s);
    EXPECT_EQ(p.sent(), "\x08");
    p.receive("x");
    EXPECT_EQ(p.frmTerminal.protbytes, 0);
}

TEST(Capture, atItsLimitAndItsEndMarkInOnePassAcknowledgesOnce) {
    WithProtocol p("");
    p.receive(begin_mark);
    p.receive(std::string(9000, 'x') + end_mark);
    EXPECT_FALSE(p.module1.protokollaktiv);
    EXPECT_EQ(p.sent(), "\x08");
}

TEST(Capture, survivesAFlood) {
    WithProtocol p("");
    p.receive(begin_mark);
    p.program.receive.txtvergl.append(std::string(60'000, 'x'));
    p.receive("y");
    EXPECT_FALSE(p.module1.protokollaktiv);
}

TEST(Capture, keepsAnswersOfTheControllerFromBeingRead) {
    WithProtocol p;
    p.module1.warteantwort = true;
    p.receive(begin_mark);
    p.receive("OKK");
    EXPECT_TRUE(p.module1.warteantwort);
}

TEST(Capture, takesAMarkBehindWhatWasCaptured) {
    WithProtocol p("");
    p.receive(begin_mark);
    p.receive(std::string(60, 'x'));
    p.program.protocol_file.write_mark("  AUFGELEGT ");
    const std::string mark = "\r\n" + p.now() + "  AUFGELEGT ";
    p.receive(end_mark);
    EXPECT_EQ(p.file(), std::string(32, 'x') + mark + std::string(28, 'x') + "\r\n\r\n");
}

TEST(Capture, closesItsFileWhenItsTimeRunsOut) {
    WithProtocol p("");
    p.receive(begin_mark);
    p.receive(std::string(60, 'x'));
    p.loop.pass(49'000);
    EXPECT_TRUE(p.module1.protokollaktiv);
    p.loop.pass(1000);
    EXPECT_FALSE(p.module1.protokollaktiv);
    EXPECT_EQ(p.file(), std::string(32, 'x') + "\r\n\r\n");
    EXPECT_EQ(p.sent(), "\x08");
    EXPECT_FALSE(p.frmTerminal.txtprotschreib.Visible);
    EXPECT_FALSE(p.button().Pressed);
    p.receive(std::string(60, 'y'));
    EXPECT_EQ(p.file(), std::string(32, 'x') + "\r\n\r\n");
}

TEST(Capture, findsAnEndMarkThatIsCutAnywhere) {
    for (std::size_t cut = 1; cut < end_mark.size(); ++cut) {
        WithProtocol p("");
        p.receive(begin_mark + std::string(60, 'x') + end_mark.substr(0, cut));
        EXPECT_TRUE(p.module1.protokollaktiv);
        p.receive(end_mark.substr(cut));
        EXPECT_FALSE(p.module1.protokollaktiv);
        EXPECT_EQ(p.file(), std::string(60, 'x') + "\r\n\r\n") << cut;
    }
}

TEST(Capture, writesAndMissesAnEndMarkThatStandsBeforeItsLast28Characters) {
    WithProtocol p("");
    p.receive(begin_mark);
    p.receive(std::string(30, 'x') + end_mark + std::string(40, 'y'));
    EXPECT_TRUE(p.module1.protokollaktiv);
    EXPECT_EQ(p.file(), std::string(30, 'x') + end_mark + std::string(12, 'y'));
}

// ---- by the button ----

TEST(Capture, byTheButtonBeginsWithWhatArrivesFromThenOnAndLastsFifteenMinutes) {
    WithProtocol p("");
    p.receive("older text");
    p.button().Click();
    EXPECT_EQ(p.frmTerminal.txtprotschreib.Text.get(), "Protokoll wird in Datei geschrieben   900");
    EXPECT_TRUE(p.button().Pressed);
    p.receive(std::string(60, 'x'));
    EXPECT_EQ(p.file(), std::string(32, 'x'));
    p.loop.pass(899'000);
    EXPECT_TRUE(p.module1.protokollaktiv);
    p.loop.pass(1000);
    EXPECT_FALSE(p.module1.protokollaktiv);
}

TEST(Capture, isEndedByTheButtonWithoutAByteToTheController) {
    WithProtocol p("");
    p.button().Click();
    p.receive(std::string(60, 'x'));
    p.button().Click();
    EXPECT_EQ(p.file(), std::string(32, 'x') + "\r\n\r\n");
    EXPECT_FALSE(p.module1.protokollaktiv);
    EXPECT_FALSE(p.button().Pressed);
    EXPECT_FALSE(p.frmTerminal.txtprotschreib.Visible);
    EXPECT_FALSE(p.frmTerminal.txtprotwarn.Visible);
    EXPECT_FALSE(p.frmTerminal.Timer10.Enabled);
    EXPECT_EQ(p.sent(), "");
    EXPECT_EQ(p.frmTerminal.protdatei, 0);
}

TEST(Capture, byTheButtonWithoutAProtocolFileWarns) {
    WithProtocol p;
    p.module1.protokollan = false;
    p.receive("stays");
    p.button().Click();
    EXPECT_TRUE(p.frmTerminal.txtprotwarn.Visible);
    EXPECT_FALSE(p.button().Pressed);
    EXPECT_EQ(p.program.receive.txtvergl.text(), "stays");
}

TEST(Capture, andLogFileGetDifferentNumbers) {
    WithProtocol p("");
    p.dialogs.expect_file(std::string("LOG-Datei öffnen"_w), std::string("c:\\a.log"));
    p.frmTerminal.mnuOpenLog.Click();
    p.button().Click();
    EXPECT_NE(p.frmTerminal.protdatei, p.frmTerminal.logdatei);
    EXPECT_NE(p.frmTerminal.protdatei, 0);
}

} // namespace velorn::test
