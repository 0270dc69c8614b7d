// Boxes and straight lines on the pixels of an image: whole pixels, no smoothing, and nothing outside.
#pragma once

#include <QRgb>

#include <cstddef>

namespace velorn {

// 32 bits a pixel.
struct Pixels {
    QRgb* first = nullptr;
    std::ptrdiff_t stride = 0; // pixels from one row to the next
    int width = 0, height = 0;
};

// Half-open.
struct Area {
    int left = 0, top = 0, right = 0, bottom = 0;
    bool empty() const { return left >= right || top >= bottom; }
};

Area within(const Pixels& image, const Area& area);

// `area` lies within the image.
void fill(const Pixels& image, const Area& area, QRgb colour);

// A square brush of `thick` pixels (1 to 8192), its top left corner led along the straight line from (x1, y1)
// to (x2, y2), both ends included, the same pixels in either direction. Ends may lie up to 2^29 outside; the
// pixels are those of the whole line, and only those that show cost time.
void draw_line(const Pixels& image, int x1, int y1, int x2, int y2, int thick, QRgb colour);

} // namespace velorn
