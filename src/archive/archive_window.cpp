#include "archive/archive_window.h"

#include "archive/new_archive.h"
#include "phonebook/collection_panel.h"
#include "runtime/number_picture.h"
#include "runtime/paths.h"
#include "runtime/text.h"

namespace velorn {

namespace {

constexpr std::int16_t steps_until_connected = 3000; // of 100 ms
constexpr std::int16_t steps_of_rest = 10;
constexpr std::int16_t steps_of_login = 90;

} // namespace

ArchiveWindow::ArchiveWindow(EventLoop& loop, Files& files, Dialogs& dialogs, Module1& module1,
                             SettingsFiles& settings_files, Telefonbuch& book,
                             PhonebookFiles& phonebook_files, FrmTerminal& frmTerminal,
                             const FrmTelefon& frmtelefon, FrmGrafick& frmgrafick, Archive& archive,
                             DownloadDiary& diary, Download& download, CollectionLog& log)
    : loop_(loop),
      files_(files),
      dialogs_(dialogs),
      module1_(module1),
      settings_files_(settings_files),
      book_(book),
      phonebook_files_(phonebook_files),
      frmTerminal_(frmTerminal),
      frmtelefon_(frmtelefon),
      frmgrafick_(frmgrafick),
      archive_(archive),
      diary_(diary),
      download_(download),
      log_(log) {
    // Not within the tick: a box that somebody leaves open there would keep the timer from opening the
    // archives of an unattended run.
    frmgrafick_.Timer3.Tick = [this] {
        frmgrafick_.Timer3.Enabled = false;
        loop_.post([this, opening = frmgrafick_.opening] {
            if (frmgrafick_.still_open(opening)) open_archive();
        });
    };
    frmgrafick_.schliessen.Click = [this] { (void)close(Closing::saving); };
    frmgrafick_.schliessen2.Click = [this] { schliessen2_Click(); };
    frmgrafick_.neupfad.Click = [this] { neupfad_Click(); };
    download_.finished.connect([this] { download_finished(); });
    download_.timed_out.connect([this] { download_timed_out(); });
    download_.archive_failed.connect([this] { tell_of_lost_file(); });
}

// ---- showing ----

void ArchiveWindow::mnugrafick_Click() {
    if (module1_.grafikoffen) {
        frmgrafick_.form.Visible = false;
        module1_.grafikoffen = false;
        return;
    }
    show();
    settings_files_.saveeinst();
}

void ArchiveWindow::show() {
    module1_.grafikoffen = true;
    Form_Load();
    frmgrafick_.form.Visible = true;
}

void ArchiveWindow::Form_Load() {
    if (frmgrafick_.geladen) return;
    frmgrafick_.geladen = true;
    ++frmgrafick_.opening;
    archive_.close();
    frmgrafick_.archivgeladen = false;
    frmgrafick_.picdownload.Visible = false;
    frmgrafick_.txtempf.Visible = false;
    frmgrafick_.Timer3.Enabled = true;
}

// The controller's own name for the site comes padded with blanks.
std::string ArchiveWindow::projekt() const {
    std::string name = module1_.autoholen && site_ >= 0 ? book_[site_].name.text() : module1_.projektname;
    name.erase(name.find_last_not_of(' ') + 1);
    return name;
}

void ArchiveWindow::show_caption() {
    frmgrafick_.form.Caption = "1/4h-Daten Auswertung  <" + projekt() + ">";
}

// Nobody may be there to read it in an unattended run.
Answer ArchiveWindow::box(std::string_view text, int code) {
    if (module1_.autoholen) log_.tell(' ' + std::string(text));
    return dialogs_.message_box(text, code);
}

std::int64_t ArchiveWindow::length_of(const std::string& path) {
    if (path.empty()) return 0;
    const auto file = files_.open(path, OpenMode::read);
    if (!file) return 0;
    const Result<std::int64_t> length = (*file)->length();
    return length ? *length : 0;
}

// ---- opening ----

void ArchiveWindow::open_archive() {
    const int opening = frmgrafick_.opening;
    site_ = module1_.telindex;
    frmgrafick_.archivgeladen = false;
    show_caption();
    if (module1_.telindex < 0) {
        box("Bitte zuerst Eintrag im Telefonbuch auswählen!"_w, 48);
        if (frmgrafick_.still_open(opening)) (void)close(Closing::discarding);
        return;
    }
    if (length_of(entry().viertdatei.text()) < least_archive) {
        if (module1_.autoholen) {
            log_.tell(" DATEI EXISTIERT NICHT!!!");
            (void)close(Closing::discarding);
            return;
        }
        if (!create(opening)) return;
    }
    frmgrafick_.archivpfad = entry().viertdatei.text();
    if (length_of(frmgrafick_.archivpfad) <= least_archive)
        archive_.open_unread(frmgrafick_.archivpfad);
    else if (!load(frmgrafick_.archivpfad, opening))
        return;
    download_.mode_from_archive();
    letztertag();
    tell_of_lost_file();
    if (loop_.ended() || !frmgrafick_.still_open(opening)) return;

    show_caption();
    frmgrafick_.form.Caption = frmgrafick_.form.Caption.get() + "   Pfad:  " + frmgrafick_.archivpfad;
    frmgrafick_.tagsel = archive_.archivtag.as_i16() ? *archive_.archivtag.as_i16() : std::int16_t{1};
    frmgrafick_.monsel = archive_.archivmonat.as_i16() ? *archive_.archivmonat.as_i16() : std::int16_t{1};
    frmgrafick_.jahrsel = archive_.archivjahr.as_i16() ? *archive_.archivjahr.as_i16() : std::int16_t{2000};
    archive_there();
    if (!frmgrafick_.archivgeladen) {
        const Answer used = box("Sollen die Daten trotzdem verwendet werden?", 36);
        if (loop_.ended() || !frmgrafick_.still_open(opening)) return;
        if (used == Answer::yes) {
            archive_.forget_failure();
            frmgrafick_.archivgeladen = true;
            take_over_diary();
            archive_there();
        }
    }
    if (module1_.autoholen)
        collect_site(opening);
    else if (module1_.grafikfern)
        download_.fetch_newest();
}

// False: the window was closed meanwhile, or the program ends.
bool ArchiveWindow::load(const std::string& path, int opening) {
    frmgrafick_.busy = true;
    const Outcome opened = archive_.open(path);
    archive_.upgrade();
    frmgrafick_.busy = false;
    if (!opened) {
        box(opened.failure().text, 48);
        if (loop_.ended() || !frmgrafick_.still_open(opening)) return false;
    }
    frmgrafick_.archivgeladen = opened.ok();
    if (archive_.shared()) {
        box("Die Datenarchivierungsdatei ist noch in einem anderen Programm geöffnet. Wer zuletzt schließt, überschreibt die Daten des anderen!"_w,
            48);
        if (loop_.ended() || !frmgrafick_.still_open(opening)) return false;
    }
    if (opened) take_over_diary();
    return true;
}

void ArchiveWindow::take_over_diary() {
    const int sets = diary_.take_over(archive_);
    if (sets == 0) return;
    write_terminal(frmTerminal_,
                   "\r\n" + std::to_string(sets) +
                       std::string(" 1/4h-Daten eines nicht gespeicherten Downloads übernommen: "_w) +
                       frmgrafick_.archivpfad + "\r\n");
}

// One that was cut or taken away while it was open: nothing is to be written over what is left of it.
void ArchiveWindow::tell_of_lost_file() {
    if (!frmgrafick_.archivgeladen || !archive_.failed()) return;
    frmgrafick_.archivgeladen = false;
    box(archive_.failed()->text, 48);
}

// ---- creating ----

bool ArchiveWindow::create(int opening) {
    const auto gone = [&] { return loop_.ended() || !frmgrafick_.still_open(opening); };
    const Result<NewArchive> wanted =
        ask_for_new_archive({dialogs_, files_, gone}, projekt(), loop_.local_time());
    if (gone()) return false;
    if (!wanted) {
        if (wanted.failure().is(RunTimeError::dialog_cancelled))
            (void)close(Closing::discarding);
        else
            box(wanted.failure().text, 48);
        return false;
    }
    entry().viertdatei = wanted->path;
    phonebook_files_.save_telefonbuch();
    const bool replaces = files_.exists(wanted->path);
    frmgrafick_.busy = true;
    const Outcome created =
        archive_.create(wanted->path, wanted->startjahr, wanted->tracks, loop_.local_time());
    frmgrafick_.busy = false;
    if (!created) {
        box(created.failure().text, 48);
        if (!gone()) (void)close(Closing::discarding);
        return false;
    }
    if (replaces && !archive_.shared()) diary_.drop_beside(wanted->path);
    archive_.close();
    return true;
}

// ---- closing ----

// False: it could not be saved, and it was told.
bool ArchiveWindow::archivspeichern() {
    if (!frmgrafick_.archivgeladen) return true;
    archive_.archivtag = frmgrafick_.tagsel;
    archive_.archivmonat = frmgrafick_.monsel;
    archive_.archivjahr = frmgrafick_.jahrsel;
    frmgrafick_.busy = true;
    const Outcome saved = archive_.save();
    frmgrafick_.busy = false;
    if (saved) {
        (void)diary_.drop();
        return true;
    }
    box(saved.failure().text, 48);
    return false;
}

bool ArchiveWindow::close(Closing way) {
    if (!frmgrafick_.geladen) return true;
    const int opening = frmgrafick_.opening;
    if (way == Closing::saving) {
        const bool writes = frmgrafick_.archivgeladen;
        const bool saved = archivspeichern();
        if (loop_.ended() || !frmgrafick_.still_open(opening)) return true;
        // An unattended run goes on; the diary keeps what was downloaded for the next opening.
        if (!saved && !module1_.autoholen) return false;
        if (site_in_work_ && writes && saved) {
            log_.tally.finished += site_complete_ ? 1 : 0;
            log_.tally.values += frmgrafick_.neuwerte;
        }
    } else {
        (void)diary_.drop();
    }
    frmgrafick_.geladen = false;
    frmgrafick_.archivgeladen = false;
    frmgrafick_.Timer3.Enabled = false;
    site_in_work_ = false;
    download_.end();
    diary_.leave();
    archive_.close();
    module1_.autoholen = false;
    module1_.grafikoffen = false;
    module1_.grafikfern = false;
    frmgrafick_.form.Visible = false;
    archive_gone();
    return true;
}

void ArchiveWindow::schliessen2_Click() {
    const int opening = frmgrafick_.opening;
    const Answer answer = box("Aktueller Zustand wird nicht gespeichert!!", 49);
    if (answer == Answer::ok && !loop_.ended() && frmgrafick_.still_open(opening))
        (void)close(Closing::discarding);
}

void ArchiveWindow::neupfad_Click() {
    const int opening = frmgrafick_.opening;
    for (;;) {
        const Result<std::string> chosen =
            dialogs_.choose_file({.title = std::string("Datenarchivierungsdatei auswählen"_w),
                                  .filter = std::string(archive_filter),
                                  .folder = std::string(folder_of(frmgrafick_.archivpfad)),
                                  .name = std::string(name_of(frmgrafick_.archivpfad)),
                                  .saving = true});
        if (loop_.ended() || !frmgrafick_.still_open(opening)) return;
        if (!chosen) {
            if (chosen.failure().is(RunTimeError::dialog_cancelled))
                (void)close(Closing::saving);
            else
                box(chosen.failure().text, 48);
            return;
        }
        if (chosen->empty()) continue;
        if (module1_.telindex < 0 || !archivspeichern() || !frmgrafick_.still_open(opening)) return;
        download_.end();
        diary_.leave();
        archive_.close();
        archive_gone();
        entry().viertdatei = *chosen;
        frmgrafick_.Timer3.Enabled = true;
        return;
    }
}

// ---- the newest day ----

void ArchiveWindow::letztertag() {
    const Archive::NewestDay newest = archive_.letztertag();
    frmgrafick_.tagvoll = newest.tagvoll;
    frmgrafick_.neudat.Caption = format(static_cast<double>(newest.tag), "00");
    frmgrafick_.neumon.Caption = format(static_cast<double>(newest.monat), "00");
    frmgrafick_.neujah.Caption = format(static_cast<double>(newest.jahr), "0000");
}

// ---- one site of an unattended run ----

// False: the window was closed meanwhile, or the program ends.
bool ArchiveWindow::wait_steps(std::int16_t steps, int opening, const EventLoop::Condition& leave) {
    frmgrafick_.dlzaehler = steps;
    frmgrafick_.Timer1.Enabled = true;
    const bool goes_on = loop_.wait_until(
        [&] { return frmgrafick_.dlzaehler < 1 || !frmgrafick_.still_open(opening) || leave(); });
    frmgrafick_.Timer1.Enabled = false;
    return goes_on && frmgrafick_.still_open(opening);
}

void ArchiveWindow::collect_site(int opening) {
    module1_.dateiladen = false;
    site_in_work_ = true;
    site_complete_ = false;
    frmgrafick_.neuwerte = 0;
    const auto never = [] { return false; };
    if (!wait_steps(steps_until_connected, opening, [this] { return !module1_.autoverbindung; })) return;
    if (!module1_.autoholen) return; // the run was given up
    if (module1_.autoverbindung) {
        log_.tell(" KEIN CONNECT");
        (void)close(Closing::saving);
        return;
    }
    ++log_.tally.reached;
    if (!wait_steps(steps_of_rest, opening, never)) return;
    // What is typed for the login must not be taken for the download's.
    if (module1_.loginan &&
        !wait_steps(steps_of_login, opening, [this] { return !frmtelefon_.Timer20.Enabled; }))
        return;
    if (!module1_.autoholen) return;

    download_.opendathol_Click();
    const Archive::NewestDay newest = archive_.letztertag();
    letztertag();
    if (archive_.failed()) {
        tell_of_lost_file();
        frmTerminal_.Timer20.Enabled = true;
        if (!loop_.ended() && frmgrafick_.still_open(opening)) (void)close(Closing::saving);
        return;
    }
    CollectionStart start{newest.tag, newest.monat, newest.jahr, 0, 0};
    if (newest.tagvoll)
        start.add_day();
    else
        start.normalise();
    // Behind the archive's last day there is none.
    const Result<std::int16_t> first_year = archive_.startjahr.as_i16();
    if (const int last = (first_year ? *first_year : 0) + archive_layout::years - 1; start.holjahr > last)
        start = {31, 12, last, 0, 0};
    download_.set_start({start.holtag, start.holmonat, start.holjahr});
    const DateTime today = loop_.local_time();
    CollectionStart stop{today.day, today.month, today.year, 0, 0};
    if (frmtelefon_.vortagcheck.Value) stop.subtract_day();
    download_.set_stop({stop.holtag, stop.holmonat, stop.holjahr});
    log_.tell(" starte Download");
    download_.download_Click();
}

void ArchiveWindow::download_finished() {
    if (module1_.grafikfern) {
        (void)close(Closing::saving);
        return;
    }
    if (module1_.autoholen) {
        const std::string values = std::to_string(frmgrafick_.neuwerte);
        log_.to_terminal("\r\n" + time_text(loop_.local_time()) + " FERTIG! " + values +
                         (frmgrafick_.neuwerte >= 2 ? "" : "!!!!!!!!!!") + " neue 1/4h-Daten \r\n");
        log_.to_log("\r\n" + time_text(loop_.local_time()) + " FERTIG! " + values + " neue 1/4h-Daten   " +
                    number_of_site() + "\r\n");
        site_complete_ = true;
        frmTerminal_.Timer20.Enabled = true;
        (void)close(Closing::saving);
        return;
    }
    letztertag();
    if (frmgrafick_.checkauflegen.Value) {
        frmTerminal_.Timer31.Enabled = true;
        (void)close(Closing::saving);
    }
}

void ArchiveWindow::download_timed_out() {
    if (module1_.grafikfern) {
        (void)close(Closing::saving);
        return;
    }
    if (!module1_.autoholen) return;
    log_.tell(" ABBRUCH (Timeout)", "   " + number_of_site());
    frmTerminal_.Timer20.Enabled = true;
    (void)close(Closing::saving);
}

} // namespace velorn
