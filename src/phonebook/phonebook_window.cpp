#include "phonebook/phonebook_window.h"

#include "core/dial_boxes.h"
#include "runtime/paths.h"
#include "runtime/text.h"

#include <algorithm>

namespace velorn {

namespace {

constexpr std::int16_t snapshots_per_site = 22; // the version from which snapshots lie with their entries

Variant one_or_zero(bool on) { return static_cast<std::int16_t>(on ? 1 : 0); }

// A value that stays the same keeps its tag.
void store(Variant& stored, const Variant& value) {
    if (stored.empty() || stored.text() != value.text()) stored = value;
}

} // namespace

PhonebookWindow::PhonebookWindow(EventLoop& loop, Files& files, Dialogs& dialogs, const Events& events,
                                 Module1& module1, Settings& settings, Telefonbuch& book,
                                 FrmTerminal& frmTerminal, FrmTelefon& frmtelefon,
                                 PhonebookFiles& phonebook_files, PhonebookLines& lines)
    : loop_(loop),
      files_(files),
      dialogs_(dialogs),
      events_(events),
      module1_(module1),
      settings_(settings),
      book_(book),
      frmTerminal_(frmTerminal),
      frmtelefon_(frmtelefon),
      phonebook_files_(phonebook_files),
      lines_(lines) {
    frmtelefon_.Command11.Click = [this] { close(Closing::saving); };
    frmtelefon_.cmdOK.Click = [this] { close(Closing::plain); };
    frmtelefon_.cmdCancel.Click = [this] { close(Closing::cancelling); };
    frmtelefon_.Command4.Click = [this] { events_.edit_protocol_file(); };
    frmtelefon_.Command8.Click = [this] { Command8_Click(); };
    frmtelefon_.mnutele.Click = [this] { mnutele_Click(); };
    frmtelefon_.mnudispauf.Click = [this] { mnudispauf_Click(); };
    frmtelefon_.mnuloginauto.Click = [this] { mnuloginauto_Click(); };
    frmtelefon_.mnuuser.Click = [this] {
        ask_login("Login Username", "User Name IP-Verbindungen", settings_.loginuser);
    };
    frmtelefon_.mnupass.Click = [this] {
        ask_login("Login Password", "Password IP-Verbindungen", settings_.loginpass);
    };
    frmtelefon_.Timer3.Tick = [this] { Timer3_Tick(); };
    frmtelefon_.Timer99.Tick = [this] { Timer99_Tick(); };
    watch_boxes();
}

// ---- opening ----

void PhonebookWindow::Form_Load() {
    if (frmtelefon_.geladen) return;
    frmtelefon_.geladen = true;
    phonebook_files_.read_telefonbuch();
    if (settings_.neustartzaehler == Variant(std::int16_t{1})) {
        PhoneEntry& sample = book_[0];
        sample.name = "Lindenhofstr. Sudstadt";
        sample.nummer = "05550123456";
        sample.visdatei = module1_.apppfad + "\\lindvis.exe";
        sample.bemerkung = "Modemzugang";
    }
    if (!module1_.neuedispauf) phonebook_files_.read_dispaufnahmen();
    if (settings_.einstversion2 < Variant(snapshots_per_site)) {
        settings_.einstversion2 = snapshots_per_site;
        // Kept: the old layout's marks go, those of the present one stay.
        for (PhoneEntryOld& entry : book_.altbuch) entry.autoflag = 0;
    }

    fill_boxes_from_settings();
    frmtelefon_.Picture3.Visible = frmtelefon_.txtanrufer.Text.get() == "Benutzer";
    frmtelefon_.mnuloginauto.Checked = settings_.loginauto.number() != 0;
    frmtelefon_.Picture2.Visible = false;
    frmtelefon_.picdownload.Visible = false;
    frmtelefon_.picdownl.Visible = false;
    frmtelefon_.tausch1aktiv = false;
    frmtelefon_.tausch2aktiv = false;
    for (Button* button : {&frmtelefon_.comstart, &frmtelefon_.comdatplus, &frmtelefon_.comdatminus,
                           &frmtelefon_.comuhrplus, &frmtelefon_.comuhrminus})
        button->Enabled = true;

    const int first = lines_.telscroll();
    if (settings_.telzeile >= 0 && settings_.telzeile < FrmTelefon::lines)
        module1_.telindex = static_cast<std::int16_t>(first + settings_.telzeile);
    frmtelefon_.spaltengruppe = 1;
    frmtelefon_.HScroll1.set_Value(1);
    frmtelefon_.VScroll1.set_Value(first);
    lines_.refresh();

    frmtelefon_.countdown = 0;
    frmtelefon_.Label22.Caption = std::to_string(seconds_open);
    frmtelefon_.Timer99.Enabled = true;
    frmtelefon_.Timer3.Enabled = true;
}

void PhonebookWindow::fill_boxes_from_settings() {
    fill_boxes(module1_, settings_);
    // Each box writes to the value that it is filled from: the same text.
    frmtelefon_.txtanrufer.Text = std::string(module1_.txtanrufer);
    frmtelefon_.txtmodinit.Text = std::string(module1_.txtmodinit);
    frmtelefon_.txtprestrcheck.Value = bool{module1_.txtprestrcheck};
    frmtelefon_.txtprestrtext.Text = std::string(module1_.txtprestrtext);
    frmtelefon_.mdexport.Text = std::string(module1_.mdexport);
    frmtelefon_.telnet.Value = bool{module1_.telnet};
}

void PhonebookWindow::watch_boxes() {
    frmtelefon_.txtanrufer.Change = [this] { txtanrufer_Change(); };
    frmtelefon_.txtmodinit.Change = [this] { module1_.txtmodinit = frmtelefon_.txtmodinit.Text.get(); };
    frmtelefon_.txtprestrcheck.Click = [this] { module1_.txtprestrcheck = frmtelefon_.txtprestrcheck.Value; };
    frmtelefon_.txtprestrtext.Change = [this] {
        module1_.txtprestrtext = frmtelefon_.txtprestrtext.Text.get();
    };
    frmtelefon_.mdexport.Change = [this] { module1_.mdexport = frmtelefon_.mdexport.Text.get(); };
    frmtelefon_.telnet.Click = [this] { module1_.telnet = frmtelefon_.telnet.Value; };
}

void PhonebookWindow::txtanrufer_Change() {
    module1_.txtanrufer = frmtelefon_.txtanrufer.Text.get();
    frmtelefon_.Picture3.Visible = instr(module1_.txtanrufer, "Benu") > 0;
}

// ---- closing ----

void PhonebookWindow::close(Closing way) {
    if (!frmtelefon_.geladen) return;
    frmtelefon_.geladen = false;
    frmtelefon_.Timer99.Enabled = false;
    frmtelefon_.Timer3.Enabled = false;
    if (way == Closing::saving) {
        phonebook_files_.save_telefonbuch();
        phonebook_files_.save_dispaufnahmen();
    }
    if (way == Closing::cancelling)
        fill_boxes(module1_, settings_);
    else
        take_over_settings();
    frmtelefon_.form.Visible = false;
}

void PhonebookWindow::take_over_settings() {
    store(settings_.anrufer, Variant(module1_.txtanrufer));
    store(settings_.modeminit, Variant(module1_.txtmodinit));
    if (module1_.telindex >= 0) {
        module1_.visdatei = book_[module1_.telindex].visdatei.text();
        lines_.check_files();
    }
    const int row = module1_.telindex - lines_.telscroll();
    settings_.telzeile = static_cast<std::int16_t>(row >= 0 && row < FrmTelefon::lines ? row : -1);
    if (module1_.telindex >= 0) frmTerminal_.txtsnapshot.set_Text(book_[module1_.telindex].aufnahme.text());
    store(settings_.vorwahl, Variant(module1_.txtprestrtext));
    store(settings_.lanport, Variant(module1_.mdexport));
    store(settings_.vorwahlan, one_or_zero(module1_.txtprestrcheck));
    store(settings_.lanaktiv, one_or_zero(module1_.telnet));
    StatusPanel& projekt = frmTerminal_.sbrStatus.projekt;
    if (module1_.telindex >= 0 && instr(projekt.Text.get(), "angewählt"_w) == 0) {
        module1_.projektname = book_[module1_.telindex].name.text();
        projekt.Text = module1_.projektname;
    }
}

void PhonebookWindow::Timer99_Tick() {
    ++frmtelefon_.countdown;
    frmtelefon_.Label22.Caption = std::to_string(seconds_open - frmtelefon_.countdown);
    if (frmtelefon_.countdown <= seconds_open) return;
    frmtelefon_.Timer99.Enabled = false;
    close(Closing::plain);
}

void PhonebookWindow::Timer3_Tick() {
    Notice& notice = frmtelefon_.Picture3;
    notice.BackColor = notice.BackColor == colour::white ? colour::red : colour::white;
}

// ---- menu ----

void PhonebookWindow::mnutele_Click() {
    const Result<std::string> chosen =
        dialogs_.choose_file({.title = "Telefonnummern importieren",
                              .filter = "Alle Dateien (*.*)|*.*",
                              .folder = std::string(folder_of(settings_.telefonpfad.text())),
                              .name = "telefon.par"});
    if (!chosen || loop_.ended()) return;
    settings_.telefonpfad = *chosen;
    phonebook_files_.read_telefonbuch();
    lines_.refresh();
}

// Nothing is read: the next opening of the window does, and the next saving writes there.
void PhonebookWindow::mnudispauf_Click() {
    const Result<std::string> chosen =
        dialogs_.choose_file({.title = "Displayaufnahmen importieren",
                              .filter = "Alle Dateien (*.*)|*.*",
                              .folder = std::string(folder_of(settings_.dispaufpfad.text())),
                              .name = "dispauf.par",
                              .saving = true});
    if (!chosen || loop_.ended()) return;
    settings_.dispaufpfad = *chosen;
}

void PhonebookWindow::mnuloginauto_Click() {
    const bool on = settings_.loginauto.number() == 0;
    settings_.loginauto = on;
    frmtelefon_.mnuloginauto.Checked = on;
}

void PhonebookWindow::ask_login(std::string_view prompt, std::string_view title, Variant& value) {
    const auto answer = dialogs_.input_box(prompt, title, value.text());
    if (answer && !answer->empty()) value = *answer;
}

// ---- export ----

// Kept: 401 lines, though the book holds more.
std::string PhonebookWindow::exported() const {
    constexpr int last_exported = 400;
    std::string text = "Projektname;Nummer;Bemerkung;Visualisierung;1/4h-Auswertung\n\n\n\n";
    for (int i = 0; i <= last_exported; ++i) {
        const PhoneEntry& entry = book_[i];
        const bool has_visualisation = contains_ignoring_case(entry.visdatei.text(), ".exe");
        const bool has_archive = instr(entry.viertdatei.text(), ".dat") > 0;
        text += entry.name.text() + ';' + entry.nummer.text() + ';' + entry.bemerkung.text() + ';' +
                (has_visualisation ? "1;" : "0;") + (has_archive ? "1;" : "0;") + '\n';
    }
    return text;
}

void PhonebookWindow::Command8_Click() {
    const auto write = [this]() -> Outcome {
        const auto file = files_.open(export_path, OpenMode::read_write);
        if (!file) return file.failure();
        return (*file)->write(1, exported());
    };
    if (const Outcome written = write(); !written) dialogs_.message_box(written.failure().text, 48);
}

} // namespace velorn
