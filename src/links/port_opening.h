// Opening and closing the serial port: by hand, after the start, and again when a port that had gone comes
// back.
#pragma once

#include "core/frm_terminal.h"
#include "core/module1.h"
#include "core/settings.h"
#include "links/mscomm.h"

namespace velorn {

class PortOpening {
  public:
    PortOpening(EventLoop& loop, Dialogs& dialogs, Module1& module1, const Settings& settings,
                FrmTerminal& frmTerminal, MSComm& MSComm1);

    // Toggles the port. A failure shows its text with code 48 unless TCP is the chosen way.
    void mnuOpen_Click();

    // Toggles, and once more if the port isn't open then: so it comes out open if it can be opened, with new
    // settings if it was open before. False: the program ends.
    bool open_again();

    // Says that the port can't be opened, unless TCP is the chosen way or it is open.
    void tell_if_closed();

    // "Einstellungen: Com1  19200,n,8,1".
    void show_settings();
    // All that tells whether the port is open.
    void show_state();

  private:
    void Timer26_Tick();
    void watch();

    EventLoop& loop_;
    Dialogs& dialogs_;
    Module1& module1_;
    const Settings& settings_;
    FrmTerminal& frmTerminal_;
    MSComm& MSComm1_;

    // Looks after an open port whose device may be unplugged, and waits for one that has gone.
    Timer watch_;
    bool waits_for_return_ = false;
};

} // namespace velorn
