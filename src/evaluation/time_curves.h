// The chart in its plain order of time: a day, a week, a month or a year as curves, and for each track its
// sum and mean over the period.
#pragma once

#include "archive/archive.h"
#include "archive/frm_grafick.h"
#include "evaluation/chart_axes.h"
#include "evaluation/chart_surface.h"
#include "evaluation/evaluation_controls.h"
#include "evaluation/period.h"

#include <array>
#include <optional>
#include <vector>

namespace velorn {

inline constexpr int most_tracks = 150;

// A point of time that a view draws: its x from the plot's left edge, and the quarter-hour that it ends with.
struct PlotStep {
    int x = 0;
    int day = 0;     // index into the days walked
    int quarter = 1; // 1 to 96
};

// What a view takes together, in quarter-hours, where it doesn't show every one.
int slot_of(View view);

// The points of a view in order. quarters: every quarter-hour, else every slot.
std::vector<PlotStep> plot_steps(View view, bool quarters, int days);

// How wide the plot of a view is that walks so many days.
int plotbreite_of(View view, int days);

// Means of a track and sums, as they are shown: "---" where it has no value.
struct FigureTexts {
    std::string mean, sum;
};
FigureTexts texts_of(const TrackFigures& figures);

class TimeCurves {
  public:
    TimeCurves(Archive& archive, FrmGrafick& frmgrafick, EvaluationControls& controls,
               EvaluationEvents& events, ChartSurface& surface);

    // Draws the selected period onto the surface, which on screen is cleared before, and fills the labels of
    // rows and counters. In the other two modes it hands over.
    void zeigenormal();

    // Of the drawing last made; a track without any value keeps what it had. Index 0 to 150, and 0 to 4.
    std::array<float, most_tracks + 1> spurschnitt{}, spursumme{};
    std::array<float, calculated_rows> bschnitt{}, bsumme{};

    // What was drawn last, for reading off.
    struct Drawn {
        View view = View::day;
        bool quarters = true;
        std::vector<CalendarDay> days;
        std::vector<PlotStep> steps;
    };
    const Drawn& drawn() const { return drawn_; }
    // Another archive, or none, takes the place of the one that was drawn.
    void forget() { drawn_ = {}; }
    // What a track shows at one of its steps; nothing where it has no value.
    std::optional<double> value_at(Table table, int track, const PlotStep& step) const;

  private:
    void draw_axes();
    void draw_tracks(Table table);
    void draw_slots(const std::vector<double>& values, const AxisScale& scale, Colour colour);
    void draw_quarters(Table table, int track, const AxisScale& scale, Colour colour);
    void tell(int track, const TrackFigures& figures);
    void tell_calculated(int track, const TrackFigures& figures);

    Archive& archive_;
    FrmGrafick& frmgrafick_;
    EvaluationControls& controls_;
    EvaluationEvents& events_;
    ChartSurface& surface_;
    Drawn drawn_;
};

// The axes as the archive keeps them.
AxisValues axes_of(const ArchiveSettings& settings);

} // namespace velorn
