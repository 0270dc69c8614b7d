// The visual rows of a long text: where each one starts. A row ends behind an LF or when it is as wide as the
// view; CR takes no column, a tab runs to the next multiple of eight, every other character takes one. What
// fills a row to its last column breaks it only when another column is needed, so a line end never makes an
// empty row.
//
// An append costs as much as what is appended, a removal at the front as much as the line that is cut. Takes
// four bytes a row. Knows no toolkit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string_view>

namespace velorn {

class TerminalLines {
  public:
    static constexpr int least_columns = 20;

    // The characters [begin, end) of the text, line end included.
    struct Row {
        std::size_t begin = 0;
        std::size_t end = 0;
    };

    int columns() const { return columns_; }

    // At least least_columns; lays everything out anew.
    void set_columns(int columns, std::string_view text);

    // To be called after each edit with the text as it is now.
    void edited(std::string_view text, std::size_t position, std::size_t removed, std::size_t inserted);

    std::size_t size() const { return starts_.size(); } // at least 1
    std::size_t length() const { return length_; }
    Row row(std::size_t index) const;

    // The row that shows the character at `position`; the end of the text belongs to the last row.
    std::size_t row_of(std::size_t position) const;

    // Columns, counted from 0. What has no column stands where the next character would.
    int column_of(std::string_view text, std::size_t position) const;

    // The first position of the row that stands at `column` or right of it; before the line end if there is
    // none.
    std::size_t position_at(std::string_view text, std::size_t row, int column) const;

    // How many columns a character takes that would begin at `column`.
    int width(char character, int column) const;

  private:
    std::size_t start(std::size_t index) const { return starts_[index] - front_; }
    void lay_out(std::string_view text, std::size_t from);
    void remove_front(std::string_view text, std::size_t count);

    // Counted from the beginning of all times, modulo 2^32, so that a removal at the front moves nothing.
    std::deque<std::uint32_t> starts_{0};
    std::uint32_t front_ = 0;
    std::size_t length_ = 0;
    int columns_ = 80;
    int column_ = 0; // behind the last character
};

} // namespace velorn
