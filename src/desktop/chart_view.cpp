#include "desktop/chart_view.h"

#include "desktop/control_widgets.h"
#include "desktop/read_out_view.h"
#include "desktop/style.h"
#include "desktop/text_rim.h"
#include "evaluation/chart_surface.h"

#include <QEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace velorn {

namespace {

constexpr int rim = space::medium;     // of the ground, on each side at least
constexpr double most_unlike = 1.35;   // one scale to the other
constexpr double stays_visible = 0.25; // of the chart's sides, however far it is dragged
constexpr int beside_pointer = space::large;
constexpr int day_left = plotlinks;
constexpr int day_right = 560;

double kept(double wanted, double size, double room) {
    return std::clamp(wanted, size * (stays_visible - 1), std::max(0.0, room - size * stays_visible));
}

bool same(double a, double b) { return std::abs(a - b) < 1e-9; }

} // namespace

ChartView::ChartView(EvaluationControls& controls, ControlWidgets& widgets, QWidget* parent)
    : QWidget(parent), controls_(controls), widgets_(widgets) {
    setObjectName(QStringLiteral("Picture1"));
    setAccessibleName(QStringLiteral("Diagramm"));
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    fit_.setSingleShot(true);
    fit_.setInterval(0);
    fit_.callOnTimeout([this] { fit(); });

    time_ = new QLabel(this);
    time_->setObjectName(QStringLiteral("Label54"));
    time_->setAttribute(Qt::WA_TransparentForMouseEvents);
    time_->setAutoFillBackground(true);
    time_->setBackgroundRole(QPalette::Highlight);
    time_->setForegroundRole(QPalette::HighlightedText);
    time_->setContentsMargins(space::small, 0, space::small, 0);
    box_ = new ReadOutView(this);
    box_->setObjectName(QStringLiteral("ablesung"));
    widgets.show(controls_.Label54, [this] {
        time_->setText(to_qstring(controls_.Label54.Caption.get()));
        place_overlays();
    });
    widgets.show(controls_.ablesung, [this] {
        box_->set_text(to_qstring(controls_.ablesung.Text.get()));
        place_overlays();
    });
    widgets.show(controls_.Picture1, [this] {
        if (drawn_units_ != units()) fit_.start();
    });
    widgets.show(controls_.Picture2, [this] {
        place_overlays();
        update();
    });
}

ChartView::~ChartView() { controls_.Picture1.canvas = nullptr; }

QSize ChartView::sizeHint() const { return {chart_width + 2 * rim, chart_height + 2 * rim}; }

QSize ChartView::minimumSizeHint() const { return {chart_width / 2, chart_height / 4}; }

// ---- place ----

int ChartView::units() const { return std::max(1, controls_.Picture1.Width.get()); }

ChartView::Place ChartView::place() const {
    const double device = devicePixelRatioF();
    const double width = std::max(1.0, (QWidget::width() - 2 * rim) * device);
    const double height = std::max(1.0, (QWidget::height() - 2 * rim) * device);
    Place p;
    p.scale_x = width / units();
    p.scale_y = height / chart_height;
    p.scale_x = std::min(p.scale_x, p.scale_y * most_unlike);
    p.scale_y = std::min(p.scale_y, p.scale_x * most_unlike);
    const double chart_w = p.scale_x * units();
    const double chart_h = p.scale_y * chart_height;
    const double all_w = QWidget::width() * device;
    const double all_h = QWidget::height() * device;
    p.left = kept(std::floor((all_w - chart_w) / 2) + std::round(controls_.Picture2.Left * device), chart_w,
                  all_w);
    p.top =
        kept(std::floor((all_h - chart_h) / 2) + std::round(controls_.Picture2.Top * device), chart_h, all_h);
    p.left = std::round(p.left); // a pixel of the picture is one of the screen's
    p.top = std::round(p.top);
    return p;
}

QRectF ChartView::chart() const {
    const Place p = place();
    const double device = devicePixelRatioF();
    return {p.left / device, p.top / device, p.scale_x * units() / device, p.scale_y * chart_height / device};
}

double ChartView::to_x(double left) const {
    const QRectF there = chart();
    return there.left() + left * there.width() / units();
}

void ChartView::fit() {
    if (!isVisible()) return;
    const Place p = place();
    if (!canvas_ || drawn_units_ != units() || !same(canvas_->scale_x(), p.scale_x) ||
        !same(canvas_->scale_y(), p.scale_y)) {
        drawn_units_ = units();
        canvas_ = std::make_unique<ImageCanvas>(units(), chart_height, p.scale_x, p.scale_y);
        canvas_->on_touched = [this] { update(); };
        controls_.Picture1.canvas = canvas_.get();
        draw_anew();
    }
    place_overlays();
    update();
}

