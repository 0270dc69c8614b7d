// The mirrored display made plainly: one character after the other, every cell looked at, no table and no
// short cuts. The real parser is held against it, and the plant's display is read with it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velorn::test {

class PlainScreen {
  public:
    PlainScreen() { blank(); }

    // A chunk as it comes over one link; capture_taken: a start mark in it was served already.
    void feed(std::string_view chunk, bool over_tcp = false, bool capture_taken = false);

    char character(int c, int r) const { return cells_[0][r][c]; }
    char attribute(int c, int r) const { return cells_[1][r][c]; }
    char mark(int c, int r) const { return cells_[2][r][c]; }
    // A row's characters without the blanks at its end.
    std::string text(int number) const;
    // What stands in a row inverse or block-inverse, the rest blank.
    std::string inverse_text(int number) const;

    int row = 1, column = 1, state = 0;
    int kept_row = 1, kept_column = 1;
    int changes = 0;
    int highest_row = 0;
    bool cursor_shown = false, blocks = false, calendar = false, inverse = false, graph = false;
    int red = 0, red_used = 0;
    int cell_width = 12, cell_height = 19;

    // In order: "capture", "log", "log over tcp", "evaluation", "calendar", "new screen", "graph:...",
    // "line x1 y1 x2 y2 drawn" (1 or 0).
    std::vector<std::string> asked;

    // Marks and changes are gone, as after a painting.
    void painted();

  private:
    void one(char c, bool over_tcp, bool& capture_taken);
    void plain(char c);
    void blank();
    void clear();
    void remove_blocks();
    void place_row(int n);
    void block_run();
    void line_digit(char c);
    void scroll();

    char cells_[3][30][82]{}; // plane, row, column; one column more than is used
    bool beyond_ = false;
    std::string digits_;
    std::string graph_text_;
};

} // namespace velorn::test
