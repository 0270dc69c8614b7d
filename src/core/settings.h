// What the three settings files keep: einst.par, datpfad.par and lan.par, in the program's folder. Their
// values live here as Variants, since the tag that was read is kept until the value changes.
#pragma once

#include "runtime/variant.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace velorn {

struct Settings {
    // einst.par
    std::array<Variant, 5> letztepfade;  // remembered folders of file dialogs; 4 is that of the LOG file
    std::array<Variant, 5> letztepfade2; // remembered folders for .psr load commands
    Variant fbschrift;                   // font of the mirrored display
    Variant fbschriftgr;                 // its size, points
    Variant comsettings;                 // MSComm1.Settings
    Variant comport;                     // MSComm1.CommPort
    Variant comhandshake;                // MSComm1.Handshaking
    Variant comecho;                     // echo option of the port settings
    Variant anrufer;                     // name of the caller
    Variant modeminit;                   // modem initialisation, without the leading "AT"
    Variant telscroll;                   // first visible phone book row
    Variant einstversion;
    Variant telefonpfad;              // path of the phone book
    std::array<Variant, 13> ftast;    // texts of F1 to F12, index 1 to 12
    std::array<Variant, 13> altftast; // the same with Ctrl held
    Variant einstversion2;
    std::int16_t telzeile = 0;            // selected phone book row, -1 for none
    Variant termschrift;                  // font of the terminal
    Variant termschriftgr;                // its size, points
    Variant fbfarbe;                      // above 0: mirrored display blue and yellow
    Variant zeichenabstand;               // cell width per point of font size, 0.75 to 1.25
    Variant korrinv;                      // correction of the inverse boxes in pixels, -5 to 5
    Variant dispaufpfad;                  // path of the display snapshots
    Variant fbautostart;                  // above 0: remote control starts by itself after CONNECT
    Variant vorwahlan;                    // 1: dial with the prefix
    Variant vorwahl;                      // dialling prefix
    std::array<Variant, 11> letztepfade3; // remembered folders of backup, restore and send commands
    Variant neustartzaehler;              // program starts, up to 30000

    // datpfad.par
    std::array<Variant, 601> datpfade;

    // lan.par
    Variant lanport; // TCP port
    Variant lanreserve;
    Variant lanaktiv; // 1: TCP is the chosen way
    Variant loginuser, loginpass;
    Variant loginauto;              // true: log in by itself
    Variant autoholnr;              // phone book index where a collection goes on, 0 for none
    Variant autoholpfad;            // path of the collection log
    std::array<Variant, 4> lanfrei; // lanfrei1 to lanfrei4, kept as they stand
};

// A field of a file, in file order. Most are runs of Variants; telzeile is the one plain i16.
struct SettingsField {
    std::string_view name;
    std::span<Variant> (*variants)(Settings&); // null for the plain one
    std::int16_t& (*plain)(Settings&);         // null for all others
};

std::span<const SettingsField> einst_fields();
std::span<const SettingsField> datpfad_fields();
std::span<const SettingsField> lan_fields();

// Values that stand as they are in the first eleven fields and the phone book's path when the settings are
// recovered.
void set_recovery_values(Settings& settings, std::string_view apppfad);

// The value that a field takes when what stands in it is refused a second time.
Variant default_of(std::string_view field);

} // namespace velorn
