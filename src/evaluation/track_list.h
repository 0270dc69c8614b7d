// The list of the tracks beside the chart: rows, blocks of rows, the two axes of each, and the popups in
// which a track is named, coloured and switched on and off.
#pragma once

#include "archive/archive.h"
#include "archive/frm_grafick.h"
#include "evaluation/evaluation_controls.h"
#include "evaluation/track_looks.h"
#include "runtime/outside.h"

namespace velorn {

class TrackList {
  public:
    TrackList(Dialogs& dialogs, FrmGrafick& frmgrafick, EvaluationControls& controls,
              EvaluationEvents& events, Archive& archive);

    // Rows for a newly opened archive, from its first track on. The screen's width in pixels decides how many
    // there are.
    void build(int screen_width);

    // Fills all rows from the archive.
    void fill();

    void close_popups();

    static constexpr int widest_for_30_rows = 1350; // pixels

  private:
    // The two kinds of rows and their controls.
    struct Row {
        Label& text;
        ColourButton& colour;
        CheckBox& left;
        CheckBox& right;
        Label& mean;
        Label& sum;
    };
    Row row_of(Table table, int row);
    int track_of(Table table, int row) const; // -1: none

    void wire(Table table, int row);
    void fill_row(Table table, int row);
    void show_row(const Row& row, bool shown);
    void axis_chosen(Table table, int row, bool right, CheckBox& twin);

    void open_popup(Table table, int row);
    void show_track(Table table, bool shown);
    void take_texts();
    void choose_colour(Table table);
    Popup& popup(Table table) { return table == Table::daten ? controls_.pickanal : controls_.pickanalb; }

    void com1bis30_Click();
    int next_block() const;
    void name_next_block();

    Dialogs& dialogs_;
    FrmGrafick& frmgrafick_;
    EvaluationControls& controls_;
    EvaluationEvents& events_;
    Archive& archive_;
    int chosen_ = 0; // the track of the open popup, of each kind
    int chosen_calculated_ = 0;
};

} // namespace velorn
