// The main window: its controls, timers and flags as one struct. It lives as long as the program; every other
// window reaches it. What happens in it is told by its parts: links/ (opening, lamps), terminal/ (receiving,
// keys), app/ (start, end, menu).
#pragma once

#include "core/schirm.h"
#include "runtime/canvas.h"
#include "runtime/controls.h"
#include "runtime/rich_text_box.h"
#include "runtime/timer.h"

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace velorn {

struct FrmTerminal;

// One row of the menu tree, in the order in which it is shown.
struct MenuRow {
    int depth;                       // 0 a menu of the bar, 1 an item, 2 an item of a submenu
    std::string_view name;           // the control's name; empty: a separator
    std::string_view caption;        // cp1252, "&" marks the access key
    MenuItem& (*item)(FrmTerminal&); // null for a separator
};

// One key of the toolbar, in the order in which it is shown.
struct ToolRow {
    std::string_view key;     // what the toolbar's event compares
    std::string_view tooltip; // cp1252
    bool begins_group;
};

struct FrmTerminal {
    explicit FrmTerminal(EventLoop& loop);

    Form form;

    // ---- what is shown in the middle ----
    RichTextBox txtterm;                       // what the link delivers
    int txtterm_width = 0, txtterm_height = 0; // logical pixels
    PictureBox Picture1;                       // the mirrored display, in its place
    PictureBox Picture2;                       // the ground on which pictures of the controller are drawn
    PictureBox picabs;                         // the weekly calendar's graphic, over Picture1
    std::array<Label, 10> labkal;              // labkal1 to labkal9, its texts; index 0 is not used
    Label Label13;                             // its ruler of hours
    RichTextBox txttest10;                     // the byte trace
    RichTextBox txtsnapshot;                   // the display snapshots of the site
    RichTextBox Richtxt;                       // what is printed; never shown
    Button clrtxtsnap;                         // empties txtsnapshot
    std::string txttograph96;                  // a day graph's text, while it arrives; never shown
    TextBox txttovis;                          // to a visualisation program
    TextBox txtprotschreib;                    // notice: a capture is being written
    TextBox txtprotwarn;                       // notice: there is no file for a capture
    TextBox txtbattload;                       // notice: parameter memory is being read
    TextBox txttest1, txttest2, txttest3, txttest4; // carried along; txttest3 shows the seconds

    // ---- lamps and labels ----
    Image imgConnected, imgNotConnected; // one of the two is in front
    Lamp Picture3, Picture4;             // serial: send, receive
    Lamp Picture5;                       // serial port open
    Lamp Picture6;                       // TCP connected
    Lamp Picture7, Picture8;             // TCP: receive, send
    Label Label2, Label3, Label4, Label5, Label6, Label7;
    Image picipunterbr; // the TCP connection was interrupted
    Label Label16;      // what it says

    struct StatusBar {
        StatusPanel projekt, Settings, ConnectTime;
    } sbrStatus;

    // ---- menu ----
    MenuItem mnuFile, mnuOpenLog, mnuCloseLog, mnuFileExit;
    MenuItem mnuPort, mnuOpen, mnuProperties, modinit, modsearch;
    MenuItem mnuMSComm, mnuInputLen, mnuRThreshold, mnuSThreshold, mnuParRep, mnuDTREnable, mnuHCD, mnuHCTS,
        mnuHDSR;
    MenuItem mnuCall, mnutelefonbuch, mnuHangUp, fernbedauto;
    MenuItem mnuzeisa, zeisa, mnukorrinv, mnuzeiabst, termfarb, zeisa2, frakt, informatik;
    MenuItem mnubat, mnubatt1, mnubatt2;
    std::array<MenuItem, 4> savebattvx;
    MenuItem savebattvx2;
    std::array<MenuItem, 4> sendbattvx;
    MenuItem mnuentwi, mnuftast, mnuzarmo, mnutvxt, mnuwendra, mnudls, mnudls2;
    std::array<MenuItem, 2> mnusendtext;
    MenuItem mnuloadText, mnuCHKSUM, mnudatchange, mnusendonly, mnubatram;
    MenuItem uhrterm, testwindow, resetcount;

    static std::span<const MenuRow> menu_rows();

    // ---- toolbar ----
    static std::span<const ToolRow> toolbar_rows();
    // The button of a key of toolbar_rows(); an unknown key is a mistake of ours and throws.
    ToolButton& tbrToolBar(std::string_view key);
    std::array<ToolButton, 19> tool_buttons; // in the order of toolbar_rows()

    // ---- timers: interval in ms, and whether they run from the start ----
    Timer Timerglobal;               // seconds counter
    Timer Timer1;                    // no action; on while the port is open
    Timer Timer2;                    // switches itself off
    Timer Timer3;                    // asks to end the connection after remote control ended
    Timer Timer4;                    // starts remote control after CONNECT
    Timer Timer5;                    // the wait counter
    Timer Timer6;                    // modem initialisation
    Timer Timer7;                    // receive lamps back to rest
    Timer Timer8;                    // send lamps back to rest
    Timer Timer9;                    // dialalter, loginalter
    Timer Timer10;                   // countdown of the protocol notices
    Timer Timer11;                   // modem search
    Timer Timer12;                   // TCP state display
    Timer Timer20;                   // ends a TCP connection
    Timer Timer23, Timer24, Timer25; // progress and failure of a TCP connect
    Timer Timer26;                   // opens the serial port after start
    Timer Timer27;                   // continues an interrupted automatic collection
    Timer Timer28;                   // life sign of the visualisation
    Timer Timer30;                   // end of the pause after remote control was left
    Timer Timer31;                   // forced hang-up

    // ---- flags ----
    bool fernbedaktiv = false; // remote-control mode is on
    bool fbpause = false;      // it was left towards the terminal
    bool termecho = true;      // received text is shown in txtterm
    std::int16_t wartetakte = 0;
    std::int16_t zeile = 1, spalte = 1; // cursor of the mirrored screen
    std::int16_t fbzustand = 0;         // state of its parser
    bool cursorinv = false;
    int zeichenbreite = 0, zeilenhoehe = 0; // its cells, logical pixels
    std::int16_t logdatei = 0;              // file number of the open LOG file, 0 for none
    std::int16_t protdatei = 0;             // the same while the protocol file is open
    std::int16_t protbytes = 0;             // characters written by the running capture
    bool uhrzeitan = false;                 // time stamps in terminal output
    bool visaktiv = false;                  // a visualisation program is attached
    bool batempfang = false;                // parameter memory is being read from the controller
    bool batblock = false;                  // its start mark has been seen
    std::int16_t tastenrest = 0;
    std::int16_t ticks26 = 0, ticks27 = 0, ticks28 = 0; // tick counters of the timers
    DateTime verbindungszeit;                           // when the serial port was opened

    Schirm schirm; // the mirrored screen
};

// Shows the mirrored display in the terminal's place, emptied, its cursor at the start.
void show_mirrored_display(FrmTerminal& frmTerminal, bool cursorinv);

// Presses a menu item from code; one that nothing serves yet does nothing.
void press(const MenuItem& item);

// Appends a line of the program's own to the terminal, in blue.
void write_terminal(FrmTerminal& frmTerminal, std::string_view text);

} // namespace velorn
