// The phone book for the plant's own sites, as the service PC reads it: telefon.par and, beside it, one
// protocol file for each site. The plant lays the bytes down itself, so that the program's reading of them is
// measured by another hand.
//
// telefon.par has no header: 601 records of an older layout, then 2011 of the present one, field after field
// without padding. Sites stand from index 1 on in the order of the directory; index 0 stays free, because the
// program puts a sample line there at its first start. All other records were never used.
#pragma once

#include "plant/directory.h"
#include "runtime/calendar.h"
#include "runtime/failure.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace velorn::plant {

struct BookPlaces {
    bool protocols = false;    // the sites have protocol files
    std::string visualisation; // stored path, cp1252, of the pictured site's program; empty: it has none
    bool archives = false;     // the sites that are collected have archives
};

// Where the service PC finds the protocol files.
constexpr std::string_view protocol_folder = "c:\\protokolle";
// ... and the archives.
constexpr std::string_view archive_folder = "c:\\archive";

// The site in the demo's directory that has a visualisation: on TCP, above the ports that need rights, and
// without a login.
constexpr std::size_t pictured_site = 2;

// The name of a site's protocol file, ASCII: "klaerwerk-sued.txt".
std::string protocol_name(const Site& site);

// The name of its archive: "klaerwerk-sued.dat".
std::string archive_name(const Site& site);

// Whether the site takes part in the unattended collection.
bool takes_part(const Site& site);

// What the service PC has to know of a site beyond its number, cp1252: the keywords for port and speed, and
// what becomes of a call.
std::string remark(const Site& site);

// The bytes of telefon.par.
std::string phone_book(const Directory& directory, const BookPlaces& places);

// What stands in a new protocol file: four bytes of tag and length, the sentence with the date, CR LF.
std::string first_protocol_line(const DateTime& today);

struct BookOrder {
    std::string file;          // UTF-8, path of this machine
    std::string protocols;     // the folder that the service PC knows as protocol_folder; empty: no files
    std::string visualisation; // stored path, cp1252
    bool archives = false;     // the entries name their archives, see demo_archives.h
};

// Writes what isn't there yet and makes the folders for it; a file that holds anything stays as it is,
// because somebody has worked with it. Gives the paths of the files that were written.
Result<std::vector<std::string>> write_phone_book(const Directory& directory, const BookOrder& order,
                                                  const DateTime& today);

} // namespace velorn::plant
