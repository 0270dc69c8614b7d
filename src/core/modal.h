// Showing a window modally: it opens, and the caller goes on when it is hidden or closed.
#pragma once

#include "runtime/controls.h"
#include "runtime/event_loop.h"

namespace velorn {

// False: the program ends, return now.
[[nodiscard]] inline bool show_modally(EventLoop& loop, Form& form) {
    form.Visible = true;
    return loop.wait_until([&form] { return !form.Visible; });
}

} // namespace velorn
