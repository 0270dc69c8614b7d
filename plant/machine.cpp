#include "plant/machine.h"

#include "plant/wording.h"

#include <algorithm>

namespace velorn::plant {

namespace {

constexpr std::size_t most_orders = 8;
constexpr std::size_t most_tasks = 40;

struct TaskRow {
    std::string_view name;
    int priority;
    TaskState state;
    int bytes;
};

constexpr TaskRow tasks_at_start[] = {
    {"SHELL1", -1, TaskState::running, 2048},   {"Watch", 1, TaskState::timed, 640},
    {"START", 2, TaskState::timed, 1216},       {"REGLER", 5, TaskState::timed, 18432},
    {"MESSEN", 8, TaskState::timed, 9728},      {"SYNCHRON", 10, TaskState::waiting, 4096},
    {"STOERUNG", 12, TaskState::waiting, 6144}, {"ZAEHLER", 20, TaskState::timed, 3072},
    {"VIERTEL", 25, TaskState::timed, 5120},    {"DISPLAY", 30, TaskState::ready, 24576},
    {"SERTAST", 32, TaskState::waiting, 2560},  {"DFUE", 40, TaskState::waiting, 12288},
    {"RESET", 3, TaskState::dormant, 320},      {"IDLE", 255, TaskState::ready, 128},
};

struct FileRow {
    std::string_view device;
    std::string_view name;
    int bytes;
};

constexpr FileRow files_at_start[] = {
    {"H0", "BATRAM1", 16384}, {"H0", "BATRAM2", 16384}, {"H0", "DATEN", 1441792}, {"H0", "STOERLOG", 20480},
    {"H0", "test", 262144},   {"ED", "test", 262144},   {"ED", "lcdxx1", 320},    {"R0", "BATRAM1", 16384},
};

bool same(std::string_view a, std::string_view b) { return upper_case(a) == upper_case(b); }

} // namespace

std::string_view state_text(TaskState state) {
    switch (state) {
    case TaskState::running: return "RUN";
    case TaskState::ready: return "READY";
    case TaskState::waiting: return "WAIT";
    case TaskState::timed: return "TIME";
    case TaskState::dormant: break;
    }
    return "DORM";
}

Machine::Machine(EventLoop& loop, std::uint64_t seed) : loop_(loop), seed_(seed), started_ms_(loop.now_ms()) {
    for (const FileRow& row : files_at_start) {
        files_.push_back({std::string(row.device), std::string(row.name), row.bytes});
    }
    restart();
    restarts_ = 0;
}

Machine::~Machine() { forget_orders(); }

void Machine::restart() {
    forget_orders();
    tasks_.clear();
    for (const TaskRow& row : tasks_at_start) {
        tasks_.push_back({std::string(row.name), row.priority, row.state, row.bytes});
    }
    started_ms_ = loop_.now_ms();
    watchdog_ = true;
    ++restarts_;
}

Task* Machine::task(std::string_view name) {
    const auto found =
        std::find_if(tasks_.begin(), tasks_.end(), [&](const Task& t) { return same(t.name, name); });
    return found == tasks_.end() ? nullptr : &*found;
}

bool Machine::define(std::string_view name) {
    if (task(name) != nullptr) return true;
    if (tasks_.size() >= most_tasks) return false;
    tasks_.push_back({upper_case(name), 50, TaskState::dormant, 256});
    return true;
}

StoredFile* Machine::file(std::string_view device, std::string_view name) {
    const auto found = std::find_if(files_.begin(), files_.end(), [&](const StoredFile& f) {
        return same(f.device, device) && same(f.name, name);
    });
    return found == files_.end() ? nullptr : &*found;
}

bool Machine::remove(std::string_view device, std::string_view name) {
    return std::erase_if(
               files_, [&](const StoredFile& f) { return same(f.device, device) && same(f.name, name); }) > 0;
}

bool Machine::activate_after(std::int64_t ms, std::string_view name) {
    if (orders_.size() >= most_orders) return false;
    const std::int64_t due = loop_.now_ms() + ms;
    const auto id = loop_.post_at(due, [this, due, who = std::string(name)] {
        const auto mine = std::find_if(orders_.begin(), orders_.end(),
                                       [&](const Order& o) { return o.due_ms == due && o.name == who; });
        if (mine != orders_.end()) orders_.erase(mine);
        activate(who);
    });
    orders_.push_back({std::string(name), id, due});
    return true;
}

bool Machine::prevent(std::string_view name) {
    return std::erase_if(orders_, [&](const Order& order) {
               if (!same(order.name, name)) return false;
               loop_.cancel(order.id);
               return true;
           }) > 0;
}

bool Machine::activate(std::string_view name) {
    Task* const who = task(name);
    if (who == nullptr) return false;
    if (same(name, "RESET")) {
        if (reset) reset();
        return true;
    }
    if (who->state == TaskState::dormant) who->state = TaskState::ready;
    return true;
}

void Machine::forget_orders() {
    for (const Order& order : orders_) loop_.cancel(order.id);
    orders_.clear();
}

} // namespace velorn::plant
