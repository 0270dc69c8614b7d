// Joins a device of the plant, in memory, to a test: what the test sends arrives at the device, what the
// device says arrives at `received`, each over the loop and with the trouble that was ordered.
#pragma once

#include "plant/faults.h"

#include <functional>
#include <string_view>

namespace velorn::plant {

class MemoryLine {
  public:
    // The device has `receive(bytes)` and a callback `send`, and outlives the line.
    template <class Device>
    MemoryLine(EventLoop& loop, Device& device, const Faults& faults = {}) : line_(loop, faults) {
        device.send = [this](std::string_view bytes) { line_.from_controller(bytes); };
        line_.at_controller = [&device](std::string_view bytes) { device.receive(bytes); };
        line_.at_outside = [this](std::string_view bytes) {
            if (received) received(bytes);
        };
        line_.hung_up = [this] {
            if (hung_up) hung_up();
        };
        release_ = [&device] { device.send = nullptr; };
    }
    ~MemoryLine() { release_(); }
    MemoryLine(const MemoryLine&) = delete;
    MemoryLine& operator=(const MemoryLine&) = delete;

    std::function<void(std::string_view)> received;
    std::function<void()> hung_up;

    void send(std::string_view bytes) { line_.from_outside(bytes); }

  private:
    Line line_;
    std::function<void()> release_;
};

} // namespace velorn::plant
