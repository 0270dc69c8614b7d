#include "runtime/text.h"
#include "support/sent_at.h"
#include "support/test_program.h"
#include "terminal/visualisation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* program_file = "c:\\vis\\gelmar.exe";

struct Vis : TestProgram {
    Vis() {
        start();
        files.set_content(program_file, "MZ");
        module1.visdatei = program_file;
    }
    void starts() {
        frmTerminal.tbrToolBar("visualstart").Click();
        frmTerminal.fernbedaktiv = true;
        visualisation.texts.clear();
        (void)sent();
    }
    const std::string& shown() const { return visualisation.text; }
};

} // namespace

TEST(Visualisation, isStartedAndAskedForASecondLater) {
    Vis p;
    SentAt sent(p);
    p.frmTerminal.txttovis.Text = "alt";
    p.frmTerminal.tbrToolBar("visualstart").Click();
    EXPECT_THAT(p.processes.started, ElementsAre(program_file));
    EXPECT_TRUE(p.visualisation.is_open);
    EXPECT_EQ(p.shown(), "");
    EXPECT_TRUE(p.frmTerminal.visaktiv);
    EXPECT_THAT(sent.all, ElementsAre("1000 v"));
}

TEST(Visualisation, needsItsFile) {
    for (const char* path : {"", "c:\\vis\\fehlt.exe"}) {
        Vis p;
        p.module1.visdatei = path;
        p.dialogs.expect(std::string("keine Visualisierungsdatei ausgewählt!"_w), 48, Answer::ok);
        p.frmTerminal.tbrToolBar("visualstart").Click();
        EXPECT_THAT(p.processes.started, IsEmpty());
        EXPECT_FALSE(p.frmTerminal.visaktiv);
    }
}

TEST(Visualisation, tellsOfAFileThatCantBeRun) {
    Vis p;
    p.processes.answer = failure(RunTimeError::path_file_access);
    p.dialogs.expect(std::string("Die Visualisierungsdatei läßt sich nicht ausführen"_w), 48, Answer::ok);
    p.frmTerminal.tbrToolBar("visualstart").Click();
    EXPECT_FALSE(p.frmTerminal.visaktiv);
    EXPECT_EQ(p.sent(), "");
}

