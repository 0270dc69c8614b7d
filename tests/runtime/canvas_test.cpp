#include "runtime/canvas.h"

#include <gtest/gtest.h>

namespace velorn {
namespace {

using Strokes = std::vector<std::string>;

TEST(RecorderCanvas, keepsALineOfWordsForEachStrokeInOrder) {
    RecorderCanvas canvas;
    canvas.clear(colour::white);
    canvas.line(0, 0, 10, -5, colour::blue);
    canvas.box(1, 2, 3, 4, colour::rgb(1, 35, 69));
    canvas.invert(5, 6, 7, 8);
    canvas.text(5, 7, "Vorlauf", {"Courier", 12.5}, colour::black);
    EXPECT_EQ(canvas.strokes(), (Strokes{"clear #ffffff", "line 0 0 10 -5 #0000ff", "box 1 2 3 4 #012345",
                                         "invert 5 6 7 8", "text 5 7 'Vorlauf' Courier 12,5 #000000"}));
}

TEST(RecorderCanvas, tellsTheCellThatACharacterStandsIn) {
    RecorderCanvas canvas;
    canvas.text(1, 2, "x", {"Courier", 14, 12, 19}, colour::black);
    EXPECT_EQ(canvas.strokes(), Strokes{"text 1 2 'x' Courier 14 in 12x19 #000000"});
}

TEST(RecorderCanvas, tellsABoldFontAndKeepsQuietAboutItsPitch) {
    RecorderCanvas canvas;
    canvas.text(1, 2, "x", {.name = "Courier", .points = 14, .proportional = true, .bold = true},
                colour::black);
    EXPECT_EQ(canvas.strokes(), Strokes{"text 1 2 'x' Courier 14 bold #000000"});
}

TEST(RecorderCanvas, forgets) {
    RecorderCanvas canvas;
    canvas.clear(colour::red);
    canvas.forget();
    canvas.clear(colour::green);
    EXPECT_EQ(canvas.strokes(), Strokes{"clear #00ff00"});
}

TEST(PictureBox, isClearedInItsOwnColour) {
    RecorderCanvas canvas;
    PictureBox picture;
    picture.BackColor = colour::rgb(192, 192, 255);
    picture.Cls(); // no canvas yet: lost in silence
    picture.canvas = &canvas;
    picture.Cls();
    EXPECT_EQ(canvas.strokes(), Strokes{"clear #c0c0ff"});
}

} // namespace
} // namespace velorn
