// Waiting in ticks of 100 ms. All waits of the program share one counter, `wartetakte`: one that begins while
// another runs replaces its count.
#pragma once

#include "core/frm_terminal.h"
#include "runtime/event_loop.h"

namespace velorn {

class WaitCounter {
  public:
    WaitCounter(EventLoop& loop, FrmTerminal& frmTerminal);

    // Waits n ticks. False: the program ends, return now.
    [[nodiscard]] bool warte(int n);

    // The same, left early as soon as the condition holds.
    [[nodiscard]] bool warte(int n, const EventLoop::Condition& leave);

  private:
    void Timer5_Tick();

    EventLoop& loop_;
    FrmTerminal& frmTerminal_;
};

} // namespace velorn
