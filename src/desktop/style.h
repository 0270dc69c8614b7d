// The one look of all windows: the Fusion style with a light and a dark palette of our own, chosen as the
// system is light or dark; one accent colour; spacing in steps of 4 pixels; red for alarms alone. Every text
// has a contrast of at least 4.5 on its ground, disabled ones included: people read it at night and in boiler
// rooms.
#pragma once

#include "runtime/controls.h"

#include <QColor>
#include <QPalette>

class QApplication;

namespace velorn {

enum class Look { light, dark };

// Distances in logical pixels.
namespace space {
inline constexpr int unit = 4;
inline constexpr int small = 4;
inline constexpr int medium = 8;
inline constexpr int large = 12;
inline constexpr int wide = 16;
} // namespace space

inline constexpr double least_contrast = 4.5;

// By the lightness of the window's ground.
Look detect(const QPalette& palette);

QPalette palette_of(Look look);

// Sets style and palette, and sets them anew when the system changes between light and dark.
void apply_style(QApplication& application);

// Contrast of two opaque colours, 1 to 21, by relative luminance.
double contrast(const QColor& a, const QColor& b);

// `colour` as it can be read on the palette's base: the hue stays, the lightness moves as far as it must.
QColor readable(Colour colour, const QPalette& palette);

// The same on any opaque ground, for a contrast of at least `least`; `text` where the hue can't reach it.
QColor readable(Colour colour, const QColor& ground, const QColor& text, double least);

// For alarms, and for what the system itself paints red; readable on window and base.
QColor alarm(const QPalette& palette);

// Ground and text of what a search has found.
struct MarkColours {
    QColor ground;
    QColor text;
    QColor current_ground;
    QColor current_text;
};
MarkColours mark_colours(const QPalette& palette);

} // namespace velorn
