// The modem on the serial port: initialising it, and looking for the port that it is on.
#pragma once

#include "core/frm_terminal.h"
#include "core/module1.h"
#include "core/settings.h"
#include "core/settings_files.h"
#include "core/wait_counter.h"
#include "links/mscomm.h"
#include "links/output.h"
#include "links/port_opening.h"

#include <optional>
#include <string>
#include <string_view>

namespace velorn {

class Modem {
  public:
    Modem(EventLoop& loop, Dialogs& dialogs, Module1& module1, Settings& settings,
          SettingsFiles& settings_files, FrmTerminal& frmTerminal, WaitCounter& waits, Output& output,
          MSComm& MSComm1, PortOpening& port_opening);

    // The search tries the ports from 1 to this one.
    static constexpr int last_searched_port = 128;

  private:
    // What initialising comes to; nothing when the program ends meanwhile.
    std::optional<std::string_view> initialised();
    void Timer6_Tick();
    void Timer11_Tick();
    // Nothing when the program ends meanwhile; else whether the search is over.
    std::optional<bool> try_port(int port);
    std::string opened_for_search(int port);

    EventLoop& loop_;
    Dialogs& dialogs_;
    Module1& module1_;
    Settings& settings_;
    SettingsFiles& settings_files_;
    FrmTerminal& frmTerminal_;
    WaitCounter& waits_;
    Output& output_;
    MSComm& MSComm1_;
    PortOpening& port_opening_;
};

} // namespace velorn
