// Puts together what the operator display sends: text at its place, inverse and red text, selections, bars,
// lines. Text is UTF-8 here and leaves in code page 437.
#pragma once

#include <string>
#include <string_view>

namespace velorn::plant {

class ScreenWriter {
  public:
    static constexpr int columns = 80;
    static constexpr int rows = 24;

    // What was written since the last call.
    std::string take();

    void clear();
    // row 1 to 24, column 1 to 80
    void at(int row, int column);
    void text(std::string_view utf8);
    void text_at(int row, int column, std::string_view utf8);
    // Inverse text; ends every selection and bar on the screen, and takes the cursor home.
    void inverse(std::string_view utf8);
    void red(std::string_view utf8);
    // Marks columns from to to of a row, in place of what was marked before. from: 2 or more.
    void select(int row, int from, int to);
    void select_nothing();
    // A bar of `length` cells out of `whole`.
    void bar(int row, int column, int length, int whole);
    // Shows the cursor as a mark, or not.
    void cursor(bool shown);
    // From (x1, y1) to (x2, y2) in thousandths of 40 columns and 16 rows, 0 to 999.
    void line(int x1, int y1, int x2, int y2);
    void calendar();
    // Bytes as they are.
    void raw(std::string_view bytes) { out_ += bytes; }

  private:
    std::string out_;
};

} // namespace velorn::plant
