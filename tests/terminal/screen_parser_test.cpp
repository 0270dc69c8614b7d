#include "support/screen_rig.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using namespace std::string_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Cursor = std::pair<int, int>;

// A cursor sequence's row and column as the controller sends them.
std::string place(int row, int column) {
    return {static_cast<char>(row + 31), static_cast<char>(column + 31)};
}
std::string go(int row, int column) { return "\x1bY" + place(row, column); }

// ---- the grammar: from which state each character leads where ----

// One row for each of the language's: the state, the characters ("*" for all others), the state it leads to.
struct Way {
    int state;
    std::string characters; // each one of them; "*" all that no other row of the state has
    int next;
};

std::string codes(std::initializer_list<int> list) {
    std::string text;
    for (const int code : list) text += static_cast<char>(code);
    return text;
}

const Way ways[] = {
    {0, codes({27}), 1},   {0, codes({8}), 70},   {0, "*", 0},
    {1, "Y=", 2},          {1, "G", 10},          {1, ".", 40},
    {1, "@", 50},          {1, "I", 20},          {1, "T", 0},
    {1, codes({27}), 80},  {1, codes({30}), 90},  {1, codes({31}), 91},
    {1, "*", 0},           {2, "*", 3},           {3, "*", 0},
    {10, "0", 11},         {10, "4", 0},          {10, "*", 0},
    {11, codes({27}), 12}, {11, codes({8}), 70}, // again, in state 0
    {11, "*", 0},          {12, "Y=", 13},        {12, "G", 10},
    {12, ".", 40},         {12, "*", 0},          {13, "*", 14},
    {14, "*", 15},         {15, codes({27}), 16}, {15, codes({8}), 70}, // again, in state 0
    {15, "*", 0},          {16, "G", 17},         {16, ".", 40},
    {16, "*", 1},          {17, "4", 0},          {17, "0", 11},
    {17, "*", 0},          {20, codes({27}), 21}, {20, "*", 0},
    {21, "=Y", 22},        {21, "@", 30},         {21, "*", 0},
    {22, "*", 23},         {23, "*", 24},         {24, codes({27}), 25},
    {24, "%U( ", 24},      {24, "*", 0},          {25, "*", 0},
    {30, codes({27}), 31}, {30, "*", 0},          {31, "*", 0},
    {40, "3", 0},          {40, "*", 0},          {50, codes({27}), 51},
    {50, "*", 0},          {51, "I", 52},         {51, "*", 0},
    {52, codes({27}), 53}, {52, "*", 0},          {53, "@", 54},
    {53, "*", 0},          {54, codes({27}), 55}, {54, "*", 0},
    {55, "N", 56},         {55, "*", 0},          {56, codes({27}), 57},
    {56, "*", 0},          {57, "@", 58},         {57, "*", 0},
    {58, codes({27}), 59}, {58, "*", 0},          {59, "H", 60},
    {59, "*", 0},          {60, codes({27}), 61}, {60, "*", 0},
    {61, "*", 0},          {70, " ", 71},         {70, "*", 0},
    {71, "*", 0},          {80, "Q", 82},         {80, "P", 0},
    {80, "G", 81},         {80, "R", 0},          {80, "*", 0}, // "q" too, over the serial line
    {81, "108", 0},        {81, "*", 0},          {82, "0123456789 ", 82},
    {82, "*", 0},          {90, "*", 0},          {91, "*", 0},
};

bool has_own_row(int state, char c) {
    for (const Way& way : ways) {
        if (way.state == state && way.characters != "*" && way.characters.find(c) != std::string::npos)
            return true;
    }
    return false;
}

class ScreenGrammar : public testing::TestWithParam<Way> {};

TEST_P(ScreenGrammar, leadsFromStateToState) {
    const Way& way = GetParam();
    for (int code = 0; code < 256; ++code) {
        const char c = static_cast<char>(code);
        if (way.characters == "*" ? has_own_row(way.state, c) : way.characters.find(c) == std::string::npos)
            continue;
        ScreenRig r;
        r.f.fbzustand = static_cast<std::int16_t>(way.state);
        r.parser.feed({&c, 1}, false);
        EXPECT_EQ(r.state(), way.next) << "state " << way.state << ", character " << code;
    }
}

