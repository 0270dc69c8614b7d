#include "desktop/terminal_font.h"

#include "desktop/glyph_masks.h"
#include "desktop/text_rim.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPainter>

#include <cmath>

namespace velorn {

namespace {

constexpr unsigned char soft_hyphen = 0xAD;

bool is_control(unsigned char c) {
    return c < 0x20 || c == 0x7F || c == 0x81 || c == 0x8D || c == 0x8F || c == 0x90 || c == 0x9D;
}

bool is_blank(unsigned char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == 0xA0; }

QFont fixed_font(const QString& name, double size) {
    QFont font = fixed_pitch_font(name);
    font.setPointSizeF(size > 0 ? size : 11.0);
    return font;
}

} // namespace

TerminalFont::TerminalFont(const QString& name, double size)
    : font_(fixed_font(name, size)), raw_(QRawFont::fromFont(font_)) {
    for (unsigned i = 0; i < glyphs_.size(); ++i) {
        const auto byte = static_cast<unsigned char>(i);
        if (is_control(byte) || is_blank(byte)) continue;
        const char shown = byte == soft_hyphen ? '-' : static_cast<char>(byte);
        const QString text = to_qstring({&shown, 1});
        if (!raw_.supportsCharacter(text.at(0))) continue;
        const QList<quint32> found = raw_.glyphIndexesForString(text);
        if (found.size() == 1) glyphs_[i] = found.first();
    }
    const QFontMetricsF metrics(font_);
    cell_width_ = std::max(1, static_cast<int>(std::lround(metrics.horizontalAdvance(QLatin1Char('M')))));
    cell_height_ = std::max(1, static_cast<int>(std::ceil(metrics.ascent() + metrics.descent())) + 1);
    ascent_ = static_cast<int>(std::ceil(metrics.ascent()));
}

TerminalFont::Row::Row(const TerminalFont& font, QPainter& painter, const QColor& faint)
    : font_(font), painter_(painter), faint_(faint) {}

void TerminalFont::Row::put(char character, int column, const QColor& colour) {
    const auto byte = static_cast<unsigned char>(character);
    if (is_blank(byte)) return;
    items_.push_back({character, column, is_control(byte) ? faint_.rgb() : colour.rgb()});
}

void TerminalFont::Row::flush(QPointF corner, const QColor& colour) {
    if (glyphs_.empty()) return;
    QGlyphRun run;
    run.setRawFont(font_.raw_);
    run.setRawData(glyphs_.data(), places_.data(), static_cast<int>(glyphs_.size()));
    painter_.setPen(colour);
    painter_.drawGlyphRun(corner + QPointF(0, font_.ascent_), run);
    glyphs_.clear();
    places_.clear();
}

void TerminalFont::Row::draw(QPointF corner) {
    QRgb colour = 0;
    for (const Item& item : items_) {
        const auto byte = static_cast<unsigned char>(item.character);
        const double x = item.column * font_.cell_width_;
        if (item.colour != colour) flush(corner, QColor::fromRgb(colour));
        colour = item.colour;
        if (is_control(byte)) {
            const double side = std::max(2, font_.cell_width_ / 4);
            painter_.fillRect(QRectF(corner.x() + x + (font_.cell_width_ - side) / 2,
                                     corner.y() + font_.ascent_ * 0.65, side, side),
                              faint_);
        } else if (font_.glyphs_[byte] != 0) {
            glyphs_.push_back(font_.glyphs_[byte]);
            places_.emplace_back(x, 0);
        } else {
            // Another font has to help out, whose widths are not ours.
            painter_.setFont(font_.font_);
            painter_.setPen(QColor::fromRgb(colour));
            painter_.drawText(corner + QPointF(x, font_.ascent_), to_qstring({&item.character, 1}));
        }
    }
    flush(corner, QColor::fromRgb(colour));
    items_.clear();
}

} // namespace velorn
