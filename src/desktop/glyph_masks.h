// The characters of a font as masks of device pixels, each made when it is first wanted. So a character costs
// a copy of its pixels, and stands where its cell stands, at any scale.
#pragma once

#include "runtime/canvas.h"

#include <QFont>

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

namespace velorn {

// The font of that name if it is installed and of fixed pitch, else the system's fixed font.
QFont fixed_pitch_font(const QString& name);

// The font that a canvas's one is shown with, in its weight, its size not yet set.
QFont installed_font(const CanvasFont& font);

class GlyphMasks {
  public:
    // scale: device pixels per logical pixel, above 0. Where the font names a cell, letters and their accents
    // stay inside it.
    GlyphMasks(const CanvasFont& font, double scale);

    // Where the ink stands relative to the text's corner, in device pixels, and how much of each pixel it
    // covers, row by row, 0 to 255. An empty one has no width.
    struct Mask {
        int left = 0, top = 0, width = 0, height = 0;
        std::vector<unsigned char> coverage;
    };
    const Mask& of(unsigned char character);

    // From one character to the next in a text of several, device pixels.
    int advance() const { return advance_; }

  private:
    Mask made(unsigned char character) const;

    QFont font_;
    int ink_left_ = 0; // from the corner to where the pen is set down
    int baseline_ = 0;
    int top_ = 0, bottom_ = 0; // what the cell leaves for ink; no bottom: any
    int advance_ = 0;
    std::array<std::optional<Mask>, 256> masks_;
};

// A line of text in letters of their own widths. `font` is a proportional one; its size is that of its points
// at so many device pixels per logical pixel.
class TextMasks {
  public:
    TextMasks(const CanvasFont& font, double scale);

    // The part of the text that shows in an image of `width` x `height` device pixels when its corner stands
    // at (x, y): relative to that corner.
    GlyphMasks::Mask of(const QString& text, int x, int y, int width, int height) const;

  private:
    QFont font_;
};

} // namespace velorn