INSTANTIATE_TEST_SUITE_P(EachRow, ScreenGrammar, testing::ValuesIn(ways));

} // namespace

// ---- plain text ----

TEST(ScreenParser, storesTextAtTheCursorAndMarksIt) {
    ScreenRig r;
    r.put_cursor(3, 5);
    r.parser.feed("ab\xe4", false);
    EXPECT_EQ(r.text(3), "    ab\xe4");
    EXPECT_EQ(r.mark(5, 3), 'a');
    EXPECT_EQ(r.mark(8, 3), ' ');
    EXPECT_EQ(r.cursor(), Cursor(3, 8));
    EXPECT_EQ(r.parser.state.aenderungen, 3);
}

TEST(ScreenParser, keepsTheCursorInTheLastColumn) {
    ScreenRig r;
    r.put_cursor(1, 79);
    r.parser.feed("abcde", false);
    EXPECT_EQ(r.row(1).substr(78), "ae");
    EXPECT_EQ(r.cursor(), Cursor(1, 80));
    EXPECT_EQ(r.parser.state.aenderungen, 5);
}

TEST(ScreenParser, ignoresOtherControlCharacters) {
    ScreenRig r;
    for (const char c : "\x01\x02\x07\x09\x0a\x0b\x0c\x0e\x1c\x1d\x1f"s) r.parser.feed({&c, 1}, false);
    EXPECT_EQ(r.cursor(), Cursor(1, 1));
    EXPECT_EQ(r.parser.state.aenderungen, 0);
}

TEST(ScreenParser, clearsTheScreenAndCountsEachCell) {
    ScreenRig r;
    r.parser.feed("abc\x1bG4"
                  "d",
                  false);
    r.parser.state.aenderungen = 0;
    r.parser.state.blockmarke = true;
    r.parser.feed("\x1a", false);
    EXPECT_EQ(r.text(1), "");
    EXPECT_EQ(r.attribute(4, 1), ' ');
    EXPECT_EQ(r.mark(1, 1), ' ');
    EXPECT_EQ(r.parser.state.aenderungen, 80 * 29);
    EXPECT_FALSE(r.parser.state.blockmarke);
    EXPECT_EQ(r.cursor(), Cursor(1, 1));
}

TEST(ScreenParser, goesHome) {
    ScreenRig r;
    r.put_cursor(7, 9);
    r.parser.feed("\x1e", false);
    EXPECT_EQ(r.cursor(), Cursor(1, 1));
}

TEST(ScreenParser, goesToTheNextLineByCarriageReturnAlone) {
    ScreenRig r;
    r.put_cursor(7, 9);
    r.parser.feed("\r\n", false);
    EXPECT_EQ(r.cursor(), Cursor(8, 1));
}

TEST(ScreenParser, writesRedTextWhileRedIsOn) {
    ScreenRig r;
    r.parser.feed("\x1b\x1fmAB\x1b\x1em"
                  "C",
                  false);
    EXPECT_EQ(r.attribute(1, 1), 'r');
    EXPECT_EQ(r.attribute(2, 1), 'r');
    EXPECT_EQ(r.attribute(3, 1), ' ');
    EXPECT_EQ(r.parser.state.rotgenutzt, 1);
    EXPECT_EQ(r.parser.state.rotan, 0);
    r.parser.feed("\x1b\x1fx\x1b\x1ex", false);
    EXPECT_EQ(r.parser.state.rotan, 0);
}

TEST(ScreenParser, takesRedAndInverseAwayWhenPlainTextComes) {
    for (const bool one_by_one : {false, true}) {
        ScreenRig r;
        const std::string first = "\x1b\x1fmA\x1b\x1em\x1bG4"
                                  "B\x1bG0"
                                  "C";
        r.parser.feed(first + go(1, 1), false);
        for (const char c : "abc"s) {
            if (one_by_one) r.parser.feed({&c, 1}, false);
        }
        if (!one_by_one) r.parser.feed("abc", false);
        EXPECT_EQ(std::string({r.attribute(1, 1), r.attribute(2, 1), r.attribute(3, 1)}), "   ");
        EXPECT_EQ(r.text(1), "abc");
    }
}

