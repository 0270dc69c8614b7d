// The plain geometry of an archive file: a calendar cube of quarter-hour values for each track, every value
// at a place that follows from its date, and the sizes by which a file tells its tracks and its layout
// version.
//
//   daten | settings | rechdaten | texts of the calculated tracks        (the latter two in layout 2 only)
//
// Subscripts: y 0 to 9 (year less the archive's first), m 0 to 12, d 0 to 31, q 0 to 96, t 0 to spuranz. The
// zeros of m, d and q are allocated and unused. Each month has 31 days, so no rule for short ones is needed.
#pragma once

#include <array>
#include <cassert>
#include <cstdint>

namespace velorn::archive_layout {

inline constexpr int years = 10;
inline constexpr int months = 13;
inline constexpr int days = 32;
inline constexpr int quarters = 97;
inline constexpr int calculated_tracks = 5;

// A row is a quarter-hour with all its tracks.
inline constexpr std::int64_t rows_of_a_year = std::int64_t{months} * days * quarters;
inline constexpr std::int64_t rows = years * rows_of_a_year;
inline constexpr std::int64_t value_size = 4;

inline constexpr float fill_value = -997.0F; // nothing was ever stored here
inline constexpr float invalid_value = -999.0F;

constexpr std::int64_t row_of(int m, int d, int q) {
    assert(m >= 0 && m < months && d >= 0 && d < days && q >= 0 && q < quarters);
    return (std::int64_t{m} * days + d) * quarters + q;
}
constexpr std::int64_t row_of(int y, int m, int d, int q) {
    assert(y >= 0 && y < years);
    return y * rows_of_a_year + row_of(m, d, q);
}

// Bytes of a table with this many values in a row.
constexpr std::int64_t table_size(int columns) { return rows * columns * value_size; }
constexpr std::int64_t daten_size(int spuranz) { return table_size(spuranz + 1); }
inline constexpr std::int64_t rechdaten_size = table_size(calculated_tracks);

// Bytes from the start of the file, and from the start of rechdaten.
constexpr std::int64_t daten_offset(int spuranz, int y, int m, int d, int q, int t) {
    return value_size * (row_of(y, m, d, q) * (spuranz + 1) + t);
}
constexpr std::int64_t rechdaten_offset(int y, int m, int d, int q, int t) {
    return value_size * (row_of(y, m, d, q) * calculated_tracks + t);
}

struct SizeRow {
    std::int64_t first; // bytes
    std::int64_t last;
    std::int16_t spuranz;
    std::int16_t archivversion; // 0: stays as it was
};

inline constexpr std::array<SizeRow, 6> size_table{{
    {58'000'001, 58'999'999, 30, 2},
    {98'000'001, 98'999'999, 60, 1},
    {106'000'001, 106'999'999, 60, 2},
    {154'000'001, 155'999'999, 90, 2},
    // Kept: this row sets no version, so that in a window that had no archive before the calculated tracks
    // are rebuilt as for version 1, yet the file is written back in full.
    {203'000'001, 203'999'999, 120, 0},
    {251'000'001, 251'999'999, 150, 2},
}};

// The row that a file of this many bytes belongs to, nullptr if there is none.
constexpr const SizeRow* row_of_size(std::int64_t bytes) {
    for (const SizeRow& row : size_table) {
        if (bytes >= row.first && bytes <= row.last) return &row;
    }
    return nullptr;
}

static_assert(daten_size(60) == 98'458'880);
static_assert(rechdaten_size == 8'070'400);

} // namespace velorn::archive_layout
