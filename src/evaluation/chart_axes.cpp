#include "evaluation/chart_axes.h"

#include "evaluation/nearest.h"
#include "runtime/number_picture.h"
#include "runtime/text.h"

#include <array>
#include <cmath>

namespace velorn {

namespace {

constexpr int label_row = plotunten - 3;
constexpr int title_row = 22;
constexpr int label_points = 8;
constexpr int title_points = 12;

void label(ChartSurface& surface, int x, int y, std::string_view text, int points = label_points) {
    surface.setzeposition(x, y);
    surface.schreibetext(text, points);
}

void solid(ChartSurface& surface, int x) {
    surface.zeichnelinie(x, plotunten, x, plotunten + plothoehe, colour::black);
}

void dotted(ChartSurface& surface, int x) { surface.zeichnestrich(x, plotunten, x, plotunten + plothoehe); }

void frame(ChartSurface& surface) { solid(surface, plotlinks); }

// How many digits and signs a label has beyond the shortest one, so that the digits stand right-aligned.
int digits_more(double number) {
    if (number > 999.999) return 3;
    if (number > 99.999) return 2;
    if (number > 9.999) return 1;
    if (number > -0.001) return 0;
    if (number < -99.999) return 3;
    if (number < -9.999) return 2;
    return 1;
}

constexpr int most_steps = 32'767; // what counts them holds no more
constexpr int digit_width = 5;
constexpr int left_labels = -30; // from the plot's edge
constexpr int right_labels = 25;

} // namespace

// ---- scales ----

int AxisScale::row(double value) const {
    constexpr double lowest = -1;
    constexpr double highest = plothoehe + 1;
    const double row = plothoehe * ((low - value) / (low - high));
    if (!(row > lowest)) return -1; // also where the scale leads nowhere
    if (row > highest) return plothoehe + 1;
    return nearest(row);
}

float AxisValues::yremin() const {
    return static_cast<float>(yremax - yreschritt * (ylimax - ylimin) / ylischritt);
}

// ---- time axes ----

std::string chart_date(const CalendarDay& day) {
    return format(static_cast<double>(day.tag), "00") + '.' + format(static_cast<double>(day.mon), "00") +
           '.' + format(static_cast<double>(day.jahr), "0000");
}

void draw_day_axis(ChartSurface& surface, const CalendarDay& selected, int wochentag) {
    frame(surface);
    label(surface, 77, label_row, "0");
    for (int hour = 1; hour <= 24; ++hour) {
        const int x = plotlinks + 20 * hour;
        if (hour % 6 != 0) {
            dotted(surface, x);
            continue;
        }
        solid(surface, x);
        label(surface, x - (hour == 6 ? 6 : 9), label_row, std::to_string(hour));
    }
    label(surface, 150, title_row,
          std::string("Tagesgang (1/4h-Werte)  ") + weekday_name(wochentag) + "  " + chart_date(selected),
          title_points);
}

void draw_week_axis(ChartSurface& surface, const std::vector<CalendarDay>& days, int wochentag,
                    bool quarters) {
    frame(surface);
    for (int slot = 1; slot <= 84; ++slot) {
        const int x = plotlinks + 6 * slot;
        if (slot % 12 != 0) {
            if (slot % 3 == 0) dotted(surface, x);
            continue;
        }
        solid(surface, x);
        // Behind the archive's end its last day comes again, and is the same day of the week.
        const CalendarDay& day = days[static_cast<std::size_t>(slot / 12 - 1)];
        label(surface, x - 50, label_row,
              std::string(weekday_name(weekday_of(day))) + "  " + std::to_string(day.tag) + '.');
    }
    label(surface, 150, title_row,
          std::string(quarters ? "Wochengang (1/4h-Werte)  ab  " : "Wochengang (2h-Werte)  ab  ") +
              weekday_name(wochentag) + "  " + chart_date(days.front()),
          title_points);
}

void draw_month_axis(ChartSurface& surface, const std::vector<CalendarDay>& days, bool quarters) {
    frame(surface);
    int x = plotlinks;
    for (std::size_t day = 0; day < days.size(); ++day) {
        x += 16;
        if (day + 1 == days.size())
            solid(surface, x);
        else
            dotted(surface, x);
        const int number = days[day].tag;
        label(surface, x - (number < 10 ? 13 : number < 20 ? 17 : 16), label_row, std::to_string(number));
    }
    label(surface, 140, title_row,
          std::string(quarters ? "Monatsgang (1/4h-Werte)  ab  " : "Monatsgang (4h-Werte)  ab  ") +
              chart_date(days.front()),
          title_points);
}

void draw_year_axis(ChartSurface& surface, const std::vector<CalendarDay>& days, bool quarters) {
    static const std::array<std::string_view, 12> months{"Jan", "Feb", "Mär"_w, "Apr", "Mai", "Jun",
                                                         "Jul", "Aug", "Sep",   "Okt", "Nov", "Dez"};
    frame(surface);
    for (int i = 1; i <= static_cast<int>(days.size()); ++i) {
        const CalendarDay& day = days[static_cast<std::size_t>(i - 1)];
        const int x = plotlinks + i;
        if (day.tag == 10 || day.tag == 20 || day.tag == 30) {
            dotted(surface, x);
        } else if (day.tag == 1) {
            solid(surface, x);
            // There is no room any more at the right: the label stands at the left.
            label(surface, i > 350 ? x + 5 - 360 : x + 5, label_row,
                  months[static_cast<std::size_t>(day.mon - 1)]);
        }
    }
    label(surface, 110, title_row,
          std::string(quarters ? "Jahresgang (1/4h-Werte)  ab  " : "Jahresgang (Tages-Werte)  ab  ") +
              chart_date(days.front()),
          title_points);
}

// ---- vertical axes ----

void draw_y_grid(ChartSurface& surface, const AxisValues& axes, int plotbreite) {
    const AxisScale left = axes.left();
    const double steps = round_to_even((axes.ylimax - axes.ylimin) / axes.ylischritt);
    if (std::isfinite(steps) && steps <= most_steps) {
        for (int i = 1; i <= steps; ++i) {
            const double at_left = axes.ylimax - axes.ylischritt * i;
            if (!std::isfinite(at_left)) break;
            const double at_right = axes.yremax - axes.yreschritt * i;
            const int row = nearest(plothoehe * ((axes.ylimin - at_left) / (axes.ylimin - axes.ylimax)));
            if (row > -1 && row < plothoehe + 1)
                surface.zeichnestrich(plotlinks, plotunten + row, plotlinks + plotbreite, plotunten + row);
            label(surface, plotlinks + left_labels - digit_width * digits_more(at_left), plotunten + row + 7,
                  format(at_left, "########0.00"));
            label(surface, plotlinks + plotbreite + right_labels - digit_width * digits_more(at_right),
                  plotunten + row + 7, format(at_right, "########0.00"));
        }
    }
    const int zero = left.row(0);
    if (zero > -1 && zero < plothoehe + 1)
        surface.zeichnelinie(plotlinks, plotunten + zero, plotlinks + plotbreite, plotunten + zero,
                             colour::black);
}

} // namespace velorn
