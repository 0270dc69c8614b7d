#include "plant/options.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace velorn::plant {

namespace {

bool whole(std::string_view text, std::uint64_t highest, std::uint64_t& value) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc{} && end == text.data() + text.size() && value <= highest;
}

bool probability(std::string_view text, double& value) {
    std::string with_point(text);
    std::replace(with_point.begin(), with_point.end(), ',', '.');
    const char* const last = with_point.data() + with_point.size();
    const auto [end, error] = std::from_chars(with_point.data(), last, value, std::chars_format::fixed);
    return error == std::errc{} && end == last && value >= 0 && value <= 1;
}

constexpr std::uint64_t longest_ms = 86'400'000;
constexpr std::uint64_t most_bytes = 1'000'000'000'000;

// Options with a value; false: the value is out of range or no number.
struct ValueOption {
    std::string_view name;
    std::string_view wants;
    bool (*take)(Options&, std::string_view);
};

template <double Faults::*Place>
bool take_probability(Options& options, std::string_view text) {
    return probability(text, options.faults.*Place);
}

template <std::int64_t Faults::*Place, std::uint64_t Highest>
bool take_number(Options& options, std::string_view text) {
    std::uint64_t value = 0;
    if (!whole(text, Highest, value)) return false;
    options.faults.*Place = static_cast<std::int64_t>(value);
    return true;
}

template <std::optional<std::uint64_t> Faults::*Place>
bool take_bytes(Options& options, std::string_view text) {
    std::uint64_t value = 0;
    if (!whole(text, most_bytes, value)) return false;
    options.faults.*Place = value;
    return true;
}

bool take_seed(Options& options, std::string_view text) {
    return whole(text, UINT64_MAX, options.faults.seed);
}

bool take_source(Options& options, std::string_view text) {
    std::uint64_t value = 0;
    if (!whole(text, most_bytes, value)) return false;
    options.source = value;
    return true;
}

constexpr std::string_view a_probability = "eine Wahrscheinlichkeit von 0 bis 1";
constexpr std::string_view milliseconds = "Millisekunden von 0 bis 86400000";
constexpr std::string_view bytes = "eine Anzahl Bytes";

constexpr ValueOption value_options[] = {
    {"--drop", a_probability, take_probability<&Faults::drop>},
    {"--repeat", a_probability, take_probability<&Faults::repeat>},
    {"--garble", a_probability, take_probability<&Faults::garble>},
    {"--delay", milliseconds, take_number<&Faults::delay_ms, longest_ms>},
    {"--slow", "Bytes pro Sekunde bis 1000000", take_number<&Faults::bytes_per_second, 1'000'000>},
    {"--silent-after", bytes, take_bytes<&Faults::silent_after>},
    {"--silent-for", milliseconds, take_number<&Faults::silent_for_ms, longest_ms>},
    {"--hangup-after", bytes, take_bytes<&Faults::hang_up_after>},
    {"--seed", "eine ganze Zahl ab 0", take_seed},
    {"--source", bytes, take_source},
};

} // namespace

std::variant<Options, std::string> options_from(std::span<const std::string_view> arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view name = arguments[i];
        const bool more = i + 1 < arguments.size();
        if (name == "--help" || name == "-h") {
            options.help = true;
        } else if (name == "--log") {
            options.log = true;
        } else if (name == "--pty") {
            const bool with_link = more && !arguments[i + 1].starts_with('-');
            options.pseudo_terminals.emplace_back(with_link ? arguments[++i] : std::string_view());
        } else {
            const auto* const row =
                std::find_if(std::begin(value_options), std::end(value_options),
                             [&](const ValueOption& option) { return option.name == name; });
            if (row == std::end(value_options)) return "Unbekannte Option: " + std::string(name);
            if (!more) return "Hinter " + std::string(name) + " fehlt " + std::string(row->wants) + ".";
            if (!row->take(options, arguments[++i])) {
                return std::string(name) + " verlangt " + std::string(row->wants) + ", nicht \"" +
                       std::string(arguments[i]) + "\".";
            }
        }
    }
    if (options.help) return options;
    if (options.pseudo_terminals.empty()) return "Es fehlt --pty, ohne das niemand die Anlage erreicht.";
    if (options.faults.silent_for_ms > 0 && !options.faults.silent_after) {
        return "--silent-for braucht --silent-after.";
    }
    return options;
}

std::string_view help_text() {
    return R"(velorn-plant - die simulierte Anlage

Spielt die Gegenseite eines Servicerechners: eine oder mehrere Steuerungen von Blockheizkraftwerken
mit der Bedienoberfläche ihres Echtzeit-Betriebssystems. Jede hängt an einem Pseudo-Terminal, das
sich wie eine serielle Schnittstelle öffnen lässt. Die Steuerung schläft, bis das Zeichen SOH (Strg+A)
sie weckt; dann meldet sie sich mit "*". Der Befehl HELP zeigt, was sie kann.

Aufruf:
  velorn-plant --pty [LINK] [--pty [LINK] ...] [Optionen]

Steuerungen:
  --pty [LINK]       eine Steuerung an einem Pseudo-Terminal; sein Name wird ausgegeben.
                     LINK ist eine Verknüpfung, die darauf zeigt; am Ende verschwindet sie wieder.
  --source N         statt eine Steuerung zu spielen N Bytes Text senden, immer denselben, und enden,
                     sobald die Gegenseite alles gelesen hat.
  --seed N           Keim für Messwerte und Störungen (sonst 1); gleicher Keim, gleicher Ablauf.
                     Jede weitere Steuerung hat einen um 1 höheren.

Störungen der Leitung, in beiden Richtungen:
  --drop W           Bytes verschlucken, mit der Wahrscheinlichkeit W je Byte (0 bis 1)
  --repeat W         Bytes doppelt liefern
  --garble W         Bytes verfälschen
  --delay MS         alles um MS Millisekunden verzögern
  --slow N           nur N Bytes pro Sekunde (9600 Baud sind etwa 960)
  --silent-after N   nach N Bytes verstummen
  --silent-for MS    ... aber nur für MS Millisekunden
  --hangup-after N   nach N Bytes auflegen; nach 2 Sekunden ist die Steuerung wieder da

Sonstiges:
  --log              den Verkehr auf die Fehlerausgabe schreiben, Steuerzeichen als <0D>
  --help             diese Hilfe

Beispiele:
  velorn-plant --pty anlage1
  velorn-plant --pty anlage1 --pty anlage2 --log
  velorn-plant --pty anlage1 --slow 960 --drop 0,01 --garble 0,001 --seed 7
  velorn-plant --pty anlage1 --source 1000000

Strg+C beendet das Programm. Rückgabe: 0 ordentliches Ende, 1 Gerät nicht verfügbar, 2 falscher Aufruf.
)";
}

} // namespace velorn::plant
