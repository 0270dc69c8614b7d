#include "evaluation/time_curves.h"

#include "archive/archive_layout.h"
#include "evaluation/nearest.h"
#include "evaluation/track_looks.h"
#include "runtime/number_picture.h"
#include "runtime/text.h"

#include <cmath>
#include <span>

namespace velorn {

namespace {

constexpr int day_width = 480;
constexpr int week_width = 504;
constexpr int width_of_a_month_day = 16;
constexpr double least_hours = 0.0001;

// Takes the points of one curve; a gap breaks it.
class Pen {
  public:
    Pen(ChartSurface& surface, const AxisScale& scale, Colour colour)
        : surface_(surface), scale_(scale), colour_(colour) {}

    void point(int x, double value) {
        const int to_x = plotlinks + x;
        const int to_y = plotunten + scale_.row(value);
        if (down_)
            surface_.zeichnelinie(x_, y_, to_x, to_y, colour_);
        else
            surface_.zeichnelinie(to_x, to_y, to_x, to_y, colour_);
        x_ = to_x;
        y_ = to_y;
        down_ = true;
    }
    void gap() { down_ = false; }

  private:
    ChartSurface& surface_;
    const AxisScale scale_;
    const Colour colour_;
    bool down_ = false; // there is a point before
    int x_ = 0, y_ = 0;
};

// All values of one track of a year, those of a day one after the other.
class Column {
  public:
    Column(Archive& archive, Table table, int track)
        : archive_(archive),
          table_(table),
          track_(track),
          columns_(table == Table::daten ? archive.spuranz + 1 : archive_layout::calculated_tracks) {}

    // Begins with quarter 1 of the day and goes on by columns().
    const float* day(const CalendarDay& day, int startjahr) const {
        const int y = day.jahr - startjahr;
        const std::span<const float> year = table_ == Table::daten ? archive_.year(y) : archive_.rechyear(y);
        return year.data() + archive_layout::row_of(day.mon, day.tag, 1) * columns_ + track_;
    }
    int columns() const { return columns_; }

  private:
    Archive& archive_;
    Table table_;
    int track_;
    int columns_;
};

} // namespace

int slot_of(View view) {
    switch (view) {
    case View::day: return 1;
    case View::week: return 8;
    case View::month: return 16;
    case View::year: return quarters_of_a_day;
    }
    return 1;
}

std::vector<PlotStep> plot_steps(View view, bool quarters, int days) {
    const int slot = quarters ? 1 : slot_of(view);
    std::vector<PlotStep> steps;
    steps.reserve(static_cast<std::size_t>(days * quarters_of_a_day / slot));
    int slots = 0;
    for (int day = 0; day < days; ++day) {
        for (int quarter = slot; quarter <= quarters_of_a_day; quarter += slot) {
            ++slots;
            const int since_start = quarter + quarters_of_a_day * day;
            int x = 0;
            if (view == View::day) {
                x = 5 * quarter;
            } else if (view == View::month) {
                x = nearest(since_start / 2688.0 * 448); // six quarter-hours to the pixel, however long it is
            } else if (!quarters) {
                x = view == View::week ? 6 * slots : slots;
            } else if (view == View::week) {
                x = nearest(since_start / 672.0 * week_width);
            } else {
                x = nearest(since_start / 35040.0 * 365);
            }
            steps.push_back({x, day, quarter});
        }
    }
    return steps;
}

int plotbreite_of(View view, int days) {
    switch (view) {
    case View::day: return day_width;
    case View::week: return week_width;
    case View::month: return width_of_a_month_day * days;
    case View::year: return days;
    }
    return day_width;
}

FigureTexts texts_of(const TrackFigures& figures) {
    if (figures.hours() < least_hours) return {"---", "---"};
    return {format(figures.mean(), "########0.00"), format(figures.sum, "########0.0")};
}

AxisValues axes_of(const ArchiveSettings& s) {
    return {s.ylimax.number(), s.ylimin.number(), s.ylischritt.number(), s.yremax.number(),
            s.yreschritt.number()};
}

TimeCurves::TimeCurves(Archive& archive, FrmGrafick& frmgrafick, EvaluationControls& controls,
                       EvaluationEvents& events, ChartSurface& surface)
    : archive_(archive), frmgrafick_(frmgrafick), controls_(controls), events_(events), surface_(surface) {}

void TimeCurves::zeigenormal() {
    if (controls_.dauermodus) return events_.zeigedauer();
    if (controls_.schnittmodus) return events_.zeigeschnitt();
    if (!controls_.druckmodus) controls_.Picture1.Cls();
    if (!archive_.is_open()) return;

    drawn_.view = view_of(archive_);
    drawn_.quarters = drawn_.view == View::day || controls_.viertelmodus == 1;
    drawn_.days = days_of_view(drawn_.view, {frmgrafick_.tagsel, frmgrafick_.monsel, frmgrafick_.jahrsel},
                               first_year(archive_));
    controls_.Picture1.Width = drawn_.view == View::year ? year_width : chart_width;
    const int days = static_cast<int>(drawn_.days.size());
    drawn_.steps = plot_steps(drawn_.view, drawn_.quarters, days);
    draw_axes();
    draw_y_grid(surface_, axes_of(archive_), plotbreite_of(drawn_.view, days));
    draw_tracks(Table::daten);
    draw_tracks(Table::rechdaten);
    for (std::size_t row = drawn_calculated_tracks; row < calculated_rows; ++row) {
        controls_.schnittkanalb[row].Visible = false;
        controls_.summkanalb[row].Visible = false;
    }
    const CalendarDay& last = drawn_.days.back();
    controls_.tagakt = last.tag;
    controls_.monakt = last.mon;
    controls_.jahrakt = last.jahr;
}

void TimeCurves::draw_axes() {
    const bool quarters = controls_.viertelmodus == 1;
    switch (drawn_.view) {
    case View::day: return draw_day_axis(surface_, drawn_.days.front(), controls_.wochentag);
    case View::week: return draw_week_axis(surface_, drawn_.days, controls_.wochentag, quarters);
    case View::month: return draw_month_axis(surface_, drawn_.days, quarters);
    case View::year: return draw_year_axis(surface_, drawn_.days, quarters);
    }
}

void TimeCurves::draw_tracks(Table table) {
    const TrackLooks looks = looks_of(archive_, table);
    const std::vector<int> tracks = shown_tracks(archive_, table);
    const AxisValues axes = axes_of(archive_);
    const std::vector<TrackFigures> figures = figures_of(archive_, table, first_year(archive_), drawn_.days,
                                                         tracks, drawn_.quarters ? 0 : slot_of(drawn_.view));
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        const int track = tracks[i];
        const AxisScale scale = looks.is_right(track) ? axes.right() : axes.left();
        if (drawn_.quarters)
            draw_quarters(table, track, scale, looks.colour(track));
        else
            draw_slots(figures[i].slots, scale, looks.colour(track));
        if (table == Table::daten)
            tell(track, figures[i]);
        else
            tell_calculated(track, figures[i]);
    }
}

