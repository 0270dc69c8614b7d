#include "desktop/popup_view.h"

#include "desktop/control_widgets.h"
#include "desktop/style.h"
#include "desktop/text_rim.h"

#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace velorn {

PopupView::PopupView(Popup& popup, const QString& name, ControlWidgets& widgets, QWidget* window)
    : QFrame(window), popup_(popup) {
    setObjectName(name);
    setAutoFillBackground(true);
    setFrameStyle(QFrame::Panel | QFrame::Raised);
    setLineWidth(2);
    auto* caption = new QLabel(this);
    caption->setObjectName(name + QStringLiteral("_caption"));
    QFont bold = font();
    bold.setBold(true);
    caption->setFont(bold);
    caption->setCursor(Qt::SizeAllCursor);
    auto* column = new QVBoxLayout(this);
    column->setSpacing(space::medium);
    column->addWidget(caption);
    hide();
    window->installEventFilter(this);
    widgets.show(popup_, [this, caption] {
        caption->setText(to_qstring(popup_.Caption.get()));
        follow();
    });
}

void PopupView::set_content(QLayout* content, QWidget* first, QPushButton* enter) {
    static_cast<QVBoxLayout*>(layout())->addLayout(content);
    first_ = first;
    enter_ = enter;
}

void PopupView::follow() {
    if (!popup_.Visible) return hide();
    if (isHidden()) {
        before_ = window()->focusWidget();
        adjustSize();
        show();
        raise();
        if (first_ != nullptr) first_->setFocus(Qt::PopupFocusReason);
        if (opened) opened();
    }
    move_to_model();
}

void PopupView::move_to_model() {
    const QSize room = parentWidget()->size() - size();
    const QPoint to = wanted();
    move(std::clamp(to.x(), 0, std::max(0, room.width())), std::clamp(to.y(), 0, std::max(0, room.height())));
}

void PopupView::place_near(const QWidget& caller) {
    adjustSize();
    const QPoint corner = caller.mapTo(parentWidget(), QPoint(0, 0));
    int left = corner.x() - width() - space::medium;
    if (left < 0) left = corner.x() + caller.width() + space::medium;
    const int lowest = std::max(0, parentWidget()->height() - height());
    const QPoint to(std::clamp(left, 0, std::max(0, parentWidget()->width() - width())),
                    std::clamp(corner.y() - space::medium, 0, lowest));
    offset_ = to - QPoint(popup_.Left, popup_.Top);
    move_to_model();
    raise();
}

QPoint PopupView::from_model(const QMouseEvent& event) const {
    return event.position().toPoint() + pos() - wanted();
}

void PopupView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    // What the edge held back stays there.
    offset_ += pos() - wanted();
    const QPoint at = from_model(*event);
    popup_.MouseDown(at.x(), at.y());
}

void PopupView::mouseMoveEvent(QMouseEvent* event) {
    const QPoint at = from_model(*event);
    popup_.MouseMove((event->buttons() & Qt::LeftButton) != 0, at.x(), at.y());
}

void PopupView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Escape:
        if (escape) escape();
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter: {
        auto* const focused = qobject_cast<QPushButton*>(window()->focusWidget());
        if (QPushButton* const pressed = focused != nullptr ? focused : enter_) pressed->click();
        return;
    }
    default: QFrame::keyPressEvent(event);
    }
}

void PopupView::hideEvent(QHideEvent* event) {
    QFrame::hideEvent(event);
    const QList<QWidget*> there = window()->findChildren<QWidget*>();
    if (before_ != nullptr && there.contains(before_) && before_->isVisible()) before_->setFocus();
    before_ = nullptr;
}

void PopupView::resizeEvent(QResizeEvent* event) {
    QFrame::resizeEvent(event);
    move_to_model();
}

bool PopupView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize && !isHidden()) move_to_model();
    return QFrame::eventFilter(watched, event);
}

} // namespace velorn
