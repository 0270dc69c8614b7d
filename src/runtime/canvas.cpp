#include "runtime/canvas.h"

#include "runtime/number_picture.h"

namespace velorn {

namespace {

std::string hex(Colour colour) {
    static constexpr std::string_view digits = "0123456789abcdef";
    std::string text = "#";
    for (const unsigned part : {colour & 0xFFU, (colour >> 8U) & 0xFFU, (colour >> 16U) & 0xFFU}) {
        text += digits[part >> 4U];
        text += digits[part & 15U];
    }
    return text;
}

std::string words(std::string_view what, std::initializer_list<int> numbers) {
    std::string text{what};
    for (const int number : numbers) text += ' ' + std::to_string(number);
    return text;
}

} // namespace

void RecorderCanvas::clear(Colour background) { strokes_.push_back("clear " + hex(background)); }

void RecorderCanvas::line(int x1, int y1, int x2, int y2, Colour colour) {
    strokes_.push_back(words("line", {x1, y1, x2, y2}) + ' ' + hex(colour));
}

void RecorderCanvas::box(int x1, int y1, int x2, int y2, Colour fill) {
    strokes_.push_back(words("box", {x1, y1, x2, y2}) + ' ' + hex(fill));
}

void RecorderCanvas::invert(int x1, int y1, int x2, int y2) {
    strokes_.push_back(words("invert", {x1, y1, x2, y2}));
}

void RecorderCanvas::text(int x, int y, std::string_view text, const CanvasFont& font, Colour colour) {
    std::string in_cell;
    if (font.cell_width > 0 || font.cell_height > 0)
        in_cell = " in " + std::to_string(font.cell_width) + 'x' + std::to_string(font.cell_height);
    strokes_.push_back(words("text", {x, y}) + " '" + std::string(text) + "' " + font.name + ' ' +
                       number_text(font.points) + (font.bold ? " bold" : "") + in_cell + ' ' + hex(colour));
}

} // namespace velorn
