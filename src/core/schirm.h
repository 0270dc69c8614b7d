// The mirrored screen: what the controller's display shows, character by character.
//
// Columns 1 to 80 and rows 1 to 29 are used; column and row 0 are there and hold blanks. Three planes: the
// character, its attribute, and a mark for what must be painted. A row's characters lie side by side, and
// which rows may hold marks or block-inverse cells is noted, so that nobody has to look through all of them
// for one character.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velorn {

class Schirm {
  public:
    static constexpr int columns = 80;
    static constexpr int rows = 29;

    enum Plane : std::size_t { character = 0, attribute = 1, mark = 2 };

    // Values of the attribute plane.
    static constexpr char normal = ' ';
    static constexpr char red = 'r';
    static constexpr char inverse = 'I';
    static constexpr char block = 'i'; // block-inverse, goes with the next invloeschen
    // Values of the mark plane.
    static constexpr char clean = ' ';
    static constexpr char changed = 'a'; // must be painted

    Schirm() { blank(); }

    using Line = std::array<char, columns + 1>;

    // column 0 to 80, row 0 to 29
    char at(Plane plane, int column, int row) const {
        return line(plane, row)[static_cast<std::size_t>(column)];
    }
    const Line& line(Plane plane, int row) const { return planes_[plane][static_cast<std::size_t>(row)]; }

    // The characters of a row from one column to another, both included.
    std::string_view text(int row, int from, int to) const {
        return {&line(character, row)[static_cast<std::size_t>(from)],
                static_cast<std::size_t>(to - from + 1)};
    }

    void set_character(int column, int row, char c) { cell(character, column, row) = c; }
    void set_attribute(int column, int row, char a) {
        cell(attribute, column, row) = a;
        if (a == block) block_rows_ |= bit(row);
    }
    void set_mark(int column, int row) {
        cell(mark, column, row) = changed;
        marked_rows_ |= bit(row);
    }
    void set_clean(int column, int row) { cell(mark, column, row) = clean; }

    // A whole row at once, as long as the caller keeps to the values above.
    Line& change_line(Plane plane, int row) {
        (plane == mark ? marked_rows_ : block_rows_) |= bit(row);
        return planes_[plane][static_cast<std::size_t>(row)];
    }
    // The characters of a row, and its attributes as long as no block-inverse cell comes into being.
    Line& characters(int row) { return planes_[character][static_cast<std::size_t>(row)]; }
    Line& attributes(int row) { return planes_[attribute][static_cast<std::size_t>(row)]; }

    // All cells of all planes.
    void blank() {
        for (auto& plane : planes_) {
            for (Line& row : plane) row.fill(' ');
        }
        marked_rows_ = 0;
        block_rows_ = 0;
    }

    // Calls do_row(row) for each row that may hold marks, or block-inverse cells, and forgets about them.
    template <class DoRow>
    void take_marked_rows(DoRow do_row) {
        take(marked_rows_, do_row);
    }
    template <class DoRow>
    void take_block_rows(DoRow do_row) {
        take(block_rows_, do_row);
    }

  private:
    static constexpr std::uint32_t bit(int row) { return std::uint32_t{1} << static_cast<unsigned>(row); }

    template <class DoRow>
    static void take(std::uint32_t& noted, DoRow& do_row) {
        while (noted != 0) {
            const int row = std::countr_zero(noted);
            noted &= noted - 1;
            do_row(row);
        }
    }

    char& cell(Plane plane, int column, int row) {
        return planes_[plane][static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
    }

    std::array<std::array<Line, rows + 1>, 3> planes_;
    std::uint32_t marked_rows_ = 0;
    std::uint32_t block_rows_ = 0;
};

} // namespace velorn
