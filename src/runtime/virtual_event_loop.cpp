#include "runtime/virtual_event_loop.h"

#include <stdexcept>

namespace velorn {

DateTime VirtualEventLoop::local_time() const {
    const double start = serial_of(start_).days;
    return date_time_of({start + static_cast<double>(now_ms_) / 86'400'000.0}).value();
}

void VirtualEventLoop::pass(std::int64_t ms) {
    // The end of the span is itself a piece of work, the last at its time, so that equal times keep their
    // order.
    bool over = false;
    post_at(now_ms_ + ms, [&over] { over = true; });
    while (!over && wait_until([&over] { return over; })) {
    }
}

void VirtualEventLoop::rest(std::optional<std::int64_t> until_ms) {
    if (!until_ms) throw std::logic_error("a wait that nothing can end: no timer runs and nothing is queued");
    if (*until_ms > limit_ms_) throw std::logic_error("a wait that went on past the end of virtual time");
    now_ms_ = *until_ms;
}

} // namespace velorn
