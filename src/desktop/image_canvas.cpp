#include "desktop/image_canvas.h"

#include "desktop/text_rim.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace velorn {

namespace {

constexpr int largest_side = 8192;
constexpr int band_height = 16;
constexpr std::size_t most_fonts = 4;

QSize device_size(int width, int height, double scale) {
    const auto side = [scale](int logical) {
        return static_cast<int>(std::clamp(std::ceil(logical * scale), 1.0, double{largest_side}));
    };
    return {side(width), side(height)};
}

// Each channel of `below` moved towards that of `above` by coverage / 255, two channels at a time.
QRgb mixed(QRgb below, QRgb above, unsigned coverage) {
    const unsigned share = coverage + (coverage >> 7U); // 0 to 256
    constexpr QRgb pair = 0x00FF00FFU;
    const QRgb rb = (((above & pair) * share + (below & pair) * (256 - share)) >> 8U) & pair;
    const QRgb g = (((above & 0xFF00U) * share + (below & 0xFF00U) * (256 - share)) >> 8U) & 0xFF00U;
    return 0xFF000000U | rb | g;
}

} // namespace

ImageCanvas::ImageCanvas(int width, int height, double scale)
    : scale_(scale),
      image_(device_size(width, height, scale), QImage::Format_RGB32),
      pixels_(reinterpret_cast<QRgb*>(image_.bits())),
      stride_(image_.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb))),
      bands_(static_cast<std::size_t>(image_.height() / band_height + 1)) {
    image_.fill(Qt::white);
}

QRegion ImageCanvas::take_touched() {
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

int ImageCanvas::device(int logical) const {
    // Far beyond any image, and safe to calculate with.
    return static_cast<int>(std::lround(std::clamp(logical * scale_, -1e6, 1e6)));
}

ImageCanvas::Area ImageCanvas::area(int x1, int y1, int x2, int y2) const {
    return within_image({device(x1), device(y1), device(x2), device(y2)});
}

ImageCanvas::Area ImageCanvas::within_image(Area area) const {
    return {std::clamp(area.left, 0, image_.width()), std::clamp(area.top, 0, image_.height()),
            std::clamp(area.right, 0, image_.width()), std::clamp(area.bottom, 0, image_.height())};
}

void ImageCanvas::touch(const Area& area) {
    if (area.left >= area.right || area.top >= area.bottom) return;
    for (int band = area.top / band_height; band <= (area.bottom - 1) / band_height; ++band) {
        Band& touched = bands_[static_cast<std::size_t>(band)];
        if (touched.from > touched.to) {
            touched = {area.left, area.right};
        } else {
            touched.from = std::min(touched.from, area.left);
            touched.to = std::max(touched.to, area.right);
        }
    }
    if (!std::exchange(touched_, true) && on_touched) on_touched();
}

void ImageCanvas::clear(Colour background) {
    image_.fill(to_qcolor(background));
    touch({0, 0, image_.width(), image_.height()});
}

void ImageCanvas::line(int x1, int y1, int x2, int y2, Colour colour) {
    const int thick = std::max(1, static_cast<int>(std::lround(scale_)));
    QPainter painter(&image_);
    painter.setPen(QPen(to_qcolor(colour), thick, Qt::SolidLine, Qt::SquareCap));
    // The middle of the logical pixel that the line runs through.
    const int middle = thick / 2;
    const QPoint from(device(x1) + middle, device(y1) + middle);
    const QPoint to(device(x2) + middle, device(y2) + middle);
    painter.drawLine(from, to);
    painter.end();
    const QRect drawn = QRect(from, to).normalized().adjusted(-thick, -thick, thick, thick);
    touch(within_image({drawn.left(), drawn.top(), drawn.right() + 1, drawn.bottom() + 1}));
}

void ImageCanvas::box(int x1, int y1, int x2, int y2, Colour fill) {
    const Area filled = area(x1, y1, x2, y2);
    if (filled.left >= filled.right) return;
    const QRgb pixel = to_qcolor(fill).rgb();
    for (int y = filled.top; y < filled.bottom; ++y)
        std::fill(row(y) + filled.left, row(y) + filled.right, pixel);
    touch(filled);
}

void ImageCanvas::invert(int x1, int y1, int x2, int y2) {
    const Area inverted = area(x1, y1, x2, y2);
    for (int y = inverted.top; y < inverted.bottom; ++y) {
        QRgb* const pixels = row(y);
        for (int x = inverted.left; x < inverted.right; ++x) pixels[x] ^= 0x00FFFFFFU;
    }
    touch(inverted);
}

void ImageCanvas::text(int x, int y, std::string_view text, const CanvasFont& font, Colour colour) {
    GlyphMasks& masks = masks_of(font);
    const QRgb pixel = to_qcolor(colour).rgb();
    int pen = device(x);
    const int top = device(y);
    for (const char c : text) {
        blend(masks.of(static_cast<unsigned char>(c)), pen, top, pixel);
        pen += masks.advance();
    }
}

GlyphMasks& ImageCanvas::masks_of(const CanvasFont& font) {
    for (auto known = fonts_.begin(); known != fonts_.end(); ++known) {
        if (known->font != font) continue;
        if (known != fonts_.begin()) fonts_.splice(fonts_.begin(), fonts_, known);
        return fonts_.front().masks;
    }
    fonts_.push_front({font, GlyphMasks(font, scale_)});
    if (fonts_.size() > most_fonts) fonts_.pop_back();
    return fonts_.front().masks;
}

void ImageCanvas::blend(const GlyphMasks::Mask& mask, int x, int y, QRgb colour) {
    if (mask.width == 0) return;
    const int left = x + mask.left;
    const int top = y + mask.top;
    const Area shown = within_image({left, top, left + mask.width, top + mask.height});
    for (int at = shown.top; at < shown.bottom; ++at) {
        const unsigned char* const coverage =
            mask.coverage.data() + static_cast<std::ptrdiff_t>(at - top) * mask.width - left;
        QRgb* const pixels = row(at);
        for (int column = shown.left; column < shown.right; ++column) {
            const unsigned covered = coverage[column];
            if (covered != 0) pixels[column] = mixed(pixels[column], colour, covered);
        }
    }
    touch(shown);
}

} // namespace velorn
