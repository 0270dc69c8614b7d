// One accepted TCP connection: plain bytes, no option negotiation.
//
// Nothing that is sent is lost while the other side lives: what it hasn't room for waits in a queue, and
// while that queue is full nothing more is read.
#pragma once

#include "plant/poll_event_loop.h"
#include "plant/wire.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace velorn::plant {

class TcpConnection final : public Wire {
  public:
    static constexpr std::size_t full_queue = 64 * 1024; // bytes
    static constexpr std::int64_t patience_ms =
        5000; // after finish(), for the other side's next sign of life

    // Takes over a connected, non-blocking socket. Paused until the first pause(false).
    TcpConnection(PollEventLoop& loop, int socket);
    ~TcpConnection() override;

    // The connection is gone, by the other side or after finish(); once, from the loop or from within send().
    // The connection must not be destroyed within it.
    std::function<void()> ended;

    void send(std::string_view bytes) override;
    std::size_t queued() const override { return queue_.size() - queue_start_; }
    std::size_t unread() const override;
    void pause(bool on) override;

    // Says no more once the queue is empty; goes on hearing.
    void shut_down_writing();
    // Ends in order: the queue goes out, what still arrives is thrown away, then `ended`.
    void finish();
    // Ends at once: the other side sees a reset, and what is queued is lost.
    void reset();

  private:
    enum class Writing { open, closing, closed };

    void ready(short events);
    void read();
    void write();
    void lose_patience_later();
    void end();
    void look();

    PollEventLoop& loop_;
    int socket_;
    std::string queue_;
    std::size_t queue_start_ = 0;
    bool paused_ = true;
    bool finishing_ = false;
    bool gone_ = false;
    Writing writing_ = Writing::open;
    EventLoop::TaskId patience_;
};

} // namespace velorn::plant
