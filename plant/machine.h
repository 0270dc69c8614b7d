// The inner state of a controller: its tasks, the files on its disks, its watchdog and what is scheduled. It
// is what the shell's commands look at and change; a restart brings all of it but the files back to the
// beginning.
#pragma once

#include "runtime/event_loop.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velorn::plant {

enum class TaskState { running, ready, waiting, timed, dormant };

// "RUN", "READY" and so on, as the shell lists them.
std::string_view state_text(TaskState state);

struct Task {
    std::string name;
    int priority = 0;
    TaskState state = TaskState::dormant;
    int bytes = 0;
};

struct StoredFile {
    std::string device; // "H0"
    std::string name;
    int bytes = 0;
};

class Machine {
  public:
    Machine(EventLoop& loop, std::uint64_t seed);
    ~Machine();
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    // Raised when a scheduled or ordered reset is due; whoever listens calls restart().
    std::function<void()> reset;

    EventLoop& loop() const { return loop_; }
    std::uint64_t seed() const { return seed_; }
    DateTime now() const { return loop_.local_time(); }
    std::int64_t uptime_ms() const { return loop_.now_ms() - started_ms_; }
    int restarts() const { return restarts_; }

    const std::vector<Task>& tasks() const { return tasks_; }
    // The name's case doesn't count, here and below; null if there is none.
    Task* task(std::string_view name);
    // False: more tasks than the controller has room for.
    bool define(std::string_view name);

    bool watchdog() const { return watchdog_; }
    void set_watchdog(bool on) { watchdog_ = on; }

    const std::vector<StoredFile>& files() const { return files_; }
    StoredFile* file(std::string_view device, std::string_view name);
    bool remove(std::string_view device, std::string_view name);

    // Activates the task after a while. False: the list of orders is full.
    bool activate_after(std::int64_t ms, std::string_view name);
    // Takes back what is scheduled for the task; true if there was anything.
    bool prevent(std::string_view name);
    // Runs the task now. False: no such task.
    bool activate(std::string_view name);

    struct Order {
        std::string name;
        EventLoop::TaskId id;
        std::int64_t due_ms = 0;
    };
    const std::vector<Order>& orders() const { return orders_; }

    void restart();

  private:
    void forget_orders();

    EventLoop& loop_;
    std::uint64_t seed_;
    std::vector<Task> tasks_;
    std::vector<StoredFile> files_;
    std::vector<Order> orders_;
    std::int64_t started_ms_;
    int restarts_ = 0;
    bool watchdog_ = true;
};

} // namespace velorn::plant