void ChartView::draw_anew() {
    canvas_->set_look(to_colour(palette().color(QPalette::Base)), to_colour(palette().color(QPalette::Text)));
    canvas_->clear(controls_.Picture1.BackColor);
    if (controls_.Picture1.Paint) controls_.Picture1.Paint();
}

void ChartView::resizeEvent(QResizeEvent*) { fit_.start(); }

void ChartView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    fit_.start();
}

void ChartView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) {
        canvas_.reset();
        controls_.Picture1.canvas = nullptr;
        fit_.start();
    }
    QWidget::changeEvent(event);
}

// ---- painting ----

void ChartView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QRectF there = chart();
    painter.fillRect(event->rect(), palette().color(QPalette::Window));
    const auto frame = [&](const QRectF& around) {
        painter.fillRect(around.adjusted(-1, -1, 1, 1), palette().color(QPalette::Mid));
    };
    if (!canvas_) {
        frame(there);
        painter.fillRect(there, palette().color(QPalette::Base));
        return;
    }
    (void)canvas_->take_touched();
    const Place p = place();
    const QImage& image = canvas_->image();
    if (same(canvas_->scale_x(), p.scale_x) && same(canvas_->scale_y(), p.scale_y)) {
        // Of whole pixels, up to one more than the place has.
        const QRectF drawn(there.topLeft(), QSizeF(image.size()) / devicePixelRatioF());
        frame(drawn);
        painter.drawImage(drawn, image);
    } else {
        frame(there);
        painter.drawImage(there, image); // until it is drawn for this place or screen
        fit_.start();
    }
    if (marker_ < 0) return;
    painter.fillRect(QRectF(marker_, there.top(), 1, there.height()), palette().color(QPalette::Highlight));
}

// ---- pointer ----

void ChartView::pointer_at(QPointF position) {
    pointer_ = position;
    const QRectF there = chart();
    const double X = (position.x() - there.left()) * units() / there.width();
    const double Y = chart_height - (position.y() - there.top()) * chart_height / there.height();
    const bool over_chart = there.contains(position);
    widgets_.ask([this, X, Y, over_chart] {
        if (over_chart) {
            if (X >= day_left && X < day_right) pointer_x_ = X;
            if (controls_.Picture1.MouseMove) controls_.Picture1.MouseMove(X, Y);
        } else if (controls_.Picture2.pointer) {
            controls_.Picture2.pointer(X);
        }
        place_overlays();
    });
}

void ChartView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || chart().contains(event->position())) return;
    const QPoint at = event->position().toPoint() - QPoint(controls_.Picture2.Left, controls_.Picture2.Top);
    controls_.Picture2.MouseDown(at.x(), at.y());
    setCursor(Qt::SizeAllCursor);
}

void ChartView::mouseMoveEvent(QMouseEvent* event) {
    const bool dragged = (event->buttons() & Qt::LeftButton) != 0 && cursor().shape() == Qt::SizeAllCursor;
    if (!dragged) {
        unsetCursor();
        pointer_at(event->position());
        return;
    }
    const QPoint at = event->position().toPoint() - QPoint(controls_.Picture2.Left, controls_.Picture2.Top);
    controls_.Picture2.MouseMove(true, at.x(), at.y());
}

// Back to its middle.
void ChartView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (chart().contains(event->position())) return;
    controls_.Picture2.Left = 0;
    controls_.Picture2.Top = 0;
}

void ChartView::leaveEvent(QEvent*) {
    const QRectF there = chart();
    const double X = (pointer_.x() - there.left()) * units() / there.width();
    widgets_.ask([this, X] {
        if (controls_.Picture2.pointer) controls_.Picture2.pointer(X);
        place_overlays();
    });
}

// ---- overlays ----

void ChartView::place_overlays() {
    const QRectF there = chart();
    const bool box = controls_.ablesung.Visible;
    const bool time = controls_.Label54.Visible;
    const int before = marker_;
    marker_ = !box && !time ? -1 : static_cast<int>(to_x(box ? controls_.ablesung.Left : pointer_x_));
    if (marker_ != before) {
        for (const int x : {before, marker_}) {
            if (x >= 0) update(x - 1, 0, 3, height());
        }
    }
    // Beside the line: at its right, or at its left where the chart ends.
    const auto put = [&](QWidget& overlay, int top) {
        const QSize size = overlay.sizeHint();
        int left = marker_ + beside_pointer;
        if (left + size.width() > there.right()) left = marker_ - beside_pointer - size.width();
        left = std::max(left, static_cast<int>(there.left()));
        const int lowest = static_cast<int>(there.bottom()) - size.height();
        overlay.setGeometry(
            QRect(QPoint(left, std::max(static_cast<int>(there.top()), std::min(top, lowest))), size));
    };
    if (time) put(*time_, static_cast<int>(there.top()));
    if (box) put(*box_, static_cast<int>(pointer_.y()) + beside_pointer);
    time_->setVisible(time);
    box_->setVisible(box);
}

} // namespace velorn
