#include "desktop/image_canvas.h"

#include "desktop/style.h"
#include "desktop/text_rim.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace velorn {

namespace {

constexpr int largest_side = 8192;
constexpr int band_height = 16;
constexpr std::size_t most_fonts = 4;
constexpr std::size_t most_colours = 64;
constexpr double drawing_contrast = 3.0; // a line needs less than a letter
constexpr double farthest = 1 << 29;     // beyond any image, and safe to calculate with

int device_side(int logical, double scale) {
    return static_cast<int>(std::clamp(std::ceil(logical * scale), 1.0, double{largest_side}));
}

int rounded(double device) { return static_cast<int>(std::lround(std::clamp(device, -farthest, farthest))); }

// Each channel of `below` moved towards that of `above` by coverage / 255, two channels at a time.
QRgb mixed(QRgb below, QRgb above, unsigned coverage) {
    const unsigned share = coverage + (coverage >> 7U); // 0 to 256
    constexpr QRgb pair = 0x00FF00FFU;
    const QRgb rb = (((above & pair) * share + (below & pair) * (256 - share)) >> 8U) & pair;
    const QRgb g = (((above & 0xFF00U) * share + (below & 0xFF00U) * (256 - share)) >> 8U) & 0xFF00U;
    return 0xFF000000U | rb | g;
}

template <class Font>
auto& masks_of(std::list<Font>& kept, const CanvasFont& font, double scale) {
    for (auto known = kept.begin(); known != kept.end(); ++known) {
        if (known->font != font) continue;
        if (known != kept.begin()) kept.splice(kept.begin(), kept, known);
        return kept.front().masks;
    }
    kept.push_front({font, {font, scale}});
    if (kept.size() > most_fonts) kept.pop_back();
    return kept.front().masks;
}

} // namespace

ImageCanvas::ImageCanvas(int width, int height, double scale) : ImageCanvas(width, height, scale, scale) {}

ImageCanvas::ImageCanvas(int width, int height, double scale_x, double scale_y)
    : scale_x_(scale_x),
      scale_y_(scale_y),
      thick_(std::clamp(rounded(std::min(scale_x, scale_y)), 1, largest_side)),
      image_(device_side(width, scale_x), device_side(height, scale_y), QImage::Format_RGB32),
      bands_(static_cast<std::size_t>(image_.height() / band_height + 1)) {
    image_.fill(Qt::white);
    pixels_ = {reinterpret_cast<QRgb*>(image_.bits()),
               image_.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb)), image_.width(), image_.height()};
}

const QImage& ImageCanvas::image() {
    end_strokes();
    return image_;
}

void ImageCanvas::set_look(Colour paper, Colour ink) {
    end_strokes();
    look_ = {paper, ink};
    shown_.clear();
}

QRgb ImageCanvas::shown(Colour colour) {
    for (std::size_t i = 0; i < shown_.size(); ++i) {
        if (shown_[i].colour != colour) continue;
        if (i != 0) std::swap(shown_[i], shown_.front());
        return shown_.front().pixel;
    }
    QColor pixel = to_qcolor(colour);
    if (look_ && colour == colour::white) {
        pixel = to_qcolor(look_->paper);
    } else if (look_ && colour == colour::black) {
        pixel = to_qcolor(look_->ink);
    } else if (look_) {
        pixel = readable(colour, to_qcolor(look_->paper), to_qcolor(look_->ink), drawing_contrast);
    }
    if (shown_.size() >= most_colours) shown_.clear();
    shown_.push_back({colour, pixel.rgb()});
    return pixel.rgb();
}

QRegion ImageCanvas::take_touched() {
    end_strokes();
    std::vector<QRect> rects; // from top to bottom, none over another
    int top = 0;
    for (Band& band : bands_) {
        const int height = std::min(band_height, image_.height() - top);
        if (band.from <= band.to && height > 0)
            rects.emplace_back(band.from, top, band.to - band.from, height);
        band = {};
        top += band_height;
    }
    touched_ = false;
    QRegion region;
    region.setRects(rects.data(), static_cast<int>(rects.size()));
    return region;
}

int ImageCanvas::device_x(int logical) const { return rounded(logical * scale_x_); }
int ImageCanvas::device_y(int logical) const { return rounded(logical * scale_y_); }

Area ImageCanvas::area(int x1, int y1, int x2, int y2) const {
    return within(pixels_, {device_x(x1), device_y(y1), device_x(x2), device_y(y2)});
}

void ImageCanvas::touch(const Area& area) {
    if (area.empty()) return;
    for (int band = area.top / band_height; band <= (area.bottom - 1) / band_height; ++band) {
        Band& touched = bands_[static_cast<std::size_t>(band)];
        if (touched.from > touched.to) {
            touched = {area.left, area.right};
        } else {
            touched.from = std::min(touched.from, area.left);
            touched.to = std::max(touched.to, area.right);
        }
    }
    announce();
}

void ImageCanvas::announce() {
    if (!std::exchange(touched_, true) && on_touched) on_touched();
}

void ImageCanvas::clear(Colour background) {
    end_strokes();
    ended_.open = neighbour_.open = false; // nothing is there any more that a stroke could touch
    const Area all{0, 0, pixels_.width, pixels_.height};
    fill(pixels_, all, shown(background));
    touch(all);
}

