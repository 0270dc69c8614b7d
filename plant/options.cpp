#include "plant/options.h"

#include "plant/demo_book.h"
#include "plant/directory.h"
#include "plant/wording.h"
#include "runtime/text.h"

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

constexpr std::uint64_t highest_speed = 100;

bool take_speed(Options& options, std::string_view text) {
    std::uint64_t value = 0;
    if (!whole(text, highest_speed, value) || value < 1) return false;
    options.speed = static_cast<int>(value);
    return true;
}

template <double DownloadFaults::*Place>
bool take_share(Options& options, std::string_view text) {
    return probability(text, options.download_faults.*Place);
}

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

bool take_tcp(Options& options, std::string_view text) {
    auto place = tcp_place_from(text);
    if (place) options.tcp.push_back(std::move(*place));
    return place.has_value();
}

bool take_gateway(Options& options, std::string_view text) {
    auto place = gateway_place_from(text);
    if (place) options.gateways.push_back(std::move(*place));
    return place.has_value();
}

bool take_phone_book(Options& options, std::string_view text) {
    options.phone_book = text;
    return !text.empty();
}

bool take_protocols(Options& options, std::string_view text) {
    options.protocols = text;
    return !text.empty();
}

bool take_archives(Options& options, std::string_view text) {
    options.archives = text;
    return !text.empty();
}

// The phone book shows a visualisation where the path holds ".exe", and it is kept in cp1252.
bool take_visualisation(Options& options, std::string_view text) {
    const auto stored = cp1252_from_utf8(text);
    if (!stored || !contains_ignoring_case(*stored, ".exe")) return false;
    options.visualisation = *stored;
    return true;
}

constexpr std::string_view a_probability = "eine Wahrscheinlichkeit von 0 bis 1";
constexpr std::string_view milliseconds = "Millisekunden von 0 bis 86400000";
constexpr std::string_view bytes = "eine Anzahl Bytes";

constexpr ValueOption value_options[] = {
    {"--tcp", "ADRESSE:PORT und höchstens eine Angabe dahinter (siehe --help)", take_tcp},
    {"--gateway", "ADRESSE oder ADRESSE:PORT1,PORT2 (siehe --help)", take_gateway},
    {"--drop", a_probability, take_probability<&Faults::drop>},
    {"--repeat", a_probability, take_probability<&Faults::repeat>},
    {"--garble", a_probability, take_probability<&Faults::garble>},
    {"--delay", milliseconds, take_number<&Faults::delay_ms, longest_ms>},
    {"--slow", "Bytes pro Sekunde bis 1000000", take_number<&Faults::bytes_per_second, 1'000'000>},
    {"--silent-after", bytes, take_bytes<&Faults::silent_after>},
    {"--silent-for", milliseconds, take_number<&Faults::silent_for_ms, longest_ms>},
    {"--hangup-after", bytes, take_bytes<&Faults::hang_up_after>},
    {"--init-garble", a_probability, take_share<&DownloadFaults::garbled_copies>},
    {"--wrong-length", a_probability, take_share<&DownloadFaults::wrong_lengths>},
    {"--wrong-date", a_probability, take_share<&DownloadFaults::wrong_dates>},
    {"--packet-repeat", a_probability, take_share<&DownloadFaults::repeats>},
    {"--two-at-once", a_probability, take_share<&DownloadFaults::two_at_once>},
    {"--slow-frame", a_probability, take_share<&DownloadFaults::slow_bytes>},
    {"--frame-silence", a_probability, take_share<&DownloadFaults::silences>},
    {"--frame-hangup", a_probability, take_share<&DownloadFaults::hang_ups>},
    {"--range-again", a_probability, take_share<&DownloadFaults::vain_repeats>},
    {"--zeitraffer", "eine ganze Zahl von 1 bis 100", take_speed},
    {"--telefonbuch", "eine Datei", take_phone_book},
    {"--archive", "einen Ordner", take_archives},
    {"--protokolle", "einen Ordner", take_protocols},
    {"--visualisierung", "einen Pfad mit .exe", take_visualisation},
    {"--seed", "eine ganze Zahl ab 0", take_seed},
    {"--source", bytes, take_source},
};

