#include "runtime/velorn_ini.h"

#include "runtime/disk_files.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <memory>
#include <system_error>
#include <utility>
#include <vector>

namespace velorn {

namespace {

constexpr std::int64_t largest_file = std::int64_t{1} << 20; // beyond that it is none of ours

constexpr std::string_view defaults = R"(; Velorn: was von Rechner zu Rechner verschieden ist.
; Zeilen mit ; am Anfang sind Erklärungen. Pfade dürfen absolut sein oder unterhalb des Programmordners liegen.

[Gateway]
; Name oder IP-Adresse des Gateways mit den beiden Modems, und die Anschlüsse (Ports) der Modems.
adresse=
port1=23
port2=24

[Abholung]
; Ordner für die Protokolle der automatischen Datenabholung; leer: der übliche Netzwerkpfad.
logordner=

[Laufwerke]
; Wohin die Laufwerksbuchstaben gespeicherter Pfade führen (nicht unter Windows).
; leer: laufwerke/c und so weiter unterhalb des Programmordners.
c=
s=

[Anschluesse]
; Welches Gerät hinter COM1, COM2, ... steckt (nicht unter Windows), zum Beispiel com5=/dev/ttyUSB0.
; Ohne Eintrag: COM1 bis COM4 sind die eingebauten Schnittstellen, ab COM5 die USB-Adapter der Reihe nach.
com1=
com5=

[Fenster]
; Größe und Lage der Fenster; schreibt Velorn selbst.
)";

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(" \t\r");
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(" \t\r") + 1 - begin);
}

std::string lower(std::string_view text) {
    std::string result{text};
    for (char& c : result) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 0x20);
    }
    return result;
}

// One line of the file, where it stands and what it means.
struct Line {
    std::size_t begin;
    std::size_t end; // before its line feed
    std::string section;
    std::string key; // empty: not a key=value line
    std::string value;
};

std::vector<Line> lines_of(std::string_view text) {
    std::vector<Line> lines;
    std::string section;
    std::size_t begin = text.starts_with("\xEF\xBB\xBF") ? 3 : 0;
    while (begin < text.size()) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::string_view line = trimmed(text.substr(begin, end - begin));
        Line found{begin, end, {}, {}, {}};
        if (line.starts_with('[') && line.ends_with(']')) {
            section = lower(trimmed(line.substr(1, line.size() - 2)));
        } else if (const std::size_t equals = line.find('=');
                   equals != std::string_view::npos && !line.starts_with(';') && !line.starts_with('#')) {
            found.key = lower(trimmed(line.substr(0, equals)));
            found.value = trimmed(line.substr(equals + 1));
        }
        found.section = section;
        lines.push_back(std::move(found));
        begin = end + 1;
    }
    return lines;
}

std::optional<int> number_in(const std::string& text, int least, int most) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size() || number < least || number > most) {
        return std::nullopt;
    }
    return number;
}

std::map<std::string, std::string> values_of(std::string_view text) {
    std::map<std::string, std::string> values;
    for (const Line& line : lines_of(text)) {
        if (!line.key.empty()) values.try_emplace(line.section + '/' + line.key, line.value);
    }
    return values;
}

bool comes_back(std::string_view window, std::string_view place) {
    const auto found = values_of("[fenster]\n" + std::string(window) + '=' + std::string(place));
    return found.size() == 1 && !window.empty() &&
           *found.begin() == std::pair<const std::string, std::string>("fenster/" + lower(window), place);
}

// The text with the window's line changed, or added below the last line of its section.
std::string with_window_place(std::string text, std::string_view window, std::string_view place) {
    const std::string line_text = std::string(window) + '=' + std::string(place);
    const std::string eol = text.find("\r\n") != std::string::npos ? "\r\n" : "\n";
    std::optional<std::size_t> section_end;
    for (const Line& line : lines_of(text)) {
        if (line.section != "fenster") continue;
        if (line.key == lower(window)) {
            const bool cr = line.end > line.begin && text[line.end - 1] == '\r';
            return text.replace(line.begin, line.end - line.begin - (cr ? 1U : 0U), line_text);
        }
        const std::string_view whole = std::string_view(text).substr(line.begin, line.end - line.begin);
        if (!trimmed(whole).empty()) section_end = line.end;
    }
    if (section_end && *section_end < text.size()) return text.insert(*section_end + 1, line_text + eol);
    if (!text.empty() && text.back() != '\n') text += eol;
    if (!section_end) text += "[Fenster]" + eol;
    return text + line_text + eol;
}

