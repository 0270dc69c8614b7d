#include "desktop/stroke_button.h"

#include "desktop/style.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>

namespace velorn {

namespace {

QPainterPath path_of(StrokeButton::Figure figure) {
    QPainterPath path;
    switch (figure) {
    case StrokeButton::Figure::up:
        path.moveTo(6, 15);
        path.lineTo(12, 9);
        path.lineTo(18, 15);
        break;
    case StrokeButton::Figure::down:
        path.moveTo(6, 9);
        path.lineTo(12, 15);
        path.lineTo(18, 9);
        break;
    case StrokeButton::Figure::to_end:
        path.moveTo(12, 5);
        path.lineTo(12, 15);
        path.moveTo(7, 10);
        path.lineTo(12, 15);
        path.lineTo(17, 10);
        path.moveTo(7, 19);
        path.lineTo(17, 19);
        break;
    case StrokeButton::Figure::close:
        path.moveTo(7, 7);
        path.lineTo(17, 17);
        path.moveTo(17, 7);
        path.lineTo(7, 17);
        break;
    }
    return path;
}

} // namespace

StrokeButton::StrokeButton(Figure figure, const QString& name, QWidget* parent, bool round)
    : QAbstractButton(parent), figure_(figure), round_(round) {
    setToolTip(name);
    setAccessibleName(name);
    setFocusPolicy(round ? Qt::NoFocus : Qt::TabFocus);
    setCursor(Qt::ArrowCursor);
    resize(sizeHint());
}

QSize StrokeButton::sizeHint() const { return round_ ? QSize(36, 36) : QSize(28, 28); }

bool StrokeButton::event(QEvent* event) {
    if (event->type() == QEvent::Enter || event->type() == QEvent::Leave) update();
    return QAbstractButton::event(event);
}

void StrokeButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool hot = isEnabled() && (underMouse() || isDown());
    const QRectF frame = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    QColor ink = palette().color(QPalette::ButtonText);
    if (round_) {
        painter.setPen(QPen(palette().color(QPalette::Mid), 1));
        painter.setBrush(palette().color(hot ? QPalette::Highlight : QPalette::Button));
        if (hot) ink = palette().color(QPalette::HighlightedText);
        painter.drawEllipse(frame);
    } else if (hot || hasFocus()) {
        painter.setPen(hasFocus() ? QPen(palette().color(QPalette::Highlight), 1) : QPen(Qt::NoPen));
        painter.setBrush(palette().color(hot ? QPalette::Midlight : QPalette::Window));
        painter.drawRoundedRect(frame, space::small, space::small);
    }
    const double scale = 20.0 / 24.0;
    painter.translate(QRectF(rect()).center());
    painter.scale(scale, scale);
    painter.translate(-12, -12);
    painter.setPen(QPen(ink, 1.5 / scale, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(path_of(figure_));
}

} // namespace velorn
