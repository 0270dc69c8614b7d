#include "runtime/rich_text_box.h"

#include <algorithm>

namespace velorn {

void RichTextBox::set_Text(std::string_view text) {
    edit(0, text_.size(), text);
    select(0);
}

void RichTextBox::select(std::size_t start, std::size_t length) {
    sel_start_ = std::min(start, text_.size());
    sel_length_ = std::min(length, text_.size() - sel_start_);
}

void RichTextBox::set_SelText(std::string_view text) {
    edit(sel_start_, sel_length_, text);
    select(sel_start_ + text.size());
}

void RichTextBox::append(std::string_view text) {
    select(text_.size());
    set_SelText(text);
}

void RichTextBox::remove_front(std::size_t count) {
    count = std::min(count, text_.size());
    const auto moved = [count](std::size_t position) { return position > count ? position - count : 0; };
    const std::size_t start = moved(sel_start_);
    const std::size_t end = moved(sel_start_ + sel_length_);
    edit(0, count, {});
    select(start, end - start);
}

void RichTextBox::edit(std::size_t position, std::size_t removed, std::string_view inserted) {
    if (removed == 0 && inserted.empty()) return;
    if (position + removed == text_.size()) {
        text_.resize(position);
        text_.append(inserted);
    } else {
        text_.replace(position, removed, inserted);
    }
    if (on_edit) on_edit({position, removed, std::string_view(text_).substr(position, inserted.size())});
}

} // namespace velorn
