// The one surface that all charts are drawn on, whatever lies behind it: the screen's picture or a printed
// page. Its units are whole, x to the right, y upwards; the curves stand from (plotlinks, plotunten) to
// (plotlinks + plotbreite, plotunten + plothoehe).
#pragma once

#include "runtime/canvas.h"

#include <string_view>

namespace velorn {

inline constexpr int plotlinks = 80;
inline constexpr int plotunten = 40;
inline constexpr int plothoehe = 500;
inline constexpr int chart_width = 660;  // all that a chart with its labels takes
inline constexpr int year_width = 540;   // a year's takes less
inline constexpr int chart_height = 550; // the screen's y is this less the surface's

// The printed page counts in twips, from its top left corner.
constexpr double printer_x(int x) { return x * 16.75 + 400; }
constexpr double printer_y(int y) { return (chart_height - y) * 11.765 + 1500; }

class ChartSurface {
  public:
    // Onto the picture or, in druckmodus, onto a page. Nothing is drawn without a canvas.
    void draw_on(Canvas* target, bool druckmodus);

    void setzeposition(int x, int y);
    // At the position, in points; 11 and more are bold.
    void schreibetext(std::string_view text, int size);
    // Both ends are drawn. On paper a line is six strokes, so that curves are heavier there.
    void zeichnelinie(int x1, int y1, int x2, int y2, Colour colour);
    // In the default colour, a grey behind which curves stand out. A dot every 4 units of the longer axis,
    // each one unit long.
    void zeichnestrich(int x1, int y1, int x2, int y2);

  private:
    Canvas* canvas_ = nullptr;
    bool druckmodus_ = false;
    int x_ = 0, y_ = 0; // the position, in the target's units
};

} // namespace velorn
