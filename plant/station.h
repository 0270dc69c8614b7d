// One place of the plant as the program serves it: a controller (or a source of text), its troubled line, and
// the pseudo terminal at its end. After a hang-up the place comes back by itself.
#pragma once

#include "plant/controller.h"
#include "plant/faults.h"
#include "plant/pseudo_terminal.h"
#include "plant/source.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace velorn::plant {

struct StationSettings {
    std::string name; // UTF-8
    std::string link; // empty: none
    Faults faults;    // their seed is the controller's too
    std::optional<std::uint64_t> source;
    std::int64_t away_ms = 2000; // between a hang-up and the return
};

class Station {
  public:
    Station(PollEventLoop& loop, StationSettings settings);
    ~Station();
    Station(const Station&) = delete;
    Station& operator=(const Station&) = delete;

    std::function<void(const std::string&)> announce; // one line of UTF-8 for the person who started it
    std::function<void(const std::string&)> log;      // one line of traffic; empty: no log
    std::function<void()> finished;                   // the source is empty and everything was read

    // Opens the device and goes on air.
    Outcome open();

  private:
    void note(std::string_view direction, std::string_view bytes);
    void hang_up();
    void reopen();
    void keep_reading_in_bounds();
    void pump();
    void await_reader(bool was_empty);

    PollEventLoop& loop_;
    StationSettings settings_;
    std::unique_ptr<PseudoTerminal> terminal_;
    std::unique_ptr<Controller> controller_;
    std::optional<Source> source_;
    std::unique_ptr<Line> line_;
    EventLoop::TaskId next_;
};

} // namespace velorn::plant
