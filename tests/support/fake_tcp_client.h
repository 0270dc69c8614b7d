// A TCP socket in memory that remembers what was done to it.
#pragma once

#include "runtime/event_loop.h"
#include "runtime/outside.h"

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace velorn::test {

class FakeTcpClient : public TcpClient {
  public:
    explicit FakeTcpClient(EventLoop& loop) : loop_(loop) {}

    void arrives(std::string_view bytes) {
        received_ += bytes;
        loop_.post([this] {
            if (arrived) arrived();
        });
    }
    std::string take_written() { return std::exchange(written_, {}); }
    // The far end takes the connection, or it comes to nothing; both are announced from within the loop.
    virtual void succeeds() {
        current = TcpState::connected;
        loop_.post([this] {
            if (connected) connected();
        });
    }
    virtual void fails(int number, std::string description) {
        current = TcpState::error;
        loop_.post([this, number, text = std::move(description)] {
            if (failed) failed(number, text);
        });
    }
    // What arrived goes with its connection.
    void drop() { received_.clear(); }
    // The far end says no more.
    virtual void ends() { current = TcpState::closing; }
    // The far end hears what is done here.
    std::function<void()> on_connect;
    std::function<void()> on_close;
    std::function<void(std::string_view)> on_write;
    int connects = 0; // how often a connection was asked for
    int closes = 0;
    TcpState current = TcpState::closed;
    std::string host;
    int port = 0;

    void connect(std::string_view to, int at) override {
        host = to;
        port = at;
        current = TcpState::connecting;
        ++connects;
        if (on_connect) on_connect();
    }
    void close() override {
        current = TcpState::closed;
        ++closes;
        if (on_close) on_close();
    }
    TcpState state() const override { return current; }
    void write(std::string_view bytes) override {
        written_ += bytes;
        if (on_write) on_write(bytes);
    }
    std::string take(std::size_t most) override {
        std::string bytes = received_.substr(0, most);
        received_.erase(0, bytes.size());
        return bytes;
    }

  private:
    EventLoop& loop_;
    std::string received_;
    std::string written_;
};

} // namespace velorn::test
