// The TCP socket of the machine, over the toolkit's. All news comes through the event loop, so a callback may
// close the connection or begin another. What nobody takes stays in bounded buffers (128 KiB) and then with
// the partner.
//
// Numbers that `failed` tells: 10013 not permitted, 10049 no usable address, 10050 other trouble of the
// network, 10054 connection broke down, 10055 too much unsent or no resources, 10060 time-out, 10061 refused,
// 10065 not reachable, 11001 unknown host. That the partner ends is no failure: the state is `closing` then.
#pragma once

#include "runtime/event_loop.h"
#include "runtime/outside.h"

#include <memory>

namespace velorn {

class QtTcpClient final : public TcpClient {
  public:
    static constexpr std::size_t most_unsent = std::size_t{16} << 20U;

    explicit QtTcpClient(EventLoop& loop) : loop_(loop) {}
    ~QtTcpClient() override;

    // Ends a connection that is on. A text that is no host and a port outside 1 to 65535 fail.
    void connect(std::string_view host, int port) override;
    void close() override;
    TcpState state() const override { return state_; }
    // Lost unless connected. What would make more than most_unsent is dropped as a whole and reported.
    void write(std::string_view bytes) override;
    std::string take(std::size_t most) override;

  private:
    struct Line; // one connection; news of one that is over comes to nothing

    void has_connected();
    void has_failed(int socket_error);
    void fail(int number, std::string_view text);
    void collect();
    void announce();
    void post(std::function<void()> news);

    EventLoop& loop_;
    TcpState state_ = TcpState::closed;
    std::shared_ptr<Line> line_;
};

} // namespace velorn