void ImageCanvas::line(int x1, int y1, int x2, int y2, Colour colour) {
    // Nearly all lines of a dense curve only lengthen the stroke, if at all. Which way a line goes and
    // whether it sticks out nobody can predict, so nothing here branches on it.
    const int from = logical_.from;
    const int to = logical_.to;
    const int low = y1 < y2 ? y1 : y2;
    const int high = y1 < y2 ? y2 : y1;
    if (x1 != logical_.x || x2 != x1 || colour != logical_.colour || !logical_.open || low > to ||
        high < from)
        return begin_line(x1, y1, x2, y2, colour);
    logical_.from = low < from ? low : from;
    logical_.to = high > to ? high : to;
}

void ImageCanvas::begin_line(int x1, int y1, int x2, int y2, Colour colour) {
    const int left = device_x(x1);
    const int right = device_x(x2);
    const int from = device_y(y1);
    const int to = device_y(y2);
    const auto [top, bottom] = std::minmax(from, to);
    const Area box =
        within(pixels_, {std::min(left, right), top, std::max(left, right) + thick_, bottom + thick_});
    if (box.empty()) return;
    if (left != right) {
        end_strokes();
        draw_line(pixels_, left, from, right, to, thick_, shown(colour));
        touch(box);
        return;
    }
    end_logical_stroke();
    if (x1 == x2) {
        logical_ = {true, colour, x1, std::min(y1, y2), std::max(y1, y2)};
    } else {
        add_to_column(left, top, bottom + thick_, colour);
    }
    announce();
}

void ImageCanvas::end_logical_stroke() {
    if (!std::exchange(logical_.open, false)) return;
    join_to_neighbour(logical_);
    add_to_column(device_x(logical_.x), device_y(logical_.from), device_y(logical_.to) + thick_,
                  logical_.colour);
}

void ImageCanvas::join_to_neighbour(const Stroke& stroke) {
    // By the hull of a column: what is filled must not depend on how its strokes were put together.
    const bool same_colour = ended_.open && ended_.colour == stroke.colour;
    if (same_colour && ended_.x == stroke.x) {
        ended_.from = std::min(ended_.from, stroke.from);
        ended_.to = std::max(ended_.to, stroke.to);
    } else {
        neighbour_ = ended_;
        neighbour_.open = same_colour && std::int64_t{ended_.x} + 1 == stroke.x;
        ended_ = stroke;
        ended_.open = true;
    }
    const int top = std::max(neighbour_.from, stroke.from);
    const int bottom = std::min(neighbour_.to, stroke.to);
    if (!neighbour_.open || top > bottom) return;
    const Area gap = within(pixels_, {device_x(neighbour_.x) + thick_, device_y(top), device_x(stroke.x),
                                      device_y(bottom) + thick_});
    if (gap.empty()) return;
    fill(pixels_, gap, shown(stroke.colour));
    touch(gap);
}

void ImageCanvas::add_to_column(int x, int top, int bottom, Colour colour) {
    if (column_.open && x == column_.x && colour == column_.colour && top <= column_.to &&
        bottom >= column_.from) {
        column_.from = std::min(column_.from, top);
        column_.to = std::max(column_.to, bottom);
        return;
    }
    end_column();
    column_ = {true, colour, x, top, bottom};
}

void ImageCanvas::end_column() {
    if (!std::exchange(column_.open, false)) return;
    const Area drawn = within(pixels_, {column_.x, column_.from, column_.x + thick_, column_.to});
    if (drawn.empty()) return;
    fill(pixels_, drawn, shown(column_.colour));
    touch(drawn);
}

void ImageCanvas::end_strokes() {
    end_logical_stroke();
    end_column();
}

void ImageCanvas::box(int x1, int y1, int x2, int y2, Colour colour) {
    end_strokes();
    const Area filled = area(x1, y1, x2, y2);
    if (filled.empty()) return;
    fill(pixels_, filled, shown(colour));
    touch(filled);
}

void ImageCanvas::invert(int x1, int y1, int x2, int y2) {
    end_strokes();
    const Area inverted = area(x1, y1, x2, y2);
    for (int y = inverted.top; y < inverted.bottom; ++y) {
        QRgb* const pixels = pixels_.first + y * pixels_.stride;
        for (int x = inverted.left; x < inverted.right; ++x) pixels[x] ^= 0x00FFFFFFU;
    }
    touch(inverted);
}

void ImageCanvas::text(int x, int y, std::string_view text, const CanvasFont& font, Colour colour) {
    end_strokes();
    const QRgb pixel = shown(colour);
    int pen = device_x(x);
    const int top = device_y(y);
    if (font.proportional) {
        const TextMasks& masks = masks_of(proportional_fonts_, font, scale());
        blend(masks.of(to_qstring(text), pen, top, pixels_.width, pixels_.height), pen, top, pixel);
        return;
    }
    GlyphMasks& masks = masks_of(fixed_fonts_, font, scale());
    for (const char c : text) {
        if (pen >= pixels_.width) return;
        blend(masks.of(static_cast<unsigned char>(c)), pen, top, pixel);
        pen += masks.advance();
    }
}

void ImageCanvas::blend(const GlyphMasks::Mask& mask, int x, int y, QRgb colour) {
    if (mask.width == 0) return;
    const int left = x + mask.left;
    const int top = y + mask.top;
    const Area there = within(pixels_, {left, top, left + mask.width, top + mask.height});
    for (int at = there.top; at < there.bottom; ++at) {
        const unsigned char* const coverage =
            mask.coverage.data() + static_cast<std::ptrdiff_t>(at - top) * mask.width - left;
        QRgb* const pixels = pixels_.first + at * pixels_.stride;
        for (int column = there.left; column < there.right; ++column) {
            const unsigned covered = coverage[column];
            if (covered != 0) pixels[column] = mixed(pixels[column], colour, covered);
        }
    }
    touch(there);
}

} // namespace velorn
