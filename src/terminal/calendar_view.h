// The weekly calendar: the controller writes it onto the mirrored screen in its small font, and it is lifted
// out into labels and a graphic on picabs, with a curve for each row of switching times.
#pragma once

#include "core/frm_terminal.h"

namespace velorn {

class CalendarView {
  public:
    // Where the graphic stands on picabs, logical pixels.
    static constexpr int first_row = 4, last_row = 17;
    static constexpr int first_column = 8, last_column = 80;
    static constexpr int column_width = 10; // three of them make an hour
    static constexpr int row_height = 20;   // a place is wiped one less high
    static constexpr int left = 80;         // before it stand the days
    static constexpr int width = left + (last_column - first_column + 1) * column_width + 10;
    static constexpr int height = (last_row - first_row + 1) * row_height;

    explicit CalendarView(FrmTerminal& frmTerminal);

    // Shown from the calendar's beginning to the next new screen.
    void show();
    void hide();

    // Labels and graphic from what stands on the screen.
    void paint();

  private:
    void paint_row(Canvas& canvas, int row) const;

    FrmTerminal& frmTerminal_;
};

} // namespace velorn
