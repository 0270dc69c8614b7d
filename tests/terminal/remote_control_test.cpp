#include "runtime/text.h"
#include "support/mirrored_program.h"
#include "support/sent_at.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using namespace std::string_literals;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

using Mirrored = MirroredProgram;

} // namespace

// ---- entering ----

TEST(RemoteControl, startsByWakingTheShellAndAskingFor2point2SecondsLater) {
    TestProgram p;
    p.start();
    p.frmTerminal.cursorinv = true;
    p.frmTerminal.zeile = 5;
    const SentAt sent(p);
    p.loop.post_at(p.loop.now_ms() + 1000, [&p] {
        EXPECT_TRUE(p.frmTerminal.fernbedaktiv);
        EXPECT_FALSE(p.frmTerminal.txtterm.Visible);
        EXPECT_TRUE(p.frmTerminal.Picture1.Visible);
        EXPECT_FALSE(p.frmTerminal.cursorinv);
        EXPECT_EQ(p.frmTerminal.zeile, 1);
    });
    p.frmTerminal.tbrToolBar("fernbed").Click();
    EXPECT_THAT(sent.all, ElementsAre("0 \x01", "2200 FERNBED\r"));
}

TEST(RemoteControl, marksItsStartInTheProtocolFile) {
    TestProgram p;
    std::vector<std::string> marks;
    p.program.events.protocol_mark.connect([&](std::string_view mark) { marks.emplace_back(mark); });
    p.start();
    for (const bool usable : {false, true}) {
        p.module1.protokollan = usable;
        p.loop.post([&] { p.program.remote_control.fernbedstart(); });
        p.loop.pass(2500);
    }
    EXPECT_THAT(marks, ElementsAre("  *FERNBED "));
}

TEST(RemoteControl, startsByItselfAfterAConnectionWhereThatIsWanted) {
    TestProgram p;
    p.start();
    p.settings.fbautostart = std::int16_t{1};
    p.frmTerminal.Timer4.Enabled = true;
    p.loop.pass(4000);
    EXPECT_EQ(p.sent(), "\x01"
                        "FERNBED\r");
    EXPECT_FALSE(p.frmTerminal.Timer4.Enabled);
}

TEST(RemoteControl, startsInNoDownloadOfAnUnattendedRun) {
    for (const int automatic : {0, 1}) {
        TestProgram p;
        p.start();
        p.settings.fbautostart = static_cast<std::int16_t>(automatic);
        p.module1.autoholen = true;
        p.frmTerminal.Timer4.Enabled = true;
        p.loop.pass(4000);
        EXPECT_EQ(p.sent(), "");
        EXPECT_FALSE(p.frmTerminal.Timer4.Enabled);
    }
}

TEST(RemoteControl, asksAfterAConnectionWhetherToStart) {
    for (const Answer answer : {Answer::yes, Answer::no}) {
        TestProgram p;
        p.start();
        p.settings.fbautostart = std::int16_t{0};
        p.dialogs.expect("Soll die Fernbedienung gestartet werden", 36, answer);
        p.frmTerminal.Timer4.Enabled = true;
        p.loop.pass(6000);
        EXPECT_EQ(p.sent(), answer == Answer::yes ? "\x01"
                                                    "FERNBED\r"
                                                  : "");
        EXPECT_FALSE(p.frmTerminal.Timer4.Enabled);
    }
}

TEST(RemoteControl, goesNoFurtherWhenTheProgramEndsWhileItStarts) {
    TestProgram p;
    p.start();
    p.loop.post_at(p.loop.now_ms() + 1000, [&p] { p.loop.end(); });
    p.program.remote_control.fernbedstart();
    EXPECT_EQ(p.sent(), "\x01");
}

// ---- leaving ----

