// What a combined heat and power unit measures: pure functions of seed and time, so that equal seeds show
// equal plants and a question asked twice in the same second gets the same answer twice.
//
// The load follows the time of day: off in the small hours, high in the morning and in the evening.
#pragma once

#include "runtime/calendar.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velorn::plant {

struct Readings {
    bool running = false;
    double rated_kw = 0; // electrical
    double power_kw = 0; // electrical; 0 or half to full rated power
    double heat_kw = 0;  // thermal
    double gas_m3_per_h = 0;
    double cos_phi = 0;
    double voltage = 0;   // V, phase to neutral
    double frequency = 0; // Hz
    double speed = 0;     // 1/min
    double oil_bar = 0;
    double flow = 0; // degrees Celsius, all that follow
    double return_flow = 0;
    double engine_water = 0;
    double exhaust = 0;
    double oil = 0;
    double outside = 0;
};

struct Meters { // never go back
    double electricity_kwh = 0;
    double heat_kwh = 0;
    double gas_m3 = 0;
    double hours = 0;
    long starts = 0;
};

struct Fault {
    DateTime moment;
    int number = 0;
    std::string_view text; // UTF-8
};

Readings readings_at(std::uint64_t seed, const DateTime& moment);
Meters meters_at(std::uint64_t seed, const DateTime& moment);

// The faults of the last 14 days, newest first.
std::vector<Fault> faults_before(std::uint64_t seed, const DateTime& moment);

} // namespace velorn::plant
