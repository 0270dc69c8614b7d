// The TCP control Winsock1 over a socket of the machine. How a connection is asked for is the dialling's
// business; what arrives goes to the receive path.
//
// Events are raised from within the event loop, never from within a call of this control; those of a
// connection that was closed meanwhile are not raised any more.
#pragma once

#include "runtime/outside.h"

#include <functional>
#include <string>
#include <string_view>

namespace velorn {

class Winsock {
  public:
    explicit Winsock(TcpClient& socket) : socket_(socket) {
        socket_.arrived = [this] {
            if (DataArrival) DataArrival();
        };
        socket_.connected = [this] {
            if (Connected) Connected();
        };
        socket_.failed = [this](int number, const std::string& description) {
            if (Error) Error(number, description);
        };
    }

    std::string RemoteHost; // a name or an address
    int RemotePort = 0;     // 1 to 65535

    // Ends a connection that is open or being tried and asks for a new one.
    void Connect() { socket_.connect(RemoteHost, RemotePort); }

    TcpState State() const { return socket_.state(); }
    void SendData(std::string_view bytes) { socket_.write(bytes); }
    std::string GetData() { return socket_.take(most_at_once); }
    void Close() { socket_.close(); }

    std::function<void()> Connected; // the event Connect
    std::function<void(int number, const std::string& description)> Error;
    std::function<void()> DataArrival;

  private:
    // As much as the serial control holds, so that one event's work is the same on both links.
    static constexpr std::size_t most_at_once = 16384;

    TcpClient& socket_;
};

} // namespace velorn
