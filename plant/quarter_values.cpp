#include "plant/quarter_values.h"

#include "plant/random.h"
#include "plant/wording.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <numbers>
#include <string_view>

namespace velorn::plant {

namespace {

using Profile = std::array<double, 25>;

// Share of the rated power at each full hour of a cold day, straight lines between.
constexpr Profile workday = {0.30, 0.25, 0.25, 0.30, 0.45, 0.75, 0.95, 1.00, 1.00, 0.97, 0.92, 0.88, 0.90,
                             0.84, 0.78, 0.76, 0.82, 0.93, 1.00, 1.00, 0.96, 0.85, 0.70, 0.48, 0.30};
constexpr Profile weekend = {0.30, 0.25, 0.25, 0.25, 0.30, 0.40, 0.55, 0.75, 0.90, 0.96, 0.95, 0.92, 0.88,
                             0.74, 0.62, 0.58, 0.66, 0.84, 0.96, 0.98, 0.92, 0.80, 0.62, 0.45, 0.30};
constexpr double smallest_load = 0.5; // below it the generator stands

constexpr std::array<double, 6> sizes_kw = {50, 70, 140, 238, 265, 402};
constexpr double heat_per_kw = 1.62;
constexpr double fuel_per_kw = 2.86;

constexpr double year_days = 365.2425;
constexpr int quarters_of_block = 8;   // for which the generator may be out of service
constexpr int quarters_of_window = 32; // in which a track may have one gap
constexpr double chance_of_gap = 0.008;
constexpr int longest_gap = 20;

enum Subject : std::uint64_t {
    of_size,
    of_shift,
    of_start,
    of_weather,
    of_service,
    of_noise,
    of_gap,
    of_draw
};

std::uint64_t place(Subject subject, std::uint64_t number = 0) { return number * 8 + subject; }
std::uint64_t place(Subject subject, std::int64_t when, int track) {
    return place(subject, static_cast<std::uint64_t>(when) * 1024 + static_cast<std::uint64_t>(track));
}

std::int64_t serial(const Quarter& when) {
    return static_cast<std::int64_t>(when.day) * quarters_of_day + when.number - 1;
}

// Monday 0. 27.12.1999 was one.
long first_monday() { return days_from_civil(1999, 12, 27); }
long weekday_of(long day) {
    const long since = (day - first_monday()) % 7;
    return since < 0 ? since + 7 : since;
}

double between(const Profile& profile, double hour) {
    const double inside = std::clamp(hour, 0.0, 23.999);
    const auto before = static_cast<std::size_t>(inside);
    return std::lerp(profile[before], profile[before + 1], inside - static_cast<double>(before));
}

// The share of a day's work that is done after each of its quarters.
std::array<double, quarters_of_day + 1> done_by_quarter() {
    std::array<double, quarters_of_day + 1> done{};
    for (std::size_t i = 1; i < done.size(); ++i)
        done[i] = done[i - 1] + between(workday, (static_cast<double>(i) - 0.5) / 4);
    for (double& share : done) share /= done.back();
    return done;
}

// Days of work since the end of 1999: workdays and winters count more. It only rises.
double work(const Quarter& when) {
    static const std::array<double, quarters_of_day + 1> done = done_by_quarter();
    constexpr double of_workday = 1.06;
    constexpr double of_weekend = 0.85; // a week has seven days
    const auto weekday = static_cast<double>(weekday_of(when.day));
    const double today = weekday < 5 ? of_workday : of_weekend;
    const double of_week = std::min(weekday, 5.0) * of_workday + std::max(weekday - 5, 0.0) * of_weekend;
    const double since = static_cast<double>(when.day - first_monday()) - weekday + of_week +
                         today * done[static_cast<std::size_t>(when.number)];
    constexpr double turn = 2 * std::numbers::pi / year_days;
    constexpr double midwinter = 34; // 30 January 2000
    constexpr double swing = 0.35;
    return since + swing / turn * (std::sin(turn * (since - midwinter)) + std::sin(turn * midwinter));
}

struct State {
    double rated = 0;   // kW
    double load = 0;    // share of the rated power, 0 or from smallest_load to 1
    double cold = 0;    // -1 midsummer to 1 midwinter
    double outside = 0; // degrees Celsius
    double wish = 0;    // for heat, 0 to 1
    double work = 0;    // days of full use
    double start = 0;   // 0 to 1, what the meters showed at the beginning
    double hour = 0;

