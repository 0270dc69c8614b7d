// A listening TCP socket on an IPv4 address, or one that only pretends: a port where nothing listens, and one
// where attempts get no answer. Those keep the port, so that nobody else can come to listen there.
#pragma once

#include "plant/poll_event_loop.h"
#include "plant/tcp_connection.h"
#include "runtime/failure.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace velorn::plant {

enum class Listening { yes, refuses, never_answers };

class TcpServer {
  public:
    // `address` in dotted decimals; port 0 takes a free one. Errors: 70 if the port may not be used, 8005 if
    // somebody else has it, 5 if the address is none, 57 for all else (an address that isn't ours).
    static Result<std::unique_ptr<TcpServer>> open(PollEventLoop& loop, const std::string& address,
                                                   std::uint16_t port, Listening how = Listening::yes);
    ~TcpServer();
    TcpServer(const TcpServer&) = delete;
    TcpServer& operator=(const TcpServer&) = delete;

    std::function<void(std::unique_ptr<TcpConnection>)> accepted;

    std::uint16_t port() const;

  private:
    TcpServer(PollEventLoop& loop, int socket) : loop_(loop), socket_(socket) {}

    Outcome fill_up();
    void accept_all();

    PollEventLoop& loop_;
    int socket_;
    std::vector<int> fillers_; // own attempts that take up all the room there is for waiting
    EventLoop::TaskId again_;
};

} // namespace velorn::plant
