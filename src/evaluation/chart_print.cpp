#include "evaluation/chart_print.h"

#include "evaluation/track_looks.h"
#include "runtime/number_picture.h"
#include "runtime/text.h"

#include <array>
#include <span>

namespace velorn {

namespace {

constexpr int line_height = 20;
constexpr int head_row = -50;
constexpr int first_line = -3;

// Numbers begin further left the larger they are.
struct Place {
    double below;
    int x;
};
constexpr std::array<Place, 3> mean_places{{{10, 276}, {100, 270}, {1000, 264}}};
constexpr int widest_mean = 258;
constexpr std::array<Place, 6> sum_places{
    {{10, 356}, {100, 350}, {1000, 344}, {10000, 338}, {100000, 332}, {1000000, 326}}};
constexpr int widest_sum = 320;

int place_of(double number, std::span<const Place> places, int widest) {
    for (const Place& place : places) {
        if (number < place.below) return place.x;
    }
    return widest;
}

} // namespace

ChartPrint::ChartPrint(Printer& printer, const Module1& module1, const FrmGrafick& frmgrafick,
                       EvaluationControls& controls, EvaluationEvents& events, Archive& archive,
                       ChartSurface& surface, const TimeCurves& curves)
    : printer_(printer),
      module1_(module1),
      frmgrafick_(frmgrafick),
      controls_(controls),
      events_(events),
      archive_(archive),
      surface_(surface),
      curves_(curves) {
    controls_.plott.Click = [this] { plott_Click(); };
}

void ChartPrint::plott_Click() {
    const int opening = frmgrafick_.opening;
    const auto there = [this, opening] { return frmgrafick_.still_open(opening) && archive_.is_open(); };
    (void)printer_.print_page("1/4h-Daten-Auswertung", [this, &there](Canvas& page) {
        if (!there()) return;
        controls_.druckmodus = true;
        surface_.draw_on(&page, true);
        events_.neuzeichnen();
        write(80, 590, module1_.projektname + "1/4h-Daten-Auswertung:   ", 11);
        legend();
        controls_.druckmodus = false;
        surface_.draw_on(nullptr, false);
    });
    if (there()) events_.neuzeichnen();
}

void ChartPrint::write(int x, int y, std::string_view text, int size) {
    surface_.setzeposition(x, y);
    surface_.schreibetext(text, size);
}

// Its figures are those of the pass just made.
void ChartPrint::legend() {
    constexpr int points = 8;
    write(45, head_row, "Farbe    Wert", points);
    write(189, head_row, "y-Skala: li  re", points);
    write(284, head_row, "ø                Summe"_w, points);
    line_ = first_line;
    const TrackLooks looks = looks_of(archive_, Table::daten);
    for (const int track : shown_tracks(archive_, Table::daten)) {
        const auto i = static_cast<std::size_t>(track);
        if (track > most_tracks) break;
        legend_row({looks.name(track), looks.unit(track), looks.colour(track), looks.is_right(track),
                    curves_.spurschnitt[i], curves_.spursumme[i], looks.has_sum(track)});
    }
    const TrackLooks calculated = looks_of(archive_, Table::rechdaten);
    std::vector<int> tracks = shown_tracks(archive_, Table::rechdaten);
    // The analytic curve is drawn among a year's duration curves only.
    if (controls_.dauermodus && view_of(archive_) == View::year && calculated.is_visible(calculated_rows - 1))
        tracks.push_back(calculated_rows - 1);
    for (const int track : tracks) {
        const auto i = static_cast<std::size_t>(track);
        legend_row({calculated_name(archive_, track), calculated.unit(track), calculated.colour(track),
                    calculated.is_right(track), curves_.bschnitt[i], curves_.bsumme[i],
                    calculated.has_sum(track)});
    }
}

void ChartPrint::legend_row(const Row& row) {
    constexpr int points = 8;
    const int y = line_-- * line_height;
    surface_.zeichnelinie(50, y - 8, 70, y - 8, row.colour);
    surface_.zeichnelinie(50, y - 7, 70, y - 7, row.colour);
    write(82, y, row.name, points);
    write(165, y, '(' + row.unit + ')', points);
    write(row.right ? 240 : 226, y, "x", points);
    write(place_of(row.mean, mean_places, widest_mean), y, format(row.mean, "########0.00"), points);
    if (row.has_sum)
        write(place_of(row.sum, sum_places, widest_sum), y, format(row.sum, "########0.0"), points);
}

} // namespace velorn
