#include "plant/session.h"

#include "plant/wording.h"
#include "runtime/calendar.h"

#include <utility>

namespace velorn::plant {

namespace {

constexpr std::int64_t look_again_ms = 10;

std::string shown(std::string_view bytes) {
    std::string out;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 32 || byte > 126) {
            out += filled("<%02X>", byte);
        } else {
            out += c;
        }
    }
    return out;
}

} // namespace

Session::Session(EventLoop& loop, Wire& wire, std::unique_ptr<Device> device, const Faults& faults)
    : loop_(loop), wire_(wire), line_(loop, faults), device_(std::move(device)) {}

Session::~Session() {
    loop_.cancel(leave_);
    wire_.received = nullptr;
    device_->send = nullptr;
    device_->hung_up = nullptr;
    device_->disconnected();
}

void Session::begin(std::string name) {
    name_ = std::move(name);
    line_.at_outside = [this](std::string_view bytes) {
        note("sendet   ", bytes);
        wire_.send(bytes);
        keep_reading_in_bounds();
    };
    line_.at_controller = [this](std::string_view bytes) {
        device_->receive(bytes);
        keep_reading_in_bounds();
    };
    line_.hung_up = [this] { leave(Ending::close); };
    wire_.received = [this](std::string_view bytes) {
        note("empfängt ", bytes);
        line_.from_outside(bytes);
        keep_reading_in_bounds();
    };
    device_->send = [this](std::string_view bytes) { line_.from_controller(bytes); };
    device_->hung_up = [this](Ending ending) { leave(ending); };
    device_->waiting = [this] { return line_.waiting_outward() + wire_.queued() + wire_.unread(); };
    device_->connected();
}

void Session::note(std::string_view direction, std::string_view bytes) {
    if (!log) return;
    const DateTime now = loop_.local_time();
    log(time_text(now) + filled(",%03d  ", now.millisecond) + name_ + " " + std::string(direction) +
        shown(bytes));
}

void Session::keep_reading_in_bounds() {
    wire_.pause(line_.waiting_inward() > most_on_the_way || line_.waiting_outward() > most_on_the_way);
}

// Device and line are on the stack; they go when their own work is done. Half an end may be followed by a
// whole one.
void Session::leave(Ending ending) {
    if (leaving_) return;
    leaving_ = ending != Ending::half_close;
    loop_.cancel(leave_);
    leave_ = loop_.post([this, ending] { leave_when_all_is_said(ending); });
}

void Session::leave_when_all_is_said(Ending ending) {
    if (ending != Ending::reset && !line_.is_hung_up() && line_.waiting_outward() > 0) {
        leave_ =
            loop_.post_at(loop_.now_ms() + look_again_ms, [this, ending] { leave_when_all_is_said(ending); });
        return;
    }
    if (over) over(ending);
}

} // namespace velorn::plant
