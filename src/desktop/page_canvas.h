// A canvas on a printed page. It counts in twips (1/1440 inch) from the paper's corner and hands everything
// on to the toolkit at the device's own resolution, so that lines and letters are as sharp as the device is.
#pragma once

#include "runtime/canvas.h"

#include <QPointF>
#include <QRectF>

class QPainter;

namespace velorn {

class PageCanvas final : public Canvas {
  public:
    // The painter is active on a device whose origin is the paper's corner, and outlives the canvas.
    explicit PageCanvas(QPainter& painter);

    void clear(Colour background) override; // white: the paper stays as it is
    void line(int x1, int y1, int x2, int y2, Colour colour) override;
    void box(int x1, int y1, int x2, int y2, Colour fill) override;
    void invert(int x1, int y1, int x2, int y2) override; // nothing: ink can't be taken back
    void text(int x, int y, std::string_view text, const CanvasFont& font, Colour colour) override;

  private:
    QPointF at(double x, double y) const { return {x * across_, y * down_}; }
    QRectF device_box(double x1, double y1, double x2, double y2) const { return {at(x1, y1), at(x2, y2)}; }

    QPainter& painter_;
    double across_, down_; // device pixels in a twip
};

} // namespace velorn
