// How the program starts and how it ends.
//
// The main window's Form_Load reads the settings, lays out the window and starts its timers; the serial port
// opens 1.6 seconds later. There are two ways out, and only one of them saves: closing the window does, the
// menu's "Beenden" doesn't, so that a collection which it interrupts goes on at the next start.
#pragma once

#include "app/world.h"
#include "archive/archive_window.h"
#include "core/events.h"
#include "core/frm_terminal.h"
#include "core/module1.h"
#include "core/settings.h"
#include "core/settings_files.h"
#include "core/wait_counter.h"
#include "links/mscomm.h"
#include "terminal/display_looks.h"

#include <set>
#include <string>

namespace velorn {

class ProgramStart {
  public:
    ProgramStart(World& world, const Events& events, Module1& module1, Settings& settings,
                 SettingsFiles& settings_files, FrmTerminal& frmTerminal, WaitCounter& waits, MSComm& MSComm1,
                 DisplayLooks& looks, ArchiveWindow& archive_window);

    void Form_Load();

    // The window is to be closed; an open archive is saved first. It stays open when the person calls the
    // closing off, and when the archive could not be saved.
    void Form_QueryUnload();
    // Ends the program. Cancel is set when the person calls it off, since data could not be sent.
    void Form_Unload(bool& Cancel);

  private:
    bool load_settings_once();
    void lay_out_window();
    Outcome apply_to_controls(std::string& refused);
    void recover(const std::string& refused);
    void count_start();
    void Timerglobal_Tick();
    void Timer9_Tick();
    void Timer27_Tick();

    World& world_;
    const Events& events_;
    Module1& module1_;
    Settings& settings_;
    SettingsFiles& settings_files_;
    FrmTerminal& frmTerminal_;
    WaitCounter& waits_;
    MSComm& MSComm1_;
    DisplayLooks& looks_;
    ArchiveWindow& archive_window_;
    std::set<std::string> refused_in_this_start_;
};

} // namespace velorn
