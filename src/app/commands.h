// The main window's own commands of the menu and the toolbar, wired to what serves them. A command that
// nothing serves yet has no Click, and views show it greyed.
#pragma once

#include "accessories/frmedit.h"
#include "app/program_start.h"
#include "app/world.h"
#include "core/frm_terminal.h"
#include "core/module1.h"
#include "core/settings_files.h"
#include "links/output.h"
#include "phonebook/phonebook_window.h"
#include "terminal/frmftast.h"

namespace velorn {

class Commands {
  public:
    Commands(World& world, Module1& module1, Settings& settings, SettingsFiles& settings_files,
             FrmTerminal& frmTerminal, ProgramStart& start, Output& output, Frmftast& frmftast,
             FrmTelefon& frmtelefon, PhonebookWindow& phonebook_window, Frmedit& frmedit);

    // Shows the site's protocol file until its window is closed.
    void edit_protocol_file();

  private:
    void mnuFileExit_Click();
    void mnuftast_Click();
    void mnutelefonbuch_Click();
    void uhrterm_Click();
    void testwindow_Click();
    void resetcount_Click();
    void informatik_Click();

    World& world_;
    Module1& module1_;
    Settings& settings_;
    SettingsFiles& settings_files_;
    FrmTerminal& frmTerminal_;
    ProgramStart& start_;
    Frmftast& frmftast_;
    FrmTelefon& frmtelefon_;
    PhonebookWindow& phonebook_window_;
    Frmedit& frmedit_;
};

} // namespace velorn