TEST(ScreenParser, inverseGoesBeforeRed) {
    for (const std::string text : {"AB", "A"}) { // as a run, and alone
        ScreenRig r;
        r.parser.feed("\x1b\x1fm\x1bG4" + text, false);
        EXPECT_EQ(r.attribute(1, 1), 'I');
        // Red on an inverse cell: red alone stays.
        r.parser.state.inversan = false;
        r.parser.feed(go(1, 1) + text, false);
        EXPECT_EQ(r.attribute(1, 1), 'r');
    }
}

TEST(ScreenParser, leavesABlockInverseCellThatIsWrittenOverBlockInverse) {
    for (const std::string text : {"ab", "a"}) {
        ScreenRig r;
        r.f.schirm.set_attribute(1, 1, 'i');
        r.parser.feed(text, false);
        EXPECT_EQ(r.attribute(1, 1), 'i');
    }
}

// ---- rubbing out ----

TEST(ScreenParser, rubsOutWithBackspaceBlankBackspace) {
    ScreenRig r;
    r.parser.feed("abc", false);
    r.parser.state.aenderungen = 0;
    r.parser.feed("\b \b", false);
    EXPECT_EQ(r.text(1), "ab");
    EXPECT_EQ(r.cursor(), Cursor(1, 3));
    EXPECT_EQ(r.mark(3, 1), 'a');
    EXPECT_EQ(r.parser.state.aenderungen, 1);
}

TEST(ScreenParser, losesABackspaceAndTheCharacterBehindIt) {
    ScreenRig r;
    r.parser.feed("a\bxb", false);
    EXPECT_EQ(r.text(1), "ab");
}

TEST(ScreenParser, losesBackspaceBlankAndAnotherCharacter) {
    ScreenRig r;
    r.parser.feed("a\b xb", false);
    EXPECT_EQ(r.text(1), "ab");
}

TEST(ScreenParser, rubsOutTheFirstColumnWhereItIs) {
    ScreenRig r;
    r.parser.feed("a" + go(1, 1) + "\b \b", false);
    EXPECT_EQ(r.text(1), "");
    EXPECT_EQ(r.cursor(), Cursor(1, 1));
}

TEST(ScreenParser, rubsOutTheCharacterAlone) {
    ScreenRig r;
    r.parser.feed("\x1bG4"
                  "a\b \b",
                  false);
    EXPECT_EQ(r.attribute(1, 1), 'I');
}

// ---- the cursor ----

TEST(ScreenParser, placesTheCursorAndKeepsTheOldOne) {
    for (const std::string letter : {"Y", "="}) {
        ScreenRig r;
        r.put_cursor(4, 6);
        r.parser.feed("\x1b" + letter + place(24, 80), false);
        EXPECT_EQ(r.cursor(), Cursor(24, 80));
        EXPECT_EQ(r.parser.state.merkzeile, 4);
        EXPECT_EQ(r.parser.state.merkspalte, 6);
    }
}

TEST(ScreenParser, holdsTheCursorWithinRows1To24AndColumns1To80) {
    ScreenRig r;
    r.parser.feed("\x1bY\xff\xff", false);
    EXPECT_EQ(r.cursor(), Cursor(24, 80));
    r.parser.feed("\x1bY\x01\x01", false);
    EXPECT_EQ(r.cursor(), Cursor(1, 1));
}

TEST(ScreenParser, scrollsByFiveRowsWhenCarriageReturnsReachRow29) {
    ScreenRig r;
    for (int row = 1; row <= 28; ++row) {
        r.put_cursor(row, 1);
        r.parser.feed("row " + std::to_string(row), false);
    }
    r.f.schirm.set_attribute(3, 20, 'I');
    r.painter.paint();
    r.put_cursor(27, 5);
    r.parser.feed("\r", false);
    EXPECT_EQ(r.cursor(), Cursor(28, 1));
    r.parser.feed("\r", false);
    EXPECT_EQ(r.cursor(), Cursor(24, 1));
    EXPECT_EQ(r.text(1), "row 6");
    EXPECT_EQ(r.text(23), "row 28");
    for (int row = 24; row <= 29; ++row) EXPECT_EQ(r.text(row), "") << row;
    EXPECT_EQ(r.attribute(3, 15), 'I');
    EXPECT_EQ(r.attribute(3, 20), ' ');
    EXPECT_EQ(r.mark(80, 1), 'a');
    EXPECT_EQ(r.mark(1, 24), 'a');
    EXPECT_EQ(r.mark(1, 25), ' ');
    EXPECT_EQ(r.mark(0, 1), ' ');
    EXPECT_EQ(r.parser.state.maxzeile, 29);
    EXPECT_EQ(r.parser.state.aenderungen, 0);
}

