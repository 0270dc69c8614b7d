// One place of the plant as the program serves it on a TCP port: for each connection a device and its
// troubled line.
#pragma once

#include "plant/faults.h"
#include "plant/session.h"
#include "plant/station.h"
#include "plant/tcp_server.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <string>

namespace velorn::plant {

struct TcpStationSettings {
    std::string name; // UTF-8
    std::string address = "127.0.0.1";
    std::uint16_t port = 0; // 0: a free one
    Listening listening = Listening::yes;
    Faults faults;         // each connection has them anew
    std::size_t most = 16; // connections at a time
};

class TcpStation {
  public:
    // A second look after this time, before one for whom nobody is free is sent away: who closes and comes
    // back at once must not find his own last visit still there.
    static constexpr std::int64_t second_look_ms = 50;

    // `make` may answer null: nobody is free.
    TcpStation(PollEventLoop& loop, TcpStationSettings settings, MakeDevice make);
    ~TcpStation();
    TcpStation(const TcpStation&) = delete;
    TcpStation& operator=(const TcpStation&) = delete;

    std::function<void(const std::string&)> announce; // one line of UTF-8 for the person who started it
    std::function<void(const std::string&)> log;      // one line of traffic; empty: no log

    Outcome open();

    std::uint16_t port() const { return server_->port(); }
    std::size_t connections() const { return visits_.size(); }

  private:
    struct Visit {
        std::unique_ptr<TcpConnection> connection;
        std::unique_ptr<Session> session; // null: not admitted yet, or over
        bool gone = false;
        EventLoop::TaskId next;
    };

    void admit(Visit& visit, bool last_look);
    void over(Visit& visit, Ending ending);
    void remove_later(Visit& visit);

    PollEventLoop& loop_;
    TcpStationSettings settings_;
    MakeDevice make_;
    std::unique_ptr<TcpServer> server_;
    std::list<Visit> visits_;
    std::size_t served_ = 0;
};

} // namespace velorn::plant
