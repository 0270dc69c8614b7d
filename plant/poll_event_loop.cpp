#include "plant/poll_event_loop.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <limits>
#include <poll.h>
#include <utility>
#include <vector>

namespace velorn::plant {

namespace {

std::int64_t steady_ns() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

std::int64_t wall_ms() {
    const auto since_1970 = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(since_1970).count();
}

} // namespace

PollEventLoop::PollEventLoop(int speed)
    : speed_(std::max(speed, 1)), start_ns_(steady_ns()), start_wall_ms_(wall_ms()) {}

std::int64_t PollEventLoop::now_ms() const { return (steady_ns() - start_ns_) * speed_ / 1'000'000; }

DateTime PollEventLoop::local_time() const {
    // At the common speed the machine's clock is asked each time, since it may be set while we run.
    const std::int64_t ms = speed_ == 1 ? wall_ms() : start_wall_ms_ + now_ms();
    const auto seconds = static_cast<std::time_t>(ms / 1000);
    std::tm parts{};
    localtime_r(&seconds, &parts);
    return {
        parts.tm_year + 1900,       parts.tm_mon + 1,           parts.tm_mday, parts.tm_hour, parts.tm_min,
        std::min(parts.tm_sec, 59), static_cast<int>(ms % 1000)};
}

void PollEventLoop::watch(int descriptor, short events, Ready ready) {
    watched_[descriptor] = {events, std::make_shared<Ready>(std::move(ready))};
}

void PollEventLoop::look_for(int descriptor, short events) {
    if (const auto found = watched_.find(descriptor); found != watched_.end()) found->second.events = events;
}

void PollEventLoop::unwatch(int descriptor) { watched_.erase(descriptor); }

void PollEventLoop::rest(std::optional<std::int64_t> until_ms) {
    if (!until_ms) {
        poll_for(-1);
        return;
    }
    // Rounded up: a rest that ends before the time would turn the loop for nothing.
    const std::int64_t left = (*until_ms - now_ms() + speed_ - 1) / speed_;
    poll_for(static_cast<int>(std::clamp<std::int64_t>(left, 0, std::numeric_limits<int>::max())));
}

void PollEventLoop::take_in() { poll_for(0); }

void PollEventLoop::poll_for(int timeout_ms) {
    std::vector<pollfd> asked;
    std::vector<std::shared_ptr<Ready>> answered_by;
    for (const auto& [descriptor, watched] : watched_) {
        if (watched.events == 0) continue; // else a broken descriptor would keep the loop awake
        asked.push_back({descriptor, watched.events, 0});
        answered_by.push_back(watched.ready);
    }
    if (::poll(asked.data(), asked.size(), timeout_ms) <= 0) return;
    for (std::size_t i = 0; i < asked.size(); ++i) {
        if (asked[i].revents == 0) continue;
        // One that was unwatched meanwhile is asked no more, even if its number came into use again.
        const auto found = watched_.find(asked[i].fd);
        if (found == watched_.end() || found->second.ready != answered_by[i]) continue;
        (*answered_by[i])(asked[i].revents);
    }
}

} // namespace velorn::plant
