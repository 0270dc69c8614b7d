// An editor for a text whose every byte counts. The toolkit's document knows one kind of line end and no
// control characters, so it only shows the bytes: each of its characters stands for one of them, or for the
// two of a CR LF, and each change of the document becomes an edit of exactly those bytes. A control character
// is shown as its picture (NUL as U+2400), and CR LF, CR and LF all as a line end.
#pragma once

#include "runtime/rich_text_box.h"

#include <QPlainTextEdit>
#include <QString>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velorn {

// Where the lines of a text begin, and so which byte a place in the document is. A CR and an LF that came
// together by an edit stay two line ends, since the document has two.
class ByteLines {
  public:
    struct Place {
        std::size_t line = 0;
        std::size_t byte = 0;
    };

    void set_Text(std::string_view text);

    // Characters that the document needs for the text.
    std::size_t characters() const { return characters_; }

    Place at(std::size_t line, std::size_t column) const { return {line, starts_[line] + column}; }
    // The line that holds a byte, in which CR LF counts to its end.
    Place place_of(std::size_t byte) const;
    // `count` characters on, but no further than the end. `text` is always the text as it was last told.
    Place after(std::string_view text, Place from, std::size_t count) const;
    // From one place to another as the document shows it, line ends as '\n'.
    QString shown(std::string_view text, Place from, Place to) const;
    // The line end of a line, as it stands in the text; empty for the last line.
    std::string_view line_end(std::string_view text, std::size_t line) const;

    // The bytes from one place to another were replaced; `ends` holds, for each line end in what came, where
    // the next line begins, counted from the first place. `characters`: how many more the document has.
    void replace(Place from, Place to, std::size_t inserted, const std::vector<std::size_t>& ends,
                 std::ptrdiff_t characters);

  private:
    std::vector<std::size_t> starts_{0};
    std::size_t text_length_ = 0;
    std::size_t characters_ = 0;
};

class ByteTextEdit : public QPlainTextEdit {
  public:
    ByteTextEdit(RichTextBox& text, QWidget* parent);

    // To be called after each edit of the text; what came from here is known already, all else is shown anew
    // and can't be undone.
    void show_edit();
    // Selection and cursor as the text has them.
    void show_selection();

    // Undoing gives back the line ends as they were.
    void undo_change();
    void redo_change();

    // What was typed or pasted holds characters that a file can't hold; nothing was inserted.
    std::function<void(const QString& characters)> refused;
    // Something was changed by the person.
    std::function<void()> typed;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    QMimeData* createMimeDataFromSelection() const override;
    void insertFromMimeData(const QMimeData* source) override;

  private:
    enum class Change { by_hand, undo, redo };
    struct LineEnd {
        std::size_t position; // in the document
        std::string bytes;
    };

    void show_all();
    void contents_changed(int position, int removed, int added);
    void take_over(std::size_t position, std::size_t removed, std::size_t added);
    void remember_line_ends(ByteLines::Place from, ByteLines::Place to, std::size_t position);
    std::string bytes_of(const QString& text, std::size_t position, std::vector<std::size_t>& ends);
    void selection_changed();
    std::size_t byte_at(int position) const;
    int position_of(std::size_t byte) const;
    QString between(std::size_t position, std::size_t count) const;
    bool accepts(const QString& text);

    RichTextBox& text_;
    ByteLines lines_;
    bool own_ = false;     // the document or the text is changing by our hand
    bool showing_ = false; // the document is being filled
    Change change_ = Change::by_hand;
    // Line ends that undoing and redoing will want back, in the order in which they went.
    std::vector<LineEnd> to_undo_, to_redo_;
};

} // namespace velorn
