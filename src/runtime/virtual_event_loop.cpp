#include "runtime/virtual_event_loop.h"

#include <algorithm>
#include <stdexcept>

namespace velorn {

DateTime VirtualEventLoop::local_time() const {
    const double start = serial_of(start_).days;
    return date_time_of({start + static_cast<double>(now_ms_) / 86'400'000.0}).value();
}

void VirtualEventLoop::pass(std::int64_t ms) {
    const std::int64_t end = now_ms_ + ms;
    if (wait_until([&] { return !next_due() || *next_due() > end; })) now_ms_ = std::max(now_ms_, end);
}

void VirtualEventLoop::rest(std::optional<std::int64_t> until_ms) {
    if (!until_ms) throw std::logic_error("a wait that nothing can end: no timer runs and nothing is queued");
    if (*until_ms > limit_ms_) throw std::logic_error("a wait that went on past the end of virtual time");
    now_ms_ = *until_ms;
}

} // namespace velorn
