// Paints the mirrored screen into Picture1: the cells that changed, or all of them where many did.
//
// A cell's box takes a column of its left neighbour and a row of the one below, as the display always did it.
#pragma once

#include "core/frm_terminal.h"
#include "core/settings.h"
#include "terminal/screen_parser.h"

#include <cstddef>
#include <deque>

namespace velorn {

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

    // Everything, the lines drawn so far included: the picture is a new one, or fonts or colours are.
    void paint_anew();

  private:
    struct Line {
        int x1, y1, x2, y2;
        bool drawn; // false: rubbed out
    };
    struct Look;

    Look look() const;
    void paint_changed_cells(Canvas& canvas);
    void paint_all_cells(Canvas& canvas);
    void paint_cell(Canvas& canvas, const Look& look, int column, int row) const;
    void draw(const Line& line) const;

    FrmTerminal& frmTerminal_;
    const Settings& settings_;
    ScreenParser& parser_;
    std::deque<Line> lines_; // since everything was painted last
};

} // namespace velorn