TEST(RemoteControl, isLeftForTheTerminalByTwoE) {
    Mirrored p;
    const SentAt sent(p);
    p.frmTerminal.tbrToolBar("notfernbed").Click();
    EXPECT_THAT(sent.all, ElementsAre("0 E", "1000 E"));
    EXPECT_EQ(p.loop.now_ms(), sent.begin + 2000);
    EXPECT_FALSE(p.frmTerminal.fernbedaktiv);
    EXPECT_TRUE(p.frmTerminal.txtterm.Visible);
    EXPECT_FALSE(p.frmTerminal.Picture1.Visible);
    EXPECT_TRUE(p.frmTerminal.fbpause);
    p.loop.pass(7999);
    EXPECT_TRUE(p.frmTerminal.fbpause);
    p.loop.pass(1);
    EXPECT_FALSE(p.frmTerminal.fbpause);
    EXPECT_FALSE(p.frmTerminal.Timer30.Enabled);
}

TEST(RemoteControl, isLeftAndEnteredByTheSwitchWithoutSendingAnything) {
    Mirrored p;
    p.frmTerminal.cursorinv = true;
    p.receive("\x1b\x1bG8");
    (void)p.sent();
    EXPECT_TRUE(p.frmTerminal.picabs.Visible);
    p.frmTerminal.tbrToolBar("bildumschalt").Click();
    EXPECT_FALSE(p.frmTerminal.fernbedaktiv);
    EXPECT_TRUE(p.frmTerminal.txtterm.Visible);
    EXPECT_FALSE(p.frmTerminal.Picture1.Visible);
    EXPECT_FALSE(p.frmTerminal.cursorinv);
    EXPECT_FALSE(p.frmTerminal.picabs.Visible);
    p.frmTerminal.zeile = 7;
    p.canvas.forget();
    p.frmTerminal.tbrToolBar("bildumschalt").Click();
    EXPECT_TRUE(p.frmTerminal.fernbedaktiv);
    EXPECT_FALSE(p.frmTerminal.txtterm.Visible);
    EXPECT_TRUE(p.frmTerminal.Picture1.Visible);
    EXPECT_EQ(p.frmTerminal.zeile, 1);
    EXPECT_THAT(p.canvas.strokes(), ElementsAre(StartsWith("clear")));
    EXPECT_EQ(p.sent(), "");
}

TEST(RemoteControl, togglesStartingByItself) {
    TestProgram p;
    p.start();
    p.settings.fbautostart = std::int16_t{0};
    p.frmTerminal.fernbedauto.Click();
    EXPECT_EQ(p.settings.fbautostart, Variant(std::int16_t{1}));
    EXPECT_TRUE(p.frmTerminal.fernbedauto.Checked);
    const std::string saved = p.files.content("c:\\velorn\\einst.par");
    p.frmTerminal.fernbedauto.Click();
    EXPECT_EQ(p.settings.fbautostart, Variant(std::int16_t{0}));
    EXPECT_FALSE(p.frmTerminal.fernbedauto.Checked);
    EXPECT_NE(p.files.content("c:\\velorn\\einst.par"), saved);
}

TEST(RemoteControl, showsNothingOfWhatStoodThereBeforeItWasEnteredAnew) {
    Mirrored p;
    p.receive(put(3, 4, "A") + "\x1b\x1bQ0000005000001");
    for (int i = 0; i < 2; ++i) p.frmTerminal.tbrToolBar("bildumschalt").Click();
    p.canvas.forget();
    p.frmTerminal.Picture1.Paint();
    EXPECT_THAT(p.canvas.strokes(), ElementsAre(StartsWith("clear")));
    p.receive(put(5, 6, "B"));
    p.canvas.forget();
    p.frmTerminal.Picture1.Paint();
    EXPECT_THAT(p.canvas.strokes(), ElementsAre(StartsWith("clear"), StartsWith("text 72 95 'B'")));
}

TEST(RemoteControl, startsFromHereWithAnEmptyDisplayToo) {
    Mirrored p;
    p.receive("A\x1b\x1bQ0000005000001");
    p.program.remote_control.fernbedstart();
    p.canvas.forget();
    p.frmTerminal.Picture1.Paint();
    EXPECT_THAT(p.canvas.strokes(), ElementsAre(StartsWith("clear")));
}

// ---- the stream ----

