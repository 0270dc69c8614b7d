#include "plant/commands.h"

#include "plant/operation.h"
#include "plant/wording.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace velorn::plant {

namespace {

constexpr std::string_view line_end = "\r\n";

Answer at_once(std::string text) {
    Answer answer;
    answer.push_back({0, std::move(text)});
    return answer;
}

Answer line(std::string_view text) { return at_once(std::string(text) + std::string(line_end)); }

// The controller itself serves this one.
Answer nothing(Machine&, const Words&) { return {}; }

Answer refused(std::string_view reason) { return line("*** " + std::string(reason)); }

Answer wrong_use(std::string_view usage) {
    return refused("falsche Eingabe, richtig ist: " + std::string(usage));
}

std::string word(const Words& words, std::size_t place) {
    return place < words.size() ? words[place] : std::string();
}

std::optional<int> number(std::string_view text, int lowest, int highest, int base = 10) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    if (value < lowest || value > highest) return std::nullopt;
    return value;
}

// The number behind a key word: "SZ 6".
std::optional<int> number_behind(const Words& words, std::string_view key, int lowest, int highest) {
    const auto found = std::find(words.begin(), words.end(), key);
    if (found == words.end() || found + 1 == words.end()) return std::nullopt;
    return number(*(found + 1), lowest, highest);
}

struct FileName {
    std::string device;
    std::string name;
};

// "H0.BATRAM1" and "/H0/BATRAM1" name the same file.
std::optional<FileName> file_name(std::string_view text) {
    const bool path = text.starts_with('/');
    if (path) text.remove_prefix(1);
    const std::size_t cut = text.find(path ? '/' : '.');
    if (cut == std::string_view::npos || cut == 0 || cut + 1 == text.size()) return std::nullopt;
    return FileName{std::string(text.substr(0, cut)), std::string(text.substr(cut + 1))};
}

std::string grouped_bytes(const StoredFile& file) {
    return padded(file.device + "." + file.name, 16) + filled("%9d Bytes", file.bytes) +
           std::string(line_end);
}

