// The event loop of tests: its clock stands still while work runs and jumps to the next due piece of work
// when there is nothing to do. Whole nights take milliseconds, the same way every time.
#pragma once

#include "runtime/event_loop.h"

namespace velorn {

class VirtualEventLoop final : public EventLoop {
  public:
    // The wall clock shows `start` at time 0. Past `limit_ms` a wait is taken for one that never ends, and
    // throws: a broken test, not a case of the field.
    explicit VirtualEventLoop(DateTime start = {2026, 11, 15, 11, 28, 0, 0},
                              std::int64_t limit_ms = 366LL * 24 * 3600 * 1000)
        : start_(start), limit_ms_(limit_ms) {}

    std::int64_t now_ms() const override { return now_ms_; }
    DateTime local_time() const override;

    // Runs everything that is due within the next `ms` milliseconds and leaves the clock there.
    void pass(std::int64_t ms);

    // Runs what is due now, without moving the clock.
    void settle() { pass(0); }

  protected:
    void rest(std::optional<std::int64_t> until_ms) override;

  private:
    DateTime start_;
    std::int64_t now_ms_ = 0;
    std::int64_t limit_ms_;
};

} // namespace velorn
