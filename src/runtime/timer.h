// A timer of a window: an interval in milliseconds and Enabled.
//
// Switching on what is off starts a full interval; switching on what is on does nothing. Its tick never runs
// inside itself: while its own procedure is still waiting, further ticks of this timer are dropped, and
// others go on.
#pragma once

#include "runtime/event_loop.h"

#include <functional>

namespace velorn {

class Timer {
  public:
    class Switch {
      public:
        explicit Switch(Timer& timer) : timer_(timer) {}
        Switch& operator=(bool on) {
            timer_.set_enabled(on);
            return *this;
        }
        Switch(const Switch&) = delete;
        Switch& operator=(const Switch&) = delete;
        ~Switch() = default;
        operator bool() const { return timer_.enabled_; }

      private:
        Timer& timer_;
    };

    Timer(EventLoop& loop, int interval_ms, bool enabled = false);
    ~Timer();
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    Switch Enabled{*this};
    std::function<void()> Tick; // may stay empty: a timer without an action

    int Interval() const { return interval_ms_; } // ms, above 0
    // Starts a full interval anew if the timer is on.
    void set_Interval(int interval_ms);

  private:
    void set_enabled(bool on);
    void arm(std::int64_t due_ms);
    void fire(std::int64_t due_ms);

    EventLoop& loop_;
    int interval_ms_;
    bool enabled_ = false;
    bool running_ = false; // its own procedure is on the stack
    EventLoop::TaskId next_;
};

} // namespace velorn
