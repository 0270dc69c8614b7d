#include "runtime/event_loop.h"

#include <algorithm>

namespace velorn {

EventLoop::TaskId EventLoop::post_at(std::int64_t due_ms, Task task) {
    const TaskId id{std::max(due_ms, now_ms()), ++last_issue_};
    queue_.emplace(std::pair{id.due, id.issue}, std::move(task));
    return id;
}

void EventLoop::cancel(TaskId id) { queue_.erase({id.due, id.issue}); }

bool EventLoop::wait_until(const Condition& condition, SourcePlace where) {
    if (condition()) return true;
    if (ended_) return false;

    struct Depth {
        std::vector<Waiter>& waiters;
        ~Depth() { waiters.pop_back(); }
    };
    waiters_.push_back({where, now_ms()});
    const Depth depth{waiters_};
    do {
        turn();
        if (ended_) return false;
    } while (!condition());
    return true;
}

void EventLoop::run(SourcePlace where) {
    while (wait_until([] { return false; }, where)) {
    }
}

void EventLoop::end() { ended_ = true; }

void EventLoop::turn() {
    if (queue_.empty()) {
        rest(std::nullopt);
        return;
    }
    if (const std::int64_t due = queue_.begin()->first.first; due > now_ms()) {
        rest(due);
        return;
    }
    take_in();
    if (ended_ || queue_.empty() || queue_.begin()->first.first > now_ms()) return;
    const auto next = queue_.extract(queue_.begin());
    next.mapped()();
}

} // namespace velorn
