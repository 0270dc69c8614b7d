// The machine's clipboard. Characters that cp1252 lacks come in as question marks.
#pragma once

#include "runtime/outside.h"

namespace velorn {

class QtClipboard final : public Clipboard {
  public:
    void set_text(std::string_view text) override;
    std::string text() const override;
};

} // namespace velorn
