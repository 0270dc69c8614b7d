#include "app/commands.h"

#include "core/modal.h"

namespace velorn {

Commands::Commands(World& world, Module1& module1, SettingsFiles& settings_files, FrmTerminal& frmTerminal,
                   ProgramStart& start, Output& output, Frmftast& frmftast)
    : world_(world),
      module1_(module1),
      settings_files_(settings_files),
      frmTerminal_(frmTerminal),
      start_(start),
      frmftast_(frmftast) {
    frmTerminal_.mnuFileExit.Click = [this] { mnuFileExit_Click(); };
    frmTerminal_.mnuftast.Click = [this] { mnuftast_Click(); };
    frmTerminal_.uhrterm.Click = [this] { uhrterm_Click(); };
    frmTerminal_.testwindow.Click = [this] { testwindow_Click(); };
    frmTerminal_.tbrToolBar("clearall").Click = [this] { frmTerminal_.txtterm.set_Text({}); };
    frmTerminal_.tbrToolBar("duestart").Click = [&output] { output.sendetext("d"); };
    frmTerminal_.tbrToolBar("test").Click = [&output] { output.sendetext("\x10\x7b\xfe\x79\x16"); };
}

// Saves nothing, so that a collection which it interrupts goes on at the next start.
void Commands::mnuFileExit_Click() {
    bool ignored = false;
    start_.Form_Unload(ignored);
}

void Commands::mnuftast_Click() {
    frmftast_.Form_Load(world_.screen);
    if (!show_modally(world_.loop, frmftast_.form)) return;
    settings_files_.saveeinst();
}

void Commands::uhrterm_Click() {
    frmTerminal_.uhrzeitan = !frmTerminal_.uhrzeitan;
    frmTerminal_.uhrterm.Checked = frmTerminal_.uhrzeitan;
}

void Commands::testwindow_Click() {
    module1_.trace = !module1_.trace;
    frmTerminal_.testwindow.Checked = module1_.trace;
    if (module1_.trace) frmTerminal_.txttest10.set_Text({});
    frmTerminal_.txttest10.Visible = module1_.trace;
}

} // namespace velorn