TEST(RemoteControl, readsTheControllersDisplayOverEitherLink) {
    Mirrored p;
    p.receive(put(3, 4, "Vorlauf 74,3 \x84"));
    EXPECT_EQ(p.frmTerminal.schirm.text(3, 4, 17), "Vorlauf 74,3 \xe4");
    p.tcp.arrives(put(4, 4, "BHKW"));
    p.loop.settle();
    EXPECT_EQ(p.frmTerminal.schirm.text(4, 4, 7), "BHKW");
    EXPECT_EQ(p.terminal(), "");
}

TEST(RemoteControl, paintsOnceForEachChunk) {
    Mirrored p;
    p.canvas.forget();
    p.receive("\x1a");
    p.receive("ab");
    std::size_t clears = 0;
    for (const std::string& stroke : p.canvas.strokes()) clears += stroke.starts_with("clear") ? 1 : 0;
    EXPECT_EQ(clears, 1U);
    EXPECT_EQ(p.canvas.strokes().size(), 5U);
}

TEST(RemoteControl, acknowledgesALogFilePastTheTraceOnTheSerialLink) {
    Mirrored p;
    p.module1.trace = true;
    (void)p.sent();
    int opened = 0;
    p.frmTerminal.mnuOpenLog.Click = [&opened] { ++opened; };
    p.receive("\x1b\x1bR");
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(p.sent(), "\r");
    EXPECT_EQ(p.frmTerminal.txttest10.Text().find("out:"), std::string::npos);
}

TEST(RemoteControl, acknowledgesALogFileOnTheSerialLinkThatAskedForItAlthoughTcpIsOpen) {
    Mirrored p;
    p.module1.tcpoffen = true;
    p.tcp.current = TcpState::connected;
    (void)p.sent();
    std::string sent_before_it_opened = "none";
    p.frmTerminal.mnuOpenLog.Click = [&] { sent_before_it_opened = p.sent(); };
    p.receive("\x1b\x1bR");
    EXPECT_EQ(sent_before_it_opened, "");
    EXPECT_EQ(p.sent(), "\r");
    EXPECT_EQ(p.tcp.take_written(), "");
}

TEST(RemoteControl, acknowledgesALogFileThatNobodyWantsToo) {
    Mirrored p;
    (void)p.sent();
    p.dialogs.expect_file(std::string("LOG-Datei öffnen"_w), failure(RunTimeError::dialog_cancelled));
    p.receive("\x1b\x1bR");
    EXPECT_EQ(p.sent(), "\r");
    EXPECT_TRUE(p.frmTerminal.fernbedaktiv);
}

TEST(RemoteControl, acknowledgesALogFileThroughTheOneWayOutOverTcp) {
    Mirrored p;
    p.module1.tcpoffen = true;
    p.tcp.current = TcpState::connected;
    p.frmTerminal.mnuOpenLog.Click = [] {};
    (void)p.sent();
    p.tcp.arrives("\x1b\x1bR");
    p.loop.settle();
    EXPECT_EQ(p.tcp.take_written(), "\r");
    EXPECT_EQ(p.sent(), "");
}

TEST(RemoteControl, announcesTheEvaluationThatTheControllerWants) {
    Mirrored p;
    int wanted = 0;
    p.program.events.evaluation_wanted.connect([&] { ++wanted; });
    p.tcp.arrives("\x1b\x1bq");
    p.loop.settle();
    EXPECT_EQ(wanted, 1);
    EXPECT_TRUE(p.module1.grafikfern);
}

TEST(RemoteControl, announcesADayGraph) {
    Mirrored p;
    std::string graph;
    p.program.events.day_graph.connect([&](std::string_view text) { graph = text; });
    p.receive("\x1b\x1bG1Leistung\x1b\x1bG0");
    EXPECT_EQ(graph, "Leistung\x1b\x1bG0");
}

// ---- the calendar ----

