// Ending a connection: the modem's hang-up, and all the ways that lead to it or to closing the socket.
#pragma once

#include "core/events.h"
#include "core/frm_terminal.h"
#include "core/module1.h"
#include "core/settings.h"
#include "core/wait_counter.h"
#include "links/output.h"
#include "links/winsock.h"
#include "runtime/outside.h"

namespace velorn {

class HangUp {
  public:
    HangUp(EventLoop& loop, Dialogs& dialogs, const Events& events, Module1& module1,
           const Settings& settings, FrmTerminal& frmTerminal, WaitCounter& waits, Output& output,
           Winsock& Winsock1);

    // Leaves remote control if it is on, then "+++" and "ATH". Waits up to 7.5 s. False: the program ends, or
    // somebody dialled meanwhile, and the rest was not done.
    bool mnuHangUp_Click();

  private:
    void Timer3_Tick();
    void Timer20_Tick();
    void Timer31_Tick();
    void HangUpPhone_Click();
    bool goes_on(bool waited, int anrufnr) const;
    bool hang_up_gateway();
    void give_up();
    void end_tcp();
    bool is_automatic() const;
    bool agreed(std::string_view question);

    EventLoop& loop_;
    Dialogs& dialogs_;
    const Events& events_;
    Module1& module1_;
    const Settings& settings_;
    FrmTerminal& frmTerminal_;
    WaitCounter& waits_;
    Output& output_;
    Winsock& Winsock1_;
    bool hanging_up_ = false;    // the toolbar's key is at it
    bool auflegenstill_ = false; // hanging up by itself: the end of remote control asks nothing
};

} // namespace velorn
