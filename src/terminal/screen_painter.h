// Paints the mirrored screen into Picture1: the cells that changed, or all of them where many did.
//
// A cell's box takes a column of its left neighbour and a row of the one below, as the display always did it.
#pragma once

#include "core/frm_terminal.h"
#include "core/settings.h"
#include "terminal/screen_parser.h"

#include <bitset>
#include <cstddef>
#include <deque>

namespace velorn {

// From (x1, y1) to (x2, y2).
struct LineEnds {
    int x1, y1, x2, y2;
};
// A line's ends as the stream says them, 0 to 999, in pixels: 1000 spans 40 cells across and 16 rows down. A
// point becomes a short upright line.
LineEnds in_pixels(const LineEnds& ends, int cell_width, int cell_height);

class ScreenPainter {
  public:
    // From this many changes on everything is painted.
    static constexpr int whole_from = 151;
    // Lines that are kept for a picture that has to be drawn anew; older ones go.
    static constexpr std::size_t most_lines = 4096;

    // Lines of the stream are drawn as they come.
    ScreenPainter(FrmTerminal& frmTerminal, const Settings& settings, ScreenParser& parser);

    // Once per chunk, after all its characters.
    void paint();

    // What the picture shows, the lines drawn so far included: it is a new one, or fonts or colours are. What
    // it was cleared of stays away until it is sent again or everything is painted.
    void paint_anew();

  private:
    struct Line {
        LineEnds ends; // as the stream said them, since cells may become larger or smaller
        bool drawn;    // false: rubbed out
    };
    struct Look;

    Look look() const;
    // A missing canvas gets no strokes; what it would show is noted all the same.
    void paint_changed_cells(Canvas* canvas);
    void paint_shown_cells(Canvas& canvas);
    void note_all_as_painted();
    void paint_cell(Canvas& canvas, const Look& look, int column, int row) const;
    void draw(const Line& line) const;
    static std::size_t cell(int column, int row) {
        return static_cast<std::size_t>(row * (Schirm::columns + 1) + column);
    }

    FrmTerminal& frmTerminal_;
    const Settings& settings_;
    ScreenParser& parser_;
    std::deque<Line> lines_;                                        // since all was painted or cleared
    std::bitset<(Schirm::columns + 1) * (Schirm::rows + 1)> shown_; // cells painted since it was cleared
};

} // namespace velorn
