#include "support/screen_rig.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using namespace std::string_literals;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

std::size_t count_of(const std::vector<std::string>& strokes, std::string_view what) {
    return static_cast<std::size_t>(std::ranges::count_if(
        strokes, [what](const std::string& stroke) { return stroke.starts_with(what); }));
}

} // namespace

TEST(ScreenPainter, paintsAChangedCellOnItsGround) {
    ScreenRig r;
    r.put_cursor(3, 5);
    r.feed("A");
    EXPECT_THAT(r.strokes(),
                ElementsAre("box 59 57 72 77 #0000c0", "text 60 57 'A' Courier 14 in 12x19 #ffff00"));
    EXPECT_EQ(r.mark(5, 3), ' ');
    EXPECT_EQ(r.parser.state.aenderungen, 0);
    r.feed("");
    EXPECT_THAT(r.strokes(), IsEmpty());
}

TEST(ScreenPainter, invertsInverseAndBlockInverseCells) {
    for (const char attribute : "iI"s) {
        ScreenRig r;
        r.f.schirm.set_attribute(5, 3, attribute);
        r.f.schirm.set_mark(5, 3);
        r.feed("");
        EXPECT_THAT(r.strokes(), ElementsAre("box 59 57 72 77 #0000c0", "invert 60 58 72 77"));
    }
}

TEST(ScreenPainter, shiftsTheInverseBoxByItsCorrection) {
    for (const auto& [correction, stroke] :
         {std::pair{3, "invert 63 61 75 80"}, std::pair{-5, "invert 55 53 67 72"}}) {
        ScreenRig r;
        r.settings.korrinv = static_cast<std::int16_t>(correction);
        r.f.schirm.set_attribute(5, 3, 'I');
        r.f.schirm.set_mark(5, 3);
        r.feed("");
        EXPECT_THAT(r.strokes(), Contains(stroke));
    }
}

TEST(ScreenPainter, paintsUpTo150ChangesOneByOne) {
    ScreenRig r;
    r.feed(std::string(80, 'x') + "\r" + std::string(70, 'x'));
    const auto strokes = r.strokes();
    EXPECT_EQ(count_of(strokes, "clear"), 0U);
    EXPECT_EQ(count_of(strokes, "box"), 150U);
    EXPECT_EQ(count_of(strokes, "text"), 150U);
}

TEST(ScreenPainter, paintsEverythingFrom151ChangesOnWithoutGroundBoxes) {
    ScreenRig r;
    r.f.schirm.set_character(80, 29, 'z'); // not marked
    r.feed(std::string(80, 'x') + "\r" + std::string(71, 'x'));
    const auto strokes = r.strokes();
    EXPECT_EQ(strokes.front(), "clear #0000c0");
    EXPECT_EQ(count_of(strokes, "box"), 0U);
    EXPECT_EQ(count_of(strokes, "text"), 152U);
    EXPECT_EQ(strokes.back(), "text 960 551 'z' Courier 14 in 12x19 #ffff00");
    EXPECT_EQ(r.mark(1, 1), ' ');
    r.feed("");
    EXPECT_THAT(r.strokes(), IsEmpty());
}

TEST(ScreenPainter, countsChangesNotCells) {
    ScreenRig r;
    r.feed(std::string(151, 'x')); // 79 cells, and the last one 72 times
    EXPECT_EQ(r.strokes().front(), "clear #0000c0");
}

TEST(ScreenPainter, paintsRedOnlyWhileRedWasUsed) {
    ScreenRig r;
    r.feed("\x1b\x1fmA\x1b\x1em"
           "B");
    auto strokes = r.strokes();
    EXPECT_THAT(strokes, Contains("text 12 19 'A' Courier 14 in 12x19 #ff0000"));
    EXPECT_THAT(strokes, Contains("text 24 19 'B' Courier 14 in 12x19 #ffff00"));
    r.parser.state.rotgenutzt = 0;
    r.f.schirm.set_mark(1, 1);
    r.feed("");
    EXPECT_THAT(r.strokes(), Contains("text 12 19 'A' Courier 14 in 12x19 #ffff00"));
}

TEST(ScreenPainter, drawsALineBeforeTheCellsOfItsChunk) {
    ScreenRig r;
    r.feed("A\x1b\x1bQ0000005000001");
    EXPECT_THAT(r.strokes(), ElementsAre(StartsWith("line"), StartsWith("box"), StartsWith("text")));
}

TEST(ScreenPainter, paintsANewPictureWithItsLines) {
    ScreenRig r;
    r.feed("A\x1b\x1bQ0000005000001");
    (void)r.strokes();
    r.f.Picture1.Paint();
    EXPECT_THAT(r.strokes(),
                ElementsAre("clear #0000c0", StartsWith("text 12 19 'A'"), StartsWith("line 14 21")));
    r.feed(std::string(151, 'x'));
    (void)r.strokes();
    r.painter.paint_anew();
    EXPECT_EQ(count_of(r.strokes(), "line"), 0U);
}

