// The widgets of one line of the track list.
#pragma once

#include "runtime/controls.h"

#include <QAbstractButton>
#include <QLabel>

namespace velorn {

// A name that is cut with dots where it is longer than its place, and then is a tooltip as a whole.
class ElidedLabel : public QLabel {
  public:
    using QLabel::QLabel;
    void set_text(const QString& text);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void find_tip();
};

// A small field of a curve's colour, in the tone that the chart draws it in; white is an empty one.
class Swatch : public QAbstractButton {
  public:
    explicit Swatch(QWidget* parent);
    void set_colour(Colour colour);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Colour colour_ = colour::white;
};

// In the tone of a curve of that colour on the chart's paper.
QColor curve_tone(Colour colour, const QPalette& palette);

} // namespace velorn
