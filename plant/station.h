// One place of the plant as the program serves it on a serial line: a device, its troubled line, and the
// pseudo terminal at its end. After a hang-up the place comes back by itself.
#pragma once

#include "plant/device.h"
#include "plant/faults.h"
#include "plant/pseudo_terminal.h"
#include "plant/session.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace velorn::plant {

// Makes the device of one connection; null: nobody is free.
using MakeDevice = std::function<std::unique_ptr<Device>()>;

struct StationSettings {
    std::string name; // UTF-8
    std::string link; // empty: none
    Faults faults;
    std::int64_t away_ms = 2000; // between a hang-up and the return
};

class Station {
  public:
    Station(PollEventLoop& loop, StationSettings settings, MakeDevice make);
    ~Station();
    Station(const Station&) = delete;
    Station& operator=(const Station&) = delete;

    std::function<void(const std::string&)> announce; // one line of UTF-8 for the person who started it
    std::function<void(const std::string&)> log;      // one line of traffic; empty: no log

    // Opens the device and goes on air.
    Outcome open();

  private:
    void hang_up();
    void reopen();

    PollEventLoop& loop_;
    StationSettings settings_;
    MakeDevice make_;
    std::unique_ptr<PseudoTerminal> terminal_;
    std::unique_ptr<Session> session_;
    EventLoop::TaskId next_;
};

} // namespace velorn::plant