std::string site_lines() {
    std::string lines;
    const Directory directory = demo_directory();
    for (const Site& site : directory.sites()) {
        std::string_view remark;
        switch (site.behaviour) {
        case Behaviour::connects: break;
        case Behaviour::busy: remark = "besetzt"; break;
        case Behaviour::refuses: remark = "nicht erreichbar"; break;
        case Behaviour::never_answers: remark = "antwortet nie"; break;
        }
        lines += "  " + padded(site.name, 24) + padded(site.number, 16) +
                 padded(site.address + ":" + std::to_string(site.port), 18);
        lines += site.user.empty() ? std::string(remark)
                                   : "Anmeldung " + site.user + ", Passwort " + site.password;
        lines.erase(lines.find_last_not_of(' ') + 1);
        lines += '\n';
    }
    return lines;
}

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
        } else if (name == "--demo") {
            options.demo = true;
        } else if (name == "--pty" || name == "--modem") {
            const bool with_link = more && !arguments[i + 1].starts_with('-');
            auto& places = name == "--pty" ? options.pseudo_terminals : options.modems;
            places.emplace_back(with_link ? arguments[++i] : std::string_view());
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
    const bool of_a_book =
        !options.protocols.empty() || !options.archives.empty() || !options.visualisation.empty();
    if (!options.phone_book && of_a_book) {
        return "--protokolle, --archive und --visualisierung brauchen --telefonbuch.";
    }
    if (!options.serves() && !options.phone_book) {
        return "Niemand erreicht die Anlage: es fehlt --pty, --tcp, --modem, --gateway oder --demo.";
    }
    if (options.source && options.pseudo_terminals.empty()) return "--source braucht --pty.";
    if (options.faults.silent_for_ms > 0 && !options.faults.silent_after) {
        return "--silent-for braucht --silent-after.";
    }
    return options;
}

