// A PictureBox in a window. Its picture is painted at the screen's own resolution; where the place is smaller
// than the picture, the picture gets smaller with it as far as it can still be read, and is scrolled beyond
// that.
#pragma once

#include "desktop/image_canvas.h"
#include "runtime/canvas.h"

#include <QAbstractScrollArea>
#include <QTimer>

#include <functional>
#include <memory>

namespace velorn {

class PictureView : public QAbstractScrollArea {
  public:
    // What the picture needs, logical pixels.
    struct Extent {
        int width = 1, height = 1;
        int cell_height = 1; // of its smallest text
    };
    PictureView(PictureBox& picture, std::function<Extent()> extent, QWidget* parent);
    ~PictureView() override;

    std::function<void()> shown_or_hidden;

    // While the picture is shown in its place, what is typed goes where the hidden one's keys go.
    void grab_keys(QWidget& keys_go_to);

    // Logical pixels of this widget per logical pixel of the picture, 1 or less.
    double magnification() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void scrollContentsBy(int dx, int dy) override;

  private:
    double fitting_scale(const Extent& extent) const;
    // A canvas of the right size and scale; a new one has its owner draw everything.
    void fit();
    void set_scroll_bars();
    void show_touched();

    PictureBox& picture_;
    bool was_visible_;
    std::function<Extent()> extent_;
    Extent fitted_;
    std::unique_ptr<ImageCanvas> canvas_;
    QTimer frame_; // at most one update of the screen in its interval
    QWidget* keys_go_to_ = nullptr;
};

} // namespace velorn
