// The one event loop: the program's clock, its queue of due work, and the only way to wait.
//
// There is one thread. Long procedures wait by turning this loop from inside; waits nest strictly, the last
// one begun ends first. What is due is run in order of time, and at equal times in order of issue. Two makes
// exist: one that lives with the toolkit, and a virtual one whose clock jumps to the next due piece of work,
// so that hours pass in milliseconds and the same way every time.
//
// When the program ends, every wait returns false at once, from the innermost to the outermost; a procedure
// whose wait says false returns without doing anything more.
#pragma once

#include "runtime/calendar.h"
#include "runtime/source_place.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace velorn {

class EventLoop {
  public:
    using Task = std::function<void()>;
    using Condition = std::function<bool()>;

    // Names a queued piece of work; cancelling one that has run or was cancelled does nothing.
    struct TaskId {
        std::int64_t due = 0;
        std::uint64_t issue = 0; // 0 names nothing
        auto operator<=>(const TaskId&) const = default;
    };

    struct Waiter {
        SourcePlace where;
        std::int64_t since_ms = 0;
    };

    EventLoop() = default;
    virtual ~EventLoop() = default;
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;

    // Milliseconds since the loop was made; never goes back.
    virtual std::int64_t now_ms() const = 0;
    // The wall clock.
    virtual DateTime local_time() const = 0;

    // Runs the task when everything that is due already has run.
    TaskId post(Task task) { return post_at(now_ms(), std::move(task)); }
    // Runs the task at the given time of now_ms(); a time gone by counts as now.
    TaskId post_at(std::int64_t due_ms, Task task);
    void cancel(TaskId id);

    // Looks at the condition first, then turns the loop until it holds. False: the program ends, return now.
    // The condition must not wait.
    [[nodiscard]] bool wait_until(const Condition& condition, SourcePlace where = SourcePlace::current());

    // Turns the loop until the program ends.
    void run(SourcePlace where = SourcePlace::current());

    // Ends the program: all waits return false.
    void end();
    bool ended() const { return ended_; }

    // The waits that are going on, outermost first.
    const std::vector<Waiter>& waiters() const { return waiters_; }

  protected:
    // Rests until the given time, or until something arrives from outside, and takes in what has arrived. No
    // time: nothing is queued.
    virtual void rest(std::optional<std::int64_t> until_ms) = 0;

    // When the earliest queued piece of work is due; nothing if none is queued.
    std::optional<std::int64_t> next_due() const {
        if (queue_.empty()) return std::nullopt;
        return queue_.begin()->first.first;
    }

    // Called between two pieces of work that are both due, so that news from outside isn't kept out by a
    // flood.
    virtual void take_in() {}

  private:
    void turn();

    std::map<std::pair<std::int64_t, std::uint64_t>, Task> queue_;
    std::uint64_t last_issue_ = 0;
    std::vector<Waiter> waiters_;
    bool ended_ = false;
};

} // namespace velorn