TEST(ScreenParser, blanksTheRowBelowTheCursor) {
    ScreenRig r;
    r.put_cursor(6, 1);
    r.parser.feed("text" + go(5, 30) + "\x1bT", false);
    EXPECT_EQ(r.text(6), "");
    EXPECT_EQ(r.mark(0, 6), 'a');
    EXPECT_EQ(r.mark(80, 6), 'a');
    EXPECT_EQ(r.cursor(), Cursor(5, 30));
}

TEST(ScreenParser, blanksTheLastRowFromTheLastButOne) {
    ScreenRig r;
    r.put_cursor(28, 1);
    r.parser.feed("\x1bT", false);
    EXPECT_EQ(r.mark(80, 29), 'a');
}

TEST(ScreenParser, marksTheCursorsCellAtTheEndOfEachChunkWhileItIsShown) {
    ScreenRig r;
    r.parser.feed("\x1b.3ab", false);
    EXPECT_TRUE(r.f.cursorinv);
    EXPECT_EQ(r.attribute(3, 1), 'i');
    EXPECT_EQ(r.mark(3, 1), 'a');
    EXPECT_EQ(r.parser.state.aenderungen, 3);
    r.painter.paint();
    r.parser.feed("c", false);
    EXPECT_EQ(r.attribute(3, 1), ' ');
    EXPECT_EQ(r.mark(3, 1), 'a');
    EXPECT_EQ(r.attribute(4, 1), 'i');
    r.parser.feed("", false);
    EXPECT_EQ(r.attribute(4, 1), 'i');
    r.parser.feed("\x1b.0", false);
    EXPECT_FALSE(r.f.cursorinv);
    EXPECT_EQ(r.attribute(4, 1), 'i'); // goes with the next invloeschen
}

// ---- inverse ----

TEST(ScreenParser, writesInverseTextWhileInverseIsOn) {
    ScreenRig r;
    r.parser.feed("\x1bG4"
                  "ab\x1bG0"
                  "c",
                  false);
    EXPECT_EQ(std::string({r.attribute(1, 1), r.attribute(2, 1), r.attribute(3, 1)}), "II ");
    EXPECT_EQ(r.text(1), "abc");
    EXPECT_FALSE(r.parser.state.inversan);
}

TEST(ScreenParser, removesBlockInverseWithTheCharacterBehindInverseOff) {
    ScreenRig r;
    r.f.schirm.set_attribute(70, 20, 'i');
    r.f.schirm.set_attribute(10, 20, 'I');
    r.parser.state.blockmarke = true;
    r.parser.state.rotgenutzt = 1;
    r.parser.feed("\x1bG0", false);
    EXPECT_EQ(r.attribute(70, 20), 'i');
    r.parser.feed("x", false);
    EXPECT_EQ(r.text(1), "x");
    EXPECT_EQ(r.attribute(70, 20), ' ');
    EXPECT_EQ(r.mark(70, 20), 'a');
    EXPECT_EQ(r.attribute(10, 20), 'I');
    EXPECT_FALSE(r.parser.state.blockmarke);
    EXPECT_EQ(r.parser.state.rotgenutzt, 0);
    EXPECT_EQ(r.parser.state.aenderungen, 1);
}

TEST(ScreenParser, removesBlockInverseOnEveryWayOutOfItsStatesThatSaysSo) {
    struct Case {
        int state;
        char c;
        bool removes;
    };
    constexpr Case cases[] = {{11, 'x', true},  {11, 27, false}, {12, 'Y', false}, {12, 'G', true},
                              {12, '.', true},  {12, 'x', true}, {15, 'x', true},  {15, 27, false},
                              {16, 'G', false}, {16, '.', true}, {16, 'x', true},  {17, '0', true},
                              {17, 'x', false}, {30, 27, true},  {30, 'x', false}};
    for (const Case& one : cases) {
        ScreenRig r;
        r.f.schirm.set_attribute(5, 5, 'i');
        r.f.fbzustand = static_cast<std::int16_t>(one.state);
        r.parser.feed({&one.c, 1}, false);
        EXPECT_EQ(r.attribute(5, 5) == ' ', one.removes) << one.state << ' ' << one.c;
    }
}

