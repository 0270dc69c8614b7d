// Lines: that they stand where they should, that thinning them changes no pixel, and that nothing of a
// waiting stroke is lost.
#include "desktop/image_canvas.h"
#include "desktop/style.h"
#include "desktop/text_rim.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string>

namespace velorn::test {

namespace {

constexpr QRgb white = 0xFFFFFFFF;
constexpr QRgb black = 0xFF000000;
constexpr int far_away = 2'000'000'000;

struct Scales {
    double x, y;
};
constexpr std::array<Scales, 7> scales{
    {{1, 1}, {1.37, 1.37}, {2, 2}, {2.74, 1.9}, {0.03, 1.5}, {0.6, 4.6}, {3.5, 3}}};

int ink(const QImage& image, QRgb ground = white) {
    int pixels = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) pixels += image.pixel(x, y) != ground ? 1 : 0;
    }
    return pixels;
}

// Every step of the line with the whole brush, pixel by pixel.
void stamp(QImage& image, int x1, int y1, int x2, int y2, int thick) {
    const bool steep = std::abs(y2 - y1) > std::abs(x2 - x1);
    if (steep ? y1 > y2 : x1 > x2) {
        std::swap(x1, x2);
        std::swap(y1, y2);
    }
    const int steps = steep ? y2 - y1 : x2 - x1;
    const int rise = steep ? x2 - x1 : y2 - y1;
    for (int i = 0; i <= steps; ++i) {
        const double share = steps == 0 ? 0 : double(i) * std::abs(rise) / steps;
        const int across = static_cast<int>(std::floor(share + 0.5)) * (rise < 0 ? -1 : 1);
        const QPoint at = steep ? QPoint(x1 + across, y1 + i) : QPoint(x1 + i, y1 + across);
        for (int dx = 0; dx < thick; ++dx) {
            for (int dy = 0; dy < thick; ++dy) {
                if (image.rect().contains(at + QPoint(dx, dy))) image.setPixel(at + QPoint(dx, dy), black);
            }
        }
    }
}

// Curves as a chart draws them: many samples in a column, gaps, colours in turn, and now and then something
// else in between.
template <class After>
void draw_curves(ImageCanvas& canvas, unsigned seed, double scale_x, After after) {
    std::mt19937 random(seed);
    const auto below = [&random](int limit) { return static_cast<int>(random() % unsigned(limit)); };
    const std::array<Colour, 4> colours{colour::red, colour::blue, colour::black, colour::rgb(0, 128, 0)};
    const int columns = static_cast<int>(70 / scale_x);
    for (int curve = 0; curve < 6; ++curve) {
        int x = below(20) - 20;
        int y = below(80);
        while (x < columns) {
            const int next_x = below(8) == 0 ? x + 1 : x;
            const int next_y = y + below(13) - 6 + (below(40) == 0 ? below(200) - 100 : 0);
            const Colour colour = colours[static_cast<std::size_t>(below(50) == 0 ? below(4) : curve % 4)];
            if (below(30) == 0) {
                x = next_x; // a gap
            } else if (below(60) == 0) {
                canvas.invert(x, y, x + 3, y + 4);
            } else {
                canvas.line(x, y, next_x, next_y, colour);
            }
            after();
            x = next_x;
            y = next_y;
        }
    }
}

} // namespace

TEST(ImageCanvasLines, standOnTheSamePixelsThinnedOrDrawnAtOnce) {
    for (const Scales scale : scales) {
        for (unsigned seed = 1; seed <= 12; ++seed) {
            const int width = static_cast<int>(60 / scale.x);
            ImageCanvas thinned(width, 70, scale.x, scale.y);
            ImageCanvas plain(width, 70, scale.x, scale.y);
            draw_curves(thinned, seed, scale.x, [] {});
            draw_curves(plain, seed, scale.x, [&plain] { (void)plain.image(); });
            ASSERT_EQ(thinned.image(), plain.image()) << scale.x << " x " << scale.y << ", seed " << seed;
            ASSERT_GT(ink(plain.image()), 50);
        }
    }
}

