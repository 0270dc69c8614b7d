// A source of text as a device: says all of it, no faster than it is taken, and hears nothing.
#pragma once

#include "plant/device.h"
#include "plant/source.h"
#include "runtime/event_loop.h"

#include <functional>
#include <utility>

namespace velorn::plant {

class SourceDevice final : public Device {
  public:
    static constexpr std::size_t most_ahead = 16 * 1024; // bytes that nobody has taken yet

    // `finished` is called once, when everything was taken.
    SourceDevice(EventLoop& loop, Source source, std::function<void()> finished)
        : loop_(loop), source_(source), finished_(std::move(finished)) {}
    ~SourceDevice() override { loop_.cancel(next_); }

    void connected() override { pump(); }
    void disconnected() override { loop_.cancel(next_); }
    void receive(std::string_view) override {}

  private:
    void pump() {
        const bool room = unheard() < most_ahead;
        if (room && !source_.empty()) say(source_.next(4096));
        if (source_.empty()) {
            await_reader(false);
            return;
        }
        next_ = loop_.post_at(loop_.now_ms() + (room ? 0 : 1), [this] { pump(); });
    }

    // Twice in a row there has to be nothing left: between the system's buffers bytes are out of sight for a
    // moment.
    void await_reader(bool was_empty) {
        const bool empty = unheard() == 0;
        if (empty && was_empty) {
            if (finished_) finished_();
            return;
        }
        next_ = loop_.post_at(loop_.now_ms() + 50, [this, empty] { await_reader(empty); });
    }

    EventLoop& loop_;
    Source source_;
    std::function<void()> finished_;
    EventLoop::TaskId next_;
};

} // namespace velorn::plant
