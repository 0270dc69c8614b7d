#include "desktop/glyph_masks.h"

#include "desktop/text_rim.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace velorn {

namespace {

constexpr double pixels_a_point = 96.0 / 72.0; // logical ones
constexpr double most_pixels = 512;
constexpr const char* tall_and_deep = "HdfkgjpqyQ"; // without accents, which may be squeezed

struct Extent {
    int above = 0, below = 0; // of the baseline
    int advance = 0;
};

// One grey for an edge, whatever the screen's pixels are made of: the picture is inverted, scaled, printed.
constexpr auto grey_edges = QFont::StyleStrategy(QFont::PreferAntialias | QFont::NoSubpixelAntialias);

int pixel_size(double points, double scale) {
    return static_cast<int>(std::lround(std::clamp(points * pixels_a_point * scale, 1.0, most_pixels)));
}

// The text in white on black, its pen set down at the origin, as far as it stands in `ink`.
std::vector<unsigned char> coverage_of(const QFont& font, const QString& text, const QRect& ink,
                                       double squeeze) {
    QImage image(ink.size(), QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.translate(-ink.left(), -ink.top());
    painter.scale(1, squeeze);
    painter.drawText(0, 0, text);
    painter.end();

    std::vector<unsigned char> coverage;
    coverage.reserve(static_cast<std::size_t>(ink.width()) * static_cast<std::size_t>(ink.height()));
    for (int y = 0; y < ink.height(); ++y) {
        const auto* const row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < ink.width(); ++x) coverage.push_back(static_cast<unsigned char>(qGreen(row[x])));
    }
    return coverage;
}

Extent extent_of(const QFont& font) {
    const QFontMetrics metrics(font);
    const QRect ink = metrics.tightBoundingRect(QString::fromLatin1(tall_and_deep));
    return {-ink.top(), std::max(0, ink.bottom() + 1), metrics.horizontalAdvance(QLatin1Char('M'))};
}

} // namespace

QFont fixed_pitch_font(const QString& name) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (QFontDatabase::hasFamily(name) && QFontDatabase::isFixedPitch(name)) font = QFont(name);
    font.setFixedPitch(true);
    font.setStyleHint(QFont::Monospace);
    font.setKerning(false);
    return font;
}

QFont installed_font(const CanvasFont& wanted) {
    const QString name = to_qstring(wanted.name);
    QFont font;
    if (!wanted.proportional) {
        font = fixed_pitch_font(name);
    } else if (QFontDatabase::hasFamily(name)) {
        font = QFont(name);
    } else {
        font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    }
    font.setBold(wanted.bold);
    return font;
}

GlyphMasks::GlyphMasks(const CanvasFont& font, double scale) : font_(installed_font(font)) {
    font_.setStyleStrategy(grey_edges);
    const auto cell_width = static_cast<int>(std::floor(font.cell_width * scale));
    const auto cell_height = static_cast<int>(std::floor(font.cell_height * scale));
    int pixels = pixel_size(font.points, scale);
    Extent extent;
    for (;; --pixels) {
        font_.setPixelSize(pixels);
        extent = extent_of(font_);
        const bool fits = (cell_width == 0 || extent.advance <= cell_width) &&
                          (cell_height == 0 || extent.above + extent.below <= cell_height);
        if (fits || pixels <= 1) break;
    }
    advance_ = cell_width > 0 ? cell_width : std::max(1, extent.advance);
    ink_left_ = cell_width > 0 ? (cell_width - extent.advance) / 2 : 0;
    const int spare = cell_height > 0 ? std::max(0, cell_height - extent.above - extent.below) : 0;
    // A cell's ground reaches one logical pixel below its height, and its inverse box begins one lower.
    const int lowered = cell_height > 0 ? static_cast<int>(std::lround(scale)) : 0;
    baseline_ = extent.above + lowered + spare / 2;
    top_ = lowered;
    bottom_ = cell_height > 0 ? cell_height + lowered : 0;
}

const GlyphMasks::Mask& GlyphMasks::of(unsigned char character) {
    std::optional<Mask>& mask = masks_[character];
    if (!mask) mask = made(character);
    return *mask;
}

GlyphMasks::Mask GlyphMasks::made(unsigned char character) const {
    const char c = static_cast<char>(character);
    const QString text = to_qstring({&c, 1});
    const QRect bounds = QFontMetrics(font_).tightBoundingRect(text);
    if (text.at(0).isSpace() || !text.at(0).isPrint() || bounds.isEmpty()) return {};

    // What is taller than the cell, such as a capital with its accent, is squeezed into it.
    double squeeze = 1;
    if (bottom_ > 0) {
        if (-bounds.top() > baseline_ - top_) squeeze = double(baseline_ - top_) / -bounds.top();
        const int below = bounds.top() + bounds.height();
        if (below > bottom_ - baseline_)
            squeeze = std::min(squeeze, std::max(0.1, double(bottom_ - baseline_) / below));
    }
    const auto top = static_cast<int>(std::floor(bounds.top() * squeeze)) - 1;
    const auto bottom = static_cast<int>(std::ceil((bounds.top() + bounds.height()) * squeeze)) + 1;
    const QRect ink(bounds.left() - 1, top, bounds.width() + 2, bottom - top);

    return {ink_left_ + ink.left(), baseline_ + ink.top(), ink.width(), ink.height(),
            coverage_of(font_, text, ink, squeeze)};
}

TextMasks::TextMasks(const CanvasFont& font, double scale) : font_(installed_font(font)) {
    font_.setStyleStrategy(grey_edges);
    font_.setPixelSize(pixel_size(font.points, scale));
}

GlyphMasks::Mask TextMasks::of(const QString& text, int x, int y, int width, int height) const {
    const QFontMetrics metrics(font_);
    const int baseline = metrics.ascent();
    const QRect shown = QRect(0, 0, width, height).translated(-x, -y - baseline);
    const QRect ink = metrics.boundingRect(text).adjusted(-2, -2, 2, 2) & shown;
    if (ink.isEmpty()) return {};
    return {ink.left(), baseline + ink.top(), ink.width(), ink.height(), coverage_of(font_, text, ink, 1)};
}

} // namespace velorn
