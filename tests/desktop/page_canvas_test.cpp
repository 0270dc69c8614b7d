#include "desktop/page_canvas.h"

#include <QImage>
#include <QPainter>

#include <functional>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

constexpr int dots_an_inch = 720; // two twips are a dot
constexpr QRgb white = 0xFFFFFFFF;

QImage page(const std::function<void(Canvas&)>& draw) {
    QImage paper(500, 500, QImage::Format_RGB32);
    paper.setDotsPerMeterX(static_cast<int>(dots_an_inch / 0.0254 + 0.5));
    paper.setDotsPerMeterY(static_cast<int>(dots_an_inch / 0.0254 + 0.5));
    paper.fill(Qt::white);
    QPainter painter(&paper);
    PageCanvas canvas(painter);
    draw(canvas);
    painter.end();
    return paper;
}

QRect ink(const QImage& image) {
    QRect all;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != white) all |= QRect(x, y, 1, 1);
        }
    }
    return all;
}

} // namespace

TEST(PageCanvas, countsInTwipsFromTheCorner) {
    const QImage paper = page([](Canvas& canvas) { canvas.box(100, 200, 300, 260, colour::red); });
    EXPECT_EQ(ink(paper), QRect(QPoint(50, 100), QPoint(149, 129)));
}

TEST(PageCanvas, drawsThinLinesWithBothEnds) {
    const QRect upright = ink(page([](Canvas& canvas) { canvas.line(100, 200, 100, 400, colour::red); }));
    EXPECT_LE(upright.width(), 2);
    EXPECT_LE(upright.top(), 100);
    EXPECT_GE(upright.bottom(), 199);
    EXPECT_FALSE(ink(page([](Canvas& canvas) { canvas.line(100, 200, 100, 200, colour::red); })).isEmpty());
    const QRect sloped = ink(page([](Canvas& canvas) { canvas.line(400, 300, 100, 200, colour::red); }));
    EXPECT_LE(sloped.left(), 50);
    EXPECT_GE(sloped.right(), 199);
}

TEST(PageCanvas, drawsTextAsLargeAsItsPointsBelowItsCorner) {
    const CanvasFont font{.name = "", .points = 10, .proportional = true};
    const QRect drawn = ink(page([&](Canvas& canvas) { canvas.text(100, 200, "Hq", font, colour::black); }));
    EXPECT_GE(drawn.top(), 100);
    // Ten points are a hundred dots here; capital to descender is somewhat less.
    EXPECT_GT(drawn.height(), 60);
    EXPECT_LT(drawn.height(), 120);
}

TEST(PageCanvas, leavesWhitePaperAsItIs) {
    const QImage paper = page([](Canvas& canvas) {
        canvas.clear(colour::white);
        canvas.invert(0, 0, 200, 200);
    });
    EXPECT_TRUE(ink(paper).isEmpty());
}

} // namespace velorn::test
