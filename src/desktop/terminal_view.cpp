#include "desktop/terminal_view.h"

#include "desktop/stroke_button.h"
#include "desktop/style.h"
#include "desktop/terminal_keys.h"
#include "desktop/text_rim.h"

#include <QEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>

namespace velorn {

namespace {

constexpr int frame_ms = 16;
constexpr int margin = space::small;

} // namespace

TerminalView::TerminalView(RichTextBox& model, QWidget* parent)
    : QAbstractScrollArea(parent),
      model_(model),
      font_(to_qstring(model.FontName.get()), model.FontSize),
      end_button_(new StrokeButton(StrokeButton::Figure::to_end, QStringLiteral("ans Ende (Taste Ende)"),
                                   this, true)),
      font_name_(model.FontName),
      font_size_(model.FontSize) {
    setObjectName(QStringLiteral("txtterm"));
    setAccessibleName(QStringLiteral("Terminal"));
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled);
    setInputMethodHints(Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setFrameShape(QFrame::NoFrame);
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setBackgroundRole(QPalette::Base);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent); // each row paints its own ground
    end_button_->setObjectName(QStringLiteral("ansEnde"));
    end_button_->hide();
    connect(end_button_, &QAbstractButton::clicked, this, [this] { follow(); });

    lines_.set_columns(80, model_.Text());
    take_colours();
    model_.on_edit = [this](const RichTextBox::Edit& edit) { model_edited(edit); };
    model_.on_change = [this] { take_properties(); };
}

TerminalView::~TerminalView() {
    model_.on_edit = nullptr;
    model_.on_change = nullptr;
}

std::size_t TerminalView::position_of(Place place) const {
    return place <= front_ ? 0 : std::min(static_cast<std::size_t>(place - front_), model_.length());
}

void TerminalView::model_edited(const RichTextBox::Edit& edit) {
    const std::size_t before = lines_.length();
    const std::size_t inserted = edit.inserted.size();
    lines_.edited(model_.Text(), edit.position, edit.removed, inserted);
    search_.edited(model_.Text(), edit.position, edit.removed, inserted);
    if (edit.position == 0 && inserted == 0 && edit.removed < before) {
        front_ += edit.removed;
        everything_changed_ = true; // the line that was cut wraps anew
    } else {
        const Place begin = place_of(edit.position);
        const Place behind = begin + edit.removed;
        for (Place* place : {&top_, &anchor_begin_, &anchor_end_, &selection_begin_, &selection_end_}) {
            if (*place >= behind && *place > begin && behind < place_of(before)) {
                *place = *place - edit.removed + inserted;
            } else if (*place > begin && edit.removed > 0) {
                *place = begin;
            }
        }
        changed_from_ = std::min(changed_from_, begin);
    }
    if (model_.length() == 0) following_ = true;
    refresh_soon();
}

void TerminalView::take_properties() {
    if (font_name_ != model_.FontName.get() || font_size_ != model_.FontSize) {
        font_name_ = model_.FontName.get();
        font_size_ = model_.FontSize;
        font_ = TerminalFont(to_qstring(font_name_), font_size_);
        set_columns();
        refresh_everything();
    }
    take_colours();
    if (model_changed) model_changed();
}

void TerminalView::take_colours() {
    const QColor colour = readable(model_.SelColor, palette());
    if (colour == text_colour_ && faint_colour_.isValid()) return;
    text_colour_ = colour;
    faint_colour_ = palette().color(QPalette::PlaceholderText);
    viewport()->update();
}

void TerminalView::set_columns() {
    const int columns =
        std::max((viewport()->width() - 2 * margin) / font_.cell_width(), TerminalLines::least_columns);
    if (columns != lines_.columns()) lines_.set_columns(columns, model_.Text());
}

std::size_t TerminalView::page_rows() const {
    return static_cast<std::size_t>(std::max((viewport()->height() - margin) / font_.cell_height(), 1));
}

std::size_t TerminalView::last_top() const {
    return lines_.size() > page_rows() ? lines_.size() - page_rows() : 0;
}

