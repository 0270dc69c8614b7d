#include "plant/pages.h"

#include "plant/wording.h"

#include <algorithm>
#include <cmath>

namespace velorn::plant {

namespace {

constexpr PageEntry entries[] = {
    {PageId::operation, "Betriebsdaten"},  {PageId::faults, "Störungen"},
    {PageId::calendar, "Wochenuhr"},       {PageId::chart, "Tagesgang der Leistung"},
    {PageId::meters, "Zählerstände"},      {PageId::setpoints, "Sollwerte"},
    {PageId::bars, "Balkenanzeige"},       {PageId::report, "Protokoll auf den PC"},
    {PageId::about, "Anlageninformation"},
};

constexpr int quarters = 96;

std::string_view title_of(PageId page) {
    for (const PageEntry& entry : entries) {
        if (entry.page == page) return entry.title;
    }
    return "Hauptmenü";
}

DateTime quarter_of_today(const Machine& machine, int quarter) {
    DateTime moment = machine.now();
    moment.hour = quarter / 4;
    moment.minute = quarter % 4 * 15;
    moment.second = moment.millisecond = 0;
    return moment;
}

std::string moment_text(const DateTime& moment) {
    return filled("%02d.%02d.%04d %02d:%02d", moment.day, moment.month, moment.year, moment.hour,
                  moment.minute);
}

void write_menu(ScreenWriter& screen) {
    int row = first_line;
    for (std::size_t i = 0; i < std::size(entries); ++i)
        screen.text_at(row++, menu_column, filled("%zu  ", i + 1) + std::string(entries[i].title));
    screen.text_at(20, 3, "Pfeiltasten wählen, Eingabetaste öffnet, E beendet die Fernbedienung");
}

constexpr LiveRow measured[] = {
    {"Generatorleistung", "kW", &Readings::power_kw, 1},
    {"Wärmeleistung", "kW", &Readings::heat_kw, 1},
    {"Gasverbrauch", "m3/h", &Readings::gas_m3_per_h, 1},
    {"Drehzahl", "1/min", &Readings::speed, 0},
    {"Netzfrequenz", "Hz", &Readings::frequency, 2},
    {"Spannung L1", "V", &Readings::voltage, 1},
    {"Öldruck", "bar", &Readings::oil_bar, 2},
    {"Vorlauf", "C", &Readings::flow, 1},
    {"Rücklauf", "C", &Readings::return_flow, 1},
    {"Motorkühlwasser", "C", &Readings::engine_water, 1},
    {"Abgas", "C", &Readings::exhaust, 1},
    {"Außenluft", "C", &Readings::outside, 1},
};

void write_operation(ScreenWriter& screen, Machine& machine) {
    int row = first_line;
    for (const LiveRow& live : measured) {
        screen.text_at(row, 6, live.name);
        screen.text_at(row++, value_column + 10, live.unit);
    }
    for (const LiveField& field : live_fields(machine)) screen.text_at(field.row, field.column, field.text);
}

// Red goes last: whatever takes a selection back takes the red away too.
void write_faults(ScreenWriter& screen, Machine& machine) {
    const std::vector<Fault> faults = faults_before(machine.seed(), machine.now());
    screen.text_at(4, 6, "Datum       Zeit    Nr.  Meldung");
    constexpr int most = 14;
    const int shown = std::min(most, static_cast<int>(faults.size()));
    constexpr int alarms = 3; // the newest ones
    const auto line = [&](int i) {
        const Fault& fault = faults[static_cast<std::size_t>(i)];
        return filled("%02d.%02d.%04d  %02d:%02d   %3d  ", fault.moment.day, fault.moment.month,
                      fault.moment.year, fault.moment.hour, fault.moment.minute, fault.number) +
               std::string(fault.text);
    };
    for (int i = alarms; i < shown; ++i) screen.text_at(first_line + i, 6, line(i));
    if (shown == 0) screen.text_at(first_line, 6, "keine Störung in den letzten 14 Tagen");
    for (int i = 0; i < std::min(alarms, shown); ++i) {
        screen.at(first_line + i, 6);
        screen.red(line(i));
    }
}

// Two channels a day in 73 columns, three to the hour.
bool is_scheduled(int day, int channel, int hour) {
    const bool weekend = day >= 5;
    if (channel == 0)
        return weekend ? (hour >= 8 && hour < 12) || (hour >= 17 && hour < 21) : hour >= 6 && hour < 22;
    return weekend ? hour >= 7 && hour < 22 : (hour >= 5 && hour < 9) || (hour >= 16 && hour < 20);
}

void write_calendar(ScreenWriter& screen, const Machine& machine) {
    constexpr std::array<std::string_view, 7> days = {"Mo", "Di", "Mi", "Do", "Fr", "Sa", "So"};
    screen.calendar();
    screen.text_at(1, 4, "Wochenuhr BHKW und Kessel");
    screen.text_at(2, 12, "Programm Winter");
    screen.text_at(2, 38, "Kanal 1 BHKW");
    screen.text_at(2, 50, "2 Kessel");
    screen.text_at(3, 44, date_text(machine.now()));
    for (int day = 0; day < 7; ++day) {
        for (int channel = 0; channel < 2; ++channel) {
            const int row = 4 + day * 2 + channel;
            screen.text_at(
                row, 1, channel == 0 ? std::string(days[static_cast<std::size_t>(day)]) + " BHKW" : "Kessel");
            std::string cells;
            for (int column = 0; column < 73; ++column) {
                const int hour = std::min(column / 3, 23);
                cells += is_scheduled(day, channel, hour) ? '1' : '0';
            }
            screen.text_at(row, 8, cells);
        }
    }
    screen.text_at(20, 1, "oben: Betrieb gewünscht");
    screen.text_at(21, 1, "unten: Absenkung");
    screen.text_at(23, 1, "E zurück");
}

void write_chart(ScreenWriter& screen, Machine& machine) {
    const Readings now = readings_at(machine.seed(), machine.now());
    screen.text_at(6, 46, "Generatorleistung heute");
    screen.text_at(8, 46, filled("Nennleistung %4.0f kW", now.rated_kw));
    screen.text_at(9, 46, "jetzt        " + decimal(now.power_kw, 1, 6) + " kW");
    screen.text_at(12, 46, "G sendet den Tag als Grafik");
    screen.text_at(18, 4, "0");
    screen.text_at(18, 13, "6");
    screen.text_at(18, 22, "12");
    screen.text_at(18, 31, "18");
    screen.text_at(18, 40, "24 Uhr");
}

void write_meters(ScreenWriter& screen, Machine& machine) {
    const Meters m = meters_at(machine.seed(), machine.now());
    const std::pair<std::string_view, std::string> lines[] = {
        {"Strom", decimal(m.electricity_kwh, 0, 12) + " kWh"},
        {"Wärme", decimal(m.heat_kwh, 0, 12) + " kWh"},
        {"Gas", decimal(m.gas_m3, 0, 12) + " m3"},
        {"Betriebsstunden", decimal(m.hours, 1, 12) + " h"},
        {"Starts", filled("%12ld", m.starts)},
    };
    int row = first_line;
    for (const auto& [name, value] : lines) {
        screen.text_at(row, 6, name);
        screen.text_at(row, 30, value);
        row += 2;
    }
}

void write_setpoints(ScreenWriter& screen, std::span<const Setpoint> setpoints) {
    int row = first_line;
    for (const Setpoint& point : setpoints) {
        screen.text_at(row, 6, point.name);
        screen.text_at(row, value_column, filled("%*d", value_width, point.value));
        screen.text_at(row, value_column + value_width + 1, std::string(point.unit));
        screen.text_at(row++, 56, filled("%d bis %d", point.lowest, point.highest));
    }
    screen.text_at(20, 3, "Ziffern ändern, Eingabetaste übernimmt, E zurück");
}

void write_bars(ScreenWriter& screen, Machine& machine) {
    const Readings r = readings_at(machine.seed(), machine.now());
    struct Bar {
        std::string_view name;
        double share;
    };
    const Bar bars[] = {{"Leistung", r.rated_kw > 0 ? r.power_kw / r.rated_kw : 0},
                        {"Vorlauf", r.flow / 100},
                        {"Rücklauf", r.return_flow / 100},
                        {"Öldruck", r.oil_bar / 6},
                        {"Abgas", r.exhaust / 600}};
    constexpr int whole = 50;
    int row = first_line;
    for (const Bar& bar : bars) screen.text_at(row += 2, 6, bar.name);
    screen.text_at(first_line, 20, "0 %");
    screen.text_at(first_line, 67, "100 %");
    row = first_line;
    for (const Bar& bar : bars)
        screen.bar(row += 2, 20, static_cast<int>(std::lround(bar.share * whole)), whole);
}

void write_report(ScreenWriter& screen) {
    screen.text_at(first_line, 6, "Das Betriebsprotokoll der letzten 24 Stunden wird");
    screen.text_at(first_line + 1, 6, "in die Protokolldatei des PCs geschrieben.");
    screen.text_at(first_line + 3, 6, "Eingabetaste beginnt, E zurück");
}

void write_about(ScreenWriter& screen, const Machine& machine) {
    screen.text_at(first_line, 6, "BHKW-Regelung Version 7.42");
    screen.text_at(first_line + 1, 6, "Bedienanzeige Version 3.1");
    screen.text_at(first_line + 3, 6, "Datum und Uhrzeit  " + date_and_time_text(machine.now()));
    screen.text_at(first_line + 4, 6, filled("Neustarts          %d", machine.restarts()));
}

} // namespace

std::span<const PageEntry> menu_entries() { return entries; }

std::span<const LiveRow> live_rows() { return measured; }

std::vector<Setpoint> default_setpoints() {
    return {{"Vorlauf-Solltemperatur", "C", 40, 90, 75},
            {"Rücklauf-Begrenzung", "C", 30, 70, 60},
            {"Mindestleistung", "%", 50, 100, 50},
            {"Nachlaufzeit Pumpe", "s", 30, 600, 180}};
}

void write_head(ScreenWriter& screen, std::string_view site, bool inverse) {
    constexpr std::size_t name_width = 40;
    const std::string head = " Ende: <E>      Invers: <I>             " + fitted(site, name_width);
    screen.at(1, 1);
    if (inverse) {
        screen.inverse(head);
    } else {
        screen.text(head);
    }
}

void write_page(ScreenWriter& screen, PageId page, Machine& machine, std::span<const Setpoint> setpoints) {
    if (page != PageId::calendar) {
        screen.at(3, 3);
        screen.inverse(" " + std::string(title_of(page)) + " ");
    }
    switch (page) {
    case PageId::operation: write_operation(screen, machine); break;
    case PageId::faults: write_faults(screen, machine); break;
    case PageId::calendar: write_calendar(screen, machine); break;
    case PageId::chart: write_chart(screen, machine); break;
    case PageId::meters: write_meters(screen, machine); break;
    case PageId::setpoints: write_setpoints(screen, setpoints); break;
    case PageId::bars: write_bars(screen, machine); break;
    case PageId::report: write_report(screen); break;
    case PageId::about: write_about(screen, machine); break;
    default: write_menu(screen); break;
    }
}

void write_chart_lines(ScreenWriter& screen, Machine& machine) {
    constexpr int left = 50, right = 950, top = 200, bottom = 960;
    screen.line(left, bottom, right, bottom);
    screen.line(left, top, left, bottom);
    for (int hour = 6; hour <= 24; hour += 6) {
        const int x = left + (right - left) * hour / 24;
        screen.line(x, bottom, x, bottom + 20);
    }
    int before_x = 0;
    int before_y = 0;
    for (int quarter = 0; quarter < quarters; ++quarter) {
        const Readings r = readings_at(machine.seed(), quarter_of_today(machine, quarter));
        const double share = r.rated_kw > 0 ? std::clamp(r.power_kw / r.rated_kw, 0.0, 1.0) : 0;
        const int x = left + (right - left) * quarter / quarters;
        const int y = bottom - static_cast<int>(std::lround(share * (bottom - top)));
        if (quarter > 0) screen.line(before_x, before_y, x, y);
        before_x = x;
        before_y = y;
    }
}

std::vector<LiveField> live_fields(Machine& machine) {
    const Readings r = readings_at(machine.seed(), machine.now());
    std::vector<LiveField> fields;
    int row = first_line;
    for (const LiveRow& live : measured)
        fields.push_back({row++, value_column, decimal(r.*live.value, live.digits, 9)});
    fields.push_back({4, 6, padded(r.running ? "Anlage läuft" : "Anlage steht", 20)});
    fields.push_back({4, 56, date_and_time_text(machine.now())});
    return fields;
}

std::string report_text(std::string_view site, Machine& machine) {
    std::string text =
        "Betriebsprotokoll " + std::string(site) + "\r\n" + moment_text(machine.now()) + "\r\n\r\n";
    text += "Stunde   Leistung      Wärme   Vorlauf  Rücklauf\r\n";
    for (int hour = 0; hour < 24; ++hour) {
        const Readings r = readings_at(machine.seed(), quarter_of_today(machine, hour * 4));
        text += filled("%02d:00 ", hour) + decimal(r.power_kw, 1, 8) + " kW" + decimal(r.heat_kw, 1, 8) +
                " kW" + decimal(r.flow, 1, 8) + " C" + decimal(r.return_flow, 1, 7) + " C\r\n";
    }
    return cp437_from_utf8(text);
}

std::string day_graph_text(Machine& machine) {
    constexpr std::array<std::string_view, 7> days = {"So", "Mo", "Di", "Mi", "Do", "Fr", "Sa"};
    const DateTime now = machine.now();
    const Readings r = readings_at(machine.seed(), now);
    const int highest = static_cast<int>(std::lround(std::ceil(r.rated_kw / 20) * 20));
    std::string text = padded("Leistung", 14) + padded("kW", 5) +
                       std::string(days[static_cast<std::size_t>(weekday(now) - 1)]) +
                       filled("%02d%02d%04d", now.day, now.month, now.year) +
                       filled("%06d%06d%06d", 0, highest * 10, highest * 2);
    for (int quarter = 0; quarter < quarters; ++quarter) {
        const DateTime moment = quarter_of_today(machine, quarter);
        // What is still to come is missing.
        const double value = moment <= now ? readings_at(machine.seed(), moment).power_kw : -999;
        text += filled("%7ld", std::lround(value * 100));
    }
    return text;
}

} // namespace velorn::plant
