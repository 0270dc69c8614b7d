// The grounds on which the system shows its texts, and a text colour that can be read on each: its white is
// the palette's base, its red, cyan and yellow have a tone in the light and in the dark look, and the colours
// of the system's look are taken from the palette.
#pragma once

#include "runtime/controls.h"

#include <QColor>
#include <QPalette>

namespace velorn {

struct Ground {
    QColor ground;
    QColor text; // contrast at least least_contrast
};

Ground ground_of(Colour colour, const QPalette& palette);

} // namespace velorn
