// A text control for long texts, such as the terminal. Holds cp1252 bytes, a selection where output goes, and
// the colour of what is inserted next. It hands on edits ("inserted here, removed there"), never its whole
// text.
//
// The selection is that of the program, not of the person who reads: a view keeps its own.
#pragma once

#include "runtime/controls.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace velorn {

class RichTextBox : public Control {
  public:
    // `removed` characters went at zero-based `position`, then `inserted` came there.
    struct Edit {
        std::size_t position = 0;
        std::size_t removed = 0;
        std::string_view inserted;
    };

    // The view, if any; called after each edit.
    std::function<void(const Edit&)> on_edit;

    Property<Colour> SelColor{*this, colour::black};
    Property<std::string> FontName{*this, "Courier"};
    Property<double> FontSize{*this, 12.0}; // points

    const std::string& Text() const { return text_; }
    std::size_t length() const { return text_.size(); }
    void set_Text(std::string_view text);

    // Zero-based; kept within the text.
    std::size_t SelStart() const { return sel_start_; }
    std::size_t SelLength() const { return sel_length_; }
    void select(std::size_t start, std::size_t length = 0);

    // Replaces the selection; the selection is then empty and stands behind what was inserted.
    void set_SelText(std::string_view text);

    // Puts the selection at the end and inserts there.
    void append(std::string_view text);

    // Removes the first `count` characters.
    void remove_front(std::size_t count);

  private:
    void edit(std::size_t position, std::size_t removed, std::string_view inserted);

    std::string text_;
    std::size_t sel_start_ = 0;
    std::size_t sel_length_ = 0;
};

} // namespace velorn
