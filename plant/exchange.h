// The telephone network as a modem sees it: a number goes in, what becomes of the call comes out.
#pragma once

#include "plant/device.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace velorn::plant {

struct Call {
    enum class Outcome { connects, busy, no_answer, unknown, no_dialtone };

    Outcome outcome = Outcome::unknown;
    std::int64_t after_ms = 0;   // from the last digit to the outcome; without meaning for no_answer
    std::unique_ptr<Device> far; // who picks up; only if the call connects
};

class Exchange {
  public:
    virtual ~Exchange() = default;
    // `number` holds digits, '*', '#' and '+' only, and may be empty.
    virtual Call dial(std::string_view number) = 0;
};

} // namespace velorn::plant