Result<std::string> read_native(const std::filesystem::path& path) {
    Result<std::unique_ptr<BinaryFile>> file = open_native(path, OpenMode::read);
    if (!file) return file.failure();
    const Result<std::int64_t> length = (*file)->length();
    if (!length) return length.failure();
    if (*length > largest_file) return failure(RunTimeError::path_file_access);
    return (*file)->read(1, *length);
}

// The neighbour first, so that a full disk or a kill leaves the old file.
Outcome put_in_place(const std::filesystem::path& path, std::string_view text) {
    std::filesystem::path neighbour = path;
    neighbour += ".neu";
    Outcome done;
    {
        Result<std::unique_ptr<BinaryFile>> file = open_native(neighbour, OpenMode::create);
        if (!file) return file.failure();
        done = (*file)->write(1, text);
        if (done) done = (*file)->sync();
    }
    if (done) done = replace_native(neighbour, path);
    std::error_code ignored; // what went wrong first is what counts
    if (!done) std::filesystem::remove(neighbour, ignored);
    return done;
}

} // namespace

VelornIni VelornIni::load(const std::filesystem::path& file) {
    const Result<std::string> text = read_native(file);
    VelornIni ini = parse(text ? std::string_view(*text) : defaults);
    ini.file_ = file;
    // Without it a technician has nothing to edit, but the program runs all the same.
    if (!text && text.failure().is(RunTimeError::file_not_found)) (void)put_in_place(file, defaults);
    return ini;
}

VelornIni VelornIni::parse(std::string_view utf8) {
    VelornIni ini;
    ini.values_ = values_of(utf8);
    return ini;
}

std::string VelornIni::default_text() { return std::string(defaults); }

std::optional<std::string> VelornIni::value(std::string_view section, std::string_view key) const {
    const auto found = values_.find(lower(section) + '/' + lower(key));
    if (found == values_.end()) return std::nullopt;
    return found->second;
}

std::string VelornIni::gateway_address() const { return value("gateway", "adresse").value_or(""); }

int VelornIni::gateway_port(int modem) const {
    const int usual = modem == 2 ? 24 : 23;
    const std::optional<std::string> text = value("gateway", modem == 2 ? "port2" : "port1");
    return text ? number_in(*text, 1, 65535).value_or(usual) : usual;
}

std::string VelornIni::collection_log_folder() const { return value("abholung", "logordner").value_or(""); }

std::map<char, std::string> VelornIni::drives() const {
    std::map<char, std::string> result;
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        const std::optional<std::string> folder = value("laufwerke", std::string(1, letter));
        if (folder && !folder->empty()) result[letter] = *folder;
    }
    return result;
}

std::optional<std::string> VelornIni::device(int com_port) const {
    if (com_port < 1 || com_port > 255) return std::nullopt;
    std::optional<std::string> named = value("anschluesse", "com" + std::to_string(com_port));
    if (named && named->empty()) return std::nullopt;
    return named;
}

std::optional<std::string> VelornIni::window_place(std::string_view window) const {
    return value("fenster", window);
}

Outcome VelornIni::set_window_place(std::string_view window, std::string_view place) {
    if (!comes_back(window, place)) return failure(RunTimeError::invalid_call);
    values_["fenster/" + lower(window)] = place;
    if (file_.empty()) return {};

    const Result<std::string> text = read_native(file_);
    if (!text && !text.failure().is(RunTimeError::file_not_found)) return text.failure();
    const std::string old = text ? *text : std::string(defaults);
    const std::string changed = with_window_place(old, window, place);
    return text && changed == old ? Outcome{} : put_in_place(file_, changed);
}

} // namespace velorn
