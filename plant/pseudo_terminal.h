// A pseudo terminal: what a program finds at the other side looks like a serial port. The other side may
// close and come back as often as it likes.
//
// Nothing that is sent is lost: what the other side hasn't room for waits in a queue, and while that queue is
// full nothing more is read, so that whoever answers what is read can't fill it without end.
#pragma once

#include "plant/poll_event_loop.h"
#include "plant/wire.h"
#include "runtime/failure.h"
#include "runtime/timer.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace velorn::plant {

class PseudoTerminal final : public Wire {
  public:
    static constexpr std::size_t full_queue = 64 * 1024; // bytes

    // `link`, if not empty, becomes a symbolic link to the device; an older symbolic link of that name is
    // replaced, anything else is refused.
    static Result<std::unique_ptr<PseudoTerminal>> open(PollEventLoop& loop, std::string link = {});
    ~PseudoTerminal() override;

    const std::string& device() const { return device_; }
    void send(std::string_view bytes) override;
    std::size_t queued() const override { return queue_.size() - queue_start_; }
    std::size_t unread() const override;
    void pause(bool on) override;

  private:
    PseudoTerminal(PollEventLoop& loop, int master, int slave, std::string device);

    Outcome make_link(const std::string& link);
    void ready(short events);
    void read();
    void write();
    void look();

    PollEventLoop& loop_;
    int master_;
    int slave_; // kept open: else the master sees an end whenever the other side closes
    std::string device_;
    std::string link_;
    std::string queue_;
    std::size_t queue_start_ = 0;
    bool paused_ = false;
    Timer unlock_;
};

} // namespace velorn::plant