std::string span_text(std::int64_t ms) {
    const long long s = ms / 1000;
    return filled("%lld Tage %02lld:%02lld:%02lld", s / 86'400, s / 3600 % 24, s / 60 % 60, s % 60);
}

// --- the tasks

Answer system_state(Machine& machine, const Words&) {
    const Readings r = readings_at(machine.seed(), machine.now());
    const auto asleep = std::count_if(machine.tasks().begin(), machine.tasks().end(),
                                      [](const Task& t) { return t.state == TaskState::dormant; });
    std::string out = "Systemzustand " + date_and_time_text(machine.now()) + "\r\n";
    out += "Laufzeit seit Neustart  " + span_text(machine.uptime_ms()) + "\r\n";
    out += filled("Tasks                   %zu geladen, %td ruhend\r\n", machine.tasks().size(), asleep);
    out += filled("Aufträge                %zu eingeplant\r\n", machine.orders().size());
    out += std::string("Watchdog                ") + (machine.watchdog() ? "aktiv" : "gesperrt") + "\r\n";
    out += std::string("Modul                   ") + (r.running ? "in Betrieb" : "steht, betriebsbereit") +
           "\r\n";
    return at_once(out);
}

Answer list_tasks(Machine& machine, const Words&) {
    std::string out = "Name         Prio  Zustand\r\n";
    for (const Task& t : machine.tasks()) {
        out += padded(t.name, 12) + filled("%5d  ", t.priority) + std::string(state_text(t.state)) + "\r\n";
    }
    return at_once(out);
}

Answer list_users(Machine& machine, const Words&) {
    std::string out = "Name         Prio  Zustand  Speicher  Benutzer\r\n";
    int sum = 0;
    for (const Task& t : machine.tasks()) {
        out += padded(t.name, 12) + filled("%5d  ", t.priority) + padded(state_text(t.state), 7);
        out += filled("%8d B  ", t.bytes) + (t.priority < 0 ? "Bediener" : "System") + "\r\n";
        sum += t.bytes;
    }
    for (const Machine::Order& order : machine.orders()) {
        out += "Auftrag: " + order.name + " in " + span_text(order.due_ms - machine.loop().now_ms()) + "\r\n";
    }
    return at_once(out + filled("Belegt: %d Bytes\r\n", sum));
}

Answer terminate(Machine& machine, const Words& words) {
    if (words.size() != 2) return wrong_use("TERMINATE Task");
    Task* const task = machine.task(words[1]);
    if (task == nullptr) return refused("Task " + words[1] + " nicht geladen");
    task->state = TaskState::dormant;
    return line("Task " + task->name + " beendet");
}

Answer activate(Machine& machine, const Words& words) {
    if (words.size() != 2) return wrong_use("ACTIVATE Task");
    if (!machine.activate(words[1])) return refused("Task " + words[1] + " nicht geladen");
    return line("Task " + words[1] + " gestartet");
}

Answer prevent(Machine& machine, const Words& words) {
    if (words.size() != 2) return wrong_use("PREVENT Task");
    if (words[1] == "WATCHDOG") {
        machine.set_watchdog(false);
        return line("Watchdog gesperrt");
    }
    return line(machine.prevent(words[1]) ? "Einplanung von " + words[1] + " gelöscht"
                                          : words[1] + " ist nicht eingeplant");
}

Answer after(Machine& machine, const Words& words) {
    constexpr std::string_view usage = "AFTER n SEC/MIN/HRS ACTIVATE Task";
    const std::string unit = word(words, 2);
    const int seconds = unit == "SEC" ? 1 : unit == "MIN" ? 60 : unit == "HRS" ? 3600 : 0;
    const auto count = number(word(words, 1), 1, 1440);
    if (words.size() != 5 || seconds == 0 || !count || words[3] != "ACTIVATE") return wrong_use(usage);
    if (machine.task(words[4]) == nullptr) return refused("Task " + words[4] + " nicht geladen");
    if (!machine.activate_after(1000LL * seconds * *count, words[4])) return refused("zu viele Einplanungen");
    return line(filled("Task %s startet in %d %s", words[4].c_str(), *count, unit.c_str()));
}

Answer define(Machine& machine, const Words& words) {
    const std::string& first = words.front();
    const std::string name = first.substr(std::min(first.size(), std::string_view("DEFINE.").size()));
    const std::string own_name = name.substr(0, name.find("--"));
    if (own_name.empty() || own_name.size() > 12) return wrong_use("DEFINE.Name--Befehl");
    if (!machine.define(own_name)) return refused("kein Platz für weitere Tasks");
    return line("Befehl " + own_name + " vereinbart");
}

Answer all(Machine& machine, const Words& words) {
    const auto count = number(word(words, 1), 1, 1440);
    const std::string unit = word(words, 2);
    if (words.size() < 4 || !count || (unit != "SEC" && unit != "MIN" && unit != "HRS")) {
        return wrong_use("ALL n SEC/MIN/HRS DURING m SEC/MIN/HRS Task");
    }
    Task* const task = machine.task(words.back());
    if (task == nullptr) return refused("Task " + words.back() + " nicht geladen");
    task->state = TaskState::timed;
    return line(filled("Task %s alle %d %s eingeplant", task->name.c_str(), *count, unit.c_str()));
}

Answer watchdog(Machine& machine, const Words& words) {
    if (word(words, 1) != "WATCHDOG") return wrong_use("SH WATCHDOG");
    if (!machine.watchdog()) return line("Watchdog: gesperrt, kein Reset bei Ausfall");
    const Task* const watch = machine.task("Watch");
    const bool fed = watch != nullptr && watch->state != TaskState::dormant;
    std::string out = "Watchdog: aktiv, Überwachungszeit 60 s\r\n";
    out += fed ? "letzter Impuls vor " + decimal(static_cast<double>(machine.uptime_ms() % 5000) / 1000, 1) +
                     " s\r\n"
               : std::string("Task Watch ruht, es kommen keine Impulse\r\n");
    return at_once(out);
}

Answer system_reset(Machine& machine, const Words&) {
    if (machine.reset) machine.reset();
    return {};
}

// --- the disks

Answer directory(Machine& machine, const Words& words) {
    std::string device = word(words, 1);
    while (device.ends_with('.') || device.ends_with('/')) device.pop_back();
    if (device.starts_with('/')) device.erase(0, 1);
    std::string out;
    long sum = 0;
    for (const StoredFile& file : machine.files()) {
        if (!device.empty() && file.device != device) continue;
        out += grouped_bytes(file);
        sum += file.bytes;
    }
    if (out.empty()) return refused("keine Dateien auf " + (device.empty() ? "den Laufwerken" : device));
    return at_once(out + filled("Belegt: %ld Bytes\r\n", sum));
}

Answer remove_file(Machine& machine, const Words& words) {
    const auto name = words.size() == 2 ? file_name(words[1]) : std::nullopt;
    if (!name) return wrong_use("RM Laufwerk.Datei");
    if (!machine.remove(name->device, name->name)) return refused("Datei " + words[1] + " nicht gefunden");
    return line("Datei " + words[1] + " gelöscht");
}

Answer sync(Machine&, const Words& words) {
    return {{600, "Laufwerk " + (words.size() > 1 ? words[1] : "H0.") + " gesichert\r\n"}};
}

Answer clear_flash(Machine&, const Words& words) {
    const auto first = number_behind(words, "AD", 0, 15);
    const auto size = number_behind(words, "SZ", 1, 16);
    if (!first || !size || *first + *size > 16) return wrong_use("CLEARFLASH AD n SZ m");
    Answer answer;
    for (int block = *first; block < *first + *size; ++block) {
        answer.push_back({700, filled("Flash Block %2d gelöscht\r\n", block)});
    }
    return answer;
}

Answer load_flash(Machine& machine, const Words& words) {
    const bool compare = word(words, 1) == "-L";
    const auto bank = number_behind(words, "BANK", 0, 15);
    const auto offset = number_behind(words, "OFFS", 0, 1'000'000);
    if (!bank || !offset) return wrong_use("FLLOAD BANK n OFFS m Datei");
    const auto name = file_name(words.back());
    if (!name) return refused("Gerät " + words.back() + " nicht bereit");
    const StoredFile* const file = machine.file(name->device, name->name);
    if (file == nullptr) return refused("Datei " + words.back() + " nicht gefunden");
    Answer answer;
    for (int at = 0; at < file->bytes; at += 65'536) {
        answer.push_back({450, filled("Bank %2d  %7d Bytes %s\r\n", *bank, std::min(at + 65'536, file->bytes),
                                      compare ? "verglichen" : "gebrannt")});
    }
    answer.push_back({50, "Flash fertig, kein Fehler\r\n"});
    return answer;
}

// --- the unit

Answer clock(Machine& machine, const Words&) { return line("Uhrzeit " + time_text(machine.now())); }

Answer date(Machine& machine, const Words&) {
    constexpr std::array<std::string_view, 7> names = {"Sonntag",    "Montag",  "Dienstag", "Mittwoch",
                                                       "Donnerstag", "Freitag", "Samstag"};
    const auto day = static_cast<std::size_t>(weekday(machine.now()) - 1);
    return line(std::string(names.at(day)) + ", " + date_text(machine.now()));
}

Answer temperatures(Machine& machine, const Words&) {
    const Readings r = readings_at(machine.seed(), machine.now());
    struct Row {
        std::string_view name;
        double value;
    };
    const Row rows[] = {{"Vorlauf", r.flow}, {"Rücklauf", r.return_flow}, {"Motorkühlwasser", r.engine_water},
                        {"Motoröl", r.oil},  {"Abgas", r.exhaust},        {"Außenluft", r.outside}};
    std::string out = "Temperaturen " + time_text(machine.now()) + "\r\n";
    for (const Row& row : rows) out += padded(row.name, 18) + decimal(row.value, 1, 7) + " °C\r\n";
    return at_once(out);
}

Answer power(Machine& machine, const Words&) {
    const Readings r = readings_at(machine.seed(), machine.now());
    std::string out =
        std::string("Modul             ") + (r.running ? "in Betrieb" : "steht, betriebsbereit") + "\r\n";
    out += "Leistung elektr.  " + decimal(r.power_kw, 1, 7) + " kW von " + decimal(r.rated_kw, 0) + " kW\r\n";
    out += "Leistung therm.   " + decimal(r.heat_kw, 1, 7) + " kW\r\n";
    out += "Gasverbrauch      " + decimal(r.gas_m3_per_h, 1, 7) + " m3/h\r\n";
    out += "Cos phi           " + decimal(r.cos_phi, 2, 7) + "\r\n";
    out += "Spannung          " + decimal(r.voltage, 1, 7) + " V\r\n";
    out += "Frequenz          " + decimal(r.frequency, 2, 7) + " Hz\r\n";
    out += "Drehzahl          " + decimal(r.speed, 0, 7) + " 1/min\r\n";
    out += "Öldruck           " + decimal(r.oil_bar, 1, 7) + " bar\r\n";
    return at_once(out);
}

Answer meters(Machine& machine, const Words&) {
    const Meters m = meters_at(machine.seed(), machine.now());
    std::string out = "Zählerstände " + date_and_time_text(machine.now()) + "\r\n";
    out += "Strom erzeugt     " + decimal(m.electricity_kwh, 0, 12) + " kWh\r\n";
    out += "Wärme erzeugt     " + decimal(m.heat_kwh, 0, 12) + " kWh\r\n";
    out += "Gas verbraucht    " + decimal(m.gas_m3, 0, 12) + " m3\r\n";
    out += "Betriebsstunden   " + decimal(m.hours, 1, 12) + " h\r\n";
    out += filled("Starts            %12ld\r\n", m.starts);
    return at_once(out);
}

Answer faults(Machine& machine, const Words&) {
    const std::vector<Fault> found = faults_before(machine.seed(), machine.now());
    if (found.empty()) return line("Keine Störungen in den letzten 14 Tagen");
    std::string out = "Störungen der letzten 14 Tage\r\n";
    for (const Fault& f : found) {
        out += date_and_time_text(f.moment) + filled("  %02d  ", f.number) + std::string(f.text) + "\r\n";
    }
    return at_once(out);
}

Answer version(Machine& machine, const Words&) {
    return at_once(
        filled("BHKW-Regelung Version 7.42\r\nBetriebssystem Kern 5.1, Shell 2.3\r\nSeriennummer %06llu\r\n",
               static_cast<unsigned long long>(machine.seed() % 1'000'000U)));
}

Answer help(Machine&, const Words&) {
    std::string out = "Befehle:\r\n";
    for (const Command& command : commands()) {
        if (!command.help.empty()) out += padded(command.usage, 36) + std::string(command.help) + "\r\n";
    }
    return at_once(out);
}

constexpr Command table[] = {
    {"S", "S", "Systemzustand", system_state},
    {"L", "L", "Tasks auflisten", list_tasks},
    {"LU", "LU", "Tasks mit Speicher und Aufträgen", list_users},
    {"TERMINATE", "TERMINATE Task", "Task beenden", terminate},
    {"ACTIVATE", "ACTIVATE Task", "Task starten", activate},
    {"AFTER", "AFTER n SEC/MIN/HRS ACTIVATE Task", "Task später starten", after},
    {"ALL", "ALL n SEC/MIN/HRS Task", "Task regelmäßig starten", all},
    {"PREVENT", "PREVENT Task", "Einplanung löschen", prevent},
    {"DEFINE", "DEFINE.Name--Befehl", "Befehl vereinbaren", define},
    {"SH", "SH WATCHDOG", "Watchdog anzeigen", watchdog},
    {"SYSTEM_RESET", "SYSTEM_RESET", "Steuerung neu starten", system_reset},
    {"DIR", "DIR Laufwerk", "Dateien auflisten", directory},
    {"RM", "RM Laufwerk.Datei", "Datei löschen", remove_file},
    {"SYNC", "SYNC Laufwerk.", "Laufwerk sichern", sync},
    {"CLEARFLASH", "CLEARFLASH AD n SZ m", "Flash-Blöcke löschen", clear_flash},
    {"FLLOAD", "FLLOAD BANK n OFFS m Datei", "Flash brennen, mit -L vergleichen", load_flash},
    {"CLOCK", "CLOCK", "Uhrzeit", clock},
    {"DATE", "DATE", "Datum", date},
    {"TEMP", "TEMP", "Temperaturen", temperatures},
    {"LEISTUNG", "LEISTUNG", "Leistung und Netz", power},
    {"ZAEHLER", "ZAEHLER", "Zählerstände", meters},
    {"STOERUNGEN", "STOERUNGEN", "Störungen der letzten 14 Tage", faults},
    {"FERNBED", "FERNBED", "Bedienanzeige auf den PC", nothing},
    {"DUE3", "DUE3", "Viertelstundenwerte, einzeln", nothing},
    {"DUE4", "DUE4", "Viertelstundenwerte zu vier Stunden", nothing},
    {"DUE5", "DUE5", "die neuesten Viertelstundenwerte", nothing},
    {"VERS", "VERS", "Versionen", version},
    {"HELP", "HELP", "diese Liste", help},
    {"?", "?", "", help},
};

Words words_of(std::string_view text) {
    Words words;
    std::string word;
    for (const char c : upper_case(text) + ' ') {
        if (c != ' ') {
            word += c;
        } else if (!word.empty()) {
            words.push_back(repeatable(word));
            word.clear();
        }
    }
    return words;
}

bool is_definition(std::string_view text) {
    const std::size_t start = text.find_first_not_of(' ');
    return start != std::string_view::npos && upper_case(text.substr(start)).starts_with("DEFINE.");
}

} // namespace

std::span<const Command> commands() { return table; }

std::vector<std::string> parted(std::string_view text) {
    std::vector<std::string> parts;
    while (!text.empty()) {
        const std::string_view mark = is_definition(text) ? ";" : "--";
        const std::size_t cut = text.find(mark);
        const std::string_view part = text.substr(0, cut);
        if (part.find_first_not_of(' ') != std::string_view::npos) parts.emplace_back(part);
        text = cut == std::string_view::npos ? std::string_view() : text.substr(cut + mark.size());
    }
    return parts;
}

Answer run_command(Machine& machine, std::string_view text) {
    const Words words = words_of(text);
    if (words.empty()) return {};
    const std::string key = is_definition(text) ? "DEFINE" : words.front();
    for (const Command& command : table) {
        if (command.word == key) return command.answer(machine, words);
    }
    return refused("Befehl unbekannt: " + words.front());
}

} // namespace velorn::plant
