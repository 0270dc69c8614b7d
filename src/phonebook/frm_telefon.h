// The phone book's window: its controls, timers and variables as one struct. It lives as long as the program,
// and its timers run on after it was closed. What happens in it is told by its parts: the lines, the changes
// to whole entries, opening and closing, dialling, the panel for automatic collection, messages by GSM modem.
#pragma once

#include "runtime/controls.h"
#include "runtime/timer.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace velorn {

// A small picture in a line; the left button is 1, any other one is more.
struct Thumbnail : Control {
    Property<bool> automatic{*this, false}; // which of its two pictures is shown
    std::function<void(int button)> MouseDown;
};

// One of the ten lines.
struct PhoneLine {
    Label nr;             // position: the entry's index plus 1
    ClickArea Picture1;   // stands for the line
    TextBox nam1;         // name
    TextBox num1;         // number
    TextBox txtversch;    // what the column group says
    Button Comausw;       // chooses a file for txtversch
    Image visthumb;       // the site has a visualisation program
    Thumbnail viertthumb; // the site has an archive
};

// A text that blinks.
struct Notice : Label {
    using Label::Label;
};

struct FrmTelefon {
    explicit FrmTelefon(EventLoop& loop);

    static constexpr int lines = 10;

    Form form;
    bool geladen = false; // loaded; it may be hidden all the same, while a collection works

    // ---- the lines ----
    std::array<PhoneLine, lines> zeilen;
    ScrollBar VScroll1{0, 1991, 1, 5};
    ScrollBar HScroll1{1, 4, 1, 1}; // the column group
    Label Label5, Label8, Label9;   // head of the changing column, its neighbours to the left and right
    std::int16_t spaltengruppe = 1;

    // ---- buttons ----
    Button Command1; // dials
    Button Command2; // swaps
    Button Command3; // ends the swap
    Button Command4; // the protocol file in the editor
    Button Command5; // inserts
    Button Command6; // deletes
    Button Command7; // searches
    Button Command8; // exports
    Button Command11, cmdOK, cmdCancel;
    Label Label22; // seconds until the window closes itself
    std::int16_t countdown = 0;

    // ---- swapping ----
    Form Picture2; // its panel
    Label labtausch, labtausch1, labtausch2;
    bool tausch1aktiv = false, tausch2aktiv = false;
    std::int16_t tauschpos1 = 0, tauschpos2 = 0;

    // ---- settings ----
    TextBox txtanrufer;
    Notice Picture3; // asks for a name that makes sense
    TextBox txtmodinit;
    CheckBox txtprestrcheck;
    TextBox txtprestrtext;
    TextBox mdexport;
    CheckBox telnet;

    // ---- menu ----
    MenuItem mnueinst{"&Einstellungen"}, mnutele{"Telefonnummern importieren"},
        mnudispauf{"Displayaufnahmen importieren"};
    MenuItem mnulogin{"&IP-Login"}, mnuloginauto{"automatisches Login"}, mnuuser{"Login Username"},
        mnupass{"Login Password"};

    // ---- whether a site takes part in automatic collection ----
    Form picdownload;
    OptionGroup optuebertrag{{"1/4h-Daten automatisch holen", "1/4h-Daten von Hand holen"}};
    Button closedathol;

    // ---- automatic collection ----
    Button comautohol;
    Form picdownl; // its panel
    Label labstartdat, labstartuhr;
    Button comdatplus, comdatminus, comuhrplus, comuhrminus;
    TextBox txtstartnr, txtstopnr;
    Label labanz;
    CheckBox vortagcheck, viertelcheck;
    Button comstart, abbruch;
    MovingLabel labzustand;
    Label labdat, labuhr;

    // ---- GSM ----
    Button Command10, Command9;
    TextBox smsnr, smstxt;
    std::int16_t gsmzaehler = 0;

    // ---- timers: interval in ms, and whether they run from the start ----
    Timer Timer1;           // hides the swap's panel
    Timer Timer2;           // conducts automatic collection
    Timer Timer3;           // blinking
    Timer Timer4;           // watches a direct attempt
    Timer Timer5;           // waits between the lines to a GSM modem
    Timer Timer14, Timer15; // go on with a gateway's first and second modem
    Timer Timer20;          // automatic login
    Timer Timer99;          // closes the window
};

} // namespace velorn
