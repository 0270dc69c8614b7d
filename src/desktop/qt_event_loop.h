// The event loop that lives with the toolkit: it rests inside the toolkit's own waiting, so windows are
// painted, keys and the machine's news arrive, and no processor time goes by while nothing is due.
//
// One precise timer stands for the earliest piece of work; nothing runs before its time. A flood of due work
// lets the toolkit have its turn about every 4 ms. QApplication::exec is never called; run() takes its place.
//
// deleteLater() called from work of this loop takes effect when the outermost wait comes round: inside a
// nested wait the object may still be on the stack.
#pragma once

#include "runtime/event_loop.h"

#include <memory>

namespace velorn {

class QtEventLoop final : public EventLoop {
  public:
    // Needs a QCoreApplication. With a `speed` above 1 the clocks, the wall clock too, run that many times
    // faster.
    explicit QtEventLoop(double speed = 1);
    ~QtEventLoop() override;

    std::int64_t now_ms() const override;
    DateTime local_time() const override;

  protected:
    void rest(std::optional<std::int64_t> until_ms) override;
    void take_in() override;

  private:
    struct Clocks;

    void delete_what_waits_for_it();

    std::unique_ptr<Clocks> clocks_;
};

} // namespace velorn
