#include "plant/visual_values.h"

#include "plant/operation.h"
#include "plant/wording.h"
#include "runtime/text.h"

#include <algorithm>
#include <charconv>

namespace velorn::plant {

namespace {

std::string line(std::string_view name, const std::string& value, std::string_view unit = {}) {
    return std::string(name) + "=" + value + (unit.empty() ? "" : " ") + std::string(unit) + "\r\n";
}

std::string fault_lines(Machine& machine) {
    const std::vector<Fault> faults = faults_before(machine.seed(), machine.now());
    std::string text = line("Störungen in 14 Tagen", filled("%zu", faults.size()));
    if (faults.empty()) return text;
    const Fault& newest = faults.front();
    return text + line("Letzte Störung", date_text(newest.moment) +
                                             filled(" %02d:%02d Nr. %d ", newest.moment.hour,
                                                    newest.moment.minute, newest.number) +
                                             std::string(newest.text));
}

} // namespace

std::string values_block(std::string_view site, Machine& machine, std::span<const Setpoint> setpoints) {
    const Readings now = readings_at(machine.seed(), machine.now());
    const Meters meters = meters_at(machine.seed(), machine.now());
    std::string text = line("Anlage", std::string(site)) + line("Zeit", date_and_time_text(machine.now())) +
                       line("Betrieb", now.running ? "läuft" : "steht") +
                       line("Nennleistung", decimal(now.rated_kw, 0), "kW");
    for (const LiveRow& row : live_rows())
        text += line(row.name, decimal(now.*row.value, row.digits), row.unit);
    text += line("Strom", decimal(meters.electricity_kwh, 0), "kWh") +
            line("Wärme", decimal(meters.heat_kwh, 0), "kWh") + line("Gas", decimal(meters.gas_m3, 0), "m3") +
            line("Betriebsstunden", decimal(meters.hours, 1), "h") +
            line("Starts", filled("%ld", meters.starts)) + fault_lines(machine);
    for (const Setpoint& point : setpoints) text += line(point.name, filled("%d", point.value), point.unit);
    return cp437_from_utf8(text) + std::string(end_of_values);
}

bool follow_order(std::string_view order, std::span<Setpoint> setpoints) {
    const std::size_t equals = order.find('=');
    if (!order.starts_with(order_word) || equals == std::string_view::npos) return false;
    const std::string_view name = order.substr(order_word.size(), equals - order_word.size());
    const std::string_view digits = order.substr(equals + 1);
    const auto point = std::find_if(setpoints.begin(), setpoints.end(), [name](const Setpoint& one) {
        return name == cp437_from_utf8(one.name) || name == cp1252_from_utf8(one.name);
    });
    int value = 0;
    const char* const last = digits.data() + digits.size();
    const auto [end, error] = std::from_chars(digits.data(), last, value);
    if (point == setpoints.end() || error != std::errc{} || end != last) return false;
    if (value < point->lowest || value > point->highest) return false;
    point->value = value;
    return true;
}

} // namespace velorn::plant
