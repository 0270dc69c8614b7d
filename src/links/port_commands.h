// The menu's commands on the serial port: its settings window, and the small commands that read or change one
// property each. None of the small ones' values is stored.
#pragma once

#include "core/frm_terminal.h"
#include "core/settings_files.h"
#include "links/frm_properties.h"
#include "links/mscomm.h"
#include "links/port_opening.h"
#include "runtime/outside.h"

#include <string_view>

namespace velorn {

class PortCommands {
  public:
    PortCommands(EventLoop& loop, Dialogs& dialogs, ScreenSize screen, SettingsFiles& settings_files,
                 FrmTerminal& frmTerminal, MSComm& MSComm1, PortOpening& port_opening,
                 FrmProperties& frmProperties);

  private:
    struct Number;
    struct Line;

    void mnuProperties_Click();
    void ask_number(const Number& row);
    void mnuParRep_Click();
    void mnuDTREnable_Click();

    EventLoop& loop_;
    Dialogs& dialogs_;
    ScreenSize screen_;
    SettingsFiles& settings_files_;
    FrmTerminal& frmTerminal_;
    MSComm& MSComm1_;
    PortOpening& port_opening_;
    FrmProperties& frmProperties_;
};

} // namespace velorn
