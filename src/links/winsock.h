// The TCP control Winsock1 over a socket of the machine. How a connection is asked for is the dialling's
// business; what arrives goes to the receive path.
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
    }

    TcpState State() const { return socket_.state(); }
    void SendData(std::string_view bytes) { socket_.write(bytes); }
    std::string GetData() { return socket_.take(most_at_once); }
    void Close() { socket_.close(); }

    std::function<void()> DataArrival;

  private:
    // As much as the serial control holds, so that one event's work is the same on both links.
    static constexpr std::size_t most_at_once = 16384;

    TcpClient& socket_;
};

} // namespace velorn
