#include "archive/archive_file.h"

#include "archive/archive_layout.h"
#include "archive/year_table.h"

#include <algorithm>
#include <bit>
#include <vector>

namespace velorn {

using namespace archive_layout;

static_assert(std::endian::native == std::endian::little, "tables are read as they stand in the file");

namespace {

bool is_missing(const Failure& failure) {
    return failure.is(RunTimeError::file_not_found) || failure.is(RunTimeError::path_not_found);
}

} // namespace

std::int64_t ArchiveFile::rechdaten_at() const { return daten_size(spuranz) + settings_length; }

Result<std::unique_ptr<BinaryFile>> open_unchanged(Files& files, const ArchiveFile& file) {
    Result<std::unique_ptr<BinaryFile>> opened = files.open(file.path, OpenMode::read);
    if (!opened) {
        if (file.length == 0 && is_missing(opened.failure())) return std::unique_ptr<BinaryFile>();
        return opened;
    }
    const Result<std::int64_t> length = (*opened)->length();
    if (!length) return length.failure();
    if (*length != file.length) return failure(RunTimeError::path_file_access);
    return opened;
}

Outcome ArchiveReader::open() {
    if (open_) return {};
    Result<std::unique_ptr<BinaryFile>> opened = open_unchanged(files_, file_);
    if (!opened) return opened.failure();
    open_ = std::move(opened).value();
    return {};
}

Result<std::string> ArchiveReader::bytes(std::int64_t offset, std::int64_t count) {
    if (const Outcome opened = open(); !opened) return opened.failure();
    return open_ ? open_->read(offset + 1, count) : Result<std::string>(std::string());
}

Outcome ArchiveReader::table(std::int64_t at, int columns, std::int64_t first_row, std::span<float> values) {
    const auto size = static_cast<std::int64_t>(values.size()) * value_size;
    const std::int64_t begin = at + first_row * columns * value_size;
    const std::int64_t there =
        std::clamp<std::int64_t>(file_.usable - begin, 0, size) / value_size * value_size;
    if (there < size) fill_rows(first_row, columns, values);
    if (there == 0) return {};
    if (const Outcome opened = open(); !opened) return opened;
    if (!open_) return failure(RunTimeError::file_not_found);
    const std::span<char> bytes(reinterpret_cast<char*>(values.data()), static_cast<std::size_t>(there));
    const Result<std::int64_t> got = open_->read_into(begin + 1, bytes);
    if (!got) return got.failure();
    return *got == there ? Outcome{} : Outcome{failure(RunTimeError::past_end_of_file)};
}

Outcome ArchiveReader::daten(std::int64_t first_row, std::span<float> values) {
    return table(0, file_.spuranz + 1, first_row, values);
}

Outcome ArchiveReader::rechdaten(std::int64_t first_row, std::span<float> values) {
    switch (file_.calculated) {
    case ArchiveFile::Calculated::stored:
        return table(file_.rechdaten_at(), calculated_tracks, first_row, values);
    case ArchiveFile::Calculated::from_tracks: return from_tracks(first_row, values);
    case ArchiveFile::Calculated::none: break;
    }
    fill_rows(first_row, calculated_tracks, values);
    return {};
}

Outcome ArchiveReader::from_tracks(std::int64_t first_row, std::span<float> values) {
    fill_rows(first_row, calculated_tracks, values);
    const auto width = static_cast<std::size_t>(file_.spuranz) + 1;
    const auto count = static_cast<std::int64_t>(values.size() / calculated_tracks);
    std::vector<float> tracks(static_cast<std::size_t>(std::min<std::int64_t>(count, quarters)) * width);
    for (std::int64_t done = 0; done < count;) {
        const std::int64_t now = std::min<std::int64_t>(count - done, quarters);
        const std::span<float> rows_now(tracks.data(), static_cast<std::size_t>(now) * width);
        if (const Outcome read = daten(first_row + done, rows_now); !read) return read;
        for (std::int64_t i = 0; i < now; ++i) {
            float* target = values.data() + (done + i) * calculated_tracks;
            // An unused row keeps its zeros, whatever stands in the unused rows of daten.
            if (std::bit_cast<std::uint32_t>(target[2]) == 0) continue;
            const float* source = rows_now.data() + static_cast<std::size_t>(i) * width;
            target[0] = source[0];
            if (file_.spuranz > 59) target[1] = source[60];
        }
        done += now;
    }
    return {};
}

} // namespace velorn
