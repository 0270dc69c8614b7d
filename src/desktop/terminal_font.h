// The fixed-pitch font of the terminal: a glyph for each of the 256 characters, looked up once, so that a row
// is drawn without shaping and every character stands exactly in its column.
#pragma once

#include <QFont>
#include <QRawFont>

#include <array>
#include <string_view>
#include <vector>

class QPainter;

namespace velorn {

class TerminalFont {
  public:
    // A font that isn't installed or isn't fixed-pitch becomes the system's fixed font of that size. `size`
    // in points.
    TerminalFont(const QString& name, double size);

    const QFont& font() const { return font_; }

    // In logical pixels; whole ones, so that rows and columns can be moved by copying.
    int cell_width() const { return cell_width_; }
    int cell_height() const { return cell_height_; }

    // Collects what a row has to show; a control character becomes a small dot in `faint`.
    class Row {
      public:
        Row(const TerminalFont& font, QPainter& painter, const QColor& faint);
        void put(char character, int column, const QColor& colour);
        // Draws what was put since the last call, with the row's upper left corner at `corner`.
        void draw(QPointF corner);

      private:
        void flush(QPointF corner, const QColor& colour);

        const TerminalFont& font_;
        QPainter& painter_;
        QColor faint_;
        struct Item {
            char character;
            int column;
            QRgb colour;
        };
        std::vector<Item> items_;
        std::vector<quint32> glyphs_;
        std::vector<QPointF> places_;
    };

  private:
    friend class Row;
    QFont font_;
    QRawFont raw_;
    std::array<quint32, 256> glyphs_{}; // 0: the font lacks it
    int cell_width_ = 8;
    int cell_height_ = 16;
    int ascent_ = 12;
};

} // namespace velorn
