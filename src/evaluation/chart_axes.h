// What stands on a chart before its curves: frame, axes, grid, labels and title.
#pragma once

#include "evaluation/chart_surface.h"
#include "evaluation/evaluation_calendar.h"

#include <string>
#include <vector>

namespace velorn {

// The scale of one axis. A value beyond it runs along a line one pixel beyond the plot's edge.
struct AxisScale {
    double low = 0, high = 0;

    // Pixels above plotunten, -1 to plothoehe + 1.
    int row(double value) const;
};

struct AxisValues {
    double ylimax = 0, ylimin = 0, ylischritt = 0, yremax = 0, yreschritt = 0;

    // What the right axis begins with: as many steps as the left one.
    float yremin() const;
    AxisScale left() const { return {ylimin, ylimax}; }
    AxisScale right() const { return {double{yremin()}, yremax}; }
};

// "dd.mm.yyyy"
std::string chart_date(const CalendarDay& day);

// Frame, ticks and title of a view in its time order; `days` are the days that it walks.
void draw_day_axis(ChartSurface& surface, const CalendarDay& selected, int wochentag);
void draw_week_axis(ChartSurface& surface, const std::vector<CalendarDay>& days, int wochentag,
                    bool quarters);
void draw_month_axis(ChartSurface& surface, const std::vector<CalendarDay>& days, bool quarters);
void draw_year_axis(ChartSurface& surface, const std::vector<CalendarDay>& days, bool quarters);

// Lines and labels of both vertical axes, and the zero line. More than 32767 steps, and steps that lead
// nowhere, draw none.
void draw_y_grid(ChartSurface& surface, const AxisValues& axes, int plotbreite);

} // namespace velorn
