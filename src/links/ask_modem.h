// The pattern of all modem commands: send, and wait until the receive path has seen "OK".
#pragma once

#include "core/module1.h"
#include "core/wait_counter.h"
#include "links/output.h"

#include <string_view>

namespace velorn {

// Waits up to `ticks` of 100 ms; `warteok` is still set where no "OK" came. False: the program ends.
[[nodiscard]] inline bool ask_modem(Module1& module1, Output& output, WaitCounter& waits,
                                    std::string_view text, int ticks) {
    module1.warteok = true;
    output.sendetext(text);
    return waits.warte(ticks, [&module1] { return !module1.warteok; });
}

} // namespace velorn
