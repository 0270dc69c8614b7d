// An ear on both lines of a program: what it asked to be connected to, what arrived at it, piece by piece as
// it took it, and what left it. After the program's death nothing leaves any more.
#pragma once

#include "support/fake_serial_port.h"
#include "support/fake_tcp_client.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velorn::test {

struct LineEvent {
    enum class What { connects, accepted, lost, arrives, leaves };
    std::int64_t ms; // of the loop
    What what;
    std::string bytes; // of a connection that is asked for, accepted or lost the address
};

class LineTap {
  public:
    explicit LineTap(const EventLoop& loop) : loop_(loop) {}

    void note(LineEvent::What what, std::string_view bytes) {
        if (!bytes.empty()) events.push_back({loop_.now_ms(), what, std::string(bytes)});
    }
    std::vector<LineEvent> events;
    bool dead = false;

  private:
    const EventLoop& loop_;
};

class TappedTcpClient final : public FakeTcpClient {
  public:
    TappedTcpClient(EventLoop& loop, LineTap& tap) : FakeTcpClient(loop), tap_(tap) {}

    void connect(std::string_view to, int at) override {
        if (tap_.dead) return;
        tap_.note(LineEvent::What::connects, to);
        FakeTcpClient::connect(to, at);
    }
    void succeeds() override {
        tap_.note(LineEvent::What::accepted, host);
        FakeTcpClient::succeeds();
    }
    // From here on nothing leaves any more; what has arrived can still be taken.
    void ends() override {
        tap_.note(LineEvent::What::lost, host);
        FakeTcpClient::ends();
    }
    void fails(int number, std::string description) override {
        tap_.note(LineEvent::What::lost, host);
        FakeTcpClient::fails(number, std::move(description));
    }
    void write(std::string_view bytes) override {
        if (tap_.dead) return;
        tap_.note(LineEvent::What::leaves, bytes);
        FakeTcpClient::write(bytes);
    }
    std::string take(std::size_t most) override {
        std::string bytes = FakeTcpClient::take(most);
        tap_.note(LineEvent::What::arrives, bytes);
        if (bytes.size() == most) arrives({}); // the rest is announced anew, as the machine's socket does
        return bytes;
    }

  private:
    LineTap& tap_;
};

class TappedSerialPort final : public FakeSerialPort {
  public:
    TappedSerialPort(EventLoop& loop, LineTap& tap) : FakeSerialPort(loop), tap_(tap) {}

    void write(std::string_view bytes) override {
        if (tap_.dead) return;
        if (is_open()) tap_.note(LineEvent::What::leaves, bytes);
        FakeSerialPort::write(bytes);
    }
    std::string take(std::size_t most) override {
        std::string bytes = FakeSerialPort::take(most);
        tap_.note(LineEvent::What::arrives, bytes);
        if (bytes.size() == most) arrives({});
        return bytes;
    }

  private:
    LineTap& tap_;
};

} // namespace velorn::test
