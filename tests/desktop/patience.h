// Waiting for the machine in a test: generous, and only ever as long as it takes.
#pragma once

#include "runtime/event_loop.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace velorn::test {

// Turns the loop until the condition holds; looks every millisecond, since the far end has no event of ours.
// False after 20 s.
inline bool comes_true(EventLoop& loop, const EventLoop::Condition& condition) {
    const std::int64_t limit = loop.now_ms() + 20'000;
    const auto going_on = std::make_shared<bool>(true);
    const auto look = std::make_shared<std::function<void()>>();
    *look = [&loop, going_on, again = std::weak_ptr(look)] {
        const auto next = again.lock();
        if (*going_on && next) loop.post_at(loop.now_ms() + 1, *next);
    };
    (*look)();
    bool held = false;
    const bool ended = !loop.wait_until([&] {
        held = condition();
        return held || loop.now_ms() > limit;
    });
    *going_on = false;
    return held && !ended;
}

inline void pass(EventLoop& loop, std::int64_t ms) {
    const std::int64_t until = loop.now_ms() + ms;
    loop.post_at(until, [] {});
    (void)loop.wait_until([&] { return loop.now_ms() >= until; });
}

} // namespace velorn::test
