// The outer end of a connection, whatever it is made of: a pseudo terminal or a socket.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

namespace velorn::plant {

class Wire {
  public:
    Wire() = default;
    virtual ~Wire() = default;
    Wire(const Wire&) = delete;
    Wire& operator=(const Wire&) = delete;

    std::function<void(std::string_view)> received;

    // What the other side hasn't room for waits in a queue.
    virtual void send(std::string_view bytes) = 0;
    virtual std::size_t queued() const = 0;
    // Bytes that were handed to the system and that the other side hasn't taken.
    virtual std::size_t unread() const = 0;
    // Reads nothing while paused; the other side's bytes wait in the system.
    virtual void pause(bool on) = 0;
};

} // namespace velorn::plant
