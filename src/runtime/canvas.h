// Where pictures are drawn: an image on screen, a printer page, or a recorder that tests read. Units are
// whole logical pixels, the origin is at the top left, boxes are half-open: a box from (x1, y1) to (x2, y2)
// holds the pixels x1 <= x < x2, y1 <= y < y2.
#pragma once

#include "runtime/controls.h"

#include <string>
#include <string_view>
#include <vector>

namespace velorn {

struct CanvasFont {
    std::string name; // cp1252; a font that isn't there shows as the system's fixed font
    double points = 12;
    // The cell that a character stands in, logical pixels: its letters are made smaller where they would
    // reach beyond it. 0: as large as they are.
    int cell_width = 0;
    int cell_height = 0;
    // Letters stand at their own widths, without a cell; a font that isn't there, or no name, then shows as
    // the system's usual proportional font.
    bool proportional = false;
    bool bold = false;
    bool operator==(const CanvasFont&) const = default;
};

class Canvas {
  public:
    virtual ~Canvas() = default;

    virtual void clear(Colour background) = 0;
    // Both ends are drawn.
    virtual void line(int x1, int y1, int x2, int y2, Colour colour) = 0;
    virtual void box(int x1, int y1, int x2, int y2, Colour fill) = 0;
    // The bitwise complement of every pixel in the box.
    virtual void invert(int x1, int y1, int x2, int y2) = 0;
    // One line of cp1252 text, its cell's top left corner at (x, y).
    virtual void text(int x, int y, std::string_view text, const CanvasFont& font, Colour colour) = 0;
};

// Keeps one line of words for each stroke, in order.
class RecorderCanvas final : public Canvas {
  public:
    void clear(Colour background) override;
    void line(int x1, int y1, int x2, int y2, Colour colour) override;
    void box(int x1, int y1, int x2, int y2, Colour fill) override;
    void invert(int x1, int y1, int x2, int y2) override;
    void text(int x, int y, std::string_view text, const CanvasFont& font, Colour colour) override;

    // Such as "line 0 0 10 0 #0000ff", "text 5 7 'Vorlauf' Courier 12 #000000"; colours as red-green-blue. A
    // font in a cell: "Courier 12 in 10x19", a bold one: "Courier 12 bold".
    const std::vector<std::string>& strokes() const { return strokes_; }
    void forget() { strokes_.clear(); }

  private:
    std::vector<std::string> strokes_;
};

// A box that is drawn into. What it shows while no canvas is attached is lost; its owner draws anew when one
// comes.
struct PictureBox : Control {
    Property<std::string> FontName{*this, "Courier New"};
    Property<double> FontSize{*this, 14.0}; // points
    Property<Colour> BackColor{*this, colour::white};
    Property<Colour> FillColor{*this, colour::white};
    Property<Colour> ForeColor{*this, colour::black};
    Property<int> Width{*this, 0}; // logical pixels
    Property<int> Height{*this, 0};
    Canvas* canvas = nullptr;
    std::function<void()> Paint;   // the canvas is a new one, or empty: its owner draws everything anew
    std::function<void()> cleared; // by Cls: its owner forgets what stood there

    void Cls() const {
        if (canvas != nullptr) canvas->clear(BackColor);
        if (cleared) cleared();
    }
};

} // namespace velorn
