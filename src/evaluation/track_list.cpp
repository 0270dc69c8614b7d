#include "evaluation/track_list.h"

#include "runtime/number_picture.h"
#include "runtime/text.h"

namespace velorn {

namespace {

constexpr int tracks_of_a_block = 30;
constexpr std::int16_t ticks_held_back = 2;
constexpr int row_height = 20; // pixels, as popups count them
constexpr int under_the_rows = 630;

std::size_t at(int row) { return static_cast<std::size_t>(row); }

} // namespace

TrackList::TrackList(Dialogs& dialogs, FrmGrafick& frmgrafick, EvaluationControls& controls,
                     EvaluationEvents& events, Archive& archive)
    : dialogs_(dialogs), frmgrafick_(frmgrafick), controls_(controls), events_(events), archive_(archive) {
    for (int row = 1; row <= most_rows; ++row) wire(Table::daten, row);
    for (int row = 0; row < calculated_rows; ++row) wire(Table::rechdaten, row);
    for (int track = 2; track < calculated_rows; ++track)
        controls_.txkanalb[at(track)].Caption = calculated_name(archive_, track);

    controls_.comkanalein.Click = [this] { show_track(Table::daten, true); };
    controls_.comkanalaus.Click = [this] { show_track(Table::daten, false); };
    controls_.comkanalfarbe.Click = [this] { choose_colour(Table::daten); };
    controls_.closepickanal.Click = [this] {
        take_texts();
        controls_.pickanal.Visible = false;
    };
    controls_.comkanaleinb.Click = [this] { show_track(Table::rechdaten, true); };
    controls_.comkanalausb.Click = [this] { show_track(Table::rechdaten, false); };
    controls_.comkanalfarbeb.Click = [this] { choose_colour(Table::rechdaten); };
    controls_.closepickanalb.Click = [this] { controls_.pickanalb.Visible = false; };
    controls_.com1bis30.Click = [this] { com1bis30_Click(); };
}

TrackList::Row TrackList::row_of(Table table, int row) {
    EvaluationControls& c = controls_;
    const std::size_t i = at(row);
    if (table == Table::daten)
        return {c.txkanal[i],     c.Commandkanal[i], c.kanallinks[i],
                c.kanalrechts[i], c.schnittkanal[i], c.summkanal[i]};
    return {c.txkanalb[i],     c.Commandkanalb[i], c.kanallinksb[i],
            c.kanalrechtsb[i], c.schnittkanalb[i], c.summkanalb[i]};
}

int TrackList::track_of(Table table, int row) const {
    if (table == Table::rechdaten) return controls_.calculated_of_row(row);
    const int track = controls_.erstespur + row - 1;
    return row <= controls_.rows_shown() && track <= archive_.spuranz ? track : -1;
}

void TrackList::wire(Table table, int row) {
    const Row r = row_of(table, row);
    r.colour.Click = [this, table, row] { open_popup(table, row); };
    r.left.Click = [this, table, row] {
        const Row clicked = row_of(table, row);
        axis_chosen(table, row, !clicked.left.Value, clicked.right);
    };
    r.right.Click = [this, table, row] {
        const Row clicked = row_of(table, row);
        axis_chosen(table, row, clicked.right.Value, clicked.left);
    };
}

// ---- rows ----

void TrackList::build(int screen_width) {
    controls_.erstespur = 1;
    controls_.breitbild = screen_width > widest_for_30_rows;
    controls_.com1bis30.Visible = !controls_.breitbild || archive_.spuranz > most_rows;
    controls_.com1bis30.Enabled = archive_.spuranz > controls_.rows_shown();
    name_next_block();
    close_popups();
}

void TrackList::fill() {
    for (int row = 1; row <= most_rows; ++row) fill_row(Table::daten, row);
    for (int row = 0; row < calculated_rows; ++row) fill_row(Table::rechdaten, row);
    controls_.Label101.Caption = controls_.breitbild || controls_.erstespur == 1 ? "B1:" : "B2:";
    controls_.txberech1.Caption = archive_.bname1.text();
    controls_.txberech2.Caption = archive_.bname2.text();
}

void TrackList::show_row(const Row& row, bool shown) {
    row.text.Visible = shown;
    row.colour.Visible = shown;
    row.left.Visible = shown;
    row.right.Visible = shown;
    if (shown) return;
    row.mean.Visible = false;
    row.sum.Visible = false;
}

void TrackList::fill_row(Table table, int row) {
    const Row r = row_of(table, row);
    const int track = track_of(table, row);
    show_row(r, track >= 0);
    if (track < 0) return;
    const TrackLooks looks = looks_of(archive_, table);
    if (table == Table::daten) {
        r.text.Caption = format(static_cast<double>(track), "00") + ": " + looks.name(track) + " (" +
                         looks.unit(track) + ')';
    }
    const bool visible = looks.is_visible(track);
    r.colour.BackColor = visible ? looks.colour(track) : colour::white;
    if (!visible) {
        r.mean.Visible = false;
        r.sum.Visible = false;
    }
    const bool right = looks.is_right(track);
    r.left.Value = !right;
    r.right.Value = right;
}

// ---- the two axes ----

// Setting the twin fires its own click, which comes back here: one redraw is enough for both.
void TrackList::axis_chosen(Table table, int row, bool right, CheckBox& twin) {
    if (controls_.zeichnetneu) return;
    const int track = track_of(table, row);
    if (track < 0) return;
    TrackLooks::set(looks_of(archive_, table).right, track, right);
    const CheckBox& right_box = row_of(table, row).right;
    twin.Value = &twin == &right_box ? right : !right;
    if (controls_.aufschub) return;
    events_.neuzeichnen();
    controls_.aufschub = true;
    controls_.aufschubzaehler = ticks_held_back;
    controls_.Timer2.Enabled = true;
}

// ---- popups ----

void TrackList::close_popups() {
    controls_.pickanal.Visible = false;
    controls_.pickanalb.Visible = false;
}

void TrackList::open_popup(Table table, int row) {
    const int track = track_of(table, row);
    if (track < 0) return;
    const TrackLooks looks = looks_of(archive_, table);
    const bool visible = looks.is_visible(track);
    Popup& opened = popup(table);
    const bool second_column = table == Table::daten && row > tracks_of_a_block;
    opened.Left = second_column ? (visible ? 970 : 1005) : (visible ? 635 : 670);
    opened.Top = row == 0        ? under_the_rows
                 : second_column ? (row - tracks_of_a_block) * row_height + 10
                                 : row * row_height;
    if (table == Table::daten) {
        chosen_ = track;
        controls_.pickanalfarbe.BackColor = looks.colour(track);
        controls_.txnam.Text = looks.name(track);
        controls_.txeinh.Text = looks.unit(track);
    } else {
        chosen_calculated_ = track;
        controls_.pickanalfarbeb.BackColor = looks.colour(track);
    }
    opened.Visible = true;
}

// An untouched entry keeps its tag.
void TrackList::take_texts() {
    const TrackLooks looks = looks_of(archive_, Table::daten);
    if (controls_.txnam.Text.get() != looks.name(chosen_))
        TrackLooks::set(looks.names, chosen_, controls_.txnam.Text.get());
    if (controls_.txeinh.Text.get() != looks.unit(chosen_))
        TrackLooks::set(looks.units, chosen_, controls_.txeinh.Text.get());
}

void TrackList::show_track(Table table, bool shown) {
    const int track = table == Table::daten ? chosen_ : chosen_calculated_;
    TrackLooks::set(looks_of(archive_, table).visible, track, shown);
    if (table == Table::daten) take_texts();
    popup(table).Visible = false;
    events_.neuzeichnen();
}

void TrackList::choose_colour(Table table) {
    const int opening = frmgrafick_.opening;
    const int track = table == Table::daten ? chosen_ : chosen_calculated_;
    const Result<Colour> chosen = dialogs_.choose_colour(looks_of(archive_, table).colour(track));
    if (!chosen || !frmgrafick_.still_open(opening)) return;
    TrackLooks::set(looks_of(archive_, table).colours, track, static_cast<std::int32_t>(*chosen));
    (table == Table::daten ? controls_.pickanalfarbe : controls_.pickanalfarbeb).BackColor = *chosen;
    events_.neuzeichnen();
}

// ---- blocks ----

int TrackList::next_block() const {
    const int next = controls_.erstespur + tracks_of_a_block;
    return next + controls_.rows_shown() - 1 <= archive_.spuranz ? next : 1;
}

void TrackList::name_next_block() {
    const int next = next_block();
    controls_.com1bis30.Caption =
        std::to_string(next) + " - " + std::to_string(next + controls_.rows_shown() - 1) + " anzeigen";
}

void TrackList::com1bis30_Click() {
    controls_.erstespur = static_cast<std::int16_t>(next_block());
    name_next_block();
    controls_.hide_means();
    controls_.hide_sums();
    events_.neuzeichnen();
}

} // namespace velorn
