// The lamps of the main window: back to green after activity, and the state of the TCP link.
#pragma once

#include "core/frm_terminal.h"
#include "links/winsock.h"

namespace velorn {

class Lamps {
  public:
    Lamps(FrmTerminal& frmTerminal, Winsock& Winsock1);

  private:
    void Timer7_Tick();
    void Timer8_Tick();
    void Timer12_Tick();

    FrmTerminal& frmTerminal_;
    Winsock& Winsock1_;
};

} // namespace velorn
