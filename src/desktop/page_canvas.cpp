#include "desktop/page_canvas.h"

#include "desktop/glyph_masks.h"
#include "desktop/text_rim.h"

#include <QFontMetricsF>
#include <QPaintDevice>
#include <QPainter>

#include <algorithm>

namespace velorn {

namespace {

constexpr double twips_an_inch = 1440;
// A dot of a common printer: thinner ones break up or vanish on paper.
constexpr double line_width = twips_an_inch / 600;
constexpr double least_points = 1;
constexpr double most_points = 400;

} // namespace

PageCanvas::PageCanvas(QPainter& painter)
    : painter_(painter),
      across_(painter.device()->logicalDpiX() / twips_an_inch),
      down_(painter.device()->logicalDpiY() / twips_an_inch) {}

void PageCanvas::clear(Colour background) {
    if (background == colour::white) return;
    const QPaintDevice& paper = *painter_.device();
    painter_.fillRect(QRectF(0, 0, paper.width(), paper.height()), to_qcolor(background));
}

void PageCanvas::line(int x1, int y1, int x2, int y2, Colour colour) {
    const double half = line_width / 2;
    if (x1 == x2 || y1 == y2) {
        const auto [left, right] = std::minmax(x1, x2);
        const auto [top, bottom] = std::minmax(y1, y2);
        // A box, since a stroke of no length leaves no mark on some devices.
        painter_.fillRect(device_box(left - half, top - half, right + half, bottom + half),
                          to_qcolor(colour));
        return;
    }
    painter_.setPen(QPen(to_qcolor(colour), line_width * across_, Qt::SolidLine, Qt::SquareCap));
    painter_.drawLine(at(x1, y1), at(x2, y2));
}

void PageCanvas::box(int x1, int y1, int x2, int y2, Colour fill) {
    if (x1 < x2 && y1 < y2) painter_.fillRect(device_box(x1, y1, x2, y2), to_qcolor(fill));
}

void PageCanvas::invert(int, int, int, int) {}

void PageCanvas::text(int x, int y, std::string_view text, const CanvasFont& wanted, Colour colour) {
    QFont font = installed_font(wanted);
    font.setPointSizeF(std::clamp(wanted.points, least_points, most_points));
    const bool in_cells = !wanted.proportional && (wanted.cell_width > 0 || wanted.cell_height > 0);
    if (in_cells) {
        const QFontMetricsF wide(font, painter_.device());
        double smaller = 1;
        if (wanted.cell_width > 0)
            smaller =
                std::min(smaller, wanted.cell_width * across_ / wide.horizontalAdvance(QLatin1Char('M')));
        if (wanted.cell_height > 0) smaller = std::min(smaller, wanted.cell_height * down_ / wide.height());
        font.setPointSizeF(std::max(least_points, font.pointSizeF() * smaller));
    }
    painter_.setFont(font);
    painter_.setPen(to_qcolor(colour));
    QPointF pen = at(x, y);
    pen.ry() += QFontMetricsF(font, painter_.device()).ascent();
    if (wanted.proportional || wanted.cell_width == 0) {
        painter_.drawText(pen, to_qstring(text));
        return;
    }
    for (const char c : text) {
        painter_.drawText(pen, to_qstring({&c, 1}));
        pen.rx() += wanted.cell_width * across_;
    }
}

} // namespace velorn
