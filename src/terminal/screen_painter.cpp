#include "terminal/screen_painter.h"

#include "runtime/number_picture.h"

#include <algorithm>

namespace velorn {

LineEnds in_pixels(const LineEnds& ends, int cell_width, int cell_height) {
    const auto scaled = [](int value, int cell, double span, double margin) {
        return static_cast<int>(round_to_even(value / 1000.0 * cell * span + cell * margin));
    };
    LineEnds pixels{.x1 = scaled(ends.x1, cell_width, 40, 1.2),
                    .y1 = scaled(ends.y1, cell_height, 16, 1.1),
                    .x2 = scaled(ends.x2, cell_width, 40, 1.2),
                    .y2 = scaled(ends.y2, cell_height, 16, 1.1)};
    if (pixels.x1 == pixels.x2 && pixels.y1 == pixels.y2) {
        --pixels.y1;
        ++pixels.y2;
    }
    return pixels;
}

// What is the same for all cells of one painting.
struct ScreenPainter::Look {
    CanvasFont font;
    Colour text, ground;
    int width, height; // of a cell
    int correction;    // of the inverse boxes
    bool coloured;     // cell by cell
};

ScreenPainter::ScreenPainter(FrmTerminal& frmTerminal, const Settings& settings, ScreenParser& parser)
    : frmTerminal_(frmTerminal), settings_(settings), parser_(parser) {
    parser_.screen_events.line.connect([this](int x1, int y1, int x2, int y2, bool drawn) {
        if (lines_.size() == most_lines) lines_.pop_front();
        lines_.push_back({{x1, y1, x2, y2}, drawn});
        draw(lines_.back());
    });
    frmTerminal_.Picture1.Paint = [this] { paint_anew(); };
    frmTerminal_.Picture1.cleared = [this] {
        lines_.clear();
        shown_.reset();
    };
}

ScreenPainter::Look ScreenPainter::look() const {
    const PictureBox& picture = frmTerminal_.Picture1;
    const double correction = std::clamp(round_to_even(settings_.korrinv.number()), -5.0, 5.0);
    return {
        .font = {picture.FontName, picture.FontSize, frmTerminal_.zeichenbreite, frmTerminal_.zeilenhoehe},
        .text = picture.ForeColor,
        .ground = picture.FillColor,
        .width = frmTerminal_.zeichenbreite,
        .height = frmTerminal_.zeilenhoehe,
        .correction = static_cast<int>(correction),
        .coloured = parser_.state.rotgenutzt >= 1};
}

void ScreenPainter::paint() {
    const bool whole = parser_.state.aenderungen >= whole_from;
    parser_.state.aenderungen = 0;
    Canvas* const canvas = frmTerminal_.Picture1.canvas;
    if (!whole) {
        paint_changed_cells(canvas);
        return;
    }
    lines_.clear();
    note_all_as_painted();
    if (canvas != nullptr) paint_shown_cells(*canvas);
}

void ScreenPainter::paint_anew() {
    Canvas* const canvas = frmTerminal_.Picture1.canvas;
    if (canvas == nullptr) return;
    paint_shown_cells(*canvas);
    for (const Line& line : lines_) draw(line);
}

void ScreenPainter::paint_changed_cells(Canvas* canvas) {
    const Look all = look();
    Schirm& schirm = frmTerminal_.schirm;
    schirm.take_marked_rows([&](int row) {
        if (row < 1) return;
        const Schirm::Line& marks = schirm.line(Schirm::mark, row);
        for (int column = 1; column <= Schirm::columns; ++column) {
            if (marks[static_cast<std::size_t>(column)] != Schirm::changed) continue;
            schirm.set_clean(column, row);
            shown_.set(cell(column, row));
            if (canvas == nullptr) continue;
            canvas->box(all.width * column - 1, all.height * row, all.width * (column + 1),
                        1 + all.height * (row + 1), all.ground);
            paint_cell(*canvas, all, column, row);
        }
    });
}

void ScreenPainter::paint_shown_cells(Canvas& canvas) {
    const Look all = look();
    canvas.clear(frmTerminal_.Picture1.BackColor);
    for (int row = 1; row <= Schirm::rows; ++row) {
        for (int column = 1; column <= Schirm::columns; ++column) {
            if (shown_.test(cell(column, row))) paint_cell(canvas, all, column, row);
        }
    }
}

void ScreenPainter::note_all_as_painted() {
    shown_.set();
    for (int row = 1; row <= Schirm::rows; ++row)
        frmTerminal_.schirm.change_line(Schirm::mark, row).fill(Schirm::clean);
    frmTerminal_.schirm.take_marked_rows([](int) {});
}

void ScreenPainter::paint_cell(Canvas& canvas, const Look& all, int column, int row) const {
    const Schirm& schirm = frmTerminal_.schirm;
    const char character = schirm.at(Schirm::character, column, row);
    const char attribute = schirm.at(Schirm::attribute, column, row);
    const int x = all.width * column;
    const int y = all.height * row;
    if (character != ' ') {
        const bool red = all.coloured && attribute == Schirm::red;
        canvas.text(x, y, {&character, 1}, all.font, red ? colour::red : all.text);
    }
    if (attribute == Schirm::block || attribute == Schirm::inverse) {
        const int left = all.correction + x;
        const int top = all.correction + 1 + y;
        canvas.invert(left, top, left + all.width, top + all.height);
    }
}

void ScreenPainter::draw(const Line& line) const {
    const PictureBox& picture = frmTerminal_.Picture1;
    if (picture.canvas == nullptr) return;
    const LineEnds ends = in_pixels(line.ends, frmTerminal_.zeichenbreite, frmTerminal_.zeilenhoehe);
    picture.canvas->line(ends.x1, ends.y1, ends.x2, ends.y2,
                         line.drawn ? picture.ForeColor.get() : picture.BackColor.get());
}

} // namespace velorn