TEST(ScreenParser, readsWhatEndsABlockSequenceOnceMoreAsText) {
    ScreenRig r;
    r.parser.feed("\x1bG0\x1bY" + place(2, 3) + "x", false);
    EXPECT_EQ(r.text(2), "  x");
    r.parser.feed("\x1bG0\x1bY" + place(2, 3) + "\r", false);
    EXPECT_EQ(r.cursor(), Cursor(3, 1));
}

TEST(ScreenParser, dropsACharacterAndReadsTheNextAsBehindAnEscape) {
    ScreenRig r;
    r.parser.feed("\x1bG0\x1bY" + place(2, 3) + "\x1bxY" + place(9, 9), false);
    EXPECT_EQ(r.cursor(), Cursor(9, 9));
    EXPECT_EQ(r.text(2), "");
}

TEST(ScreenParser, marksARunOfBlockInverseCellsUpToWhereTheCursorWas) {
    ScreenRig r;
    r.put_cursor(5, 20);
    r.parser.feed("\x1bG0\x1bY" + place(5, 9) + "\x1bG4", false);
    EXPECT_EQ(r.attribute(9, 5), ' ');
    for (int column = 10; column <= 19; ++column) EXPECT_EQ(r.attribute(column, 5), 'i') << column;
    EXPECT_EQ(r.attribute(20, 5), ' ');
    EXPECT_EQ(r.parser.state.aenderungen, 10);
    EXPECT_TRUE(r.parser.state.blockmarke);
    EXPECT_EQ(r.cursor(), Cursor(5, 9));
    EXPECT_FALSE(r.parser.state.inversan);
}

TEST(ScreenParser, marksOneCellAtLeast) {
    ScreenRig r;
    r.put_cursor(5, 2);
    r.parser.feed("\x1bG0\x1bY" + place(5, 30) + "\x1bG4", false);
    EXPECT_EQ(r.attribute(31, 5), 'i');
    EXPECT_EQ(r.parser.state.aenderungen, 1);
}

TEST(ScreenParser, beginsARunNearTheEdgeInTheFirstColumn) {
    struct Case {
        int column, kept;
        bool from_first;
    };
    constexpr Case cases[] = {{2, 9, true}, {2, 8, false}, {3, 9, false}, {1, 40, true}};
    for (const Case& one : cases) {
        ScreenRig r;
        r.put_cursor(5, one.kept);
        r.parser.feed("\x1bG0\x1bY" + place(5, one.column) + "\x1bG4", false);
        EXPECT_EQ(r.attribute(1, 5) == 'i', one.from_first) << one.column << ' ' << one.kept;
        EXPECT_EQ(r.attribute(one.column + 1, 5), 'i');
    }
}

TEST(ScreenParser, countsMarksBeyondTheLastColumnWithoutStoringThem) {
    ScreenRig r;
    r.put_cursor(5, 1);
    r.parser.feed("\x1bG0\x1bY" + place(5, 80) + "\x1bG4", false);
    EXPECT_EQ(r.parser.state.aenderungen, 1);
    EXPECT_EQ(r.attribute(80, 5), ' ');
}

// ---- bars ----

TEST(ScreenParser, drawsABarAndGoesBackToWhereTheCursorWas) {
    for (const char letter : "%U("s) {
        ScreenRig r;
        r.put_cursor(3, 3);
        r.parser.feed("\x1bI\x1b=" + place(10, 5) + std::string(3, letter) + " \x1bx", false);
        EXPECT_EQ(std::string({r.attribute(5, 10), r.attribute(7, 10), r.attribute(8, 10)}), "ii ");
        EXPECT_EQ(r.mark(8, 10), 'a');
        EXPECT_EQ(r.parser.state.aenderungen, 4);
        EXPECT_EQ(r.cursor(), Cursor(3, 3));
        EXPECT_EQ(r.state(), 0);
        EXPECT_EQ(r.text(3), "");
    }
}

