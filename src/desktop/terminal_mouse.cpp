// Mouse, selection and context menu of the terminal.
#include "desktop/style.h"
#include "desktop/terminal_view.h"
#include "desktop/text_rim.h"
#include "runtime/text.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QStyleHints>

#include <algorithm>

namespace velorn {

namespace {

constexpr int margin = space::small;
constexpr int drag_scroll_ms = 50;

enum class Kind { blank, word, other };

Kind kind_of(char character) {
    const auto c = static_cast<unsigned char>(character);
    if (c <= ' ' || c == 0xA0) return Kind::blank;
    const bool ascii_word =
        (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
    return ascii_word || (c >= 0x80 && (to_lower(c) != c || to_upper(c) != c)) || c == 0xDF ? Kind::word
                                                                                            : Kind::other;
}

} // namespace

std::size_t TerminalView::selection_begin() const { return position_of(selection_begin_); }

std::size_t TerminalView::selection_end() const { return position_of(selection_end_); }

void TerminalView::select(std::size_t begin, std::size_t end) {
    begin = std::min(begin, model_.length());
    end = std::clamp(end, begin, model_.length());
    anchor_begin_ = anchor_end_ = selection_begin_ = place_of(begin);
    selection_end_ = place_of(end);
    viewport()->update();
}

void TerminalView::select_all() {
    select(0, model_.length());
    offer_primary_selection();
}

std::string TerminalView::selected_text() const {
    return model_.Text().substr(selection_begin(), selection_end() - selection_begin());
}

void TerminalView::copy() const {
    const std::string text = selected_text();
    if (!text.empty()) QApplication::clipboard()->setText(to_qstring(text));
}

void TerminalView::offer_primary_selection() const {
    QClipboard* clipboard = QApplication::clipboard();
    if (!clipboard->supportsSelection() || selection_begin() == selection_end()) return;
    clipboard->setText(to_qstring(selected_text()), QClipboard::Selection);
}

std::size_t TerminalView::position_at(QPoint point) const {
    const int below = point.y() < margin ? 0 : (point.y() - margin) / font_.cell_height();
    const std::size_t row = top_row() + static_cast<std::size_t>(below);
    if (row >= lines_.size()) return model_.length();
    const int column = (point.x() - margin + font_.cell_width() / 2) / font_.cell_width();
    return lines_.position_at(model_.Text(), row, std::max(column, 0));
}

std::pair<std::size_t, std::size_t> TerminalView::unit_at(std::size_t position) const {
    const std::string& text = model_.Text();
    if (unit_ == Unit::character || text.empty()) return {position, position};
    if (unit_ == Unit::line) {
        const std::size_t before = position == 0 ? std::string::npos : text.rfind('\n', position - 1);
        const std::size_t behind = text.find('\n', position);
        return {before == std::string::npos ? 0 : before + 1,
                behind == std::string::npos ? text.size() : behind + 1};
    }
    std::size_t begin = std::min(position, text.size() - 1);
    const auto line_end = [&](std::size_t i) { return text[i] == '\n' || text[i] == '\r'; };
    if (line_end(begin)) return {begin, begin};
    const Kind kind = kind_of(text[begin]);
    std::size_t end = begin + 1;
    while (begin > 0 && kind_of(text[begin - 1]) == kind && !line_end(begin - 1)) --begin;
    while (end < text.size() && kind_of(text[end]) == kind && !line_end(end)) ++end;
    return {begin, end};
}

void TerminalView::extend_selection_to(std::size_t position) {
    const auto [begin, end] = unit_at(position);
    selection_begin_ = std::min(anchor_begin_, place_of(begin));
    selection_end_ = std::max(anchor_end_, place_of(end));
    viewport()->update();
}

void TerminalView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    drag_point_ = event->pos();
    const bool third =
        event->timestamp() - double_click_time_ <
            static_cast<unsigned long>(QApplication::doubleClickInterval()) &&
        double_click_time_ != 0 &&
        (event->pos() - double_click_point_).manhattanLength() < QApplication::startDragDistance();
    double_click_time_ = 0;
    unit_ = third ? Unit::line : Unit::character;
    dragging_ = true;
    const std::size_t position = position_at(event->pos());
    if (third || !event->modifiers().testFlag(Qt::ShiftModifier)) {
        const auto [begin, end] = unit_at(position);
        anchor_begin_ = place_of(begin);
        anchor_end_ = place_of(end);
    }
    extend_selection_to(position);
}

void TerminalView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    unit_ = Unit::word;
    dragging_ = true;
    double_click_time_ = event->timestamp();
    double_click_point_ = drag_point_ = event->pos();
    // The character under the mouse, not the gap nearest to it.
    const std::size_t position = position_at(event->pos() - QPoint(font_.cell_width() / 2, 0));
    const auto [begin, end] = unit_at(position);
    anchor_begin_ = place_of(begin);
    anchor_end_ = place_of(end);
    extend_selection_to(position);
}

void TerminalView::mouseMoveEvent(QMouseEvent* event) {
    if (!dragging_) return;
    drag_point_ = event->pos();
    const bool outside = event->pos().y() < 0 || event->pos().y() > viewport()->height();
    if (outside && !drag_scroll_.isActive()) drag_scroll_.start(drag_scroll_ms, this);
    if (!outside) drag_scroll_.stop();
    extend_selection_to(position_at(event->pos()));
}

void TerminalView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !dragging_) return;
    dragging_ = false;
    drag_scroll_.stop();
    offer_primary_selection();
    refresh();
}

QMenu* TerminalView::make_context_menu() {
    auto* menu = new QMenu(this);
    QAction* copying = menu->addAction(QStringLiteral("Kopieren\tStrg+Umschalt+C"), this, [this] { copy(); });
    copying->setEnabled(selection_begin() != selection_end());
    menu->addAction(QStringLiteral("Alles markieren"), this, [this] { select_all(); });
    menu->addAction(QStringLiteral("Suchen …\tStrg+Umschalt+F"), this, [this] {
        if (search_wanted) search_wanted();
    });
    if (!extra_actions.isEmpty()) {
        menu->addSeparator();
        menu->addActions(extra_actions);
    }
    return menu;
}

void TerminalView::contextMenuEvent(QContextMenuEvent* event) {
    QMenu* menu = make_context_menu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(event->globalPos());
}

} // namespace velorn
