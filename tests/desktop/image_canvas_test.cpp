#include "desktop/image_canvas.h"

#include <QPainter>

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

constexpr CanvasFont display_font{"Courier New", 14, 12, 19};

QRgb pixel(ImageCanvas& canvas, int x, int y) { return canvas.image().pixel(x, y); }

// The device pixels that differ from the ground.
QRect ink(const QImage& image, QRgb ground) {
    QRect all;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != ground) all |= QRect(x, y, 1, 1);
        }
    }
    return all;
}

constexpr QRgb white = 0xFFFFFFFF;
constexpr QRgb black = 0xFF000000;

} // namespace

TEST(ImageCanvas, fillsHalfOpenBoxesOnWholeDevicePixels) {
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        ImageCanvas canvas(20, 20, scale);
        canvas.clear(colour::white);
        canvas.box(3, 5, 7, 9, colour::rgb(10, 20, 30));
        const auto at = [scale](int logical) { return static_cast<int>(std::lround(logical * scale)); };
        EXPECT_EQ(ink(canvas.image(), white), QRect(QPoint(at(3), at(5)), QPoint(at(7) - 1, at(9) - 1)))
            << scale;
        EXPECT_EQ(pixel(canvas, at(3), at(5)), qRgb(10, 20, 30));
    }
}

TEST(ImageCanvas, neighbouringBoxesLeaveNoGapAtAnyScale) {
    ImageCanvas canvas(100, 10, 1.37);
    canvas.clear(colour::white);
    for (int column = 0; column < 10; ++column)
        canvas.box(column * 10, 0, column * 10 + 10, 10, colour::black);
    for (int x = 0; x < canvas.image().width(); ++x) EXPECT_EQ(pixel(canvas, x, 5), black) << x;
}

TEST(ImageCanvas, invertsEveryPixelAndBackAgain) {
    ImageCanvas canvas(10, 10, 2);
    canvas.clear(colour::rgb(0, 0, 192));
    canvas.invert(2, 2, 4, 4);
    EXPECT_EQ(pixel(canvas, 4, 4), qRgb(255, 255, 63));
    EXPECT_EQ(pixel(canvas, 3, 4), qRgb(0, 0, 192));
    EXPECT_EQ(pixel(canvas, 8, 4), qRgb(0, 0, 192));
    canvas.invert(2, 2, 4, 4);
    EXPECT_EQ(pixel(canvas, 4, 4), qRgb(0, 0, 192));
}

TEST(ImageCanvas, drawsBothEndsOfALine) {
    ImageCanvas canvas(20, 20, 1);
    canvas.clear(colour::white);
    canvas.line(2, 3, 9, 3, colour::black);
    EXPECT_EQ(ink(canvas.image(), white), QRect(QPoint(2, 3), QPoint(9, 3)));
}

TEST(ImageCanvas, cutsOffWhatLiesOutside) {
    ImageCanvas canvas(10, 10, 1);
    canvas.clear(colour::white);
    canvas.box(-100, -100, 5, 5, colour::black);
    canvas.box(50, 50, 60, 60, colour::black);
    canvas.box(7, 7, 6, 6, colour::black);
    canvas.invert(-2'000'000'000, 9, 2'000'000'000, 2'000'000'000);
    canvas.line(-100'000, -100'000, 100'000, -90'000, colour::red);
    canvas.text(-30, -30, "abc", display_font, colour::black);
    canvas.text(8, 8, "W", display_font, colour::black);
    EXPECT_EQ(pixel(canvas, 4, 4), black);
    EXPECT_EQ(pixel(canvas, 5, 5), white);
    EXPECT_EQ(pixel(canvas, 0, 9), black);
}

TEST(ImageCanvas, keepsEveryCharacterInsideItsCell) {
    for (const double scale : {0.7, 1.0, 1.25, 2.0}) {
        for (int code = 32; code < 256; ++code) {
            ImageCanvas canvas(36, 60, scale);
            canvas.clear(colour::white);
            const char c = static_cast<char>(code);
            canvas.text(12, 19, {&c, 1}, display_font, colour::black);
            const QRect drawn = ink(canvas.image(), white);
            if (drawn.isEmpty()) continue;
            // The inverse box stands one lower than the cell; a pixel of grey at its edges is allowed.
            EXPECT_GE(drawn.top(), std::floor(20 * scale) - 1) << code << " at " << scale;
            EXPECT_LE(drawn.bottom(), std::ceil(39 * scale)) << code << " at " << scale;
            EXPECT_GE(drawn.left(), std::floor(12 * scale) - 2) << code << " at " << scale;
            EXPECT_LE(drawn.right(), std::ceil(24 * scale) + 1) << code << " at " << scale;
        }
    }
}

TEST(ImageCanvas, drawsTextInItsColourAndLeavesTheGround) {
    ImageCanvas canvas(24, 24, 2);
    canvas.clear(colour::rgb(0, 0, 192));
    canvas.text(4, 2, "M", display_font, colour::rgb(255, 255, 0));
    bool full = false;
    for (int y = 0; y < 48; ++y) {
        for (int x = 0; x < 48; ++x) full = full || pixel(canvas, x, y) == qRgb(255, 255, 0);
    }
    EXPECT_TRUE(full);
    EXPECT_EQ(pixel(canvas, 0, 0), qRgb(0, 0, 192));
}

TEST(ImageCanvas, aBlankAndAControlCharacterDrawNothing) {
    ImageCanvas canvas(24, 24, 1);
    canvas.clear(colour::white);
    canvas.text(2, 2, " \x01\xa0", display_font, colour::black);
    EXPECT_TRUE(ink(canvas.image(), white).isEmpty());
}

TEST(ImageCanvas, tellsWhatWasTouchedOnce) {
    ImageCanvas canvas(100, 100, 1);
    (void)canvas.take_touched();
    int told = 0;
    canvas.on_touched = [&told] { ++told; };
    canvas.box(10, 40, 20, 44, colour::black);
    canvas.box(30, 40, 40, 44, colour::black);
    EXPECT_EQ(told, 1);
    const QRegion region = canvas.take_touched();
    EXPECT_TRUE(region.contains(QRect(10, 40, 30, 4)));
    EXPECT_FALSE(region.contains(QPoint(5, 41)));
    EXPECT_FALSE(region.contains(QPoint(15, 90)));
    EXPECT_TRUE(canvas.take_touched().isEmpty());
}

TEST(ImageCanvas, hasABoundedImage) {
    ImageCanvas huge(1'000'000, 1'000'000, 3);
    EXPECT_LE(huge.image().width(), 8192);
    EXPECT_LE(huge.image().height(), 8192);
    ImageCanvas none(0, 0, 1);
    EXPECT_EQ(none.image().size(), QSize(1, 1));
}

TEST(GlyphMasks, takeTheSystemsFixedFontForOneThatIsNotThere) {
    EXPECT_TRUE(QFontInfo(fixed_pitch_font(QStringLiteral("Gibt es nicht"))).fixedPitch());
}

} // namespace velorn::test
