// Peers at the other end of a network line that misbehave, each in one way. They are devices like any other:
// for tests of a link's patience, not of what is said over it.
#pragma once

#include "plant/device.h"
#include "plant/tcp_server.h"
#include "runtime/event_loop.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace velorn::plant {

struct Peer {
    enum class Kind {
        resets,        // after `amount` bytes heard; 0: as soon as somebody connects
        half_closes,   // says one line, then no more, and goes on hearing
        floods,        // says `amount` bytes without a pause
        dribbles,      // one byte every `amount` milliseconds
        silent,        // hears everything and never says a word
        refuses,       // nothing listens
        never_answers, // an attempt to connect gets no answer
    };

    Kind kind = Kind::silent;
    std::uint64_t amount = 0;

    bool operator==(const Peer&) const = default;
};

// Who answers one connection.
std::unique_ptr<Device> make_device(EventLoop& loop, const Peer& peer);

// What its port does.
Listening listening_of(const Peer& peer);

// What a half-closing peer says before it stops.
constexpr std::string_view last_words = "Von hier an schweigt die Gegenseite\r\n";

} // namespace velorn::plant
