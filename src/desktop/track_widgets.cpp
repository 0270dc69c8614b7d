#include "desktop/track_widgets.h"

#include "desktop/style.h"
#include "desktop/text_rim.h"

#include <QPainter>

namespace velorn {

namespace {

constexpr double curve_contrast = 3.0; // as the chart draws it

} // namespace

QColor curve_tone(Colour colour, const QPalette& palette) {
    const QColor paper = palette.color(QPalette::Base);
    const QColor ink = palette.color(QPalette::Text);
    if (colour == colour::white) return paper;
    if (colour == colour::black) return ink;
    return readable(colour, paper, ink, curve_contrast);
}

// ---- name ----

void ElidedLabel::set_text(const QString& text) {
    if (text == QLabel::text()) return;
    setText(text);
    find_tip();
}

void ElidedLabel::find_tip() {
    const bool too_long = fontMetrics().horizontalAdvance(text()) > width();
    setToolTip(too_long ? text() : QString());
}

void ElidedLabel::resizeEvent(QResizeEvent* event) {
    QLabel::resizeEvent(event);
    find_tip();
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(text(), Qt::ElideRight, width()));
}

// ---- colour ----

Swatch::Swatch(QWidget* parent) : QAbstractButton(parent) { setAttribute(Qt::WA_Hover); }

void Swatch::set_colour(Colour colour) {
    colour_ = colour;
    update();
}

void Swatch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QPalette& tones = palette();
    const QRect field = rect().adjusted(2, 2, -2, -2);
    painter.fillRect(field, curve_tone(colour_, tones));
    const bool marked = hasFocus();
    painter.setPen(tones.color(marked         ? QPalette::Highlight
                               : underMouse() ? QPalette::Text
                                              : QPalette::PlaceholderText));
    painter.drawRect(QRectF(field).adjusted(0.5, 0.5, -0.5, -0.5));
    if (!marked) return;
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

} // namespace velorn