TEST(ScreenParser, leavesTheCursorBehindABarThatSomethingElseEnds) {
    ScreenRig r;
    r.parser.feed("\x1bI\x1bY" + place(10, 5) + "%%x", false);
    EXPECT_EQ(r.cursor(), Cursor(10, 7));
}

TEST(ScreenParser, countsABarsMarksBeyondTheLastColumnWithoutStoringThem) {
    ScreenRig r;
    r.parser.feed("\x1bI\x1b=" + place(10, 79) + "%% %", false);
    EXPECT_EQ(std::string({r.attribute(79, 10), r.attribute(80, 10)}), "ii");
    EXPECT_EQ(r.parser.state.aenderungen, 4);
    EXPECT_EQ(r.cursor(), Cursor(10, 80));
}

// ---- new screen, calendar ----

TEST(ScreenParser, beginsANewScreenAtItsSecondEscape) {
    ScreenRig r;
    r.parser.feed("abc", false);
    r.parser.state.kalender = true;
    r.parser.feed("\x1b@", false);
    EXPECT_EQ(r.text(1), "abc");
    r.parser.feed("\x1b", false);
    EXPECT_EQ(r.text(1), "");
    EXPECT_FALSE(r.parser.state.kalender);
    EXPECT_EQ(r.cursor(), Cursor(1, 1));
    EXPECT_EQ(r.parser.state.aenderungen, 3 + 80 * 29);
    r.parser.feed("I\x1b@\x1bN\x1b@\x1bH\x1bxy", false);
    EXPECT_EQ(r.text(1), "y");
    EXPECT_THAT(r.asked, ElementsAre("new screen"));
}

TEST(ScreenParser, beginsTheCalendar) {
    ScreenRig r;
    r.parser.feed("\x1b\x1bG8x", false);
    EXPECT_TRUE(r.parser.state.kalender);
    EXPECT_THAT(r.asked, ElementsAre("calendar"));
    EXPECT_EQ(r.text(1), "x");
}

// ---- what the stream asks of others ----

TEST(ScreenParser, startsACaptureUnlessTheScannerHas) {
    ScreenRig r;
    r.parser.feed("\x1b\x1bP", false);
    EXPECT_THAT(r.asked, ElementsAre("capture"));
    r.asked.clear();
    r.parser.feed("\x1b\x1bP", false, true);
    EXPECT_THAT(r.asked, IsEmpty());
    r.parser.feed("\x1b\x1bP\x1b\x1bP", false, true);
    EXPECT_THAT(r.asked, ElementsAre("capture"));
}

TEST(ScreenParser, asksForTheLogFileAndTellsTheLink) {
    ScreenRig r;
    r.parser.feed("\x1b\x1bR", false);
    r.parser.feed("\x1b\x1bR", true);
    EXPECT_THAT(r.asked, ElementsAre("log", "log over tcp"));
}

TEST(ScreenParser, asksForTheEvaluationOverTcpAloneAndStaysInItsState) {
    ScreenRig r;
    r.parser.feed("\x1b\x1bq", false);
    EXPECT_THAT(r.asked, IsEmpty());
    EXPECT_EQ(r.state(), 0);
    r.parser.feed("\x1b\x1bq", true);
    EXPECT_EQ(r.state(), 80);
    r.parser.feed("q", true);
    EXPECT_THAT(r.asked, ElementsAre("evaluation", "evaluation"));
}

TEST(ScreenParser, setsTheStateBeforeTheActionRuns) {
    ScreenRig r;
    r.parser.screen_events.log_wanted.connect([&r](bool) {
        EXPECT_EQ(r.state(), 0);
        r.parser.feed("new", false);
    });
    r.parser.feed("a\x1b\x1bRb", false);
    EXPECT_EQ(r.text(1), "anewb");
}

TEST(ScreenParser, stopsWhenTheProgramEndsInsideAnAction) {
    ScreenRig r;
    r.parser.screen_events.log_wanted.connect([&r](bool) { r.loop.end(); });
    r.parser.feed("a\x1b\x1bRb", false);
    EXPECT_EQ(r.text(1), "a");
}