void TerminalView::refresh_soon() {
    refresh_waits_ = true;
    if (frame_.isActive()) return;
    refresh();
    frame_.start(frame_ms, Qt::PreciseTimer, this);
}

void TerminalView::refresh_everything() {
    everything_changed_ = true;
    refresh();
}

void TerminalView::refresh() {
    refresh_waits_ = false;
    const std::size_t old_top = top_row();
    if (following_ && !dragging_) top_ = place_of(lines_.row(last_top()).begin);
    const std::size_t top = top_row();
    const std::size_t moved = top - old_top;
    if (everything_changed_ || top < old_top || moved > page_rows() / 2) {
        viewport()->update();
    } else {
        if (moved > 0) {
            const QRect all = viewport()->rect();
            viewport()->scroll(0, -static_cast<int>(moved) * font_.cell_height(), all);
            // What was cut off below, and the margin that no row fills.
            viewport()->update(0, 0, all.width(), margin + font_.cell_height());
        }
        if (changed_from_ < end() || moved > 0) {
            const std::size_t row = lines_.row_of(position_of(changed_from_));
            update_rows_from(row > 0 ? row - 1 : 0, top);
        }
    }
    everything_changed_ = false;
    changed_from_ = end();
    show_scroll_state();
    if (search_changed && !search_.pattern().empty()) search_changed();
}

void TerminalView::update_rows_from(std::size_t row, std::size_t top) {
    const std::size_t below = row > top ? row - top : 0;
    if (below > page_rows()) return;
    const int y = below == 0 ? 0 : margin + static_cast<int>(below) * font_.cell_height();
    viewport()->update(0, y, viewport()->width(), viewport()->height() - y);
}

void TerminalView::show_scroll_state() {
    showing_scroll_state_ = true;
    QScrollBar* bar = verticalScrollBar();
    bar->setRange(0, static_cast<int>(last_top()));
    bar->setPageStep(static_cast<int>(page_rows()));
    bar->setSingleStep(1);
    bar->setValue(static_cast<int>(std::min(top_row(), last_top())));
    showing_scroll_state_ = false;
    if (end_button_->isHidden() != following_) end_button_->setVisible(!following_);
}

void TerminalView::scrollContentsBy(int, int) {
    if (showing_scroll_state_) return;
    hold_at_row(static_cast<std::size_t>(std::max(verticalScrollBar()->value(), 0)));
}

void TerminalView::hold_at_row(std::size_t row) {
    following_ = row >= last_top();
    top_ = place_of(lines_.row(std::min(row, last_top())).begin);
    refresh_everything();
}

void TerminalView::follow() {
    following_ = true;
    refresh_everything();
}

void TerminalView::reveal(std::size_t position) {
    const std::size_t row = lines_.row_of(position);
    if (row < top_row() || row >= top_row() + page_rows()) {
        const std::size_t above = page_rows() / 3;
        top_ = place_of(lines_.row(std::min(row > above ? row - above : 0, last_top())).begin);
    }
    following_ = false; // else the next line would take the place away
    refresh_everything();
}

void TerminalView::place_end_button() {
    const QRect area = viewport()->geometry();
    end_button_->move(area.right() - end_button_->width() - space::wide,
                      area.bottom() - end_button_->height() - space::wide);
    end_button_->raise();
}

void TerminalView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    set_columns();
    place_end_button();
    refresh_everything();
}

void TerminalView::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() != QEvent::PaletteChange) return;
    faint_colour_ = QColor();
    take_colours();
}

void TerminalView::timerEvent(QTimerEvent* event) {
    if (event->timerId() == frame_.timerId()) {
        if (refresh_waits_) {
            refresh();
        } else {
            frame_.stop();
        }
    } else if (event->timerId() == drag_scroll_.timerId()) {
        const int above = drag_point_.y();
        const int below = drag_point_.y() - viewport()->height();
        const int rows = above < 0   ? above / font_.cell_height() - 1
                         : below > 0 ? below / font_.cell_height() + 1
                                     : 0;
        show_scroll_state();
        verticalScrollBar()->setValue(verticalScrollBar()->value() + rows);
        extend_selection_to(position_at(drag_point_));
    } else {
        QAbstractScrollArea::timerEvent(event);
    }
}

