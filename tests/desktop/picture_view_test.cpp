#include "desktop/picture_view.h"

#include <QApplication>
#include <QScrollBar>

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

struct View {
    PictureBox picture;
    PictureView::Extent extent{400, 200, 20};
    int painted = 0;
    PictureView view{picture, [this] { return extent; }, nullptr};

    View() {
        picture.BackColor = colour::rgb(0, 0, 192);
        picture.Paint = [this] {
            ++painted;
            picture.canvas->box(0, 0, 10, 10, colour::red);
            picture.canvas->box(extent.width - 10, extent.height - 10, extent.width, extent.height,
                                colour::green);
        };
        view.resize(500, 300);
        view.show();
    }
    QImage grabbed() { return view.viewport()->grab().toImage(); }
};

} // namespace

TEST(PictureView, hasItsOwnerDrawWhenItIsFirstShown) {
    View v;
    ASSERT_NE(v.picture.canvas, nullptr);
    EXPECT_EQ(v.painted, 1);
    const QImage image = v.grabbed();
    EXPECT_EQ(image.pixel(5, 5), qRgb(255, 0, 0));
    EXPECT_EQ(image.pixel(395, 195), qRgb(0, 255, 0));
    EXPECT_EQ(image.pixel(450, 250), qRgb(0, 0, 192)); // the ground goes on beside the picture
}

TEST(PictureView, showsThePictureSmallerInASmallerPlace) {
    View v;
    v.view.resize(300, 300);
    EXPECT_EQ(v.painted, 2);
    EXPECT_DOUBLE_EQ(v.view.magnification(), 0.75);
    EXPECT_EQ(v.grabbed().pixel(297, 147), qRgb(0, 255, 0));
    EXPECT_EQ(v.view.horizontalScrollBar()->maximum(), 0);
}

TEST(PictureView, scrollsWhatWouldGetTooSmallToRead) {
    View v;
    v.view.resize(160, 96);
    EXPECT_DOUBLE_EQ(v.view.magnification(), 0.6); // twelve pixels of a cell's twenty
    EXPECT_GT(v.view.horizontalScrollBar()->maximum(), 0);
    v.view.horizontalScrollBar()->setValue(v.view.horizontalScrollBar()->maximum());
    v.view.verticalScrollBar()->setValue(v.view.verticalScrollBar()->maximum());
    const QImage image = v.grabbed();
    EXPECT_EQ(image.pixel(image.width() - 3, image.height() - 3), qRgb(0, 255, 0));
}

TEST(PictureView, followsItsCellsWhenTheyChange) {
    View v;
    v.extent = {200, 100, 10};
    v.picture.changed();
    EXPECT_EQ(v.painted, 2);
    EXPECT_EQ(v.grabbed().pixel(195, 95), qRgb(0, 255, 0));
    v.picture.changed();
    EXPECT_EQ(v.painted, 2);
}

TEST(PictureView, doesNotTellItsOwnerThatItClearedWhatItOnlyPaintsAnew) {
    View v;
    int cleared = 0;
    v.picture.cleared = [&cleared] { ++cleared; };
    v.view.resize(300, 300);
    EXPECT_EQ(v.painted, 2);
    EXPECT_EQ(cleared, 0);
}

TEST(PictureView, showsWhatIsDrawnLater) {
    View v;
    QApplication::processEvents();
    v.picture.canvas->box(100, 100, 120, 120, colour::green);
    EXPECT_EQ(v.grabbed().pixel(110, 110), qRgb(0, 255, 0));
}

TEST(PictureView, tellsOnceThatItIsShownOrHidden) {
    View v;
    int told = 0;
    v.view.shown_or_hidden = [&told] { ++told; };
    v.picture.Visible = false;
    EXPECT_EQ(told, 1);
    v.picture.BackColor = colour::white;
    EXPECT_EQ(told, 1);
    v.picture.Visible = true;
    EXPECT_EQ(told, 2);
}

TEST(PictureView, takesItsCanvasAlongWhenItGoes) {
    PictureBox picture;
    {
        PictureView view(
            picture,
            [] {
                return PictureView::Extent{10, 10, 1};
            },
            nullptr);
        view.show();
        EXPECT_NE(picture.canvas, nullptr);
    }
    EXPECT_EQ(picture.canvas, nullptr);
    picture.Cls();
}

} // namespace velorn::test
