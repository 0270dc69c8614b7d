// A canvas on an image, at the resolution of the device: every box and every cell begins and ends on a whole
// device pixel, whatever the scale.
#pragma once

#include "desktop/glyph_masks.h"
#include "runtime/canvas.h"

#include <QImage>
#include <QRegion>

#include <list>
#include <vector>

namespace velorn {

class ImageCanvas final : public Canvas {
  public:
    // Logical size, and device pixels per logical pixel (above 0). The image is at least 1 x 1 and at most
    // 8192 x 8192 device pixels; what lies beyond is cut off.
    ImageCanvas(int width, int height, double scale);

    const QImage& image() const { return image_; }
    double scale() const { return scale_; }

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
    // Half-open, within the image.
    struct Area {
        int left, top, right, bottom;
    };
    struct Band {
        int from = 1, to = 0; // columns that were drawn on; from > to: none
    };

    int device(int logical) const;
    Area area(int x1, int y1, int x2, int y2) const;
    Area within_image(Area area) const;
    QRgb* row(int y) { return pixels_ + static_cast<std::ptrdiff_t>(y) * stride_; }
    void touch(const Area& area);
    GlyphMasks& masks_of(const CanvasFont& font);
    void blend(const GlyphMasks::Mask& mask, int x, int y, QRgb colour);

    double scale_;
    QImage image_;
    QRgb* pixels_;
    std::ptrdiff_t stride_; // pixels from one row to the next
    struct Fonts {
        CanvasFont font;
        GlyphMasks masks;
    };
    std::list<Fonts> fonts_; // the one used last in front
    std::vector<Band> bands_;
    bool touched_ = false;
};

} // namespace velorn