std::string help_text() {
    std::string text = R"(velorn-plant - die simulierte Anlage

Spielt die Gegenseite eines Servicerechners: Steuerungen von Blockheizkraftwerken mit der
Bedienoberfläche ihres Echtzeit-Betriebssystems, an seriellen Leitungen, hinter Modems und im Netz.
Eine Steuerung schläft, bis das Zeichen SOH (Strg+A) sie weckt; dann meldet sie sich mit "*".
Der Befehl HELP zeigt, was sie kann. Jede hat einen Besucher zur Zeit und merkt sich, was man ihr sagt.

Aufruf:
  velorn-plant PLATZ [PLATZ ...] [Optionen]

Plätze, jeder beliebig oft:
  --pty [LINK]       eine Steuerung an einem Pseudo-Terminal, das sich wie eine serielle Schnittstelle
                     öffnen lässt; sein Name wird ausgegeben. LINK ist eine Verknüpfung, die darauf
                     zeigt; am Ende verschwindet sie wieder.
  --modem [LINK]     ein Modem mit AT-Befehlen an einem Pseudo-Terminal; es wählt die Anlagen unten an.
  --tcp ADRESSE:PORT[,ANGABE]
                     eine Steuerung an einem TCP-Anschluss. Als Angabe davor eine Anmeldung:
                       login=NAME:PASSWORT   fragt nach "Username:" und "Password:"
                     oder statt der Steuerung eine Gegenseite, die sich schlecht benimmt:
                       reset[=N]       bricht hart ab, sofort oder nach N empfangenen Bytes
                       half-close      sagt eine Zeile, beendet das Senden und hört weiter zu
                       flood=N         sendet N Bytes ohne Pause (auch 64K, 100M, 1G)
                       dribble=MS      sendet alle MS Millisekunden ein Byte
                       silent          nimmt an und sagt nie etwas
                       refuse          weist jede Verbindung ab
                       no-answer       antwortet auf keinen Verbindungsversuch
  --gateway ADRESSE[:PORT1,PORT2][,modem1=ART][,modem2=ART]
                     zwei Modems hinter zwei TCP-Anschlüssen (sonst 23 und 24), jedes für einen
                     Besucher; sie wählen die Anlagen unten an. ART ist
                       connect  wählt (so auch ohne Angabe)     busy    meldet immer besetzt
                       refuse   nimmt keine Verbindung an       silent  sagt nie etwas
  --demo             alle Anlagen unten an ihren Adressen und ein Gateway an @GATEWAY@

Ein Anschluss, der nicht zu haben ist (unter 1024 braucht es meist Rechte), wird gemeldet und bleibt
weg; alles andere läuft.

Was gesendet wird:
  --source N         an --pty statt eine Steuerung zu spielen N Bytes Text senden, immer denselben, und
                     enden, sobald die Gegenseite alles gelesen hat.
  --seed N           Keim für Messwerte und Störungen (sonst 1); gleicher Keim, gleicher Ablauf.
                     Jede weitere Steuerung hat einen um 1 höheren.

Das Telefonbuch zu diesen Anlagen:
  --telefonbuch DATEI      die Anlagen unten als Telefonbuch des Servicerechners schreiben (telefon.par);
                           ohne einen Platz ist das alles. Eine Datei, in der schon etwas steht, bleibt.
  --protokolle ORDNER      dazu für jede Anlage eine Protokolldatei; der Ordner ist der, den der
                           Servicerechner @PROTOCOLS@ nennt
  --archive ORDNER         dazu für jede Anlage, die an der automatischen Abholung teilnimmt, ein
                           Datenarchiv mit 30 Spuren (je 58 MB), das letzte Jahr bis vorgestern
                           gefüllt; der Ordner ist der, den der Servicerechner @ARCHIVES@ nennt
  --visualisierung PFAD    Visualisierung der Anlage @PICTURED@, ein Programm mit .exe
                           im Namen; der Pfad, wie ihn der Servicerechner nennt

Störungen jeder Leitung, in beiden Richtungen:
  --drop W           Bytes verschlucken, mit der Wahrscheinlichkeit W je Byte (0 bis 1)
  --repeat W         Bytes doppelt liefern
  --garble W         Bytes verfälschen
  --delay MS         alles um MS Millisekunden verzögern
  --slow N           nur N Bytes pro Sekunde (9600 Baud sind etwa 960)
  --silent-after N   nach N Bytes verstummen
  --silent-for MS    ... aber nur für MS Millisekunden
  --hangup-after N   nach N Bytes auflegen; ein Pseudo-Terminal ist nach 2 Sekunden wieder da

Störungen der Abholung von Viertelstundenwerten, mit der Wahrscheinlichkeit W (0 bis 1) je Telegramm; es trifft
jedes nur beim ersten Senden:
  --init-garble W    Initialisierung mit einer verfälschten Kopie
  --wrong-length W   Paket zu kurz oder zu lang
  --wrong-date W     Paket mit unmöglichem Datum; nach 5 s Stille folgt das richtige
  --packet-repeat W  Paket noch einmal, obwohl es quittiert ist
  --two-at-once W    zwei Telegramme in einem Stück
  --slow-frame W     bis zu vier Pausen von höchstens 2 s im Telegramm
  --frame-silence W  Telegramm bricht ab, dann Stille
  --frame-hangup W   Telegramm bricht ab, dann aufgelegt
  --range-again W    Zeitraum noch einmal verlangen, obwohl er stimmt

Sonstiges:
  --zeitraffer N     die Uhr N-mal so schnell laufen lassen (1 bis 100), mit allem, was nach ihr geht;
                     der Servicerechner am anderen Ende braucht dasselbe
  --log              den Verkehr auf die Fehlerausgabe schreiben, Steuerzeichen als <0D>
  --help             diese Hilfe

Die Anlagen, die jedes Modem anwählt und die --demo ins Netz stellt:
@SITES@
Beispiele:
  velorn-plant --pty anlage1
  velorn-plant --demo --modem modem1 --log
  velorn-plant --pty anlage1 --slow 960 --drop 0,01 --garble 0,001 --seed 7
  velorn-plant --tcp 127.0.0.1:2323,login=service:bhkw --tcp 127.0.0.1:2324,flood=100M
  velorn-plant --gateway 127.0.0.1:2023,2024,modem1=refuse
  velorn-plant --telefonbuch telefon.par --protokolle laufwerke/c/protokolle --archive laufwerke/c/archive
  velorn-plant --demo --wrong-length 0,1 --slow-frame 0,05

Strg+C beendet das Programm. Rückgabe: 0 ordentliches Ende, 1 nichts davon ist verfügbar oder ein
Pseudo-Terminal nicht, 2 falscher Aufruf.
)";
    const auto put = [&text](std::string_view mark, std::string_view what) {
        text.replace(text.find(mark), mark.size(), what);
    };
    put("@GATEWAY@", demo_gateway_address);
    put("@PROTOCOLS@", protocol_folder);
    put("@ARCHIVES@", archive_folder);
    const Directory directory = demo_directory();
    put("@PICTURED@", directory.sites()[pictured_site].name);
    put("@SITES@", site_lines());
    return text;
}

} // namespace velorn::plant
