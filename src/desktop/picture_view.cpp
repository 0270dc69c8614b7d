#include "desktop/picture_view.h"

#include "desktop/text_rim.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPainter>

namespace velorn {

PictureView::PictureView(PictureBox& picture, QWidget* parent) : QWidget(parent), picture_(picture) {
    setFocusPolicy(Qt::StrongFocus);
    picture_.on_change = [this] {
        update();
        if (picture_.Visible != !isHidden() && shown_or_hidden) shown_or_hidden();
    };
}

PictureView::~PictureView() { picture_.on_change = nullptr; }

void PictureView::grab_keys(QWidget& keys_go_to) {
    keys_go_to_ = &keys_go_to;
    setFocus();
}

void PictureView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), to_qcolor(picture_.BackColor));
}

void PictureView::keyPressEvent(QKeyEvent* event) {
    if (keys_go_to_ != nullptr) QCoreApplication::sendEvent(keys_go_to_, event);
}

// Tab is a character for the controller here.
bool PictureView::focusNextPrevChild(bool) { return false; }

} // namespace velorn