TEST(ScreenParser, collectsADayGraphsTextWithItsEndingSequence) {
    ScreenRig r;
    r.parser.feed("\x1b\x1bG1ab\x1bG0c\x1b", false);
    r.parser.feed("\x1bG0d", false);
    EXPECT_THAT(r.asked, ElementsAre("graph:ab\x1bG0c\x1b\x1bG0"));
    EXPECT_EQ(r.f.txttograph96, "");
    EXPECT_EQ(r.text(1), "abcd"); // kept: it stands on the screen too
    r.parser.feed("\x1b\x1bG0", false);
    EXPECT_EQ(r.asked.size(), 1U);
}

TEST(ScreenParser, keepsOfADayGraphNoMoreThanItsLimit) {
    ScreenRig r;
    r.parser.feed("\x1b\x1bG1", false);
    for (int i = 0; i < 20; ++i) r.parser.feed(std::string(10'000, 'x'), false);
    EXPECT_EQ(r.f.txttograph96.size(), ScreenParser::longest_graph_text);
}

// ---- line commands ----

TEST(ScreenParser, drawsALineAtItsThirteenthDigit) {
    ScreenRig r;
    r.parser.state.aenderungen = 7;
    r.parser.feed("\x1b\x1bQ000000999500", false);
    EXPECT_THAT(r.strokes(), IsEmpty());
    EXPECT_EQ(r.parser.state.rx2, 999);
    EXPECT_EQ(r.parser.state.ry2, 500);
    r.parser.feed("1", false);
    // 12 * 1.2 = 14.4; 19 * 1.1 = 20.9; 0.999 * 12 * 40 + 14.4 = 493.92; 0.5 * 19 * 16 + 20.9 = 172.9
    EXPECT_THAT(r.strokes(), ElementsAre("line 14 21 494 173 #ffff00"));
    EXPECT_EQ(r.parser.state.aenderungen, 0);
    EXPECT_EQ(r.state(), 0);
}

TEST(ScreenParser, takesABlankForAZeroInALineCommand) {
    ScreenRig r;
    r.parser.feed("\x1b\x1bQ  0 0099 5001", false);
    EXPECT_EQ(r.parser.state.rx1, 0);
    EXPECT_EQ(r.parser.state.rx2, 990);
    EXPECT_EQ(r.parser.state.ry2, 500);
}

TEST(ScreenParser, rubsALineOutInTheGroundsColour) {
    for (const char art : "023456789"s) {
        ScreenRig r;
        r.parser.feed("\x1b\x1bQ000000999500"s + art, false);
        EXPECT_THAT(r.strokes(), ElementsAre("line 14 21 494 173 #0000c0")) << art;
    }
}

TEST(ScreenParser, widensALineThatIsAPoint) {
    ScreenRig r;
    r.parser.feed("\x1b\x1bQ0000000000001", false);
    EXPECT_THAT(r.strokes(), ElementsAre("line 14 20 14 22 #ffff00"));
}

TEST(ScreenParser, widensALineOnlyWhenBothEndsAreTheSame) {
    ScreenRig r;
    r.parser.feed("\x1b\x1bQ0000005000001", false);
    EXPECT_THAT(r.strokes(), ElementsAre("line 14 21 254 21 #ffff00"));
}

TEST(ScreenParser, givesALineCommandUpAtAnythingElse) {
    ScreenRig r;
    r.parser.feed("\x1b\x1bQ12345x6789", false);
    EXPECT_EQ(r.state(), 0);
    EXPECT_EQ(r.text(1), "6789");
    r.parser.feed("\x1b\x1bQ", false);
    EXPECT_EQ(r.parser.state.linienpos, 0);
    EXPECT_EQ(r.parser.state.rx1, 0);
}

// ---- chunks ----

TEST(ScreenParser, goesOnInTheNextChunkWithASequenceThatWasCut) {
    const std::string stream = "\x1bY" + place(3, 4) +
                               "\x1bG4"
                               "x\x1b\x1bQ0000005000001\b \b";
    ScreenRig whole;
    whole.parser.feed(stream, false);
    ScreenRig cut;
    for (const char c : stream) cut.parser.feed({&c, 1}, false);
    EXPECT_EQ(cut.text(3), whole.text(3));
    EXPECT_EQ(cut.cursor(), whole.cursor());
    EXPECT_EQ(cut.state(), whole.state());
    EXPECT_EQ(cut.strokes(), whole.strokes());
}

} // namespace velorn::test
