// Fetching quarter-hour values from a controller: a plain text dialogue in which fields are repeated in the
// place of a checksum. While it runs, all that is received goes to txtempf; each change of that box looks for
// the end of a frame, and the reader takes the frame apart.
//
// What a frame holds is stored once all of it has been understood; only then is it acknowledged.
#pragma once

#include "archive/archive.h"
#include "archive/download_diary.h"
#include "archive/download_frame.h"
#include "archive/frm_grafick.h"
#include "core/module1.h"
#include "links/output.h"
#include "phonebook/frm_telefon.h"
#include "runtime/event.h"
#include "runtime/event_loop.h"
#include "terminal/receive.h"

#include <string_view>

namespace velorn {

class Download {
  public:
    Download(EventLoop& loop, Module1& module1, const FrmTelefon& frmtelefon, FrmGrafick& frmgrafick,
             Archive& archive, DownloadDiary& diary, Output& output, ReceiveEvents& receive_events);

    void opendathol_Click();
    void closedathol_Click();
    void download_Click();
    // The newest data sets only, at the controller's own wish.
    void fetch_newest();
    // By the cell that the archive keeps.
    void mode_from_archive();
    // Before the window closes: nothing is received any more.
    void end();

    // Both dates are put into their boxes; a day that the calendar lacks is sent as it stands.
    struct Day {
        int day, month, year;
    };
    void set_start(Day day);
    void set_stop(Day day);

    // How a download ended that nobody watched, and one that hangs up at its end. The listener closes the
    // window.
    Event<> finished;     // D4
    Event<> timed_out;    // silence
    Event<> panel_closed; // what was fetched may be looked at
    Event<> tracks_told;  // names and units of the tracks are those of the controller now
    // An error of the archive's file while values were stored, each time that it is met.
    Event<> archive_failed;

    static constexpr int longest_silence = 15; // seconds
    // Seconds without a stored data set after which an unattended run gives a site up. A packet takes eleven
    // minutes at most: 16 sets of 150 tracks at 300 baud.
    static constexpr int longest_vain = 900;
    // What arrives without an end of a frame is cut to its last half beyond this; no frame is as long as
    // that.
    static constexpr std::size_t longest_text = 128 * 1024;

  private:
    void txtempf_Change(std::size_t before);
    void read_frame();
    bool read_initialisation();
    bool read_data(int sets);
    bool store(const DataSet& set);
    int first_year() const;
    int year_index(int two_digits) const;
    void transfer_error();
    void send_range();
    void complete();
    void Timer4_Tick();
    void Timer5_Tick();
    void optuebertrag_Click(int index);
    bool wait_steps(std::int16_t steps);
    bool may_store();
    void show_progress(const DataSetHead& head);

    EventLoop& loop_;
    Module1& module1_;
    const FrmTelefon& frmtelefon_;
    FrmGrafick& frmgrafick_;
    Archive& archive_;
    DownloadDiary& diary_;
    Output& output_;
    int vain_seconds_ = 0;      // since a data set was stored
    bool showing_mode_ = false; // the option follows the mode, and no person chooses
};

} // namespace velorn
