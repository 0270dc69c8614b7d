// The mirrored screen: what the controller's display shows, character by character.
//
// Columns 1 to 80 and rows 1 to 29 are used; column and row 0 are there and stay blank unless a sequence of
// the controller reaches them. Three planes: the character, its attribute, and a mark for what must be
// painted. A row's characters lie side by side.
#pragma once

#include <array>
#include <cstddef>
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

    // column 0 to 80, row 0 to 29
    char& at(Plane plane, int column, int row) { return line(plane, row)[static_cast<std::size_t>(column)]; }
    char at(Plane plane, int column, int row) const {
        return line(plane, row)[static_cast<std::size_t>(column)];
    }

    using Line = std::array<char, columns + 1>;
    Line& line(Plane plane, int row) { return planes_[plane][static_cast<std::size_t>(row)]; }
    const Line& line(Plane plane, int row) const { return planes_[plane][static_cast<std::size_t>(row)]; }

    // The characters of a row from one column to another, both included.
    std::string_view text(int row, int from, int to) const {
        return {&line(character, row)[static_cast<std::size_t>(from)],
                static_cast<std::size_t>(to - from + 1)};
    }

    // All cells of all planes.
    void blank() {
        for (auto& plane : planes_) {
            for (Line& row : plane) row.fill(' ');
        }
    }

  private:
    std::array<std::array<Line, rows + 1>, 3> planes_;
};

} // namespace velorn
