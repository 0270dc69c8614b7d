// velorn.ini: what differs from machine to machine and has no place in the settings files. A UTF-8 text with
// sections and key=value lines in the program's folder, written with comments and defaults at the first start
// and not rewritten afterwards, except for [Fenster].
#pragma once

#include "runtime/failure.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace velorn {

class VelornIni {
  public:
    // Reads the file; writes it with its defaults first if it is missing. A damaged line is skipped. A file
    // that can't be read or written gives the defaults, and one that can't be read stays untouched.
    static VelornIni load(const std::filesystem::path& file);

    // From text, for tests.
    static VelornIni parse(std::string_view utf8);

    // The text that a first start writes.
    static std::string default_text();

    // [Gateway] adresse, port1 (23), port2 (24)
    std::string gateway_address() const;
    int gateway_port(int modem) const; // modem 1 or 2

    // [Abholung] logordner; UTF-8, as written; empty means the default.
    std::string collection_log_folder() const;

    // [Laufwerke]: lower-case letter -> folder.
    std::map<char, std::string> drives() const;

    // [Anschluesse] com1= ...: the device of a port number, nothing where none is named. Range 1 to 255.
    std::optional<std::string> device(int com_port) const;

    // [Fenster]: places and sizes of windows by name, as "x,y,breite,hoehe".
    std::optional<std::string> window_place(std::string_view window) const;

    // Remembers a place and rewrites that line of the file, leaving every other byte as it stands, also what
    // somebody has edited since it was read. A kill leaves the old file or the new one. Error 5 for a name or
    // place that would not come back from a line.
    Outcome set_window_place(std::string_view window, std::string_view place);

    // The raw value of a key; section and key in any case.
    std::optional<std::string> value(std::string_view section, std::string_view key) const;

  private:
    std::filesystem::path file_;                // empty when parsed from text
    std::map<std::string, std::string> values_; // "section/key" in lower case
};

} // namespace velorn
