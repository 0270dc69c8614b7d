#include "desktop/terminal_lines.h"

#include <algorithm>
#include <vector>

namespace velorn {

int TerminalLines::width(char character, int column) const {
    if (character == '\r' || character == '\n') return 0;
    if (character != '\t') return 1;
    const int wanted = 8 - column % 8;
    return column < columns_ ? std::min(wanted, columns_ - column) : wanted;
}

void TerminalLines::set_columns(int columns, std::string_view text) {
    columns_ = std::max(columns, least_columns);
    starts_.assign(1, front_);
    column_ = 0;
    lay_out(text, 0);
}

void TerminalLines::edited(std::string_view text, std::size_t position, std::size_t removed,
                           std::size_t inserted) {
    if (position == 0 && inserted == 0 && removed < length_) {
        remove_front(text, removed);
        return;
    }
    if (position == length_ && removed == 0) {
        lay_out(text, position);
        return;
    }
    // A row that starts right here may owe its start to the character that went.
    while (starts_.size() > 1 && start(starts_.size() - 1) >= position) starts_.pop_back();
    column_ = 0;
    lay_out(text, start(starts_.size() - 1));
}

void TerminalLines::lay_out(std::string_view text, std::size_t from) {
    for (std::size_t i = from; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\n') {
            starts_.push_back(front_ + static_cast<std::uint32_t>(i + 1));
            column_ = 0;
            continue;
        }
        int needed = width(c, column_);
        if (column_ + needed > columns_) {
            starts_.push_back(front_ + static_cast<std::uint32_t>(i));
            column_ = 0;
            needed = width(c, 0);
        }
        column_ += needed;
    }
    length_ = text.size();
}

void TerminalLines::remove_front(std::string_view text, std::size_t count) {
    front_ += static_cast<std::uint32_t>(count);
    length_ = text.size();
    const std::uint32_t oldest = front_ - static_cast<std::uint32_t>(count);
    while (!starts_.empty() && starts_.front() - oldest < count) starts_.pop_front();
    if (!starts_.empty() && starts_.front() == front_) return;

    // Cut inside a row: the rest of its line wraps anew, up to a place where a row started before.
    std::vector<std::uint32_t> fresh{front_};
    const auto row_starts = [&](std::size_t position) {
        while (!starts_.empty() && start(0) < position) starts_.pop_front();
        if (!starts_.empty() && start(0) == position) return true;
        fresh.push_back(front_ + static_cast<std::uint32_t>(position));
        return false;
    };
    int column = 0;
    bool met = false;
    for (std::size_t i = 0; i < text.size() && !met; ++i) {
        const int needed = width(text[i], column);
        if (text[i] == '\n') {
            met = row_starts(i + 1);
            column = 0;
        } else if (column + needed > columns_) {
            met = row_starts(i);
            column = width(text[i], 0);
        } else {
            column += needed;
        }
    }
    if (!met) {
        starts_.clear();
        column_ = column;
    }
    starts_.insert(starts_.begin(), fresh.begin(), fresh.end());
}

TerminalLines::Row TerminalLines::row(std::size_t index) const {
    return {start(index), index + 1 < starts_.size() ? start(index + 1) : length_};
}

std::size_t TerminalLines::row_of(std::size_t position) const {
    const auto behind = std::partition_point(starts_.begin(), starts_.end(), [&](std::uint32_t begin) {
        return static_cast<std::uint32_t>(begin - front_) <= position;
    });
    return static_cast<std::size_t>(behind - starts_.begin()) - 1;
}

int TerminalLines::column_of(std::string_view text, std::size_t position) const {
    int column = 0;
    for (std::size_t i = row(row_of(position)).begin; i < position; ++i) column += width(text[i], column);
    return column;
}

std::size_t TerminalLines::position_at(std::string_view text, std::size_t index, int column) const {
    const Row range = row(index);
    int reached = 0;
    std::size_t i = range.begin;
    for (; i < range.end && reached < column; ++i) {
        if (text[i] == '\n' || (text[i] == '\r' && i + 1 < range.end && text[i + 1] == '\n')) break;
        reached += width(text[i], reached);
    }
    return i;
}

} // namespace velorn
