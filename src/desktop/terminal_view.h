// The terminal's window: shows a RichTextBox of half a million characters and keeps up with a line that never
// stops. An arriving chunk costs its own length; painting happens once a frame, of the rows that changed.
//
// The person who reads is left alone: whoever scrolls back keeps view and selection while text arrives and
// while the oldest goes. Keys belong to the controller: but for Shift+PageUp/PageDown, Ctrl+Shift+C,
// Ctrl+Shift+F, and End while scrolled back, each stroke is handed on, once.
#pragma once

#include "desktop/terminal_font.h"
#include "desktop/terminal_lines.h"
#include "desktop/terminal_search.h"
#include "runtime/rich_text_box.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QList>
#include <QPoint>

#include <cstdint>
#include <functional>
#include <optional>

class QAction;
class QMenu;

namespace velorn {

class StrokeButton;

class TerminalView : public QAbstractScrollArea {
  public:
    // Takes the model's on_edit and on_change for as long as it lives.
    explicit TerminalView(RichTextBox& model, QWidget* parent = nullptr);
    TerminalView(const TerminalView&) = delete;
    TerminalView& operator=(const TerminalView&) = delete;
    ~TerminalView() override;

    std::function<void(int vb_keycode, int vb_shift)> key_down;
    std::function<void(unsigned char cp1252)> key_press;

    // After the model's properties changed and the view has taken what it needs.
    std::function<void()> model_changed;

    // Somebody wants to search: Ctrl+Shift+F, or the menu.
    std::function<void()> search_wanted;

    // Places were found, lost or stepped through; at most once a frame while text arrives.
    std::function<void()> search_changed;

    // What the context menu offers below its own; the owner keeps the actions.
    QList<QAction*> extra_actions;

    bool follows() const { return following_; }
    void follow();

    // Zero-based positions in the text.
    std::size_t first_visible() const { return position_of(top_); }
    std::size_t selection_begin() const;
    std::size_t selection_end() const;
    void select(std::size_t begin, std::size_t end);
    void select_all();

    // As it came: soft wraps add nothing. Without a selection the clipboard stays as it is.
    std::string selected_text() const;
    void copy() const;

    void search(std::string_view pattern, bool case_sensitive);
    void find_next();
    void find_previous();
    const TerminalSearch& found() const { return search_; }

    const TerminalLines& lines() const { return lines_; }
    const TerminalFont& terminal_font() const { return font_; }
    QMenu* make_context_menu(); // the caller owns it

    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

  private:
    // A place in all text that ever was, so that a removal at the front leaves it where it is.
    using Place = std::uint64_t;
    enum class Unit { character, word, line };

    Place place_of(std::size_t position) const { return front_ + position; }
    std::size_t position_of(Place place) const;
    Place end() const { return front_ + model_.length(); }

    void model_edited(const RichTextBox::Edit& edit);
    void take_properties();
    void set_columns();

    // Rows and scrolling.
    std::size_t page_rows() const;
    std::size_t last_top() const;
    std::size_t top_row() const { return lines_.row_of(position_of(top_)); }
    void hold_at_row(std::size_t row);
    void reveal(std::size_t position);
    void refresh_soon();
    void refresh();
    void refresh_everything();
    void show_scroll_state();
    void place_end_button();

    // Painting.
    void paint_row(TerminalFont::Row& out, QPainter& painter, std::size_t row, int y);
    void paint_caret(QPainter& painter, std::size_t top);
    void update_rows_from(std::size_t row, std::size_t top);
    void take_colours();

    // Mouse.
    std::size_t position_at(QPoint point) const;
    std::pair<std::size_t, std::size_t> unit_at(std::size_t position) const;
    void extend_selection_to(std::size_t position);
    void offer_primary_selection() const;
    void step_found(std::optional<std::size_t> hit);

    RichTextBox& model_;
    TerminalFont font_;
    TerminalLines lines_;
    TerminalSearch search_;
    StrokeButton* end_button_;

    Place front_ = 0;
    Place top_ = 0; // the start of what is shown; moved by refresh(), so that a frame is of one piece
    bool following_ = true;
    bool everything_changed_ = true;
    Place changed_from_ = 0;
    bool refresh_waits_ = false;
    bool showing_scroll_state_ = false;
    QBasicTimer frame_;

    Place anchor_begin_ = 0; // what a drag began with
    Place anchor_end_ = 0;
    Place selection_begin_ = 0;
    Place selection_end_ = 0;
    Unit unit_ = Unit::character;
    bool dragging_ = false;
    QPoint drag_point_;
    QBasicTimer drag_scroll_;
    unsigned long double_click_time_ = 0;
    QPoint double_click_point_;

    QColor text_colour_;
    QColor faint_colour_;
    std::string font_name_;
    double font_size_ = 0;
};

} // namespace velorn
