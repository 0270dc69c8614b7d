#include "desktop/line_raster.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace velorn {

namespace {

// The image with the line's long direction first, so that one loop serves steep and flat lines.
struct Plane {
    QRgb* first;
    std::ptrdiff_t along_stride, across_stride;
    std::int64_t along_size, across_size;

    void block(std::int64_t along, std::int64_t across, std::int64_t length, std::int64_t width,
               QRgb colour) const {
        const std::int64_t to = std::min(along + length, along_size);
        const std::int64_t side = std::min(across + width, across_size);
        for (std::int64_t a = std::max<std::int64_t>(along, 0); a < to; ++a) {
            for (std::int64_t b = std::max<std::int64_t>(across, 0); b < side; ++b)
                first[a * along_stride + b * across_stride] = colour;
        }
    }
};

// The steps of a line of `steps` steps along and `rise` across, rise <= steps: step i stands at
// round(i * rise / steps) across, halves upwards.
struct Slope {
    std::int64_t steps, rise;

    std::int64_t across(std::int64_t step) const { return (2 * step * rise + steps) / (2 * steps); }
    // The first step that stands at `across` (above 0) or beyond; rise is above 0.
    std::int64_t first_at(std::int64_t across) const {
        return (2 * steps * across - steps + 2 * rise - 1) / (2 * rise);
    }
};

// From (along, across) so many steps, towards larger `along`; `towards` is the way across, 1 or -1.
void draw(const Plane& plane, std::int64_t along, std::int64_t across, Slope slope, int towards,
          std::int64_t thick, QRgb colour) {
    std::int64_t step = std::max<std::int64_t>(0, 1 - thick - along);
    std::int64_t last = std::min(slope.steps, plane.along_size - 1 - along);
    // How far across the line has come where its brush first and last shows.
    const std::int64_t entered = towards > 0 ? 1 - thick - across : across - (plane.across_size - 1);
    const std::int64_t left = towards > 0 ? plane.across_size - 1 - across : across - (1 - thick);
    if (left < 0 || entered > slope.rise) return;
    if (entered > 0) step = std::max(step, slope.first_at(entered));
    if (left < slope.rise) last = std::min(last, slope.first_at(left + 1) - 1);
    if (step > last) return;

    const std::int64_t whole = 2 * slope.steps;
    std::int64_t risen = step == 0 ? 0 : slope.across(step);
    std::int64_t rest = 2 * step * slope.rise + slope.steps - whole * risen;
    std::int64_t a = along + step;
    std::int64_t b = across + towards * risen;
    if (thick == 1) {
        QRgb* at = plane.first + a * plane.along_stride + b * plane.across_stride;
        const std::ptrdiff_t aside = towards * plane.across_stride;
        for (;; ++step, at += plane.along_stride) {
            *at = colour;
            if (step == last) return;
            rest += 2 * slope.rise;
            if (rest >= whole) {
                rest -= whole;
                at += aside;
            }
        }
    }
    plane.block(a, b, thick, thick, colour);
    for (; step < last; ++step) {
        ++a;
        rest += 2 * slope.rise;
        if (rest >= whole) {
            rest -= whole;
            b += towards;
            plane.block(a, towards > 0 ? b + thick - 1 : b, thick - 1, 1, colour);
        }
        plane.block(a + thick - 1, b, 1, thick, colour);
    }
}

template <int width>
void fill_narrow(QRgb* row, std::ptrdiff_t stride, int rows, QRgb colour) {
    for (int y = 0; y < rows; ++y, row += stride) {
        for (int x = 0; x < width; ++x) row[x] = colour;
    }
}

} // namespace

Area within(const Pixels& image, const Area& area) {
    return {std::clamp(area.left, 0, image.width), std::clamp(area.top, 0, image.height),
            std::clamp(area.right, 0, image.width), std::clamp(area.bottom, 0, image.height)};
}

void fill(const Pixels& image, const Area& area, QRgb colour) {
    const std::ptrdiff_t width = area.right - area.left;
    QRgb* const first = image.first + area.top * image.stride + area.left;
    const int rows = area.bottom - area.top;
    // A chart is made of upright strokes: a loop over two pixels would cost more than the pixels.
    switch (width) {
    case 1: return fill_narrow<1>(first, image.stride, rows, colour);
    case 2: return fill_narrow<2>(first, image.stride, rows, colour);
    case 3: return fill_narrow<3>(first, image.stride, rows, colour);
    case 4: return fill_narrow<4>(first, image.stride, rows, colour);
    default: break;
    }
    if (width <= 0 || rows <= 0) return;
    std::fill(first, first + width, colour);
    QRgb* row = first + image.stride;
    for (int y = 1; y < rows; ++y, row += image.stride) std::copy(first, first + width, row);
}

void draw_line(const Pixels& image, int x1, int y1, int x2, int y2, int thick, QRgb colour) {
    if (x1 == x2 || y1 == y2) {
        const Area box{std::min(x1, x2), std::min(y1, y2), std::max(x1, x2) + thick,
                       std::max(y1, y2) + thick};
        if (const Area shown = within(image, box); !shown.empty()) fill(image, shown, colour);
        return;
    }
    const bool steep = std::abs(y2 - y1) > std::abs(x2 - x1);
    if (steep ? y1 > y2 : x1 > x2) {
        std::swap(x1, x2);
        std::swap(y1, y2);
    }
    if (steep) {
        draw({image.first, image.stride, 1, image.height, image.width}, y1, x1, {y2 - y1, std::abs(x2 - x1)},
             x2 > x1 ? 1 : -1, thick, colour);
    } else {
        draw({image.first, 1, image.stride, image.width, image.height}, x1, y1, {x2 - x1, std::abs(y2 - y1)},
             y2 > y1 ? 1 : -1, thick, colour);
    }
}

} // namespace velorn
