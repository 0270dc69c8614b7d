// The rim between the house's text and colours and the toolkit's: cp1252 bytes become a QString and back,
// blue-green-red numbers become a QColor and back. Nothing else in the windows converts.
#pragma once

#include "runtime/controls.h"

#include <QColor>
#include <QString>
#include <QStringView>

#include <optional>
#include <string>
#include <string_view>

namespace velorn {

// Never fails; every byte becomes one character. Quick enough for the whole terminal at once.
QString to_qstring(std::string_view cp1252);

// Nothing if the text holds a character that cp1252 lacks.
std::optional<std::string> to_cp1252(QStringView text);

// As to_cp1252, with `substitute` in the place of each character that cp1252 lacks.
std::string to_cp1252_or(QStringView text, char substitute);

// Colours without transparency.
QColor to_qcolor(Colour colour);
Colour to_colour(const QColor& colour);

} // namespace velorn
