#include "app/commands.h"

#include "core/modal.h"
#include "runtime/number_picture.h"
#include "runtime/text.h"

#include <string>
#include <utility>

namespace velorn {

Commands::Commands(World& world, Module1& module1, Settings& settings, SettingsFiles& settings_files,
                   FrmTerminal& frmTerminal, ProgramStart& start, Output& output, Frmftast& frmftast,
                   FrmTelefon& frmtelefon, PhonebookWindow& phonebook_window, Frmedit& frmedit)
    : world_(world),
      module1_(module1),
      settings_(settings),
      settings_files_(settings_files),
      frmTerminal_(frmTerminal),
      start_(start),
      frmftast_(frmftast),
      frmtelefon_(frmtelefon),
      phonebook_window_(phonebook_window),
      frmedit_(frmedit) {
    frmTerminal_.mnuFileExit.Click = [this] { mnuFileExit_Click(); };
    frmTerminal_.mnuftast.Click = [this] { mnuftast_Click(); };
    frmTerminal_.mnutelefonbuch.Click = [this] { mnutelefonbuch_Click(); };
    frmTerminal_.tbrToolBar("DialPhoneNumber").Click = [this] { mnutelefonbuch_Click(); };
    frmTerminal_.uhrterm.Click = [this] { uhrterm_Click(); };
    frmTerminal_.resetcount.Click = [this] { resetcount_Click(); };
    frmTerminal_.informatik.Click = [this] { informatik_Click(); };
    frmTerminal_.testwindow.Click = [this] { testwindow_Click(); };
    frmTerminal_.tbrToolBar("clearcont").Click = [this] { frmTerminal_.Picture2.Cls(); };
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

void Commands::mnutelefonbuch_Click() {
    phonebook_window_.Form_Load();
    if (!show_modally(world_.loop, frmtelefon_.form)) return;
    settings_files_.saveeinst();
}

void Commands::edit_protocol_file() {
    if (!frmedit_.form.Visible && frmedit_.Form_Load(world_.screen))
        (void)show_modally(world_.loop, frmedit_.form);
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

void Commands::resetcount_Click() {
    const auto answer =
        world_.dialogs.input_box("zreset", "Neustartzähler"_w, settings_.neustartzaehler.text());
    if (!answer) return;
    settings_.neustartzaehler = *answer; // as it stands; the next start makes a number of it
    settings_files_.saveeinst();
}

// An exercise: each line swaps two neighbours, and after 24 of them every order of the four has been there.
void Commands::informatik_Click() {
    constexpr int lines = 24;
    constexpr std::size_t swaps[] = {3, 2, 1, 3, 1, 2, 3, 1}; // the left one's place, over and over
    frmTerminal_.txttest10.Visible = true;
    std::string numbers = "1234";
    for (int line = 1; line <= lines; ++line) {
        const std::size_t left = swaps[static_cast<std::size_t>(line - 1) % std::size(swaps)];
        std::swap(numbers[left - 1], numbers[left]);
        frmTerminal_.txttest10.append(format(static_cast<double>(line), "00000") + ' ' +
                                      std::to_string(left) + ' ' + std::to_string(left + 1) + ' ' + numbers +
                                      "\r\n");
    }
}

} // namespace velorn
