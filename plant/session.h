// One connection: the wire to the outside, the troubled line, and the device at its end. The device hears and
// is heard through the line alone.
//
// Nothing grows without end: while too much is on the way the wire isn't read, and the device is told how
// much of its words still waits.
#pragma once

#include "plant/device.h"
#include "plant/faults.h"
#include "plant/wire.h"

#include <functional>
#include <memory>
#include <string>

namespace velorn::plant {

class Session {
  public:
    static constexpr std::size_t most_on_the_way = 16 * 1024; // bytes

    // `wire` outlives the session.
    Session(EventLoop& loop, Wire& wire, std::unique_ptr<Device> device, const Faults& faults);
    ~Session(); // tells the device
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    std::function<void(const std::string&)> log; // one line of traffic, UTF-8; empty: no log
    // The device or the line's trouble ends the connection, and everything that was said has been handed to
    // the wire. Called from the loop; the session must not be destroyed within it.
    std::function<void(Ending)> over;

    // Connects the device; `over` and `log` are set by now.
    void begin(std::string name);

  private:
    void note(std::string_view direction, std::string_view bytes);
    void keep_reading_in_bounds();
    void leave(Ending ending);
    void leave_when_all_is_said(Ending ending);

    EventLoop& loop_;
    Wire& wire_;
    std::string name_;
    Line line_;
    std::unique_ptr<Device> device_;
    bool leaving_ = false;
    EventLoop::TaskId leave_;
};

} // namespace velorn::plant
