// The controls and variables of the evaluation window `frmgrafick` that show and choose what its chart holds;
// those of the archive and the download are in archive/frm_grafick.h. Arrays are indexed by the row on
// screen, 1 to 60 for the tracks, 0 to 4 for the calculated ones.
//
// Of what is listed here as "later", nothing serves the command yet.
#pragma once

#include "runtime/canvas.h"
#include "runtime/controls.h"
#include "runtime/event.h"
#include "runtime/timer.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>

namespace velorn {

struct ColourButton : Button {
    Property<Colour> BackColor{*this, colour::white};
};

struct ColourLabel : Label {
    Property<Colour> ForeColor{*this, colour::black};
};

// A small window over the chart that can be dragged with the left button. Positions in logical pixels.
struct Popup : Form {
    void MouseDown(int x, int y) {
        grip_x_ = x;
        grip_y_ = y;
    }
    // x, y: where the pointer is, from the popup's own corner.
    void MouseMove(bool left_button, int x, int y) {
        if (!left_button) return;
        Left = Left + x - grip_x_;
        Top = Top + y - grip_y_;
    }

  private:
    int grip_x_ = 0, grip_y_ = 0;
};

// The chart's surface. X to the right and Y upwards as the chart counts them, whatever it is scaled to; Width
// is in its units, too: what the present chart takes of the surface.
struct ChartBox : PictureBox {
    std::function<void(double X, double Y)> MouseMove;
};

// The ground round the chart. The chart is dragged over it.
struct ChartGround : Popup {
    std::function<void(double X)> pointer; // over the ground; X as over the chart
};

// What the chart shows under the pointer: a few lines beside it.
struct ReadOutBox : Control {
    Property<std::string> Text{*this}; // lines by "\n", their columns by tabs
    Property<int> Left{*this, 0};      // of what it tells, in the chart's units
};

inline constexpr int most_rows = 60;
inline constexpr int calculated_rows = 5;

template <class T>
using TrackRows = std::array<T, most_rows + 1>;
template <class T>
using CalculatedRows = std::array<T, calculated_rows>;

struct EvaluationControls {
    explicit EvaluationControls(EventLoop& loop);

    // ---- track list ----
    TrackRows<Label> txkanal;
    TrackRows<ColourButton> Commandkanal;
    TrackRows<CheckBox> kanallinks, kanalrechts;
    TrackRows<Label> schnittkanal, summkanal;
    CalculatedRows<Label> txkanalb;
    CalculatedRows<ColourButton> Commandkanalb;
    CalculatedRows<CheckBox> kanallinksb, kanalrechtsb;
    CalculatedRows<Label> schnittkanalb, summkanalb;
    Label txberech1, txberech2;
    Label Label101{"B1:"};
    Button com1bis30;

    // ---- a track's popup ----
    Popup pickanal, pickanalb;
    ColourLabel pickanalfarbe, pickanalfarbeb;
    TextBox txnam, txeinh;
    Button comkanalein, comkanalaus, comkanalfarbe, closepickanal;
    Button comkanaleinb, comkanalausb, comkanalfarbeb, closepickanalb;

    // ---- view and date ----
    ColourButton comtag, comwoch, commonat, comjahr;
    ColourButton comdauer, comtagschnitt;
    Button minustag, plustag, minuswoche, pluswoche, minusmonat, plusmonat, minusjahr, plusjahr;
    CheckBox checkviertel;
    CheckBox Check1, Check2; // kept: captions that nothing reads

    // ---- axes ----
    Button openyskala, closepicy;
    Popup picyskala;
    TextBox txylimax, txylimin, txylischr, txyremax, txyreschr;

    // ---- chart ----
    ChartBox Picture1;
    ChartGround Picture2;
    Label Label32, Label35; // the pointer's X over the chart, and over its ground; Y is in Label33
    Label Label54, Label55; // the time under the pointer
    ColourLabel viertist, viertkann;
    Button plott;
    ReadOutBox ablesung;

    // ---- later ----
    Button datexport, datexport2, datexport3, openbearb, openformel, openformel2, sonderfunkt;

    // ---- variables ----
    bool dauermodus = false, schnittmodus = false;
    std::int16_t viertelmodus = 0;
    bool breitbild = false;
    std::int16_t erstespur = 1;
    std::int16_t tagakt = 1, monakt = 1, jahrakt = 2000;
    std::int16_t wochentag = 1;
    bool zeichnetneu = false;
    bool aufschub = false;
    std::int16_t aufschubzaehler = 0;
    bool maustage = false;
    bool druckmodus = false;
    Timer Timer2; // of 100 ms: how long a second redraw is held back

    int rows_shown() const { return breitbild ? 60 : 30; }

    // The calculated track of a row. Where there is but one row for B1 and B2, it holds B1 beside the first
    // block of tracks and B2 beside the others. -1: the row is not in use.
    int calculated_of_row(int row) const;
    // The row of a calculated track, -1 if none shows it.
    int row_of_calculated(int track) const;

    // Of all rows.
    void hide_means();
    void hide_sums();
};

// What the parts of the window ask of each other and of what comes later.
struct EvaluationEvents {
    Event<> neuzeichnen;  // everything is to be shown anew
    Event<> formeltext;   // the texts of the formulas are to be filled in
    Event<> zeigedauer;   // the chart is to show duration curves
    Event<> zeigeschnitt; // the chart is to show the mean day
    Event<> archive_lost; // a drawing found that the archive could not be read; raised behind it
};

} // namespace velorn
