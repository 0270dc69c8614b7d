// How the terminal is painted.
#include "desktop/style.h"
#include "desktop/terminal_view.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>

namespace velorn {

namespace {

constexpr int margin = space::small;

} // namespace

void TerminalView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    const QRect area = event->rect();
    painter.fillRect(area, palette().color(QPalette::Base));
    const std::size_t top = top_row();
    const int height = font_.cell_height();
    const int first = std::max((area.top() - margin) / height, 0);
    TerminalFont::Row out(font_, painter, faint_colour_);
    for (int i = first; margin + i * height <= area.bottom(); ++i) {
        const std::size_t row = top + static_cast<std::size_t>(i);
        if (row >= lines_.size()) break;
        paint_row(out, painter, row, margin + i * height);
    }
    paint_caret(painter, top);
}

void TerminalView::paint_row(TerminalFont::Row& out, QPainter& painter, std::size_t row, int y) {
    struct Tones {
        QColor ground; // none: the window's
        QColor text;
    };
    const MarkColours marks = mark_colours(palette());
    const auto group = hasFocus() ? QPalette::Active : QPalette::Inactive;
    const Tones plain{QColor(), text_colour_};
    const Tones selected{palette().color(group, QPalette::Highlight),
                         palette().color(group, QPalette::HighlightedText)};
    const Tones mark{marks.ground, marks.text};
    const Tones current_mark{marks.current_ground, marks.current_text};

    const std::string& text = model_.Text();
    const TerminalLines::Row range = lines_.row(row);
    const std::size_t selection_from = selection_begin();
    const std::size_t selection_to = selection_end();
    const std::size_t pattern = search_.pattern().size();
    const auto current = search_.current();
    std::size_t hit = pattern > 0 ? search_.first_behind(range.begin) : search_.count();

    int column = 0;
    for (std::size_t i = range.begin; i < range.end; ++i) {
        while (hit < search_.count() && search_.hit(hit) + pattern <= i) ++hit;
        const bool in_hit = hit < search_.count() && search_.hit(hit) <= i;
        const bool in_selection = i >= selection_from && i < selection_to;
        const Tones& look = in_hit && current == hit ? current_mark
                            : in_selection           ? selected
                            : in_hit                 ? mark
                                                     : plain;
        const bool line_end = text[i] == '\n';
        const int cells = line_end ? 1 : lines_.width(text[i], column);
        if (look.ground.isValid() && cells > 0) {
            painter.fillRect(margin + column * font_.cell_width(), y,
                             line_end ? font_.cell_width() / 2 : cells * font_.cell_width(),
                             font_.cell_height(), look.ground);
        }
        if (!line_end) {
            out.put(text[i], column, look.text);
            column += cells;
        }
    }
    out.draw(QPointF(margin, y));
}

void TerminalView::paint_caret(QPainter& painter, std::size_t top) {
    const std::size_t row = lines_.size() - 1;
    if (row < top || row - top > page_rows()) return;
    const int column = lines_.column_of(model_.Text(), model_.length());
    const int x = std::min(margin + column * font_.cell_width(), viewport()->width() - 2);
    const QRect caret(x, margin + static_cast<int>(row - top) * font_.cell_height(), font_.cell_width(),
                      font_.cell_height());
    if (hasFocus()) {
        painter.fillRect(caret, text_colour_);
    } else {
        painter.setPen(QPen(text_colour_, 1));
        painter.drawRect(QRectF(caret).adjusted(0.5, 0.5, -0.5, -0.5));
    }
}

} // namespace velorn
