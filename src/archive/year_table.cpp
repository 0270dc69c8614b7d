#include "archive/year_table.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace velorn {

using namespace archive_layout;

namespace {

// Less than what the next range of its own would cost.
constexpr std::int64_t bytes_taken_along = 1024;

} // namespace

void YearTable::shape(int columns) {
    columns_ = columns;
    for (Year& year : years_) year = {};
    marks_ = columns == 0 ? std::vector<std::uint64_t>()
                          : std::vector<std::uint64_t>(static_cast<std::size_t>(rows / 64 + 1));
}

std::span<float> YearTable::year(int y) const {
    const Year& year = years_[index(y)];
    return {year.values.get(), year.values ? static_cast<std::size_t>(rows_of_a_year * columns_) : 0};
}

std::span<float> YearTable::load(int y) {
    const auto count = static_cast<std::size_t>(rows_of_a_year * columns_);
    years_[index(y)].values = LargeMemory::floats(count);
    return year(y);
}

float* YearTable::at(std::int64_t row) const {
    const Year& year = years_[static_cast<std::size_t>(row / rows_of_a_year)];
    assert(year.values);
    return year.values.get() + row % rows_of_a_year * columns_;
}

void YearTable::set(std::int64_t row, int t, float value) {
    float& cell = at(row)[t];
    if (std::bit_cast<std::uint32_t>(cell) == std::bit_cast<std::uint32_t>(value) &&
        !years_[static_cast<std::size_t>(row / rows_of_a_year)].lost)
        return;
    cell = value;
    marks_[static_cast<std::size_t>(row / 64)] |= std::uint64_t{1} << static_cast<unsigned>(row % 64);
}

std::vector<ByteRange> YearTable::changes() const {
    const std::int64_t row_size = columns_ * value_size;
    std::vector<ByteRange> ranges;
    for (std::size_t word = 0; word < marks_.size(); ++word) {
        for (std::uint64_t bits = marks_[word]; bits != 0; bits &= bits - 1) {
            const std::int64_t row = static_cast<std::int64_t>(word) * 64 + std::countr_zero(bits);
            const std::int64_t offset = row * row_size;
            const std::int64_t y = row / rows_of_a_year;
            const std::int64_t taken = lost(static_cast<int>(y)) ? 0 : bytes_taken_along;
            const bool goes_on = !ranges.empty() && ranges.back().offset / year_size() == y &&
                                 offset - ranges.back().end() <= taken;
            if (!goes_on) ranges.push_back({offset, 0});
            ranges.back().length = offset + row_size - ranges.back().offset;
        }
    }
    return ranges;
}

void YearTable::forget_changes() { std::ranges::fill(marks_, 0); }

void fill_rows(std::int64_t first_row, int columns, std::span<float> values) {
    // Copying is what a compiler does fast whatever it is told to optimise for.
    constexpr std::size_t longest = 256;
    static constexpr std::array<float, longest> filled = [] {
        std::array<float, longest> row{};
        row.fill(fill_value);
        return row;
    }();
    static constexpr std::array<float, longest> zeros{};
    const auto width = static_cast<std::size_t>(columns);
    assert(width <= longest);
    std::int64_t row = first_row;
    for (std::size_t done = 0; done < values.size(); done += width, ++row) {
        const bool used =
            row % quarters != 0 && row / quarters % days != 0 && row / quarters / days % months != 0;
        std::memcpy(values.data() + done, used ? filled.data() : zeros.data(), width * sizeof(float));
    }
}

} // namespace velorn