TEST(ImageCanvasLines, areTheWholeBrushAtEveryStepWhereverTheyAreCutOff) {
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        const int thick = 1 + round % 3;
        const int reach = round % 2 == 0 ? 60 : 400;
        const auto anywhere = [&] { return static_cast<int>(random() % unsigned(2 * reach)) - reach + 15; };
        const std::array<int, 4> at{anywhere(), anywhere(), anywhere(), anywhere()};
        ImageCanvas canvas(40 / thick, 30 / thick, thick);
        canvas.line(at[0], at[1], at[2], at[3], colour::black);
        QImage expected(canvas.image().size(), QImage::Format_RGB32);
        expected.fill(white);
        stamp(expected, at[0] * thick, at[1] * thick, at[2] * thick, at[3] * thick, thick);
        ASSERT_EQ(canvas.image(), expected) << at[0] << ' ' << at[1] << ' ' << at[2] << ' ' << at[3];
    }
}

TEST(ImageCanvasLines, mayEndFarAway) {
    ImageCanvas canvas(20, 20, 1);
    canvas.line(-far_away, -far_away, far_away, far_away, colour::black);
    EXPECT_EQ(ink(canvas.image()), 20);
    EXPECT_EQ(canvas.image().pixel(7, 7), black);
    canvas.line(3, -far_away, 3, far_away, colour::black);
    canvas.line(far_away, 4, -far_away, 4, colour::black);
    EXPECT_EQ(ink(canvas.image()), 20 + 2 * 19 - 1);
}

TEST(ImageCanvasLines, farAwayLeaveThePictureAlone) {
    ImageCanvas canvas(20, 20, 2.5, 700);
    for (const int x : {-far_away, far_away, -30, 21}) {
        canvas.line(x, -far_away, x, far_away, colour::black);
        canvas.line(x, 3, x + (x < 0 ? -5 : 5), far_away, colour::black);
        canvas.line(-far_away, x, far_away, x, colour::black);
    }
    EXPECT_FALSE(canvas.is_touched());
    EXPECT_EQ(ink(canvas.image()), 0);
}

TEST(ImageCanvasLines, areAsThickAsTheSmallerScale) {
    ImageCanvas canvas(20, 20, 4, 2.2);
    canvas.line(5, 5, 5, 9, colour::black);
    EXPECT_EQ(ink(canvas.image()), 2 * (20 - 11 + 2)); // rows 11 to 21, columns 20 and 21
    EXPECT_EQ(canvas.image().pixel(20, 11), black);
    EXPECT_EQ(canvas.image().pixel(21, 21), black);
}

TEST(ImageCanvasLines, neighbouringColumnsOfOneColourTouchAtEveryScale) {
    for (const Scales scale : scales) {
        ImageCanvas canvas(60, 20, scale.x, scale.y);
        for (int x = 10; x < 50; ++x) canvas.line(x, 5, x, 15, colour::red);
        const QImage& image = canvas.image();
        const int row = static_cast<int>(10 * scale.y);
        for (int x = static_cast<int>(11 * scale.x); x < static_cast<int>(49 * scale.x); ++x)
            ASSERT_EQ(image.pixel(x, row), qRgb(255, 0, 0)) << scale.x << " x " << scale.y << " at " << x;
    }
}

TEST(ImageCanvasLines, columnsThatAreNoNeighboursStayApart) {
    ImageCanvas canvas(60, 20, 1.6, 1);
    canvas.line(10, 2, 10, 8, colour::red);
    canvas.line(11, 12, 11, 18, colour::red); // beside it, and below
    canvas.line(20, 2, 20, 18, colour::red);
    canvas.line(21, 2, 21, 18, colour::blue);
    canvas.line(30, 2, 30, 18, colour::red);
    canvas.line(32, 2, 32, 18, colour::red);
    EXPECT_EQ(ink(canvas.image()), 7 + 7 + 4 * 17);
}

TEST(ImageCanvasLines, touchNothingThatWasCleared) {
    ImageCanvas canvas(60, 20, 2.74, 1.9);
    canvas.line(11, 5, 11, 15, colour::red);
    const int alone = ink(canvas.image());
    canvas.clear(colour::white);
    canvas.line(10, 5, 10, 15, colour::red);
    canvas.clear(colour::white);
    canvas.line(11, 5, 11, 15, colour::red);
    EXPECT_EQ(ink(canvas.image()), alone);
}

