// One of the two tables of an archive in memory, year by year: a year takes memory once it was touched. Rows
// that were changed are marked, so that a save knows what to write.
#pragma once

#include "archive/archive_layout.h"
#include "runtime/large_memory.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace velorn {

struct ByteRange {
    std::int64_t offset = 0;
    std::int64_t length = 0;

    std::int64_t end() const { return offset + length; }
    bool operator==(const ByteRange&) const = default;
};

class YearTable {
  public:
    // A table with this many values in a row and nothing in it. 0 gives all memory back.
    void shape(int columns);

    int columns() const { return columns_; }
    std::int64_t year_size() const { // bytes
        return archive_layout::rows_of_a_year * columns_ * archive_layout::value_size;
    }

    bool loaded(int y) const { return years_[index(y)].values != nullptr; }
    // The year's memory, empty while it isn't loaded.
    std::span<float> year(int y) const;
    // Makes memory for a year; its values are anything.
    std::span<float> load(int y);

    // A year that could not be read: in memory only changed rows are of worth.
    void lose(int y) { years_[index(y)].lost = true; }
    bool lost(int y) const { return years_[index(y)].lost; }

    // Rows as row_of(y, m, d, q) counts them; their year is loaded.
    float value(std::int64_t row, int t) const { return at(row)[t]; }
    void set(std::int64_t row, int t, float value);
    std::span<const float> row(std::int64_t row) const {
        return {at(row), static_cast<std::size_t>(columns_)};
    }

    bool changed(std::int64_t row) const {
        return (marks_[static_cast<std::size_t>(row / 64)] >> static_cast<unsigned>(row % 64) & 1U) != 0;
    }
    // Bytes from the table's start that cover all changed rows, ascending. A few unchanged rows between two
    // changed ones are taken along, those of a lost year excepted.
    std::vector<ByteRange> changes() const;
    void forget_changes();

  private:
    struct Year {
        std::unique_ptr<float[], LargeMemory::Free> values;
        bool lost = false;
    };

    static std::size_t index(int y) { return static_cast<std::size_t>(y); }
    float* at(std::int64_t row) const;

    int columns_ = 0;
    std::array<Year, archive_layout::years> years_;
    std::vector<std::uint64_t> marks_; // a bit for each row
};

// The values of a new table: fill values, and zeros in the unused rows.
void fill_rows(std::int64_t first_row, int columns, std::span<float> values);

} // namespace velorn
