// The phone book in memory: all that the program knows about its sites. It lives for the whole run; which
// entry is selected stands in Module1::telindex.
//
// There is no mark for a used entry: a line is blank or it isn't. One that was never used holds Empty values,
// one that was inserted empty texts.
#pragma once

#include "runtime/variant.h"

#include <array>
#include <cstdint>
#include <vector>

namespace velorn {

// An entry of the older layout. Carried through the file and never shown.
struct PhoneEntryOld {
    std::int16_t pos = 0;
    Variant name, nummer, visdatei, protdatei, bemerkung;
    std::int16_t autoflag = 0;
    std::int32_t reserve1 = 0, reserve2 = 0;
    double datum = 0; // days since 30.12.1899
};

struct PhoneEntry {
    std::int16_t pos = 0;      // its index when it was inserted; nothing reads it
    Variant name;              // the site
    Variant nummer;            // phone number, or host name or address
    Variant visdatei;          // path of the visualisation program
    Variant protdatei;         // path of the protocol file
    Variant bemerkung;         // remark; keywords in it set speed and TCP port
    std::int16_t autoflag = 0; // 8: takes part in automatic collection; else 0
    std::int32_t reserve1 = 0, reserve2 = 0;
    double datum = 0;                     // days since 30.12.1899; nothing reads it
    Variant viertdatei;                   // path of the quarter-hour archive
    Variant aufnahme;                     // the site's display snapshots
    std::array<Variant, 9> reserviert1_9; // stay at their index whatever happens to the entry
};

struct Telefonbuch {
    static constexpr int entries = 2011;    // in the file
    static constexpr int last_shown = 2000; // the last index that can be reached
    static constexpr int old_entries = 601;
    static constexpr int snapshots = 601;
    static constexpr std::int16_t collected = 8; // autoflag

    std::vector<PhoneEntry> telefonbuch = std::vector<PhoneEntry>(entries);
    std::vector<PhoneEntryOld> altbuch = std::vector<PhoneEntryOld>(old_entries);
    std::vector<Variant> dispaufnahmen = std::vector<Variant>(snapshots); // read and written, never used

    PhoneEntry& operator[](int index) { return telefonbuch[static_cast<std::size_t>(index)]; }
    const PhoneEntry& operator[](int index) const { return telefonbuch[static_cast<std::size_t>(index)]; }
};

} // namespace velorn
