#include "evaluation/chart_surface.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

using testing::ElementsAre;

namespace {

struct Surface : testing::Test {
    RecorderCanvas canvas;
    ChartSurface surface;

    void on_screen() { surface.draw_on(&canvas, false); }
    void on_paper() { surface.draw_on(&canvas, true); }
};

} // namespace

TEST_F(Surface, turnsTheScreenUpsideDown) {
    on_screen();
    surface.zeichnelinie(80, 40, 100, 540, colour::blue);
    EXPECT_THAT(canvas.strokes(), ElementsAre("line 80 510 100 10 #0000ff"));
}

TEST_F(Surface, drawsALineOnPaperWithSixStrokes) {
    on_paper();
    surface.zeichnelinie(80, 40, 100, 40, colour::red);
    EXPECT_THAT(canvas.strokes(),
                ElementsAre("line 1740 7500 2075 7500 #ff0000", "line 1740 7501 2075 7501 #ff0000",
                            "line 1740 7502 2075 7502 #ff0000", "line 1740 7503 2075 7503 #ff0000",
                            "line 1740 7504 2075 7504 #ff0000", "line 1740 7505 2075 7505 #ff0000"));
}

TEST_F(Surface, writesBoldFromElevenPointsOn) {
    on_screen();
    surface.setzeposition(150, 22);
    surface.schreibetext("Titel", 12);
    surface.setzeposition(77, 37);
    surface.schreibetext("0", 8);
    surface.schreibetext("elf", 11);
    EXPECT_THAT(canvas.strokes(),
                ElementsAre("text 150 528 'Titel'  12 bold #000000", "text 77 513 '0'  8 #000000",
                            "text 77 513 'elf'  11 bold #000000"));
}

TEST_F(Surface, writesOnPaperWhereThePrinterCounts) {
    on_paper();
    surface.setzeposition(80, 40);
    surface.schreibetext("x", 8);
    EXPECT_THAT(canvas.strokes(), ElementsAre("text 1740 7500 'x'  8 #000000"));
}

TEST_F(Surface, dotsEveryFourthUnitOfTheLongerAxis) {
    on_screen();
    surface.zeichnestrich(80, 40, 80, 48);
    EXPECT_THAT(canvas.strokes(), ElementsAre("line 80 510 80 509 #808080", "line 80 506 80 505 #808080",
                                              "line 80 502 80 501 #808080"));
    canvas.forget();
    surface.zeichnestrich(80, 140, 88, 142);
    EXPECT_THAT(canvas.strokes(), ElementsAre("line 80 410 81 410 #808080", "line 84 409 85 409 #808080",
                                              "line 88 408 89 408 #808080"));
}

TEST_F(Surface, dotsBackwardsToo) {
    on_screen();
    surface.zeichnestrich(100, 50, 100, 44);
    EXPECT_THAT(canvas.strokes(),
                ElementsAre("line 100 500 100 501 #808080", "line 100 504 100 505 #808080"));
}

TEST_F(Surface, hasAtLeastOneDotLength) {
    on_screen();
    surface.zeichnestrich(10, 10, 11, 12);
    EXPECT_THAT(canvas.strokes(), ElementsAre("line 10 540 10 539 #808080", "line 11 536 11 535 #808080"));
}

TEST_F(Surface, drawsNothingWithoutACanvas) {
    surface.draw_on(nullptr, false);
    surface.zeichnelinie(0, 0, 1, 1, colour::red);
    surface.schreibetext("x", 8);
    EXPECT_TRUE(canvas.strokes().empty());
}

} // namespace velorn::test
