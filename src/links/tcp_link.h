// The TCP link: what happens when a connection comes about or fails, and the timers that watch an attempt.
#pragma once

#include "core/events.h"
#include "core/frm_terminal.h"
#include "core/module1.h"
#include "core/wait_counter.h"
#include "links/output.h"
#include "links/winsock.h"

#include <string>

namespace velorn {

class TcpLink {
  public:
    TcpLink(const Events& events, Module1& module1, FrmTerminal& frmTerminal, WaitCounter& waits,
            Output& output, Winsock& Winsock1);

    // Asks for a connection to a name or an address; port 1 to 65535. Ends the one before and stops the
    // timers of its attempt; the caller switches on the timer of its own route.
    void begin_attempt(std::string host, int port);

    // An attempt is given up after so many seconds.
    static constexpr int seconds_to_connect = 10;
    static constexpr int seconds_to_dial = 60;

  private:
    void Winsock1_Connect();
    void Winsock1_Error(int number, const std::string& description);
    void Timer23_Tick();
    void Timer24_Tick();
    void Timer25_Tick();
    bool is_given_up(int seconds);
    void stop_attempt();

    const Events& events_;
    Module1& module1_;
    FrmTerminal& frmTerminal_;
    WaitCounter& waits_;
    Output& output_;
    Winsock& Winsock1_;
    int attempt_ = 0; // which one it is, since another may begin while one waits
};

} // namespace velorn
