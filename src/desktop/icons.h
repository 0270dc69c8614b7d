// The icons drawn for Velorn, by name, in the tones of the palette.
#pragma once

#include <QIcon>
#include <QPalette>
#include <QString>

namespace velorn {

// The SVG of icons/<name>.svg, recoloured for the palette. Drawn when it is first shown, at the size and
// scale of that moment, so that it is sharp everywhere.
QIcon icon(const QString& name, const QPalette& palette);

} // namespace velorn
