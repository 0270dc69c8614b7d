#include "support/receive_rig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

struct Shown {
    VirtualEventLoop loop{{2026, 11, 15, 7, 5, 9, 0}};
    Events events;
    FrmTerminal frmTerminal{loop};
    TerminalOutput output{loop, events, frmTerminal};
    std::vector<std::string> log;

    Shown() {
        events.log_text.connect([this](std::string_view text) { log.emplace_back(text); });
    }
    const std::string& show(std::string_view text) {
        output.terminalausgabe(text);
        return frmTerminal.txtterm.Text();
    }
};

} // namespace

TEST(TerminalOutput, appendsInBlueAndLeavesTheCaretAtTheEnd) {
    Shown t;
    t.frmTerminal.txtterm.set_Text("old");
    t.frmTerminal.txtterm.select(1, 1);
    EXPECT_EQ(t.show("new"), "oldnew");
    EXPECT_EQ(t.frmTerminal.txtterm.SelColor.get(), 0xFF0000U);
    EXPECT_EQ(t.frmTerminal.txtterm.SelStart(), 6U);
    EXPECT_EQ(t.frmTerminal.txtterm.SelLength(), 0U);
}

TEST(TerminalOutput, above550000CharactersTheOldestGo) {
    Shown t;
    std::string many(550'000, 'x');
    many[49'999] = 'F';
    t.frmTerminal.txtterm.set_Text(many);
    EXPECT_EQ(t.show("a").size(), 550'001U);
    const std::string& text = t.show("b");
    EXPECT_EQ(text.size(), 500'003U);
    EXPECT_EQ(text.front(), 'F');
    EXPECT_EQ(text.substr(text.size() - 3), "xab");
}

TEST(TerminalOutput, aBackspaceTakesTheCharacterBeforeIt) {
    Shown t;
    EXPECT_EQ(t.show("ab\bc"), "ac");
    EXPECT_EQ(t.show("xyz\b\b\b"), "ac");
}

TEST(TerminalOutput, aLeadingBackspaceTakesTheLastOfTheScreen) {
    Shown t;
    t.show("abc");
    EXPECT_EQ(t.show("\bX"), "abX");
    EXPECT_EQ(t.show("\b"), "ab");
}

TEST(TerminalOutput, twoLeadingBackspacesTakeOneCharacter) {
    Shown t;
    t.show("abc");
    EXPECT_EQ(t.show("\b\bX"), "abX");
    EXPECT_EQ(t.show("q\b\b\bY"), "abY");
}

TEST(TerminalOutput, aLeadingBackspaceOnAnEmptyTerminalTakesNothing) {
    Shown t;
    EXPECT_EQ(t.show("\b\bX"), "X");
}

TEST(TerminalOutput, aLeadingBackspaceInFrontOfNothingStillTakesALineEnd) {
    Shown t;
    t.show("a\r");
    EXPECT_EQ(t.show("\b\n"), "a\r");
}

TEST(TerminalOutput, lineFeedsGoAndEachCrGetsOne) {
    Shown t;
    EXPECT_EQ(t.show("a\n\nb\r\nc\rd\n"), "ab\r\nc\r\nd");
}

TEST(TerminalOutput, aCrAtAChunksEndGetsItsLineFeedAtOnce) {
    Shown t;
    EXPECT_EQ(t.show("a\r"), "a\r\n");
    EXPECT_EQ(t.show("\nb"), "a\r\nb");
}

TEST(TerminalOutput, timeStampsStandBehindEachLineEnd) {
    Shown t;
    t.frmTerminal.uhrzeitan = true;
    EXPECT_EQ(t.show("a\r\nb\r"), "a\r\n07:05:09b\r\n07:05:09");
}

TEST(TerminalOutput, withEchoOffNothingIsShown) {
    Shown t;
    t.frmTerminal.txtterm.set_Text("abc");
    t.frmTerminal.termecho = false;
    EXPECT_EQ(t.show("x\r"), "abc");
    EXPECT_EQ(t.show("\bx"), "abc");
    EXPECT_EQ(t.frmTerminal.txtterm.SelStart(), 3U);
    EXPECT_EQ(t.frmTerminal.txtterm.SelLength(), 0U);
}

TEST(TerminalOutput, withTimeStampsTheLogTakesThePreparedText) {
    Shown t;
    t.frmTerminal.logdatei = 1;
    t.show("first");
    EXPECT_THAT(t.log, IsEmpty()) << "the scanner writes it while there are no time stamps";
    t.frmTerminal.uhrzeitan = true;
    t.frmTerminal.termecho = false;
    t.show("ab\b\r\n");
    EXPECT_THAT(t.log, ElementsAre("a\r\n07:05:09"));
    t.frmTerminal.logdatei = 0;
    t.show("x");
    EXPECT_EQ(t.log.size(), 1U);
}

TEST(TerminalOutput, withTimeStampsTheLogGetsAChunkOnce) {
    ReceiveRig r;
    r.frmTerminal.logdatei = 1;
    r.frmTerminal.uhrzeitan = true;
    r.receive_serial("\x81\r");
    EXPECT_THAT(r.take_news(), ElementsAre("log:\xfc\r\n11:28:00"));
}

} // namespace velorn::test
