// News that lower floors have for upper ones. The app floor wires them.
#pragma once

#include "runtime/event.h"

#include <string_view>

namespace velorn {

struct Events {
    // Text for the open LOG file; raised only while `logdatei` is not 0. The listener asks the person when
    // the file can't be written, so time may pass inside.
    Event<std::string_view> log_text;

    // A mark for the site's protocol file, such as "  CONNECT "; raised only while `protokollan` is set.
    Event<std::string_view> protocol_mark;

    // An interrupted automatic collection is to go on.
    Event<> weiterholen;
};

} // namespace velorn
