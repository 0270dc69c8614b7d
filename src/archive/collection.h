// Unattended collection: at its time it works through the phone book; for each site that takes part it shows
// the evaluation window, which loads the archive, and dials; the window downloads, saves and closes. Timer2
// is the conductor, and flags are the only link between the two.
#pragma once

#include "archive/archive_window.h"
#include "archive/collection_log.h"
#include "core/module1.h"
#include "core/settings.h"
#include "core/settings_files.h"
#include "core/telefonbuch.h"
#include "phonebook/collection_panel.h"
#include "phonebook/dialling.h"
#include "phonebook/frm_telefon.h"
#include "phonebook/phonebook_window.h"
#include "runtime/event_loop.h"
#include "runtime/files.h"
#include "runtime/outside.h"

#include <cstdint>
#include <string>

namespace velorn {

class Collection {
  public:
    // log_folder: where the log of a run is written, stored form, without a trailing separator.
    Collection(EventLoop& loop, Files& files, Dialogs& dialogs, const std::string& log_folder,
               Module1& module1, Settings& settings, SettingsFiles& settings_files, const Telefonbuch& book,
               FrmTelefon& frmtelefon, PhonebookWindow& phonebook_window, PhonebookLines& lines,
               CollectionPanel& panel, ArchiveWindow& archive_window, Dialling& dialling, CollectionLog& log);

    void comstart_Click();

    // After a start that found a run interrupted: the run comes to its end, and nobody is dialled, since the
    // range of positions isn't kept.
    void weiterholen();

    static constexpr int last_index = 2000;
    static constexpr std::int16_t pause = 10; // seconds between two sites

  private:
    enum class Zustand { waiting, running, finished };

    void Timer2_Tick();
    bool start_is_reached(const DateTime& now) const;
    void show_state(const DateTime& now);
    bool next_site();
    void finish();
    void dial();
    void banner(const std::string& what);
    void lock_panel();
    void save_settings();

    EventLoop& loop_;
    Files& files_;
    Dialogs& dialogs_;
    const std::string& log_folder_;
    Module1& module1_;
    Settings& settings_;
    SettingsFiles& settings_files_;
    const Telefonbuch& book_;
    FrmTelefon& frmtelefon_;
    PhonebookWindow& phonebook_window_;
    PhonebookLines& lines_;
    CollectionPanel& panel_;
    ArchiveWindow& archive_window_;
    Dialling& dialling_;
    CollectionLog& log_;

    Zustand zustand_ = Zustand::waiting;
    std::int16_t aktnr_ = 0;       // the index that was reached
    std::int16_t anwahlstufe_ = 0; // 1 site chosen, 2 dialled, 3 connected
    std::int16_t holpause_ = 0;    // seconds until the next site
    std::int16_t holstart_ = 0, holstop_ = 0;
};

} // namespace velorn