TEST(ImageCanvasLines, aWaitingStrokeIsSeenByWhoeverLooks) {
    ImageCanvas canvas(100, 100, 1);
    (void)canvas.take_touched();
    int told = 0;
    canvas.on_touched = [&told] { ++told; };
    canvas.line(10, 40, 10, 44, colour::black);
    canvas.line(10, 44, 10, 60, colour::black);
    EXPECT_EQ(told, 1);
    EXPECT_TRUE(canvas.is_touched());
    EXPECT_TRUE(canvas.take_touched().contains(QRect(10, 40, 1, 21)));
    EXPECT_FALSE(canvas.is_touched());
    canvas.line(10, 50, 10, 70, colour::black);
    EXPECT_EQ(told, 2);
    EXPECT_EQ(canvas.image().pixel(10, 70), black);
}

TEST(ImageCanvasLines, aLookAtThePictureFromWithinTheNewsShowsTheStroke) {
    ImageCanvas canvas(10, 10, 1);
    (void)canvas.take_touched();
    QRgb seen = 0;
    canvas.on_touched = [&] { seen = canvas.image().pixel(3, 4); };
    canvas.line(3, 2, 3, 6, colour::red);
    EXPECT_EQ(seen, qRgb(255, 0, 0));
}

TEST(ImageCanvasText, standsAtItsOwnWidthsInAProportionalFont) {
    const auto drawn = [](std::string_view text, bool bold) {
        ImageCanvas canvas(300, 40, 1, 1.5);
        canvas.text(10, 5, text, {.name = "", .points = 12, .proportional = true, .bold = bold},
                    colour::black);
        return canvas.take_touched().boundingRect().width() * 10000 + ink(canvas.image());
    };
    EXPECT_LT(drawn("iiiiiiii", false) / 10000 * 2, drawn("MMMMMMMM", false) / 10000);
    EXPECT_GT(drawn("Vorlauf", true) % 10000, drawn("Vorlauf", false) % 10000);
}

TEST(ImageCanvasText, isCutOffOutsideInAProportionalFont) {
    const CanvasFont font{.name = "Gibt es nicht", .points = 12, .proportional = true};
    ImageCanvas canvas(30, 30, 1);
    for (const int far : {-far_away, far_away}) {
        canvas.text(far, 5, "Vorlauf", font, colour::black);
        canvas.text(5, far, "Vorlauf", font, colour::black);
    }
    EXPECT_FALSE(canvas.is_touched());
    canvas.text(-10, -8, std::string(5000, 'W'), font, colour::black);
    EXPECT_GT(ink(canvas.image()), 20);
}

TEST(ImageCanvasLook, drawsPaperForWhiteAndInkForBlack) {
    ImageCanvas canvas(20, 20, 1);
    canvas.set_look(colour::rgb(30, 31, 32), colour::rgb(220, 221, 222));
    canvas.clear(colour::white);
    canvas.line(3, 3, 3, 9, colour::black);
    canvas.line(5, 3, 9, 7, colour::black);
    EXPECT_EQ(canvas.image().pixel(0, 0), qRgb(30, 31, 32));
    EXPECT_EQ(canvas.image().pixel(3, 5), qRgb(220, 221, 222));
    EXPECT_EQ(canvas.image().pixel(7, 5), qRgb(220, 221, 222));
}

TEST(ImageCanvasLook, liftsOnlyWhatCantBeSeenOnThePaper) {
    const Colour paper = colour::rgb(30, 31, 32);
    ImageCanvas canvas(20, 20, 1);
    canvas.set_look(paper, colour::rgb(220, 221, 222));
    canvas.box(0, 0, 5, 5, colour::rgb(0, 0, 128));
    canvas.box(5, 0, 9, 5, colour::yellow);
    const QColor lifted = canvas.image().pixelColor(2, 2);
    EXPECT_GE(contrast(lifted, to_qcolor(paper)), 3.0);
    EXPECT_GT(lifted.blue(), lifted.red());
    EXPECT_EQ(canvas.image().pixel(6, 2), qRgb(255, 255, 0));
}

TEST(ImageCanvasLook, isThatOfTheMomentOfDrawing) {
    ImageCanvas canvas(20, 20, 1);
    canvas.line(3, 3, 3, 9, colour::black);
    canvas.set_look(colour::black, colour::white);
    canvas.line(5, 3, 5, 9, colour::black);
    EXPECT_EQ(canvas.image().pixel(3, 5), black);
    EXPECT_EQ(canvas.image().pixel(5, 5), white);
}

} // namespace velorn::test
