// Saving: what has changed goes through a journal into the file; where that is most of it, a new file takes
// the old one's place.
#include "archive/archive.h"
#include "archive/archive_journal.h"

#include <algorithm>

namespace velorn {

using namespace archive_layout;

namespace {

constexpr std::int64_t piece = 256 * 1024;

std::string_view bytes_of_values(std::span<const float> values) {
    return {reinterpret_cast<const char*>(values.data()), values.size_bytes()};
}

void append(std::vector<ByteRange>& ranges, std::int64_t offset, std::int64_t length) {
    if (length <= 0) return;
    if (!ranges.empty() && ranges.back().end() == offset)
        ranges.back().length += length;
    else
        ranges.push_back({offset, length});
}

// The stretch from the first to the last byte in which the new text differs from what stands there.
void append_difference(std::vector<ByteRange>& ranges, std::int64_t offset, std::string_view old,
                       std::string_view text) {
    const std::size_t common = std::min(old.size(), text.size());
    const auto first = static_cast<std::size_t>(
        std::mismatch(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(common), old.begin()).first -
        text.begin());
    std::size_t last = text.size();
    if (old.size() == text.size()) {
        while (last > first && old[last - 1] == text[last - 1]) --last;
    }
    append(ranges, offset + static_cast<std::int64_t>(first), static_cast<std::int64_t>(last - first));
}

} // namespace

// The file as it is to be.
struct Archive::Image {
    std::string settings;
    std::string texts;
    std::int64_t settings_at = 0;
    std::int64_t rechdaten_at = 0;
    std::int64_t texts_at = 0;
    std::int64_t size = 0;
    std::vector<ByteRange> changes; // where it differs from the file on the disk
};

Outcome Archive::save() {
    if (!open_) return {};
    if (unreadable_) return *unreadable_;
    if (const Outcome finished = finish_journal(); !finished) return finished;
    Image image;
    image.settings = encode_settings(*this);
    image.texts = encode_calculated_texts(*this);
    image.settings_at = daten_size(file_.spuranz);
    image.rechdaten_at = image.settings_at + static_cast<std::int64_t>(image.settings.size());
    image.texts_at = image.rechdaten_at + rechdaten_size;
    image.size = image.texts_at + static_cast<std::int64_t>(image.texts.size());
    if (const Outcome found = find_changes(image); !found) return found;
    std::int64_t changed = 0;
    for (const ByteRange& range : image.changes) changed += range.length;
    if (changed == 0) return {};
    // Two programs that save at the same moment would write the same neighbour files.
    const Result<std::unique_ptr<FileLock>> turn = files_.lock(new_file_path());
    if (!turn && turn.failure().is(RunTimeError::file_already_open)) return turn.failure();
    // What goes through the journal is written twice. And a file that is between two sizes could be taken for
    // another layout.
    const bool of_one_row = row_of_size(file_.length) == row_of_size(std::max(file_.length, image.size));
    return of_one_row && 2 * changed <= image.size ? save_by_journal(image) : save_by_new_file(image);
}

Outcome Archive::find_changes(Image& image) {
    ArchiveReader reader(files_, file_);
    if (file_.usable < image.settings_at) {
        image.changes = {{0, image.size}};
        // Whoever has changed or deleted the file meanwhile is to be noticed here as well.
        const auto there = open_unchanged(files_, file_);
        return there ? Outcome{} : Outcome{there.failure()};
    }
    image.changes = daten_.changes();
    const bool in_place = file_.calculated == ArchiveFile::Calculated::stored &&
                          file_.rechdaten_at() == image.rechdaten_at && file_.usable >= image.texts_at;
    if (!in_place) {
        append(image.changes, image.settings_at, image.size - image.settings_at);
        return {};
    }
    const Result<std::string> settings =
        reader.bytes(image.settings_at, static_cast<std::int64_t>(image.settings.size()));
    if (!settings) return settings.failure();
    append_difference(image.changes, image.settings_at, *settings, image.settings);
    for (const ByteRange& range : rechdaten_.changes())
        append(image.changes, image.rechdaten_at + range.offset, range.length);
    const Result<std::string> texts =
        reader.bytes(image.texts_at, static_cast<std::int64_t>(image.texts.size()));
    if (!texts) return texts.failure();
    append_difference(image.changes, image.texts_at, *texts, image.texts);
    return {};
}

// Hands the bytes of a stretch of a table to `sink`. A year that isn't in memory is wanted as a whole.
Outcome Archive::write_table(ArchiveReader& reader, YearTable& table, ByteRange range, const Sink& sink) {
    const std::int64_t row_size = table.columns() * value_size;
    const bool is_daten = &table == &daten_;
    while (range.length > 0) {
        const auto y = static_cast<int>(range.offset / table.year_size());
        const std::int64_t within = range.offset - y * table.year_size();
        std::int64_t count = std::min(range.length, table.year_size() - within);
        if (table.loaded(y) && (!table.lost(y) || count < table.year_size())) {
            const std::string_view year = bytes_of_values(table.year(y));
            if (const Outcome put =
                    sink(year.substr(static_cast<std::size_t>(within), static_cast<std::size_t>(count)));
                !put)
                return put;
        } else {
            const std::int64_t first_row = range.offset / row_size;
            // Nothing to read: all months but the unused one are alike.
            const bool fills = file_.usable == 0 && !table.lost(y) && count == table.year_size();
            const std::int64_t some = fills ? days * quarters : std::max<std::int64_t>(1, piece / row_size);
            const std::int64_t taken = std::min(count / row_size, some);
            std::vector<float> values(static_cast<std::size_t>(taken * table.columns()));
            for (std::int64_t done = 0; done < count / row_size; done += taken) {
                const std::int64_t now = std::min(taken, count / row_size - done);
                const std::span<float> part(values.data(), static_cast<std::size_t>(now * table.columns()));
                if (!fills || done / taken < 2) {
                    const Outcome read = is_daten ? reader.daten(first_row + done, part)
                                                  : reader.rechdaten(first_row + done, part);
                    if (!read) return read;
                }
                for (std::int64_t row = 0; table.lost(y) && row < now; ++row) {
                    if (!table.changed(first_row + done + row)) continue;
                    const std::span<const float> mine = table.row(first_row + done + row);
                    std::copy(mine.begin(), mine.end(), part.begin() + row * table.columns());
                }
                if (const Outcome put = sink(bytes_of_values(part)); !put) return put;
            }
        }
        range.offset += count;
        range.length -= count;
    }
    return {};
}

// Hands the bytes of a stretch of the new file to `sink`.
Outcome Archive::write_stretch(ArchiveReader& reader, const Image& image, ByteRange range, const Sink& sink) {
    const auto cut = [&](std::int64_t at, std::int64_t size) {
        const std::int64_t begin = std::clamp<std::int64_t>(range.offset - at, 0, size);
        const std::int64_t end = std::clamp<std::int64_t>(range.end() - at, 0, size);
        return ByteRange{begin, end - begin};
    };
    const auto text = [&](std::int64_t at, std::string_view bytes) -> Outcome {
        const ByteRange part = cut(at, static_cast<std::int64_t>(bytes.size()));
        if (part.length == 0) return {};
        return sink(
            bytes.substr(static_cast<std::size_t>(part.offset), static_cast<std::size_t>(part.length)));
    };
    if (const Outcome put = write_table(reader, daten_, cut(0, image.settings_at), sink); !put) return put;
    if (const Outcome put = text(image.settings_at, image.settings); !put) return put;
    if (const Outcome put = write_table(reader, rechdaten_, cut(image.rechdaten_at, rechdaten_size), sink);
        !put)
        return put;
    return text(image.texts_at, image.texts);
}

// The file is, or will surely become, what the image says.
void Archive::count_as_saved(const Image& image) {
    daten_.forget_changes();
    rechdaten_.forget_changes();
    file_.length = std::max(file_.length, image.size);
    file_.usable = file_.length;
    file_.settings_length = static_cast<std::int64_t>(image.settings.size());
    file_.calculated = ArchiveFile::Calculated::stored;
}

Outcome Archive::save_by_journal(const Image& image) {
    JournalWriter journal(files_, path_);
    {
        const Result<std::unique_ptr<BinaryFile>> target = open_unchanged(files_, file_);
        if (!target) return target.failure();
        if (const Outcome begun = journal.begin(image.changes, **target); !begun) return begun;
    }
    {
        ArchiveReader reader(files_, file_);
        for (const ByteRange& range : image.changes) {
            const Outcome put = write_stretch(reader, image, range,
                                              [&](std::string_view bytes) { return journal.add(bytes); });
            if (!put) return journal.give_up(put.failure());
        }
    }
    if (const Outcome committed = journal.commit(); !committed) return committed;
    const JournalRun run = run_journal(files_, path_);
    if (run.outcome) {
        count_as_saved(image);
        return {};
    }
    if (run.untouched && files_.remove(journal_path(path_))) {
        // It may have grown before the disk was full.
        if (const auto grown = files_.open(path_, OpenMode::read); grown) {
            if (const Result<std::int64_t> length = (*grown)->length(); length) file_.length = *length;
        }
        return run.outcome;
    }
    count_as_saved(image);
    journal_pending_ = true;
    return run.outcome;
}

Outcome Archive::finish_journal() {
    if (!journal_pending_) return {};
    const Outcome finished = run_journal(files_, path_).outcome;
    if (finished) journal_pending_ = false;
    return finished;
}

std::string Archive::new_file_path() const { return path_ + ".neu"; }

Outcome Archive::save_by_new_file(const Image& image) {
    const Outcome written = write_new_file(image);
    if (!written) {
        (void)files_.remove(new_file_path()); // what went wrong first is what counts
        return written;
    }
    // A journal that was left lying is of the old file.
    if (files_.exists(journal_path(path_))) {
        if (const Outcome removed = files_.remove(journal_path(path_)); !removed) return removed;
    }
    const Outcome replaced = files_.replace(new_file_path(), path_);
    if (!replaced) (void)files_.remove(new_file_path());
    if (replaced) count_as_saved(image);
    return replaced;
}

Outcome Archive::write_new_file(const Image& image) {
    const Result<std::unique_ptr<BinaryFile>> file = files_.open(new_file_path(), OpenMode::create);
    if (!file) return file.failure();
    std::int64_t end = 0;
    const Sink sink = [&](std::string_view bytes) -> Outcome {
        const Outcome put = (*file)->write(end + 1, bytes);
        end += static_cast<std::int64_t>(bytes.size());
        return put;
    };
    ArchiveReader reader(files_, file_);
    if (const Outcome put = write_stretch(reader, image, {0, image.size}, sink); !put) return put;
    // A file is never cut: what the old one has behind the new one's end stays.
    while (end < file_.length) {
        const Result<std::string> stale = reader.bytes(end, std::min(piece, file_.length - end));
        if (!stale) return stale.failure();
        if (stale->empty()) return failure(RunTimeError::past_end_of_file);
        if (const Outcome put = sink(*stale); !put) return put;
    }
    return (*file)->sync();
}

} // namespace velorn
