// Numbers and dates through pictures, German always: decimal comma, no thousands separator.
#pragma once

#include "runtime/calendar.h"
#include "runtime/failure.h"

#include <optional>
#include <string>
#include <string_view>

namespace velorn {

// A number through a picture: "0" a digit that is always there, "#" a digit if there is one, "." where the
// decimal comma goes, everything else literal text (also in double quotes, or behind a backslash). A negative
// number bears a minus sign before the first character. Rounds half away from zero on the exact binary value;
// a rounded zero has no sign. Digits beyond the picture's places on the left are never cut.
//   format(1234.5, "########0.00") == "1234,50"    format(7, "00") == "07"
std::string format(double number, std::string_view picture);

// The same for a 32-bit float, which is first taken as the shortest decimal that reads back to it.
std::string format(float number, std::string_view picture);

// A moment through a picture: dd, d, mm, m (minutes when behind hh or before ss), yyyy, yy, hh, h, nn, ss, s;
// everything else literal.
std::string format(const DateTime& moment, std::string_view picture);

// The number with a leading blank where a minus sign would stand, with a decimal point: str(5) == " 5",
// str(-0.5) == "-.5", str(1.5) == " 1.5". Up to 15 significant digits.
std::string str(double number);

// The number as it is shown and joined to texts: shortest form with up to 15 significant digits, decimal
// comma, no leading blank: "19200", "0,87".
std::string number_text(double number);
std::string number_text(float number); // up to 7 significant digits

// The number that a whole text spells: blanks around it, an optional sign, digits with a comma, or a point as
// the only separator, an optional exponent. Nothing for anything else.
std::optional<double> number_of(std::string_view text);

// The number that a text begins with, as far as it goes, with a decimal point; 0 if it begins with none.
// Blanks are skipped.
double val(std::string_view text);

// Half to even.
double round_to_even(double number);

} // namespace velorn
