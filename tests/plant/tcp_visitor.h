// The program at the other side of the plant's TCP ports, and a loop that both share.
#pragma once

#include "plant/poll_event_loop.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <cstdint>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>

namespace velorn::plant {

class TcpVisitor {
  public:
    TcpVisitor(PollEventLoop& loop, std::uint16_t port, const char* address = "127.0.0.1")
        : loop_(loop), socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
        sockaddr_in place{};
        place.sin_family = AF_INET;
        place.sin_port = htons(port);
        ::inet_pton(AF_INET, address, &place.sin_addr);
        const int result = ::connect(socket_, reinterpret_cast<const sockaddr*>(&place), sizeof place);
        if (result != 0 && errno != EINPROGRESS) error = errno;
        loop_.watch(socket_, POLLIN | POLLOUT, [this](short) { ready(); });
    }
    ~TcpVisitor() { close(); }
    TcpVisitor(const TcpVisitor&) = delete;
    TcpVisitor& operator=(const TcpVisitor&) = delete;

    bool connected = false;
    bool ended = false; // the other side says no more
    int error = 0;      // errno of what broke the connection or kept it from coming about
    std::string heard;
    std::size_t heard_bytes = 0;
    bool keeps_text = true;

    std::size_t write(std::string_view bytes) const {
        const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        return count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    void stop_reading() { loop_.look_for(socket_, 0); }
    void go_on_reading() { loop_.look_for(socket_, POLLIN); }
    void close() {
        if (socket_ < 0) return;
        loop_.unwatch(socket_);
        ::close(socket_);
        socket_ = -1;
    }

  private:
    void ready() {
        int broken = 0;
        socklen_t size = sizeof broken;
        ::getsockopt(socket_, SOL_SOCKET, SO_ERROR, &broken, &size);
        std::array<char, 16 * 1024> bytes;
        const ssize_t count = broken != 0 ? -1 : ::read(socket_, bytes.data(), bytes.size());
        if (broken == 0 && (count >= 0 || errno == EAGAIN)) {
            if (!connected) loop_.look_for(socket_, POLLIN);
            connected = true;
        }
        if (count > 0) {
            heard_bytes += static_cast<std::size_t>(count);
            if (keeps_text) heard.append(bytes.data(), static_cast<std::size_t>(count));
        } else if (count == 0) {
            ended = true;
            stop_reading();
        } else if (broken != 0 || errno != EAGAIN) {
            error = broken != 0 ? broken : errno;
            stop_reading();
        }
    }

    PollEventLoop& loop_;
    int socket_;
};

struct OverTcp : testing::Test {
    PollEventLoop loop;

    // Turns the loop until it holds; false after half a minute, which no healthy machine needs.
    bool comes(const EventLoop::Condition& condition, std::int64_t within_ms = 30'000) {
        const std::int64_t limit = loop.now_ms() + within_ms;
        const auto alarm = loop.post_at(limit, [] {});
        const bool went_on = loop.wait_until([&] { return condition() || loop.now_ms() >= limit; });
        loop.cancel(alarm);
        return went_on && condition();
    }
    void pass(std::int64_t ms) {
        EXPECT_FALSE(comes([] { return false; }, ms));
    }
};

} // namespace velorn::plant
