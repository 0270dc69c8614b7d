// Archives to test with, and a plain second make of the file's form: it holds everything in memory at once,
// reads the whole file and writes the whole file.
#pragma once

#include "archive/archive.h"
#include "support/block_files.h"

#include <random>
#include <string>
#include <vector>

namespace velorn::test {

inline constexpr std::string_view archive_path = "c:\\daten\\werk.dat";
inline constexpr DateTime some_day{2026, 11, 21};

// A file with the settings of a new archive and zeros in all cells, which costs nothing.
void make_sparse_archive(BlockFiles& files, std::int16_t spuranz, int layout,
                         std::string_view path = archive_path);

struct NaiveArchive {
    int spuranz = 0;
    std::vector<float> daten;
    std::vector<float> rechdaten;
    std::vector<Variant> settings; // behind daten, reserves included
    std::vector<Variant> texts;    // behind rechdaten
    std::string file;              // as it lies on the disk

    void read(std::string bytes, int tracks, int layout);
    // Over the file, which is never cut.
    void write();

    float& cell(int y, int m, int d, int q, int t) { return daten[at(y, m, d, q, t, spuranz + 1)]; }
    float& calculated(int y, int m, int d, int q, int t) { return rechdaten[at(y, m, d, q, t, 5)]; }

  private:
    static std::size_t at(int y, int m, int d, int q, int t, int columns);
    void calculated_from_tracks();
};

// All bytes of a file.
std::string whole(const BlockFiles& files, std::string_view path = archive_path);

} // namespace velorn::test
