// What stands in an archive file behind each of its two tables: the texts of the tracks and all settings of
// the evaluation, as tagged values one after the other. Their lengths vary, so they are read and written as a
// whole.
//
// A value that is missing or cut off reads as Empty, and so does everything behind it. So does everything
// behind an unknown tag.
#pragma once

#include "runtime/calendar.h"
#include "runtime/variant.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velorn {

// Names are those of the system. Any numeric tag may stand in a number's place.
struct ArchiveSettings {
    // Index 0 to spuranz.
    std::vector<Variant> spurnamen;
    std::vector<Variant> spureinheiten;
    std::vector<Variant> spurfarben;
    std::vector<Variant> spursichtbar;
    std::vector<Variant> spurrechts;

    Variant yremax, ylimax, ylimin, ylischritt, yreschritt; // the axes
    Variant archivflag;                                     // carried along
    Variant ansicht;                                        // 1 day, 2 week, 3 month, 4 year
    Variant startjahr;                                      // calendar year of y = 0
    Variant exportspuren;                                   // tracks in a data set of the controller
    Variant archivtag, archivmonat, archivjahr;             // the day shown at the last close
    Variant archivstand;                                    // stamp of the settings
    Variant archivwert1, archivwert2, archivwert3;          // carried along
    Variant faktor1;

    // Index 1 to 10; 0 is carried along.
    std::array<Variant, 11> formel1spuren, formel1ops, formel2spuren, formel2ops;

    Variant bname1, bname2, faktor2;
    Variant ganzjahr, jahrespitze, jahreszahl, jahresanteil; // the analytic curve

    std::array<Variant, 6> reserve1_6; // carried along

    // The calculated tracks, index 0 to 4; 5 is carried along.
    std::array<Variant, 6> bspurnamen, bspureinheiten, bspurfarben, bspursichtbar, bspurrechts;
};

// The settings of a new file, before the upgrades.
ArchiveSettings new_archive_settings(std::int16_t spuranz, std::int16_t startjahr, const DateTime& today);

// The texts of calculated tracks that nobody has set.
void reset_calculated_texts(ArchiveSettings& settings);

// The formula tables that a new file and an older one get.
void upgrade_formulas(ArchiveSettings& settings);

// Settings of the analytic curve that an older file gets.
void reset_analytic_curve(ArchiveSettings& settings);

// Reads what stands behind daten, for spuranz tracks, and gives the bytes that it takes in `length`. Without
// reserves (layout 1) these become Empty.
Decoded decode_settings(std::string_view bytes, std::int16_t spuranz, bool with_reserves,
                        ArchiveSettings& settings, std::size_t& length);
// The same for what stands behind rechdaten.
Decoded decode_calculated_texts(std::string_view bytes, ArchiveSettings& settings, std::size_t& length);

// Always layout 2.
std::string encode_settings(const ArchiveSettings& settings);
std::string encode_calculated_texts(const ArchiveSettings& settings);

} // namespace velorn
