#include "archive/collection.h"

#include "runtime/number_picture.h"
#include "runtime/text.h"

#include <algorithm>

namespace velorn {

namespace {

constexpr std::string_view name_pattern = "yymmdd_hhnn";
constexpr std::size_t shortest_log_path = 6;
constexpr std::int16_t steps_for_the_modem = 20; // of 200 ms
constexpr int drift_a_second = 300, drift_a_minute = 70;

std::int16_t index_in(const TextBox& box) {
    const double number = number_of(box.Text.get()).value_or(0);
    return static_cast<std::int16_t>(std::clamp(round_to_even(number), -32768.0, 32767.0));
}

} // namespace

Collection::Collection(EventLoop& loop, Files& files, Dialogs& dialogs, const std::string& log_folder,
                       Module1& module1, Settings& settings, SettingsFiles& settings_files,
                       const Telefonbuch& book, FrmTelefon& frmtelefon, PhonebookWindow& phonebook_window,
                       PhonebookLines& lines, CollectionPanel& panel, ArchiveWindow& archive_window,
                       Dialling& dialling, CollectionLog& log)
    : loop_(loop),
      files_(files),
      dialogs_(dialogs),
      log_folder_(log_folder),
      module1_(module1),
      settings_(settings),
      settings_files_(settings_files),
      book_(book),
      frmtelefon_(frmtelefon),
      phonebook_window_(phonebook_window),
      lines_(lines),
      panel_(panel),
      archive_window_(archive_window),
      dialling_(dialling),
      log_(log) {
    frmtelefon_.comstart.Click = [this] { comstart_Click(); };
    frmtelefon_.Timer2.Tick = [this] { Timer2_Tick(); };
}

// ---- starting ----

void Collection::lock_panel() {
    for (Button* button : {&frmtelefon_.comstart, &frmtelefon_.comdatplus, &frmtelefon_.comdatminus,
                           &frmtelefon_.comuhrplus, &frmtelefon_.comuhrminus})
        button->Enabled = false;
}

// A box would stop the run until morning.
void Collection::save_settings() {
    if (const Outcome saved = settings_files_.save_without_a_box(); !saved)
        log_.tell(' ' + saved.failure().text);
}

void Collection::comstart_Click() {
    if (!number_of(frmtelefon_.txtstartnr.Text.get()) || !number_of(frmtelefon_.txtstopnr.Text.get())) {
        dialogs_.message_box(error_text(RunTimeError::type_mismatch), 48);
        return;
    }
    lock_panel();
    frmtelefon_.Timer99.Enabled = false;
    settings_.autoholnr = std::int16_t{0};
    const std::string name = format(loop_.local_time(), name_pattern);
    const std::string path = log_folder_ + "\\log" + name + ".txt";
    std::string first = "\r\n";
    encode(Variant("Manueller Start " + name), first);
    first += "\r\n";
    // A folder that isn't there: the run has no log.
    const auto log = files_.open(path, OpenMode::read_write);
    module1_.autolog = log && (*log)->write(1, first).ok();
    settings_.autoholpfad = module1_.autolog ? path : std::string();
    settings_files_.saveeinst();
    holstart_ = index_in(frmtelefon_.txtstartnr);
    holstop_ = index_in(frmtelefon_.txtstopnr);
    zustand_ = Zustand::waiting;
    aktnr_ = 0;
    holpause_ = 0;
    log_.tally = {};
    frmtelefon_.Timer2.Enabled = true;
}

void Collection::weiterholen() {
    phonebook_window_.Form_Load();
    frmtelefon_.gsmzaehler = steps_for_the_modem;
    frmtelefon_.Timer5.Enabled = true;
    if (!loop_.wait_until([this] { return frmtelefon_.gsmzaehler < 1 || !module1_.warteok; })) return;
    const Result<std::int16_t> reached = settings_.autoholnr.as_i16();
    aktnr_ = reached ? *reached : std::int16_t{0};
    lock_panel();
    const std::string path = settings_.autoholpfad.text();
    module1_.autolog = path.size() >= shortest_log_path && files_.exists(path);
    log_.to_log("\r\nAutomatischer Start " + format(loop_.local_time(), name_pattern) + "_Nr" +
                format(static_cast<double>(aktnr_), "0000") + "\r\n");
    save_settings();
    zustand_ = Zustand::waiting;
    log_.tally = {};
    frmtelefon_.Timer2.Enabled = true;
}

// ---- conducting ----

// Kept: field by field. A start at 02:30 isn't reached at 03:10 but at 03:30.
bool Collection::start_is_reached(const DateTime& now) const {
    const CollectionStart& start = panel_.start();
    return now.year >= start.holjahr && now.month >= start.holmonat && now.day >= start.holtag &&
           now.hour >= start.holstunde && now.minute >= start.holminute;
}

void Collection::show_state(const DateTime& now) {
    constexpr std::string_view names[] = {"warte", "aktiv", "fertig"};
    frmtelefon_.labzustand.Caption = names[static_cast<std::size_t>(zustand_)];
    frmtelefon_.labdat.Caption = format(now, "dd.mm.yyyy");
    frmtelefon_.labuhr.Caption = format(now, "hh:nn:ss");
    if (zustand_ != Zustand::waiting) return;
    frmtelefon_.labzustand.Left = drift_a_second * now.second;
    frmtelefon_.labzustand.Top = drift_a_minute * now.minute;
}

void Collection::Timer2_Tick() {
    const DateTime now = loop_.local_time();
    if (start_is_reached(now) && zustand_ == Zustand::waiting) zustand_ = Zustand::running;
    show_state(now);
    if (zustand_ != Zustand::running) return;
    if (aktnr_ == 0 && !module1_.autoholen) banner(" Start automatische Datenabholung  ");
    if (!module1_.autoholen) {
        if (holpause_ >= 1) {
            --holpause_;
            return;
        }
        if (!next_site()) {
            finish();
            return;
        }
        if (loop_.ended() || !frmtelefon_.Timer2.Enabled) return;
    }
    holpause_ = pause;
    if (!module1_.dateiladen) dial();
}

void Collection::banner(const std::string& what) {
    const std::string stars(44, '*');
    const std::string text =
        "\r\n" + stars + "\r\n" + time_text(loop_.local_time()) + what + "\r\n" + stars + "\r\n";
    log_.to_terminal(text);
    log_.to_log(text);
}

// False: the book has no more. The index is saved once for each site: what lies between would be overwritten
// before anybody could see it.
bool Collection::next_site() {
    while (aktnr_ < last_index) {
        ++aktnr_;
        if (book_[aktnr_].autoflag != Telefonbuch::collected || aktnr_ < holstart_ || aktnr_ > holstop_)
            continue;
        settings_.autoholnr = aktnr_;
        save_settings();
        // A window that a person left open: nobody is there to answer its boxes either.
        module1_.autoholen = true;
        (void)archive_window_.close(ArchiveWindow::Closing::saving);
        if (loop_.ended()) return true;
        if (!frmtelefon_.Timer2.Enabled) return true; // given up meanwhile
        module1_.autoholen = true;
        module1_.dateiladen = true;
        module1_.autoverbindung = true;
        module1_.telindex = aktnr_;
        lines_.check_files(); // marks go to this site's protocol file
        anwahlstufe_ = 1;
        ++log_.tally.asked;
        const std::string line = "\r\n" + std::string(44, '-') + "\r\n" + time_text(loop_.local_time()) +
                                 " lade Datei von:  " + book_[aktnr_].name.text() + "\r\n";
        log_.to_terminal(line);
        log_.to_log(line);
        frmtelefon_.form.Visible = false;
        archive_window_.show();
        return true;
    }
    return false;
}

void Collection::dial() {
    if (anwahlstufe_ < 2) {
        anwahlstufe_ = 2;
        log_.tell(" Anwahl:  ");
        // Somebody may have selected another one meanwhile; its values don't belong into this archive.
        module1_.telindex = archive_window_.site();
        dialling_.Command1_Click();
    }
    if (!module1_.autoverbindung) anwahlstufe_ = 3;
}

void Collection::finish() {
    zustand_ = Zustand::finished;
    frmtelefon_.Timer2.Enabled = false;
    banner(" Ende automatische Datenabholung  ");
    const CollectionTally& tally = log_.tally;
    log_.to_terminal("Anlagen: " + std::to_string(tally.asked) +
                     ", erreicht: " + std::to_string(tally.reached) +
                     ", fehlgeschlagen: " + std::to_string(tally.asked - tally.finished) +
                     ", gespeicherte 1/4h-Daten: " + std::to_string(tally.values) + "\r\n");
    module1_.autolog = false;
    settings_.autoholpfad = "";
    settings_.autoholnr = std::int16_t{0};
    save_settings();
    phonebook_window_.close(PhonebookWindow::Closing::plain);
}

} // namespace velorn