void TimeCurves::draw_slots(const std::vector<double>& values, const AxisScale& scale, Colour colour) {
    Pen pen(surface_, scale, colour);
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (std::isnan(values[i]))
            pen.gap();
        else
            pen.point(drawn_.steps[i].x, values[i]);
    }
}

void TimeCurves::draw_quarters(Table table, int track, const AxisScale& scale, Colour colour) {
    const Column column(archive_, table, track);
    const int startjahr = first_year(archive_);
    Pen pen(surface_, scale, colour);
    auto step = drawn_.steps.begin();
    for (const CalendarDay& day : drawn_.days) {
        const float* value = column.day(day, startjahr);
        for (int quarter = 0; quarter < quarters_of_a_day; ++quarter, value += column.columns(), ++step) {
            if (present(*value))
                pen.point(step->x, *value);
            else
                pen.gap();
        }
    }
}

std::optional<double> TimeCurves::value_at(Table table, int track, const PlotStep& step) const {
    const Column column(archive_, table, track);
    const float* const first =
        column.day(drawn_.days[static_cast<std::size_t>(step.day)], first_year(archive_));
    const int slot = drawn_.quarters ? 1 : slot_of(drawn_.view);
    double sum = 0;
    int values = 0;
    for (int quarter = step.quarter - slot; quarter < step.quarter; ++quarter) {
        const float value = first[std::ptrdiff_t{quarter} * column.columns()];
        if (!present(value)) continue;
        sum += value;
        ++values;
    }
    if (values == 0) return std::nullopt;
    return sum / values;
}

// ---- figures ----

void TimeCurves::tell(int track, const TrackFigures& figures) {
    const TrackLooks looks = looks_of(archive_, Table::daten);
    const FigureTexts texts = texts_of(figures);
    if (figures.values > 0 && track <= most_tracks) {
        spurschnitt[static_cast<std::size_t>(track)] = static_cast<float>(figures.mean());
        spursumme[static_cast<std::size_t>(track)] = static_cast<float>(figures.sum);
    }
    const int row = track - controls_.erstespur + 1;
    if (row > 0 && row <= controls_.rows_shown()) {
        const auto i = static_cast<std::size_t>(row);
        controls_.schnittkanal[i].Caption = texts.mean;
        controls_.schnittkanal[i].Visible = true;
        controls_.summkanal[i].Caption = texts.sum;
        controls_.summkanal[i].Visible = looks.has_sum(track);
    }
    const auto possible = static_cast<double>(drawn_.days.size()) * quarters_of_a_day;
    controls_.viertkann.Caption = "von " + format(possible, "########0");
    controls_.viertist.Caption = format(static_cast<double>(figures.hours()) * 4, "########0");
    controls_.viertist.ForeColor = looks.colour(track);
}

void TimeCurves::tell_calculated(int track, const TrackFigures& figures) {
    const FigureTexts texts = texts_of(figures);
    if (figures.values > 0) {
        bschnitt[static_cast<std::size_t>(track)] = static_cast<float>(figures.mean());
        bsumme[static_cast<std::size_t>(track)] = static_cast<float>(figures.sum);
    }
    const int row = controls_.row_of_calculated(track);
    if (row < 0) return;
    const auto i = static_cast<std::size_t>(row);
    controls_.schnittkanalb[i].Caption = texts.mean;
    controls_.schnittkanalb[i].Visible = true;
    controls_.summkanalb[i].Caption = texts.sum;
    controls_.summkanalb[i].Visible = looks_of(archive_, Table::rechdaten).has_sum(track);
}

} // namespace velorn
