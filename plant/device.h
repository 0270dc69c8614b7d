// What stands at the end of a line: a controller, a modem, a login in front of something else, a peer that
// misbehaves. Bytes in, bytes out; whoever holds the device joins it to a line, a socket or a test.
//
// A device lives for one connection: connected() begins it, disconnected() or the end of the device ends it.
// The holder sets the callbacks before connected(); a device works without them too.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

namespace velorn::plant {

// How a device leaves from its side. A telephone line knows no difference: there `close` and `reset` both
// mean that the carrier is gone, and `half_close` means nothing.
enum class Ending {
    close,      // in order, once everything that was said is through
    half_close, // says no more, goes on hearing
    reset,      // at once, in the roughest way there is
};

class Device {
  public:
    Device() = default;
    virtual ~Device() = default;
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    // What the device says; called from connected(), from receive() and from the loop.
    std::function<void(std::string_view)> send;
    // The device leaves. It may be on the stack, so it is destroyed later, from the loop.
    std::function<void(Ending)> hung_up;
    // Bytes that were said and that nobody has taken yet; a device that says much looks here first.
    std::function<std::size_t()> waiting;

    virtual void connected() {}
    virtual void disconnected() {} // the other side is gone; nobody hears any more
    virtual void receive(std::string_view bytes) = 0;

  protected:
    void say(std::string_view bytes) const {
        if (send && !bytes.empty()) send(bytes);
    }
    void leave(Ending ending) const {
        if (hung_up) hung_up(ending);
    }
    std::size_t unheard() const { return waiting ? waiting() : 0; }
};

} // namespace velorn::plant
