// What cp1252 lacks can't be typed.
#pragma once

#include "desktop/text_rim.h"

#include <QValidator>

namespace velorn {

class Cp1252Validator final : public QValidator {
  public:
    using QValidator::QValidator;
    State validate(QString& text, int&) const override { return to_cp1252(text) ? Acceptable : Invalid; }
};

} // namespace velorn
