// The event loop of the plant's program: poll(2) on file descriptors, the machine's clock or one that runs a
// multiple of it.
#pragma once

#include "runtime/event_loop.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace velorn::plant {

class PollEventLoop final : public EventLoop {
  public:
    using Ready = std::function<void(short events)>; // the events of poll(2) that came

    // With a `speed` above 1 the clocks, the wall clock too, run that many times faster.
    explicit PollEventLoop(int speed = 1);

    std::int64_t now_ms() const override;
    DateTime local_time() const override;

    // Calls `ready` whenever one of the events of poll(2) holds; with no events it rests. The descriptor
    // stays the caller's, who unwatches it before closing it. `ready` must not wait.
    void watch(int descriptor, short events, Ready ready);
    void look_for(int descriptor, short events);
    void unwatch(int descriptor);

  protected:
    void rest(std::optional<std::int64_t> until_ms) override;
    void take_in() override;

  private:
    struct Watched {
        short events;
        std::shared_ptr<Ready> ready;
    };

    void poll_for(int timeout_ms);

    std::int64_t speed_;
    std::int64_t start_ns_;      // of the machine's steady clock
    std::int64_t start_wall_ms_; // since 1970
    std::map<int, Watched> watched_;
};

} // namespace velorn::plant
