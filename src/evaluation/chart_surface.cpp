#include "evaluation/chart_surface.h"

#include "evaluation/nearest.h"

#include <cstdlib>

namespace velorn {

namespace {

constexpr int least_bold = 11;
constexpr int strokes_on_paper = 6;
constexpr int dot_distance = 4;
constexpr Colour default_colour = colour::rgb(128, 128, 128);

} // namespace

void ChartSurface::draw_on(Canvas* target, bool druckmodus) {
    canvas_ = target;
    druckmodus_ = druckmodus;
}

void ChartSurface::setzeposition(int x, int y) {
    x_ = druckmodus_ ? nearest(printer_x(x)) : x;
    y_ = druckmodus_ ? nearest(printer_y(y)) : chart_height - y;
}

void ChartSurface::schreibetext(std::string_view text, int size) {
    if (canvas_ == nullptr) return;
    CanvasFont font;
    font.points = size;
    font.proportional = true;
    font.bold = size >= least_bold;
    canvas_->text(x_, y_, text, font, colour::black);
}

void ChartSurface::zeichnelinie(int x1, int y1, int x2, int y2, Colour colour) {
    if (canvas_ == nullptr) return;
    if (!druckmodus_) {
        canvas_->line(x1, chart_height - y1, x2, chart_height - y2, colour);
        return;
    }
    for (int stroke = 0; stroke < strokes_on_paper; ++stroke) {
        canvas_->line(nearest(printer_x(x1)), nearest(printer_y(y1)) + stroke, nearest(printer_x(x2)),
                      nearest(printer_y(y2)) + stroke, colour);
    }
}

void ChartSurface::zeichnestrich(int x1, int y1, int x2, int y2) {
    const int dx = x2 - x1;
    const int dy = y2 - y1;
    const bool upright = std::abs(dx) <= std::abs(dy);
    const int along = upright ? dy : dx;
    const int across = upright ? dx : dy;
    const double n = std::max(1.0, std::abs(along / double{dot_distance}));
    const int step = along < 0 ? -1 : 1;
    for (int i = 0; i <= n; ++i) {
        const int far = i * dot_distance * step;
        const int aside = nearest(across / n * i);
        if (upright)
            zeichnelinie(x1 + aside, y1 + far, x1 + aside, y1 + far + step, default_colour);
        else
            zeichnelinie(x1 + far, y1 + aside, x1 + far + step, y1 + aside, default_colour);
    }
}

} // namespace velorn