TEST(Calendar, isShownInTheSmallFontUntilANewScreen) {
    Mirrored p;
    p.receive("\x1b\x1bG8");
    EXPECT_TRUE(p.frmTerminal.picabs.Visible);
    EXPECT_TRUE(p.frmTerminal.labkal[9].Visible);
    EXPECT_TRUE(p.frmTerminal.Label13.Visible);
    EXPECT_EQ(p.frmTerminal.Picture1.FontSize, 3);
    EXPECT_EQ(p.frmTerminal.zeichenbreite, 3);
    EXPECT_EQ(p.frmTerminal.zeilenhoehe, 4);
    p.receive("\x1b@\x1b");
    EXPECT_FALSE(p.frmTerminal.picabs.Visible);
    EXPECT_FALSE(p.frmTerminal.labkal[1].Visible);
    EXPECT_EQ(p.frmTerminal.Picture1.FontSize, 14);
    EXPECT_EQ(p.frmTerminal.zeichenbreite, 12);
    EXPECT_EQ(p.frmTerminal.zeilenhoehe, 19);
}

TEST(Calendar, liftsItsTextsOutOfTheScreen) {
    struct Stretch {
        std::size_t label;
        int row, from, to;
    };
    constexpr Stretch stretches[] = {{1, 1, 4, 32},  {2, 2, 12, 30}, {3, 2, 38, 49},
                                     {4, 2, 50, 61}, {5, 3, 44, 56}, {6, 20, 0, 36},
                                     {7, 21, 0, 36}, {8, 22, 0, 36}, {9, 23, 0, 36}};
    Mirrored p;
    p.receive("\x1b\x1bG8");
    for (int row = 1; row <= 24; ++row) {
        std::string text;
        for (int column = 1; column <= 80; ++column)
            text += static_cast<char>('!' + (row * 11 + column) % 90);
        p.receive(put(row, 1, text));
    }
    for (const Stretch& one : stretches) {
        std::string expected;
        for (int column = one.from; column <= one.to; ++column)
            expected += column == 0 ? ' ' : static_cast<char>('!' + (one.row * 11 + column) % 90);
        EXPECT_EQ(p.frmTerminal.labkal[one.label].Caption.get(), expected) << one.label;
    }
}

TEST(Calendar, drawsTheSwitchingTimesOfItsRows) {
    Mirrored p;
    RecorderCanvas week;
    p.frmTerminal.picabs.canvas = &week;
    p.receive("\x1b\x1bG8" + put(4, 8, "011x") + put(17, 80, "1") + put(18, 8, "1"));
    const auto& strokes = week.strokes();
    // A place is wiped 19 high; a low step stands 8 above its foot, a raised one 14.
    EXPECT_THAT(strokes, Contains("box 80 0 90 19 #c0c0ff"));
    EXPECT_THAT(strokes, Contains("box 80 11 90 13 #000000"));
    EXPECT_THAT(strokes, Contains("box 90 5 100 7 #000000"));
    EXPECT_THAT(strokes, Contains("box 90 5 92 13 #000000")); // the riser between them
    EXPECT_THAT(strokes, Contains("box 110 0 120 19 #c0c0ff"));
    EXPECT_THAT(strokes, Contains("box 800 265 810 267 #000000"));
    std::size_t wiped = 0;
    std::size_t drawn = 0;
    for (const std::string& stroke : strokes) {
        wiped += stroke.ends_with("#c0c0ff") ? 1 : 0;
        drawn += stroke.ends_with("#000000") ? 1 : 0;
    }
    EXPECT_EQ(wiped, 14U * 73U + 1U);
    EXPECT_EQ(drawn, 5U);
}

TEST(Calendar, hasARulerOfHoursAboveItsColumns) {
    TestProgram p;
    const std::string& ruler = p.frmTerminal.Label13.Caption;
    EXPECT_EQ(ruler.substr(0, 1), "0");
    EXPECT_EQ(ruler.substr(18, 1), "6");
    EXPECT_EQ(ruler.substr(36, 2), "12");
    EXPECT_EQ(ruler.substr(54, 2), "18");
    EXPECT_EQ(ruler.substr(72, 2), "24");
}

} // namespace velorn::test