TEST(ScreenPainter, keepsABoundedNumberOfLines) {
    ScreenRig r;
    for (std::size_t i = 0; i < ScreenPainter::most_lines + 10; ++i) r.feed("\x1b\x1bQ0000005000001");
    (void)r.strokes();
    r.painter.paint_anew();
    EXPECT_EQ(count_of(r.strokes(), "line"), ScreenPainter::most_lines);
}

TEST(ScreenPainter, losesNothingWhileNoPictureIsThere) {
    ScreenRig r;
    r.f.Picture1.canvas = nullptr;
    r.feed("A\x1b\x1bQ0000005000001" + std::string(200, 'x'));
    r.feed("\x1b\x1bQ0000005000001");
    r.f.Picture1.canvas = &r.canvas;
    r.f.Picture1.Paint();
    const auto strokes = r.strokes();
    EXPECT_THAT(strokes, Contains(StartsWith("text 12 19 'A'")));
    EXPECT_EQ(count_of(strokes, "line"), 1U);
}

TEST(ScreenPainter, forgetsWhatThePictureWasClearedOf) {
    for (const bool there : {true, false}) { // also while no picture is there
        ScreenRig r;
        if (!there) r.f.Picture1.canvas = nullptr;
        r.feed("A" + std::string(200, 'x') + "\x1b\x1bQ0000005000001");
        r.f.Picture1.Cls();
        r.put_cursor(3, 5);
        r.feed("B");
        r.f.Picture1.canvas = &r.canvas;
        (void)r.strokes();
        r.f.Picture1.Paint();
        EXPECT_THAT(r.strokes(), ElementsAre("clear #0000c0", StartsWith("text 60 57 'B'")));
    }
}

TEST(ScreenPainter, paintsAllOfTheScreenAgainOnceManyCellsChange) {
    ScreenRig r;
    r.put_cursor(9, 9);
    r.feed("A");
    r.f.Picture1.Cls();
    r.put_cursor(1, 1);
    r.feed(std::string(151, 'x'));
    EXPECT_THAT(r.strokes(), Contains(StartsWith("text 108 171 'A'")));
    r.painter.paint_anew();
    EXPECT_THAT(r.strokes(), Contains(StartsWith("text 108 171 'A'")));
}

TEST(ScreenPainter, paintsAScrolledScreenCellByCell) {
    ScreenRig r;
    r.put_cursor(28, 1);
    r.feed("x");
    (void)r.strokes();
    r.feed("\r");
    const auto strokes = r.strokes();
    EXPECT_EQ(count_of(strokes, "clear"), 0U);
    EXPECT_EQ(count_of(strokes, "box"), 24U * 80U);
    EXPECT_EQ(count_of(strokes, "text"), 1U);
    EXPECT_THAT(strokes, Contains(StartsWith("text 12 437 'x'"))); // row 23
}

TEST(ScreenPainter, paintsCellByCellBehindALineHoweverMuchChanged) {
    ScreenRig r;
    r.feed(std::string(151, 'x') + "\x1b\x1bQ0000005000001A");
    const auto strokes = r.strokes();
    EXPECT_THAT(strokes.front(), StartsWith("line"));
    EXPECT_EQ(count_of(strokes, "line"), 1U);
    EXPECT_EQ(count_of(strokes, "clear"), 0U);
    EXPECT_EQ(count_of(strokes, "box"), 80U);
}

TEST(ScreenPainter, drawsASingleLineAndItsOneCellWithoutClearing) {
    ScreenRig r;
    r.put_cursor(2, 2);
    r.feed("\x1b\x1bQ0000005000001A");
    EXPECT_THAT(r.strokes(), ElementsAre("line 14 21 254 21 #ffff00", "box 23 38 36 58 #0000c0",
                                         "text 24 38 'A' Courier 14 in 12x19 #ffff00"));
}

TEST(ScreenPainter, roundsALinesPlaceHalfToEven) {
    ScreenRig r;
    r.f.zeilenhoehe = 15; // 15 x 1.1 = 16.5; 0.125 x 15 x 16 + 16.5 = 46.5
    r.feed("\x1b\x1bQ0000005001251");
    EXPECT_THAT(r.strokes(), ElementsAre("line 14 16 254 46 #ffff00"));
}

TEST(ScreenPainter, scalesALineByTheCellsThatThereAreNow) {
    ScreenRig r;
    r.feed("\x1b\x1bQ0000000000001\x1b\x1bQ0000005000000");
    (void)r.strokes();
    r.f.zeichenbreite = 18;
    r.f.zeilenhoehe = 29;
    r.f.Picture1.Paint();
    EXPECT_THAT(r.strokes(),
                ElementsAre("clear #0000c0", "line 22 31 22 33 #ffff00", "line 22 32 382 32 #0000c0"));
}

} // namespace velorn::test