TEST(Visualisation, isNotStartedTwiceWhileItLives) {
    Vis p;
    p.starts();
    p.visualisation.says("neuanf 1");
    EXPECT_EQ(p.module1.vislebt, 6);
    p.loop.pass(4000);
    EXPECT_EQ(p.module1.vislebt, 2);
    p.dialogs.expect(std::string("Visualisierung läuft bereits!!"_w), 48, Answer::ok);
    p.frmTerminal.tbrToolBar("visualstart").Click();
    EXPECT_EQ(p.processes.started.size(), 1U);
    p.loop.pass(1000);
    EXPECT_EQ(p.module1.vislebt, 1);
    p.frmTerminal.tbrToolBar("visualstart").Click();
    EXPECT_EQ(p.processes.started.size(), 2U);
    p.loop.pass(10'000);
    EXPECT_EQ(p.module1.vislebt, 0);
}

TEST(Visualisation, isStartedOnceByTwoClicks) {
    Vis p;
    SentAt sent(p);
    p.dialogs.expect(std::string("Visualisierung läuft bereits!!"_w), 48, Answer::ok);
    p.loop.post_at(p.loop.now_ms() + 300, [&p] { p.frmTerminal.tbrToolBar("visualstart").Click(); });
    p.frmTerminal.tbrToolBar("visualstart").Click();
    EXPECT_EQ(p.processes.started.size(), 1U);
    EXPECT_THAT(sent.all, ElementsAre("1000 v"));
}

TEST(Visualisation, thatBeganMeanwhileIsNotEndedByTheOneBefore) {
    Vis p;
    p.starts();
    p.loop.post_at(p.loop.now_ms() + 1000, [&p] { p.frmTerminal.tbrToolBar("visualstart").Click(); });
    p.visualisation.says("ENDE");
    p.loop.pass(5000);
    EXPECT_TRUE(p.frmTerminal.visaktiv);
}

TEST(Visualisation, shownInTheTerminalWhereRemoteControlIsOff) {
    Vis p;
    p.starts();
    p.frmTerminal.fernbedaktiv = false;
    p.receive("P=12 VISEND");
    EXPECT_THAT(p.visualisation.texts, IsEmpty());
    EXPECT_THAT(p.terminal(), ::testing::EndsWith("P=12 VISEND"));
}

TEST(Visualisation, getsABlockOnceItsEndMarkHasCome) {
    Vis p;
    p.starts();
    p.receive("P=12 kW\r\nVIS");
    EXPECT_THAT(p.visualisation.texts, IsEmpty());
    p.receive("END");
    EXPECT_THAT(p.visualisation.texts, ElementsAre("P=12 kW\r\nVISEND1"));
    p.receive("P=12 kW\r\nVISEND");
    EXPECT_EQ(p.shown(), "P=12 kW\r\nVISEND2") << "the number tells equal blocks apart";
    p.receive("x\x1b\x1bv");
    EXPECT_EQ(p.shown(), "x\x1b\x1bv3");
    EXPECT_EQ(p.terminal().find("kW"), std::string::npos);
}

TEST(Visualisation, countsOnFrom20000AfterTheLimitOnTcpAlone) {
    for (const bool over_tcp : {false, true}) {
        Vis p;
        p.starts();
        p.module1.viszaehler = 29'999;
        const auto block = [&] {
            if (over_tcp) {
                p.tcp.arrives("VISEND");
                p.loop.settle();
            } else {
                p.receive("VISEND");
            }
        };
        block();
        EXPECT_EQ(p.shown(), "VISEND30000");
        block();
        EXPECT_EQ(p.shown(), "VISEND30001");
        EXPECT_EQ(p.module1.viszaehler, over_tcp ? 20'000 : 30'001);
    }
}

TEST(Visualisation, keepsABlockWithoutEndWithinBounds) {
    Vis p;
    p.starts();
    const std::string chunk(10'000, 'x');
    for (int i = 0; i < 60; ++i) p.receive(chunk);
    p.receive("VISEND");
    EXPECT_EQ(p.shown().size(), Visualisation::longest_block + 1);
    EXPECT_TRUE(p.shown().ends_with("xVISEND1"));
}

TEST(Visualisation, asksAnewAtItsBeginningAndIsLeftAtItsEnd) {
    Vis p;
    p.starts();
    SentAt sent(p);
    p.visualisation.says("neuanf 1");
    p.visualisation.says("neuanf 1");
    EXPECT_THAT(sent.all, ElementsAre("0 v")) << "the same text is no change";
    p.visualisation.says("neuanf 2");
    EXPECT_EQ(sent.all.size(), 2U);
    p.visualisation.says("ENDE");
    EXPECT_EQ(sent.all.back(), "2500 \x08");
    EXPECT_FALSE(p.frmTerminal.visaktiv);
}

TEST(Visualisation, isHeardFromTheMomentOfTheLink) {
    Vis p;
    SentAt sent(p);
    p.loop.post_at(p.loop.now_ms() + 300, [&p] { p.visualisation.says("neuanf 1"); });
    p.frmTerminal.tbrToolBar("visualstart").Click();
    EXPECT_THAT(sent.all, ElementsAre("1000 v", "1000 v"));
    EXPECT_EQ(p.module1.vislebt, 6);
}

TEST(Visualisation, isToldWhenAKeyEndsIt) {
    Vis p;
    p.starts();
    (void)p.program.keys.key_down('V', 0);
    EXPECT_TRUE(p.frmTerminal.visaktiv);
    (void)p.program.keys.key_down('A', 0);
    EXPECT_FALSE(p.frmTerminal.visaktiv);
    EXPECT_EQ(p.shown(), "BEENDEN");
}

TEST(Visualisation, isToldWhenRemoteControlEnds) {
    Vis p;
    p.settings.fbautostart = std::int16_t{0};
    p.starts();
    p.dialogs.expect("Soll das Modem aufgelegt werden", 36, Answer::no);
    p.receive(" - OFFLINE - ");
    p.loop.pass(2000);
    EXPECT_FALSE(p.frmTerminal.visaktiv);
    EXPECT_EQ(p.shown(), "BEENDEN");
}

TEST(Visualisation, isStartedThoughItsChannelCantBeOpened) {
    Vis p;
    p.visualisation.answer = failure(RunTimeError::device_io, "schon vergeben");
    p.frmTerminal.tbrToolBar("visualstart").Click();
    EXPECT_THAT(p.terminal(), ::testing::HasSubstr("schon vergeben"));
    EXPECT_EQ(p.processes.started.size(), 1U);
}

} // namespace velorn::test