    bool runs() const { return load > 0; }
    double power() const { return load * rated; }
    double back() const { return 52 + 9 * wish; }
    double flow() const { return back() + (runs() ? 9 + 9 * load : 2.5); }
    double circuit(double steepness) const { return 28 + steepness * std::max(0.0, 20 - outside); }
    double own_use() const { return rated * (0.18 + 0.5 * wish); }
};

double noise(std::uint64_t seed, const Quarter& when, int track) {
    return 2 * chance_at(seed, place(of_noise, serial(when), track)) - 1;
}

State state_at(std::uint64_t seed, const Quarter& when) {
    State s;
    s.hour = (when.number - 0.5) / 4;
    const double today = static_cast<double>(when.day) + s.hour / 24;
    const double since = today - static_cast<double>(days_from_civil(2000, 1, 25));
    s.cold = std::cos(2 * std::numbers::pi * since / year_days);
    const auto weather_of = [seed](long day) {
        return chance_at(seed, place(of_weather, static_cast<std::uint64_t>(day))) - 0.5;
    };
    const double weather = std::lerp(weather_of(when.day), weather_of(when.day + 1), s.hour / 24);
    const double sun = std::sin((s.hour - 9) * std::numbers::pi / 12);
    s.outside = 9.5 - 9.5 * s.cold + 11 * weather + (3.5 - 1.5 * s.cold) * sun + 0.1 * noise(seed, when, 0);

    const double draw = chance_at(seed, place(of_size)) * static_cast<double>(sizes_kw.size());
    s.rated = sizes_kw[std::min(static_cast<std::size_t>(draw), sizes_kw.size() - 1)];
    const double shift = chance_at(seed, place(of_shift)) - 0.5; // sites get up earlier or later
    const Profile& profile = weekday_of(when.day) < 5 ? workday : weekend;
    s.wish = std::clamp(between(profile, s.hour + shift) * (0.81 + 0.19 * s.cold - 0.1 * weather), 0.0, 1.0);
    const bool out_of_service =
        chance_at(seed, place(of_service, static_cast<std::uint64_t>(serial(when) / quarters_of_block))) <
        0.02;
    if (!out_of_service && s.wish >= smallest_load)
        s.load = std::clamp(s.wish * (1 + 0.02 * noise(seed, when, 1)), smallest_load, 1.0);
    s.work = work(when);
    s.start = chance_at(seed, place(of_start));
    return s;
}

struct Track {
    std::string_view name;
    std::string_view unit;
    int digits;
    double (*measured)(const State&, double wobble); // wobble: -1 to 1, another one for each value
};

constexpr Track tracks[] = {
    {"BHKW Leistung", "kW", 1, [](const State& s, double) { return s.power(); }},
    {"BHKW Wärme", "kW", 1, [](const State& s, double) { return s.power() * heat_per_kw; }},
    {"Vorlauf", "°C", 1, [](const State& s, double w) { return s.flow() + 0.4 * w; }},
    {"Rücklauf", "°C", 1, [](const State& s, double w) { return s.back() + 0.4 * w; }},
    {"Aussentemp.", "°C", 1, [](const State& s, double) { return s.outside; }},
    {"Stromzähler", "MWh", 1,
     [](const State& s, double) { return 900 * s.start + s.work * s.rated * 0.0135; }},
    {"Wärmezähler", "MWh", 1,
     [](const State& s, double) { return 1400 * s.start + s.work * s.rated * 0.0135 * heat_per_kw; }},
    {"Betriebsstd.", "h", 1, [](const State& s, double) { return 9000 * s.start + s.work * 14.5; }},
    {"Gaszähler", "MWh", 1,
     [](const State& s, double) { return 2600 * s.start + s.work * s.rated * 0.0135 * fuel_per_kw; }},
    {"Gasleistung", "kW", 0, [](const State& s, double) { return s.power() * fuel_per_kw; }},
    {"Abgastemp.", "°C", 0,
     [](const State& s, double w) { return s.runs() ? 430 + 95 * s.load + 3 * w : 46 + 2 * w; }},
    {"Kühlwasser", "°C", 1,
     [](const State& s, double w) { return s.runs() ? 83 + 4 * s.load + 0.4 * w : s.back() - 3 + 0.4 * w; }},
    {"Puffer oben", "°C", 1, [](const State& s, double w) { return s.flow() - 2 + 0.3 * w; }},
    {"Puffer unten", "°C", 1, [](const State& s, double w) { return s.back() + 1.5 + 0.5 * w; }},
    {"Kessel Leistg.", "kW", 1,
     [](const State& s, double w) {
         return s.wish > 0.9 && s.cold > 0.2 ? s.rated * (s.wish - 0.9 + 0.1 * s.cold) * (12 + w) : 0.0;
     }},
    {"Kessel Vorlauf", "°C", 1,
     [](const State& s, double w) { return (s.wish > 0.9 && s.cold > 0.2 ? 78 : 41) + 1.5 * w; }},
    {"Eigenbedarf", "kW", 1, [](const State& s, double w) { return s.own_use() * (1 + 0.05 * w); }},
    {"Netzbezug", "kW", 1, [](const State& s, double) { return std::max(0.0, s.own_use() - s.power()); }},
    {"Netzlieferung", "kW", 1, [](const State& s, double) { return std::max(0.0, s.power() - s.own_use()); }},
    {"Starts", "", 0, [](const State& s, double) { return std::floor(400 * s.start + s.work * 2.2); }},
    {"Öldruck", "bar", 2, [](const State& s, double w) { return s.runs() ? 4.1 + 0.2 * w : 0.0; }},
    {"Drehzahl", "1/min", 0, [](const State& s, double w) { return s.runs() ? 1500 + w : 0.0; }},
    {"cos phi", "", 3, [](const State& s, double w) { return s.runs() ? 0.97 + 0.01 * w : 0.0; }},
    {"Heizkreis 1 VL", "°C", 1, [](const State& s, double w) { return s.circuit(1.3) + 0.5 * w; }},
    {"Heizkreis 1 RL", "°C", 1, [](const State& s, double w) { return s.circuit(1.0) + 0.5 * w; }},
    {"Heizkreis 2 VL", "°C", 1, [](const State& s, double w) { return s.circuit(1.1) + 0.5 * w; }},
    {"Heizkreis 2 RL", "°C", 1, [](const State& s, double w) { return s.circuit(0.9) + 0.5 * w; }},
    {"Warmwasser", "°C", 1, [](const State& s, double w) { return 57 + 2 * s.wish + w; }},
    {"Wasserzähler", "m3", 0, [](const State& s, double) { return 2000 * s.start + s.work * 11; }},
    {"Raumtemp.", "°C", 1, [](const State& s, double w) { return 21 + 4 * s.load - s.cold + 0.3 * w; }},
};
constexpr int known_tracks = static_cast<int>(std::size(tracks));

// What is beyond the known ones: sensors in the building.
double sensor(const State& s, double wobble) { return 19 + 3 * s.wish + 0.1 * s.outside + 0.6 * wobble; }

bool is_gap(std::uint64_t seed, int track, const Quarter& when) {
    const std::int64_t window = serial(when) / quarters_of_window;
    if (chance_at(seed, place(of_gap, window, track)) >= chance_of_gap) return false;
    Random random(seed ^ spread(place(of_draw, window, track)));
    const auto length = static_cast<std::int64_t>(1 + random.below(longest_gap));
    const auto first = static_cast<std::int64_t>(random.below(quarters_of_window - longest_gap));
    const std::int64_t inside = serial(when) % quarters_of_window;
    return inside >= first && inside < first + length;
}

// By hand: years of these are asked for at once.
std::string fixed(double number, int digits) {
    constexpr std::array<double, 4> steps = {1, 10, 100, 1000};
    constexpr double longest = 9'999'999; // figures beside the comma
    const double whole = std::round(number * steps[static_cast<std::size_t>(digits)]);
    auto figures = static_cast<long>(std::clamp(std::abs(whole), 0.0, longest));
    const bool negative = whole < 0;
    std::string text(value_length, ' ');
    std::size_t at = text.size();
    for (int i = 0; i <= digits || figures > 0; ++i) {
        if (i == digits && digits > 0) text[--at] = ',';
        text[--at] = static_cast<char>('0' + figures % 10);
        figures /= 10;
    }
    if (negative && at > 0) text[--at] = '-';
    return text;
}

std::string text_of(const Recording& site, int track, const Quarter& when, const State& state) {
    if (is_gap(site.seed, track, when)) return "     ***";
    const double wobble = noise(site.seed, when, track + 1);
    const bool known = track <= known_tracks;
    const Track& row = tracks[known ? track - 1 : 0];
    const int digits = known ? row.digits : 1;
    return fixed(known ? row.measured(state, wobble) : sensor(state, wobble), digits);
}

} // namespace

Quarter quarter_after(const Quarter& quarter, int count) {
    const int all = quarter.number - 1 + count;
    return {quarter.day + all / quarters_of_day, all % quarters_of_day + 1};
}

Quarter quarter_before(const Quarter& quarter, int count) {
    const int back = (count + quarters_of_day - quarter.number) / quarters_of_day; // days
    return quarter_after({quarter.day - back, quarter.number}, back * quarters_of_day - count);
}

Quarter newest_quarter(const DateTime& now) {
    const int complete = (now.hour * 60 + now.minute) / 15;
    const long today = days_from_civil(now.year, now.month, now.day);
    return complete > 0 ? Quarter{today, complete} : Quarter{today - 1, quarters_of_day};
}

DateTime date_of(const Quarter& quarter) {
    const auto date = date_time_of({static_cast<double>(quarter.day)});
    return date ? *date : DateTime{};
}

std::string track_name(int track) {
    const std::string name =
        track <= known_tracks ? std::string(tracks[track - 1].name) : filled("Fühler %03d", track);
    return cp437_from_utf8(padded(name, 14));
}

std::string track_unit(int track) {
    std::string unit = cp437_from_utf8(padded(track <= known_tracks ? tracks[track - 1].unit : "°C", 5));
    // Units go to the PC's archive as they are, so their degree sign is the PC's.
    std::ranges::replace(unit, '\xF8', '\xB0');
    return unit;
}

std::string value(const Recording& site, int track, const Quarter& when) {
    return text_of(site, track, when, state_at(site.seed, when));
}

std::string values(const Recording& site, const Quarter& when) {
    const State state = state_at(site.seed, when);
    std::string all;
    all.reserve(static_cast<std::size_t>(site.tracks) * value_length);
    for (int track = 1; track <= site.tracks; ++track) all += text_of(site, track, when, state);
    return all;
}

float stored(std::string_view value_text) {
    std::string text(value_text);
    if (text.find("***") != std::string::npos) return -999.0F;
    std::replace(text.begin(), text.end(), ',', '.');
    float number = 0;
    const std::size_t begin = std::min(text.find_first_not_of(' '), text.size());
    (void)std::from_chars(text.data() + begin, text.data() + text.size(), number);
    return number;
}

float stored(const Recording& site, int track, const Quarter& when) {
    return stored(value(site, track, when));
}

} // namespace velorn::plant
