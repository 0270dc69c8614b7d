// Remote control: the controller's display is mirrored in the terminal's place and worked from here. How it
// is entered and left, and what its stream asks for.
#pragma once

#include "core/events.h"
#include "core/frm_terminal.h"
#include "core/module1.h"
#include "core/settings.h"
#include "core/settings_files.h"
#include "core/wait_counter.h"
#include "links/output.h"
#include "runtime/outside.h"
#include "terminal/calendar_view.h"
#include "terminal/display_looks.h"
#include "terminal/receive.h"
#include "terminal/screen_painter.h"
#include "terminal/screen_parser.h"

namespace velorn {

class RemoteControl {
  public:
    RemoteControl(EventLoop& loop, Dialogs& dialogs, const Events& events, Module1& module1,
                  Settings& settings, SettingsFiles& settings_files, FrmTerminal& frmTerminal,
                  WaitCounter& waits, Output& output, MSComm& MSComm1, ReceiveEvents& receive_events,
                  DisplayLooks& looks);

    ScreenParser parser;

    // Starts remote control from here. Waits 2.2 s.
    void fernbedstart();

  private:
    void screen_input(std::string_view text, bool over_tcp, bool capture_taken);
    void log_wanted(bool over_tcp);
    void Timer4_Tick();
    void notfernbed_Click();
    void bildumschalt_Click();
    void fernbedauto_Click();

    EventLoop& loop_;
    Dialogs& dialogs_;
    const Events& events_;
    Module1& module1_;
    Settings& settings_;
    SettingsFiles& settings_files_;
    FrmTerminal& frmTerminal_;
    WaitCounter& waits_;
    Output& output_;
    MSComm& MSComm1_;
    ScreenPainter painter_;
    CalendarView calendar_;
};

} // namespace velorn
