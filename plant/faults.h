// Trouble on the line between a controller and the outside: bytes that vanish, come twice or come wrong,
// delay, slow lines, silence, hang-up. All chance comes from one seed, drawn byte by byte in a fixed order
// for each direction, so that equal seeds and equal bytes make equal trouble, however the bytes were cut into
// pieces.
//
// Every byte passes through the loop, also without trouble: what is sent is never delivered within the
// sending.
#pragma once

#include "plant/random.h"
#include "runtime/event_loop.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace velorn::plant {

struct Faults {
    double drop = 0; // probability per byte, 0 to 1; as the next two
    double repeat = 0;
    double garble = 0;
    std::int64_t delay_ms = 0;
    std::int64_t bytes_per_second = 0;          // 0: as fast as it comes
    std::optional<std::uint64_t> silent_after;  // bytes, both directions together
    std::int64_t silent_for_ms = 0;             // 0: for good
    std::optional<std::uint64_t> hang_up_after; // bytes, both directions together
    std::uint64_t seed = 1;

    bool any() const {
        return drop > 0 || repeat > 0 || garble > 0 || delay_ms > 0 || bytes_per_second > 0 || silent_after ||
               hang_up_after;
    }
};

class Line {
  public:
    using Receiver = std::function<void(std::string_view)>;

    Line(EventLoop& loop, const Faults& faults);
    ~Line();
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    Receiver at_outside;           // what arrives at the outside end
    Receiver at_controller;        // what arrives at the controller's end
    std::function<void()> hung_up; // once, from the loop; nothing passes any more

    void from_controller(std::string_view bytes) { put(outward_, bytes); }
    void from_outside(std::string_view bytes) { put(inward_, bytes); }

    // Bytes on the way.
    std::size_t waiting_outward() const { return outward_.queue.size() + outward_.untroubled.size(); }
    std::size_t waiting_inward() const { return inward_.queue.size() + inward_.untroubled.size(); }
    bool is_hung_up() const { return dead_; }

  private:
    struct Travelling {
        std::int64_t due_us;
        char byte;
    };
    struct Direction {
        Random random;
        Receiver Line::*receiver;
        std::deque<Travelling> queue;
        std::string untroubled;   // instead of the queue while no trouble is ordered
        std::int64_t free_us = 0; // when the line can take the next byte
        EventLoop::TaskId next;
        bool expected = false; // `next` is waiting
    };

    void put(Direction& direction, std::string_view bytes);
    void travel(Direction& direction, char byte);
    void expect(Direction& direction);
    void deliver(Direction& direction);
    bool swallowed();
    void hang_up();

    EventLoop& loop_;
    Faults faults_;
    bool troubled_;
    Direction outward_;
    Direction inward_;
    std::uint64_t carried_ = 0;
    std::optional<std::int64_t> silent_since_ms_;
    EventLoop::TaskId hang_up_;
    bool dead_ = false;
};

} // namespace velorn::plant
