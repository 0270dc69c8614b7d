#include "runtime/timer.h"

namespace velorn {

Timer::Timer(EventLoop& loop, int interval_ms, bool enabled) : loop_(loop), interval_ms_(interval_ms) {
    set_enabled(enabled);
}

Timer::~Timer() { loop_.cancel(next_); }

void Timer::set_Interval(int interval_ms) {
    interval_ms_ = interval_ms;
    if (enabled_) arm(loop_.now_ms() + interval_ms_);
}

void Timer::set_enabled(bool on) {
    if (on == enabled_) return;
    enabled_ = on;
    if (on) {
        arm(loop_.now_ms() + interval_ms_);
    } else {
        loop_.cancel(next_);
        next_ = {};
    }
}

void Timer::arm(std::int64_t due_ms) {
    loop_.cancel(next_);
    next_ = loop_.post_at(due_ms, [this, due_ms] { fire(due_ms); });
}

void Timer::fire(std::int64_t due_ms) {
    // Ticks that were missed while something computed don't pile up; the beat stays.
    std::int64_t following = due_ms + interval_ms_;
    if (const std::int64_t now = loop_.now_ms(); following <= now) {
        following = now + interval_ms_ - (now - due_ms) % interval_ms_;
    }
    arm(following);
    if (running_ || !Tick) return;

    struct Running {
        bool& flag;
        explicit Running(bool& f) : flag(f) { flag = true; }
        ~Running() { flag = false; }
    };
    const Running running{running_};
    Tick();
}

} // namespace velorn
