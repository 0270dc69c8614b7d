#include "desktop/picture_view.h"

#include "desktop/text_rim.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace velorn {

namespace {

constexpr int frame_ms = 40;             // the first stroke after a pause is shown at once
constexpr double smallest_readable = 12; // device pixels of a cell's height

} // namespace

PictureView::PictureView(PictureBox& picture, std::function<Extent()> extent, QWidget* parent)
    : QAbstractScrollArea(parent),
      picture_(picture),
      was_visible_(picture.Visible),
      extent_(std::move(extent)) {
    setFocusPolicy(Qt::StrongFocus);
    setFrameShape(QFrame::NoFrame);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    frame_.setSingleShot(true);
    frame_.setInterval(frame_ms);
    frame_.callOnTimeout([this] { show_touched(); });
    picture_.on_change = [this] {
        fit();
        viewport()->update();
        if (std::exchange(was_visible_, picture_.Visible) != picture_.Visible && shown_or_hidden)
            shown_or_hidden();
    };
}

PictureView::~PictureView() {
    picture_.on_change = nullptr;
    picture_.canvas = nullptr;
}

void PictureView::grab_keys(QWidget& keys_go_to) {
    keys_go_to_ = &keys_go_to;
    setFocus();
}

double PictureView::magnification() const { return canvas_ ? canvas_->scale() / devicePixelRatioF() : 1.0; }

QSize PictureView::sizeHint() const {
    const Extent extent = extent_();
    return {extent.width, extent.height};
}

QSize PictureView::minimumSizeHint() const { return {160, 96}; }

double PictureView::fitting_scale(const Extent& extent) const {
    const double device = devicePixelRatioF();
    const QSize room = maximumViewportSize();
    const double fitting =
        std::min(room.width() * device / extent.width, room.height() * device / extent.height);
    const double readable = std::min(device, smallest_readable / extent.cell_height);
    return std::clamp(fitting, readable, device);
}

void PictureView::fit() {
    if (!isVisible()) return;
    Extent extent = extent_();
    extent = {std::max(1, extent.width), std::max(1, extent.height), std::max(1, extent.cell_height)};
    const double scale = fitting_scale(extent);
    const bool same = canvas_ && canvas_->scale() == scale && fitted_.width == extent.width &&
                      fitted_.height == extent.height;
    if (!same) {
        fitted_ = extent;
        canvas_ = std::make_unique<ImageCanvas>(extent.width, extent.height, scale);
        canvas_->on_touched = [this] {
            // The first stroke of a frame is shown at once, the rest of it together.
            if (!frame_.isActive()) frame_.start(0);
        };
        picture_.canvas = canvas_.get();
        canvas_->clear(picture_.BackColor);
        if (picture_.Paint) picture_.Paint();
        viewport()->update();
    }
    set_scroll_bars();
}

void PictureView::set_scroll_bars() {
    if (!canvas_) return;
    const double device = devicePixelRatioF();
    const QSize needed = (QSizeF(canvas_->image().size()) / device).toSize();
    const QSize room = viewport()->size();
    horizontalScrollBar()->setRange(0, std::max(0, needed.width() - room.width()));
    horizontalScrollBar()->setPageStep(room.width());
    verticalScrollBar()->setRange(0, std::max(0, needed.height() - room.height()));
    verticalScrollBar()->setPageStep(room.height());
}

void PictureView::show_touched() {
    if (!canvas_ || !canvas_->is_touched()) return;
    const double device = devicePixelRatioF();
    const QPoint scrolled(horizontalScrollBar()->value(), verticalScrollBar()->value());
    QRegion shown;
    for (const QRect& rect : canvas_->take_touched()) {
        const QRectF logical(rect.x() / device, rect.y() / device, rect.width() / device,
                             rect.height() / device);
        shown += logical.toAlignedRect().translated(-scrolled);
    }
    viewport()->update(shown);
    frame_.start(frame_ms); // whatever comes until then is shown then
}

void PictureView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    const QColor ground = to_qcolor(picture_.BackColor);
    if (!canvas_) {
        painter.fillRect(event->rect(), ground);
        return;
    }
    const double device = devicePixelRatioF();
    const QPoint scrolled(horizontalScrollBar()->value(), verticalScrollBar()->value());
    const QRect picture(QPoint(0, 0), canvas_->image().size());
    for (const QRect& rect : event->region()) {
        const QRect asked = rect.translated(scrolled);
        const QRectF wanted(asked.x() * device, asked.y() * device, asked.width() * device,
                            asked.height() * device);
        if (!picture.contains(wanted.toAlignedRect())) painter.fillRect(rect, ground);
        const QRect there = wanted.toAlignedRect() & picture;
        if (there.isEmpty()) continue;
        // One device pixel of the picture is one of the screen's.
        const QPointF corner = QPointF(there.topLeft()) / device - scrolled;
        painter.drawImage(QRectF(corner, QSizeF(there.size()) / device), canvas_->image(), there);
    }
}

void PictureView::resizeEvent(QResizeEvent*) { fit(); }

void PictureView::showEvent(QShowEvent* event) {
    QAbstractScrollArea::showEvent(event);
    fit();
}

bool PictureView::viewportEvent(QEvent* event) {
    // A move to a screen of another scale shows in the next painting.
    if (event->type() == QEvent::Paint) fit();
    return QAbstractScrollArea::viewportEvent(event);
}

void PictureView::scrollContentsBy(int, int) { viewport()->update(); }

bool PictureView::event(QEvent* event) {
    // The controller's keys go before the menu's here too.
    if (event->type() == QEvent::ShortcutOverride && keys_go_to_ != nullptr)
        return QCoreApplication::sendEvent(keys_go_to_, event);
    return QAbstractScrollArea::event(event);
}

void PictureView::keyPressEvent(QKeyEvent* event) {
    if (keys_go_to_ != nullptr) QCoreApplication::sendEvent(keys_go_to_, event);
}

// Tab is a character for the controller here.
bool PictureView::focusNextPrevChild(bool) { return false; }

} // namespace velorn