void TerminalView::wheelEvent(QWheelEvent* event) {
    show_scroll_state(); // text may have come since the last frame
    QAbstractScrollArea::wheelEvent(event);
}

bool TerminalView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        // The controller comes first; Alt opens the window's menus, other than AltGr.
        const auto modifiers = static_cast<QKeyEvent*>(event)->modifiers();
        if (!modifiers.testFlag(Qt::AltModifier) || modifiers.testFlag(Qt::ControlModifier)) {
            event->accept();
            return true;
        }
    }
    return QAbstractScrollArea::event(event);
}

bool TerminalView::focusNextPrevChild(bool) { return false; } // Tab is a key of the controller's

void TerminalView::keyPressEvent(QKeyEvent* event) {
    const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const int key = event->key();
    event->accept();
    if (modifiers == Qt::ShiftModifier && (key == Qt::Key_PageUp || key == Qt::Key_PageDown)) {
        const std::size_t page = page_rows() > 1 ? page_rows() - 1 : 1;
        const std::size_t top = top_row();
        hold_at_row(key == Qt::Key_PageDown ? top + page : top > page ? top - page : 0);
    } else if (modifiers == (Qt::ControlModifier | Qt::ShiftModifier) && key == Qt::Key_C) {
        copy();
    } else if (modifiers == (Qt::ControlModifier | Qt::ShiftModifier) && key == Qt::Key_F) {
        if (search_wanted) search_wanted();
    } else if (modifiers == Qt::NoModifier && key == Qt::Key_End && !following_) {
        follow();
    } else {
        const KeyStroke stroke = key_stroke(*event);
        if (!stroke.goes_down || (stroke.shift & (shift_bit::alt | shift_bit::ctrl)) == shift_bit::alt)
            event->ignore();
        if (!stroke.goes_down) return;
        if (key_down) key_down(stroke.keycode, stroke.shift);
        for (const char c : stroke.typed) {
            if (key_press) key_press(static_cast<unsigned char>(c));
        }
    }
}

void TerminalView::inputMethodEvent(QInputMethodEvent* event) {
    for (const char c : typed_characters(event->commitString())) {
        if (key_press) key_press(static_cast<unsigned char>(c));
    }
    event->accept();
}

QVariant TerminalView::inputMethodQuery(Qt::InputMethodQuery query) const {
    if (query == Qt::ImEnabled) return true;
    if (query == Qt::ImHints) return static_cast<int>(inputMethodHints());
    if (query == Qt::ImCursorRectangle) {
        const std::size_t row = lines_.size() - 1;
        const std::size_t below = row > top_row() ? std::min(row - top_row(), page_rows()) : 0;
        const int column = lines_.column_of(model_.Text(), model_.length());
        return QRect(margin + column * font_.cell_width(),
                     margin + static_cast<int>(below) * font_.cell_height(), font_.cell_width(),
                     font_.cell_height());
    }
    return QAbstractScrollArea::inputMethodQuery(query);
}

void TerminalView::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void TerminalView::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

QSize TerminalView::sizeHint() const {
    return {80 * font_.cell_width() + 2 * margin + verticalScrollBar()->sizeHint().width(),
            25 * font_.cell_height() + margin};
}

QSize TerminalView::minimumSizeHint() const {
    return {40 * font_.cell_width() + 2 * margin + verticalScrollBar()->sizeHint().width(),
            6 * font_.cell_height() + margin};
}

void TerminalView::search(std::string_view pattern, bool case_sensitive) {
    const bool fresh = search_.pattern().empty();
    const std::size_t from = !fresh && search_.current() ? search_.hit(*search_.current()) : first_visible();
    search_.set_pattern(pattern, case_sensitive, model_.Text());
    step_found(search_.go_near(from));
}

void TerminalView::find_next() { step_found(search_.next()); }

void TerminalView::find_previous() { step_found(search_.previous()); }

void TerminalView::step_found(std::optional<std::size_t> hit) {
    if (hit) {
        reveal(search_.hit(*hit));
    } else {
        viewport()->update();
    }
    if (search_changed) search_changed();
}

} // namespace velorn
