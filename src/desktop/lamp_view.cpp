#include "desktop/lamp_view.h"

#include "desktop/bind.h"
#include "desktop/style.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>

namespace velorn {

namespace {

constexpr int diameter = 14;
constexpr int calm_ms = 50;

} // namespace

LampView::LampView(Lamp& lamp, Label& label, const char* lamp_name, const char* label_name, QWidget* parent)
    : QWidget(parent), lamp_(lamp), label_(label) {
    setObjectName(QString::fromLatin1(lamp_name));
    setProperty("label", QString::fromLatin1(label_name));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    calm_.setSingleShot(true);
    calm_.callOnTimeout([this] { show_colour(); });
    lamp_.on_change = [this] { show_lamp(); };
    label_.on_change = [this] { show_label(); };
    show_colour();
    show_label();
}

LampView::~LampView() { unbind(lamp_, label_); }

void LampView::show_lamp() {
    // While data moves a lamp goes green for a moment ten times a second; the eye is spared that.
    if (lamp_.BackColor == colour::green && shown_ == colour::red) {
        calm_.start(calm_ms);
    } else {
        calm_.stop();
        show_colour();
    }
}

void LampView::show_colour() {
    if (shown_ == lamp_.BackColor) return;
    shown_ = lamp_.BackColor;
    setAccessibleDescription(shown_ == colour::green ? QStringLiteral("grün") : QStringLiteral("rot"));
    update(lamp_rect());
}

void LampView::show_label() {
    const int wide = fontMetrics().horizontalAdvance(to_qstring(label_.Caption.get()));
    if (wide > widest_) {
        widest_ = wide;
        updateGeometry();
    }
    setAccessibleName(to_qstring(label_.Caption.get()));
    update();
}

QSize LampView::sizeHint() const {
    return {diameter + space::small + widest_ + space::small, std::max(diameter, fontMetrics().height()) + 4};
}

QRect LampView::lamp_rect() const { return {0, (height() - diameter) / 2, diameter, diameter}; }

void LampView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool red = shown_ == colour::red;
    const QRectF light = QRectF(lamp_rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    painter.setPen(QPen(palette().color(QPalette::WindowText), 1));
    painter.setBrush(red ? QColor(0xd9, 0x2d, 0x20) : QColor(0x2e, 0xb8, 0x5c));
    painter.drawEllipse(light);
    if (red) {
        painter.setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(light.left() + 3, light.center().y()),
                         QPointF(light.right() - 3, light.center().y()));
    }
    if (lamp_rect().contains(event->rect())) return;
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect().adjusted(diameter + space::small, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
                     to_qstring(label_.Caption.get()));
}

void LampView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    const auto& clicked = lamp_rect().contains(event->pos()) ? lamp_clicked : label_clicked;
    if (clicked) clicked();
}

bool LampView::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        const bool over_lamp = lamp_rect().contains(help->pos());
        const std::string& text = over_lamp || label_.ToolTipText.get().empty() ? lamp_.ToolTipText.get()
                                                                                : label_.ToolTipText.get();
        QToolTip::showText(help->globalPos(), to_qstring(text), this);
        return true;
    }
    return QWidget::event(event);
}

} // namespace velorn
