#include "desktop/lamp_view.h"

#include "desktop/bind.h"
#include "desktop/style.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>

namespace velorn {

namespace {

constexpr int diameter = 14;

} // namespace

LampView::LampView(Lamp& lamp, Label& label, const char* lamp_name, const char* label_name, QWidget* parent)
    : QWidget(parent), lamp_(lamp), label_(label) {
    setObjectName(QString::fromLatin1(lamp_name));
    setProperty("label", QString::fromLatin1(label_name));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    const auto show = [this] {
        const int wide = fontMetrics().horizontalAdvance(to_qstring(label_.Caption.get()));
        if (wide > widest_) {
            widest_ = wide;
            updateGeometry();
        }
        const bool on = lamp_.BackColor == colour::green;
        setAccessibleName(to_qstring(label_.Caption.get()));
        setAccessibleDescription(on ? QStringLiteral("grün") : QStringLiteral("rot"));
        update();
    };
    lamp_.on_change = show;
    label_.on_change = show;
    show();
}

LampView::~LampView() { unbind(lamp_, label_); }

QSize LampView::sizeHint() const {
    return {diameter + space::small + widest_ + space::small, std::max(diameter, fontMetrics().height()) + 4};
}

QRect LampView::lamp_rect() const { return {0, (height() - diameter) / 2, diameter, diameter}; }

void LampView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool red = lamp_.BackColor == colour::red;
    const QRectF light = QRectF(lamp_rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    painter.setPen(QPen(palette().color(QPalette::WindowText), 1));
    painter.setBrush(red ? QColor(0xd9, 0x2d, 0x20) : QColor(0x2e, 0xb8, 0x5c));
    painter.drawEllipse(light);
    if (red) {
        painter.setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(light.left() + 3, light.center().y()),
                         QPointF(light.right() - 3, light.center().y()));
    }
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
