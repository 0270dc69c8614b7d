#include "runtime/velorn_ini.h"

#include "runtime/text.h"

#include <charconv>
#include <fstream>
#include <sstream>
#include <vector>

namespace velorn {

namespace {

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

} // namespace

VelornIni VelornIni::load(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (in) {
        std::ostringstream content;
        content << in.rdbuf();
        VelornIni ini = parse(content.str());
        ini.file_ = file;
        return ini;
    }
    std::ofstream out(file, std::ios::binary);
    out << defaults;
    VelornIni ini = parse(defaults);
    ini.file_ = file;
    return ini;
}

VelornIni VelornIni::parse(std::string_view utf8) {
    VelornIni ini;
    ini.text_ = utf8;
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
    std::optional<std::string> named = value("anschluesse", "com" + std::to_string(com_port));
    if (named && named->empty()) return std::nullopt;
    return named;
}

std::optional<std::string> VelornIni::window_place(std::string_view window) const {
    return value("fenster", window);
}

Outcome VelornIni::set_window_place(std::string_view window, std::string_view place) {
    const std::string line_text = std::string(window) + '=' + std::string(place);
    const std::string eol = text_.find("\r\n") != std::string::npos ? "\r\n" : "\n";
    std::optional<std::size_t> section_end;
    bool written = false;
    for (const Line& line : lines_of(text_)) {
        if (line.section != "fenster") continue;
        section_end = line.end;
        if (line.key != lower(window)) continue;
        const bool cr = line.end > line.begin && text_[line.end - 1] == '\r';
        text_.replace(line.begin, line.end - line.begin - (cr ? 1U : 0U), line_text);
        written = true;
        break;
    }
    if (!written && section_end) {
        const bool at_end = *section_end >= text_.size();
        text_.insert(std::min(*section_end + 1, text_.size()), (at_end ? eol : "") + line_text + eol);
    } else if (!written) {
        if (!text_.empty() && text_.back() != '\n') text_ += eol;
        text_ += "[Fenster]" + eol + line_text + eol;
    }
    values_["fenster/" + lower(window)] = place;
    if (file_.empty()) return {};

    // The neighbour first, so that a full disk leaves the old file.
    std::filesystem::path neighbour = file_;
    neighbour += ".neu";
    {
        std::ofstream out(neighbour, std::ios::binary | std::ios::trunc);
        out << text_;
        out.flush();
        if (!out) return failure(RunTimeError::path_file_access);
    }
    std::error_code error;
    std::filesystem::rename(neighbour, file_, error);
    return error ? Outcome{failure(RunTimeError::path_file_access)} : Outcome{};
}

} // namespace velorn
