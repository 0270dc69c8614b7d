#include "evaluation/read_out.h"

#include "archive/archive_layout.h"
#include "evaluation/track_looks.h"
#include "runtime/number_picture.h"
#include "runtime/text.h"

#include <algorithm>
#include <array>

namespace velorn {

namespace {

constexpr int day_right = 560; // the first x behind the day's plot
constexpr int day_width = 480;
constexpr int quarter_width = 5;
constexpr std::size_t most_lines = 16; // of a box beside the pointer

std::string clock(int quarters) {
    return format(static_cast<double>(quarters / 4), "00") + ':' + format(quarters % 4 * 15.0, "00");
}

} // namespace

ReadOut::ReadOut(FrmGrafick& frmgrafick, EvaluationControls& controls, EvaluationEvents& events,
                 Archive& archive, const TimeCurves& curves)
    : frmgrafick_(frmgrafick), controls_(controls), events_(events), archive_(archive), curves_(curves) {
    controls_.Picture1.MouseMove = [this](double x, double y) { over_chart(x, y); };
    controls_.Picture2.pointer = [this](double x) { over_ground(x); };
}

void ReadOut::forget() {
    controls_.maustage = false;
    controls_.Label54.Visible = false;
    controls_.Label55.Visible = false;
    controls_.ablesung.Visible = false;
}

void ReadOut::follow() {
    if (controls_.maustage) {
        if (has_order_of_time() && view_of(archive_) == View::day) {
            controls_.hide_sums();
            read_day(day_x_);
        } else {
            forget();
        }
    }
    if (!controls_.ablesung.Visible) return;
    if (has_order_of_time() && view_of(archive_) != View::day)
        read_period(period_x_);
    else
        controls_.ablesung.Visible = false;
}

bool ReadOut::has_order_of_time() const {
    return archive_.is_open() && !controls_.dauermodus && !controls_.schnittmodus;
}

void ReadOut::over_chart(double x, double y) {
    controls_.Label32.Caption = number_text(round_to_even(x));
    frmgrafick_.Label33.Caption = number_text(round_to_even(y));
    if (!has_order_of_time()) return;
    if (view_of(archive_) != View::day)
        read_period(x);
    else if (x >= plotlinks && x < day_right)
        read_day(x);
}

void ReadOut::over_ground(double x) {
    controls_.Label35.Caption = number_text(round_to_even(x));
    controls_.ablesung.Visible = false;
    if (!controls_.maustage) return;
    forget();
    events_.neuzeichnen();
}

void ReadOut::read_day(double x) {
    day_x_ = x;
    if (!controls_.maustage) {
        controls_.maustage = true;
        controls_.Label54.Visible = true;
        controls_.Label55.Visible = true;
        controls_.hide_sums();
    }
    const int quarter =
        std::max(1, static_cast<int>(round_to_even((day_width - (day_right - x)) / quarter_width)));
    // The middle of the quarter-hour, since its value stands for all of it.
    static constexpr std::array minutes{":07", ":22", ":37", ":52"};
    const std::string moment =
        str((quarter - 1) / 4) + "  " + minutes[static_cast<std::size_t>((quarter - 1) % 4)];
    controls_.Label54.Caption = moment;
    controls_.Label55.Caption = moment;

    const int startjahr = first_year(archive_);
    const CalendarDay day =
        kalenderdatum({frmgrafick_.tagsel, frmgrafick_.monsel, frmgrafick_.jahrsel}, startjahr);
    const auto values = archive_.row(day.jahr - startjahr, day.mon, day.tag, quarter);
    for (int row = 1; row <= controls_.rows_shown(); ++row) {
        const auto track = static_cast<std::size_t>(controls_.erstespur + row - 1);
        if (track >= values.size()) break;
        Label& mean = controls_.schnittkanal[static_cast<std::size_t>(row)];
        mean.Caption = format(values[track], "#####0.00");
        mean.Visible = true;
    }
    const auto calculated = archive_.rechrow(day.jahr - startjahr, day.mon, day.tag, quarter);
    for (int row = 0; row < calculated_rows; ++row) {
        const int track = controls_.calculated_of_row(row);
        if (track < 0) continue;
        Label& mean = controls_.schnittkanalb[static_cast<std::size_t>(row)];
        mean.Caption = format(calculated[static_cast<std::size_t>(track)], "#####0.00");
        mean.Visible = true;
    }
}

// ---- the other views ----

std::string ReadOut::moment_of(const PlotStep& step) const {
    const TimeCurves::Drawn& drawn = curves_.drawn();
    const CalendarDay& day = drawn.days[static_cast<std::size_t>(step.day)];
    std::string moment = std::string(weekday_name(weekday_of(day))) + "  " + chart_date(day);
    const int quarters = drawn.quarters ? 1 : slot_of(drawn.view);
    if (quarters < quarters_of_a_day)
        moment += "  " + clock(step.quarter - quarters) + " - " + clock(step.quarter);
    return moment;
}

void ReadOut::read_period(double x) {
    period_x_ = x;
    const TimeCurves::Drawn& drawn = curves_.drawn();
    const double at = x - plotlinks;
    const auto step = std::lower_bound(drawn.steps.begin(), drawn.steps.end(), at,
                                       [](const PlotStep& s, double pointer) { return s.x < pointer; });
    if (at < 0 || step == drawn.steps.end()) {
        controls_.ablesung.Visible = false;
        return;
    }
    std::string text = moment_of(*step);
    std::size_t lines = 0;
    for (const Table table : {Table::daten, Table::rechdaten}) {
        const TrackLooks looks = looks_of(archive_, table);
        for (const int track : shown_tracks(archive_, table)) {
            if (++lines > most_lines) continue;
            const std::optional<double> value = curves_.value_at(table, track, *step);
            text += '\n' + (table == Table::daten ? looks.name(track) : calculated_name(archive_, track)) +
                    '\t' + (value ? format(*value, "########0.00") : "---") + '\t' + looks.unit(track);
        }
    }
    if (lines > most_lines) text += "\nund " + std::to_string(lines - most_lines) + " weitere";
    controls_.ablesung.Text = text;
    controls_.ablesung.Left = plotlinks + step->x;
    controls_.ablesung.Visible = true;
}

} // namespace velorn
