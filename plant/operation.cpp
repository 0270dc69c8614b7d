#include "plant/operation.h"

#include "plant/random.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace velorn::plant {

namespace {

constexpr int minutes_of_day = 1440;

// Share of the rated power at each full hour, straight lines between; below the smallest load the unit
// stands.
constexpr std::array<double, 25> load_by_hour = {0.40, 0.10, 0.10, 0.10, 0.20, 0.55, 0.85, 0.98, 1.00,
                                                 0.95, 0.88, 0.84, 0.86, 0.80, 0.74, 0.72, 0.78, 0.90,
                                                 0.99, 1.00, 0.96, 0.85, 0.70, 0.58, 0.40};
constexpr double smallest_load = 0.5;

constexpr std::array<double, 6> sizes_kw = {50, 70, 140, 238, 265, 402};

constexpr double heat_per_kw = 1.62;
constexpr double gas_m3_per_kwh = 0.288;

struct FaultKind {
    int number;
    std::string_view text;
};

constexpr std::array<FaultKind, 10> fault_kinds = {{
    {12, "Kühlwasserdruck zu niedrig"},
    {17, "Öldruck zu niedrig"},
    {21, "Abgastemperatur zu hoch"},
    {23, "Rücklauftemperatur zu hoch"},
    {31, "Netzspannung außer Toleranz"},
    {32, "Netzfrequenz außer Toleranz"},
    {35, "Rückleistung"},
    {44, "Gasdruck zu niedrig"},
    {52, "Drehzahl beim Start nicht erreicht"},
    {60, "Fühlerbruch Außentemperatur"},
}};

enum Subject : std::uint64_t { of_size, of_shift, of_age, of_noise, of_weather, of_fault };

std::uint64_t place(Subject subject, std::uint64_t number = 0) { return number * 16 + subject; }

long day_number(const DateTime& moment) { return days_from_civil(moment.year, moment.month, moment.day); }

double rated_kw(std::uint64_t seed) {
    const double draw = chance_at(seed, place(of_size)) * static_cast<double>(sizes_kw.size());
    return sizes_kw[std::min(static_cast<std::size_t>(draw), sizes_kw.size() - 1)];
}

// 0 or smallest_load to 1. Each site gets up a little earlier or later than the others.
double load_share(std::uint64_t seed, double minute) {
    const double shifted = minute + 60.0 * (chance_at(seed, place(of_shift)) - 0.5);
    const double hour = std::clamp(shifted / 60.0, 0.0, 23.999);
    const auto before = static_cast<std::size_t>(hour);
    const double share =
        std::lerp(load_by_hour[before], load_by_hour[before + 1], hour - static_cast<double>(before));
    return share < smallest_load ? 0.0 : share;
}

double running_minutes(std::uint64_t seed, int until_minute) {
    double sum = 0;
    for (int minute = 0; minute < until_minute; ++minute) sum += load_share(seed, minute) > 0 ? 1 : 0;
    return sum;
}

double load_minutes(std::uint64_t seed, int until_minute) {
    double sum = 0;
    for (int minute = 0; minute < until_minute; ++minute) sum += load_share(seed, minute);
    return sum;
}

} // namespace

Readings readings_at(std::uint64_t seed, const DateTime& moment) {
    const double second = std::floor(seconds_since_midnight(moment));
    const auto instant =
        static_cast<std::uint64_t>(day_number(moment)) * 86'400U + static_cast<std::uint64_t>(second);
    // -1 to 1, another one for each reading
    const auto noise = [&](std::uint64_t reading) {
        return 2.0 * chance_at(seed, place(of_noise, instant * 32 + reading)) - 1.0;
    };

    Readings r;
    const double share = load_share(seed, second / 60.0);
    r.running = share > 0;
    r.rated_kw = rated_kw(seed);
    r.power_kw = r.running ? std::clamp(share + 0.006 * noise(1), smallest_load, 1.0) * r.rated_kw : 0.0;
    r.heat_kw = r.power_kw * heat_per_kw;
    r.gas_m3_per_h = r.power_kw * gas_m3_per_kwh;
    r.cos_phi = r.running ? 0.97 + 0.01 * noise(2) : 0.0;
    r.voltage = 231.0 + 2.5 * noise(3);
    r.frequency = 50.0 + 0.03 * noise(4);
    r.speed = r.running ? 30.0 * r.frequency : 0.0;
    r.oil_bar = r.running ? 4.1 + 0.2 * noise(5) : 0.0;

    const double season = std::cos((moment.month - 1) * std::numbers::pi / 6.0);
    const double weather = chance_at(seed, place(of_weather, static_cast<std::uint64_t>(day_number(moment))));
    const double sun = std::sin((second / 3600.0 - 9.0) * std::numbers::pi / 12.0);
    r.outside = 9.5 - 9.5 * season + 8.0 * (weather - 0.5) + 4.0 * sun + 0.1 * noise(6);
    r.return_flow = 58.0 + 6.0 * share + 0.3 * noise(7);
    r.flow = r.return_flow + 17.0 * share + 0.3 * noise(8);
    r.engine_water = r.running ? 84.0 + 3.0 * share + 0.4 * noise(9) : r.return_flow - 4.0;
    r.exhaust = r.running ? 430.0 + 95.0 * share + 3.0 * noise(10) : 46.0 + noise(10);
    r.oil = r.running ? 86.0 + 6.0 * share + 0.5 * noise(11) : 52.0 + 0.5 * noise(11);
    return r;
}

Meters meters_at(std::uint64_t seed, const DateTime& moment) {
    const int minute = moment.hour * 60 + moment.minute;
    // Built between the beginnings of 1996 and 2004; an earlier clock counts as the first day.
    const long built = days_from_civil(1996, 1, 1) + static_cast<long>(chance_at(seed, place(of_age)) * 2922);
    const bool new_plant = day_number(moment) < built;
    const double days = new_plant ? 0.0 : static_cast<double>(day_number(moment) - built);
    const double load =
        days * load_minutes(seed, minutes_of_day) + (new_plant ? 0.0 : load_minutes(seed, minute));
    const double minutes =
        days * running_minutes(seed, minutes_of_day) + (new_plant ? 0.0 : running_minutes(seed, minute));
    Meters m;
    m.electricity_kwh = rated_kw(seed) * load / 60.0;
    m.heat_kwh = m.electricity_kwh * heat_per_kw;
    m.gas_m3 = m.electricity_kwh * gas_m3_per_kwh;
    m.hours = minutes / 60.0;
    m.starts = static_cast<long>(days) + (!new_plant && running_minutes(seed, minute) > 0 ? 1 : 0);
    return m;
}

std::vector<Fault> faults_before(std::uint64_t seed, const DateTime& moment) {
    std::vector<Fault> found;
    const auto today = day_number(moment);
    for (long back = 0; back < 14; ++back) {
        const auto day = static_cast<std::uint64_t>(today - back);
        Random random(seed ^ spread(place(of_fault, day)));
        if (random.unit() > 0.4) continue;
        const auto at = random.below(minutes_of_day * 60);
        const auto& kind = fault_kinds[random.below(fault_kinds.size())];
        const double serial = static_cast<double>(today - back) + (static_cast<double>(at) + 0.25) / 86'400.0;
        const auto when = date_time_of({serial});
        if (when && *when <= moment) found.push_back({*when, kind.number, kind.text});
    }
    return found;
}

} // namespace velorn::plant
