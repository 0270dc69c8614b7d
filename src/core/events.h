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

    // A gateway modem has answered and may be told whom to dial.
    Event<> gateway_ready;
    // The first gateway modem could not be reached; the second one is to be tried.
    Event<> second_gateway_modem;
    // The person hangs up: what an attempt has left to do is not to be done.
    Event<> attempt_given_up;
    // A connection stands, so the direct attempt's own timer has nothing to wait for any more.
    Event<> direct_attempt_over;

    // The controller has sent a day graph, as text.
    Event<std::string_view> day_graph;
    // The controller wants the evaluation window opened (or closed, if it is open).
    Event<> evaluation_wanted;

    // The text of `txtsnapshot` is to be kept with the site that is selected.
    Event<std::string_view> snapshots_changed;
    // The site's protocol file is to be opened in the editor.
    Event<> edit_protocol_file;

    // An interrupted automatic collection is to go on.
    Event<> weiterholen;
};

} // namespace velorn
