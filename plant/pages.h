// The pages of the operator display: what stands on them.
#pragma once

#include "plant/machine.h"
#include "plant/operation.h"
#include "plant/screen_writer.h"

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velorn::plant {

enum class PageId { menu, operation, faults, calendar, chart, meters, setpoints, bars, report, about, count };

struct PageEntry {
    PageId page;
    std::string_view title; // UTF-8, as it stands in the menu and at the head of the page
};

// The menu's entries, in order; the first is key "1".
std::span<const PageEntry> menu_entries();

// A value that can be changed at the display.
struct Setpoint {
    std::string_view name; // UTF-8
    std::string_view unit;
    int lowest, highest;
    int value;
};
std::vector<Setpoint> default_setpoints();

// Where the menu's and the setpoints' lines begin, and where a setpoint's value stands.
inline constexpr int first_line = 6;
inline constexpr int menu_column = 20;
inline constexpr int value_column = 40;
inline constexpr int value_width = 4;

// The head that every page but the calendar has: keys, and the site's name in 40 characters.
void write_head(ScreenWriter& screen, std::string_view site, bool inverse);

// Everything below the head. The chart's lines come apart, since they have to follow the text later.
void write_page(ScreenWriter& screen, PageId page, Machine& machine, std::span<const Setpoint> setpoints);
void write_chart_lines(ScreenWriter& screen, Machine& machine);

// What the running plant measures, as the display names it.
struct LiveRow {
    std::string_view name; // UTF-8
    std::string_view unit;
    double Readings::*value;
    int digits; // behind the decimal comma
};
std::span<const LiveRow> live_rows();

// A field of the page that shows the running plant; its place and its text at this moment.
struct LiveField {
    int row, column;
    std::string text;
};
std::vector<LiveField> live_fields(Machine& machine);

// What the report page sends into the PC's file, lines ending in CR LF.
std::string report_text(std::string_view site, Machine& machine);

// Generator power of today in quarter-hours, as the PC's day graph reads it: fields of fixed width.
std::string day_graph_text(Machine& machine);

} // namespace velorn::plant
