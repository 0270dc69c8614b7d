// The evaluation window of one site: its controls, timers and variables as one struct. What happens in it is
// told by its parts: opening and closing the archive, the download.
//
// A procedure that waits must look, when it goes on, whether the window is still the one that it began with:
// still_open(opening).
#pragma once

#include "runtime/controls.h"
#include "runtime/rich_text_box.h"
#include "runtime/timer.h"

#include <cstdint>
#include <string>

namespace velorn {

// How far a download has come.
struct ProgressBar : Control {
    Property<int> Value{*this, 0}; // percent, 0 to 100
    Property<std::string> Text{*this};
};

struct FrmGrafick {
    explicit FrmGrafick(EventLoop& loop);

    Form form;
    bool geladen = false; // loaded; it may be hidden all the same
    int opening = 0;      // counts the openings
    bool still_open(int which) const { return geladen && opening == which; }

    Property<bool> busy{form, false}; // the pointer shows that it works

    bool archivgeladen = false; // what is in memory may be written to the file
    std::string archivpfad;

    // ---- the view's date ----
    std::int16_t tagsel = 0, monsel = 0, jahrsel = 0;

    // ---- closing ----
    Button schliessen, schliessen2;
    MenuItem neupfad;

    // ---- the newest day in the archive ----
    Label neudat, neumon, neujah;
    bool tagvoll = false; // its last quarter is there

    // ---- download ----
    Button opendathol;
    Form picdownload; // its panel
    ComboBox cbodatstart, cbomonstart, cbodatstop, cbomonstop;
    ComboBox cbojahrstart{true}, cbojahrstop{true}; // the present year may lie behind the archive's
    OptionGroup optuebertrag{{"4h Pakete", "1/4h Pakete"}};
    Button download, closedathol;
    CheckBox checkauflegen;
    Label labstatus;
    ProgressBar fortschritt;
    RichTextBox txtempf; // what arrives
    RichTextBox txtausw; // the frame that is worked on
    Label Label33, Label58;

    std::int16_t dlphase = 0; // 2 initialisation data awaited, 1 the time range goes out, 0 data blocks
    std::int16_t dlmodus = 0; // 1: 1/4h packets, 0: 4h packets
    std::int16_t dlzaehler = 0;
    std::int16_t stillsek = 0; // seconds since something arrived
    std::int16_t dlsek = 0;    // seconds of the whole download
    std::int32_t neuwerte = 0; // data sets stored in this download

    // ---- timers: interval in ms ----
    Timer Timer1; // counts waits in steps of 100 ms
    Timer Timer3; // opens the archive
    Timer Timer4; // watches over a download
    Timer Timer5; // sends the time range
};

} // namespace velorn
