// A canvas on an image, at the resolution of the device: every box, every line and every cell begins and ends
// on a whole device pixel, whatever the scale.
//
// A curve of many years comes as strokes over strokes in the same column of pixels. So a vertical stroke
// waits for the next ones: those that go on in its column and colour only lengthen it. Everything else,
// looking at the picture included, draws it first: no picture is ever seen without it. Strokes of one colour
// in neighbouring logical columns touch at every scale, so that a dense curve shows no stripes of ground.
#pragma once

#include "desktop/glyph_masks.h"
#include "desktop/line_raster.h"
#include "runtime/canvas.h"

#include <QImage>
#include <QRegion>

#include <algorithm>
#include <functional>
#include <list>
#include <optional>
#include <vector>

namespace velorn {

class ImageCanvas final : public Canvas {
  public:
    // Logical size, and device pixels per logical pixel (above 0). The image is at least 1 x 1 and at most
    // 8192 x 8192 device pixels; what lies beyond is cut off.
    ImageCanvas(int width, int height, double scale);

    // The same with unlike scales. Lines are as thick, and texts as large, as the smaller of both says.
    ImageCanvas(int width, int height, double scale_x, double scale_y);

    ImageCanvas(const ImageCanvas&) = delete; // the pixels belong to one alone
    ImageCanvas& operator=(const ImageCanvas&) = delete;

    // The picture with everything that was drawn so far. It changes with the next stroke, and so does a
    // copy of it that shares its pixels.
    const QImage& image();
    double scale() const { return std::min(scale_x_, scale_y_); }
    double scale_x() const { return scale_x_; }
    double scale_y() const { return scale_y_; }

    // One drawing for light and dark: from now on pure white is drawn as `paper` and pure black as `ink`, and
    // what would have a contrast below 3 on the paper moves towards the ink, its hue kept. Before the first
    // call every colour is drawn as it is.
    void set_look(Colour paper, Colour ink);

    // What was drawn on since the last call, in device pixels.
    QRegion take_touched();
    bool is_touched() const { return touched_; }
    std::function<void()> on_touched; // after each stroke that is the first since take_touched()

    void clear(Colour background) override;
    void line(int x1, int y1, int x2, int y2, Colour colour) override;
    void box(int x1, int y1, int x2, int y2, Colour fill) override;
    void invert(int x1, int y1, int x2, int y2) override;
    void text(int x, int y, std::string_view text, const CanvasFont& font, Colour colour) override;

  private:
    struct Band {
        int from = 1, to = 0; // columns that were drawn on; from > to: none
    };
    // Vertical strokes that wait: those of one logical column, and, as soon as another one begins, those of
    // one device column.
    struct Stroke {
        bool open = false;
        Colour colour = 0;
        int x = 0;
        int from = 0, to = 0; // both ends, rising
    };

    int device_x(int logical) const;
    int device_y(int logical) const;
    Area area(int x1, int y1, int x2, int y2) const;
    void touch(const Area& area);
    void announce();
    void begin_line(int x1, int y1, int x2, int y2, Colour colour);
    void end_logical_stroke();
    void end_column();
    void join_to_neighbour(const Stroke& stroke);
    void end_strokes();
    void add_to_column(int x, int top, int bottom, Colour colour);
    QRgb shown(Colour colour);
    void blend(const GlyphMasks::Mask& mask, int x, int y, QRgb colour);

    double scale_x_, scale_y_;
    int thick_;    // of a line, device pixels
    QImage image_; // nothing but pixels_ writes into it, so that it never moves
    Pixels pixels_;
    Stroke logical_;
    Stroke column_;    // device pixels; `to` is behind its last one
    Stroke ended_;     // the last logical column that was drawn, whole
    Stroke neighbour_; // and the one at its left, open while both are of one colour
    template <class Masks>
    struct Font {
        CanvasFont font;
        Masks masks;
    };
    std::list<Font<GlyphMasks>> fixed_fonts_; // the one used last in front
    std::list<Font<TextMasks>> proportional_fonts_;
    struct Look {
        Colour paper, ink;
    };
    std::optional<Look> look_;
    struct Shown {
        Colour colour;
        QRgb pixel;
    };
    std::vector<Shown> shown_; // the one used last in front; dropped when the look changes
    std::vector<Band> bands_;
    bool touched_ = false;
};

} // namespace velorn
