#include "terminal/calendar_view.h"

#include <string>

namespace velorn {

namespace {

struct Stretch {
    int row, from, to; // columns, both included
};

// labkal1 to labkal9.
constexpr Stretch stretches[] = {
    {1, 4, 32},  {2, 12, 30}, {2, 38, 49}, {2, 50, 61}, {3, 44, 56},
    {20, 0, 36}, {21, 0, 36}, {22, 0, 36}, {23, 0, 36},
};

constexpr Colour ground = colour::rgb(192, 192, 255);
constexpr int wiped_height = 19;
constexpr int raised = 14;
constexpr int low = 8;
constexpr int stroke = 2;
constexpr int columns_an_hour = 3;

int level_of(char cell) { return cell == '1' ? raised : cell == '0' ? low : 0; }

// The hours 0, 6, 12, 18 and 24, each above its column.
std::string ruler() {
    std::string text;
    for (const int hour : {0, 6, 12, 18, 24}) {
        text.resize(static_cast<std::size_t>(hour * columns_an_hour), ' ');
        text += std::to_string(hour);
    }
    return text;
}

} // namespace

CalendarView::CalendarView(FrmTerminal& frmTerminal) : frmTerminal_(frmTerminal) {
    PictureBox& picabs = frmTerminal_.picabs;
    picabs.Width = width;
    picabs.Height = height;
    picabs.BackColor = ground;
    picabs.Paint = [this] { paint(); };
    frmTerminal_.Label13.Caption = ruler();
}

void CalendarView::show() {
    for (std::size_t i = 1; i < frmTerminal_.labkal.size(); ++i) frmTerminal_.labkal[i].Visible = true;
    frmTerminal_.Label13.Visible = true;
    frmTerminal_.picabs.Visible = true;
}

void CalendarView::hide() {
    frmTerminal_.picabs.Visible = false;
    frmTerminal_.Label13.Visible = false;
    for (std::size_t i = 1; i < frmTerminal_.labkal.size(); ++i) frmTerminal_.labkal[i].Visible = false;
}

void CalendarView::paint() {
    std::size_t index = 1;
    for (const Stretch& stretch : stretches) {
        frmTerminal_.labkal[index++].Caption =
            std::string(frmTerminal_.schirm.text(stretch.row, stretch.from, stretch.to));
    }
    if (frmTerminal_.picabs.canvas == nullptr) return;
    Canvas& canvas = *frmTerminal_.picabs.canvas;
    canvas.box(0, 0, left, height, ground);
    for (int row = first_row; row <= last_row; ++row) paint_row(canvas, row);
}

void CalendarView::paint_row(Canvas& canvas, int row) const {
    const int top = (row - first_row) * row_height;
    const int bottom = top + wiped_height;
    const Schirm& schirm = frmTerminal_.schirm;
    for (int column = 1; column < first_column; ++column) {
        const char c = schirm.at(Schirm::character, column, row);
        const CanvasFont font{frmTerminal_.Picture1.FontName, 11, left / first_column, wiped_height};
        if (c != ' ') canvas.text(column * (left / first_column), top, {&c, 1}, font, colour::black);
    }
    int before = 0;
    for (int column = first_column; column <= last_column; ++column) {
        const int x = left + (column - first_column) * column_width;
        canvas.box(x, top, x + column_width, bottom, ground);
        const int level = level_of(schirm.at(Schirm::character, column, row));
        if (level != 0)
            canvas.box(x, bottom - level, x + column_width, bottom - level + stroke, colour::black);
        if (level != 0 && before != 0 && level != before)
            canvas.box(x, bottom - raised, x + stroke, bottom - low + stroke, colour::black);
        before = level;
    }
}

} // namespace velorn
