// The evaluation window's opening and closing: the site's archive is bound, created, loaded and saved; and
// what an unattended run does with one site between the two.
//
// Nothing is written to the archive between opening and closing. What was downloaded also goes to a diary
// beside it, which the next opening takes over if the program came to no closing.
#pragma once

#include "archive/archive.h"
#include "archive/collection_log.h"
#include "archive/download.h"
#include "archive/download_diary.h"
#include "archive/frm_grafick.h"
#include "core/frm_terminal.h"
#include "core/module1.h"
#include "core/settings_files.h"
#include "core/telefonbuch.h"
#include "phonebook/frm_telefon.h"
#include "phonebook/phonebook_files.h"
#include "runtime/event_loop.h"
#include "runtime/files.h"
#include "runtime/outside.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace velorn {

class ArchiveWindow {
  public:
    ArchiveWindow(EventLoop& loop, Files& files, Dialogs& dialogs, Module1& module1,
                  SettingsFiles& settings_files, Telefonbuch& book, PhonebookFiles& phonebook_files,
                  FrmTerminal& frmTerminal, const FrmTelefon& frmtelefon, FrmGrafick& frmgrafick,
                  Archive& archive, DownloadDiary& diary, Download& download, CollectionLog& log);

    // Shows the window, or hides it if it is shown.
    void mnugrafick_Click();

    // Loads the window; its archive is opened a moment later. One that is loaded stays as it is.
    void Form_Load();
    void show();

    enum class Closing { saving, discarding };
    // False: it stays open, since its archive could not be saved. A window that isn't loaded stays as it is.
    bool close(Closing way);

    // The phone book's index of the site whose archive was opened last, -1 before the first. What is selected
    // there may have changed since.
    std::int16_t site() const { return site_; }

    // Tells once that the archive was cut or taken away while it was open, if it was.
    void tell_of_lost_file();

    // The archive is there, or what takes its place; raised again where more of it has come.
    Event<> archive_there;
    Event<> archive_gone;

    static constexpr std::int64_t least_archive = 1'000'000; // bytes; a smaller file is none

  private:
    void open_archive();
    bool load(const std::string& path, int opening);
    void take_over_diary();
    bool create(int opening);
    bool archivspeichern();
    void collect_site(int opening);
    bool wait_steps(std::int16_t steps, int opening, const EventLoop::Condition& leave);
    void letztertag();
    void neupfad_Click();
    void schliessen2_Click();
    void download_finished();
    void download_timed_out();
    Answer box(std::string_view text, int code);
    void show_caption();
    std::string projekt() const;
    std::string number_of_site() const { return std::to_string(site_); }
    PhoneEntry& entry() { return book_[module1_.telindex]; }
    std::int64_t length_of(const std::string& path);

    EventLoop& loop_;
    Files& files_;
    Dialogs& dialogs_;
    Module1& module1_;
    SettingsFiles& settings_files_;
    Telefonbuch& book_;
    PhonebookFiles& phonebook_files_;
    FrmTerminal& frmTerminal_;
    const FrmTelefon& frmtelefon_;
    FrmGrafick& frmgrafick_;
    Archive& archive_;
    DownloadDiary& diary_;
    Download& download_;
    CollectionLog& log_;
    std::int16_t site_ = -1;     // whose archive was opened last
    bool site_in_work_ = false;  // of an unattended run, since its archive was loaded
    bool site_complete_ = false; // its download went to its end
};

} // namespace velorn
