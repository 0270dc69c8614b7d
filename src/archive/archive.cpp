// Opening, reading and closing; saving is in archive_save.cpp.
#include "archive/archive.h"

#include "archive/archive_journal.h"
#include "runtime/text.h"

#include <algorithm>

namespace velorn {

using namespace archive_layout;

namespace {

// Settings are a few kilobytes; only long texts need more.
constexpr std::int64_t first_look = 64 * 1024;

// What an archive that cannot be read is taken for.
constexpr std::int16_t default_tracks = 60;
constexpr DateTime default_day{2000, 1, 1};

// Reads values behind `offset` with `decode_them`, which takes the bytes and gives how they end.
template <class Decode>
Result<Decoded> read_values(ArchiveReader& reader, std::int64_t offset, std::int64_t end,
                            Decode&& decode_them) {
    for (std::int64_t look = first_look;; look *= 8) {
        const std::int64_t count = std::clamp<std::int64_t>(end - offset, 0, look);
        const Result<std::string> bytes = reader.bytes(offset, count);
        if (!bytes) return bytes.failure();
        const Decoded end_of_reading = decode_them(*bytes);
        if (end_of_reading != Decoded::cut || count < look) return end_of_reading;
    }
}

Outcome outcome_of(Decoded decoded) {
    switch (decoded) {
    case Decoded::complete: return {};
    case Decoded::cut: return failure(RunTimeError::past_end_of_file);
    case Decoded::unknown_tag: return failure(RunTimeError::type_mismatch);
    }
    return {};
}

} // namespace

Outcome Archive::open(std::string_view path) {
    begin(path);
    Outcome outcome = shared_ ? Outcome{} : complete_journal(files_, path_);
    if (!outcome) {
        unreadable_ = outcome.failure();
    } else {
        if (!shared_ && files_.exists(new_file_path())) (void)files_.remove(new_file_path());
        outcome = find_out_layout();
    }
    if (!outcome) {
        take_defaults();
        return outcome;
    }
    shape_tables();
    return read_settings();
}

void Archive::open_unread(std::string_view path) {
    begin(path);
    (void)find_out_layout();
    take_defaults();
}

void Archive::take_defaults() {
    if (spuranz == 0) spuranz = default_tracks;
    static_cast<ArchiveSettings&>(*this) =
        new_archive_settings(spuranz, static_cast<std::int16_t>(default_day.year), default_day);
    upgrade_formulas(*this);
    file_.usable = 0;
    shape_tables();
}

void Archive::shape_tables() {
    file_.spuranz = spuranz;
    daten_.shape(spuranz + 1);
    rechdaten_.shape(calculated_tracks);
}

void Archive::begin(std::string_view path) {
    close();
    open_ = true;
    path_ = path;
    failed_.reset();
    unreadable_.reset();
    journal_pending_ = false;
    file_ = {};
    file_.path = path_;
    Result<std::unique_ptr<FileLock>> lock = files_.lock(path_);
    // Where a lock cannot be had at all, as in a folder that is write-protected, nobody is noticed.
    shared_ = !lock && lock.failure().is(RunTimeError::file_already_open);
    if (lock) lock_ = std::move(lock).value();
}

Outcome Archive::find_out_layout() {
    const Result<std::unique_ptr<BinaryFile>> file = files_.open(path_, OpenMode::read);
    if (!file) return file.failure();
    const Result<std::int64_t> length = (*file)->length();
    if (!length) return length.failure();
    file_.length = *length;
    file_.usable = *length;
    if (const SizeRow* row = row_of_size(*length)) {
        spuranz = row->spuranz;
        if (row->archivversion != 0) archivversion = row->archivversion;
    }
    if (spuranz != 0) return {};
    return failure(RunTimeError::path_file_access, "Die Dateigröße paßt zu keinem Datenarchiv"_w);
}

Outcome Archive::read_settings() {
    ArchiveReader reader(files_, file_);
    const std::int64_t at = daten_size(spuranz);
    const bool layout_2 = archivversion >= 2;
    std::size_t length = 0;
    const Result<Decoded> settings = read_values(reader, at, file_.usable, [&](std::string_view bytes) {
        return decode_settings(bytes, spuranz, layout_2, *this, length);
    });
    file_.settings_length = static_cast<std::int64_t>(length);
    if (!settings || *settings != Decoded::complete) {
        std::size_t nothing = 0;
        (void)decode_calculated_texts({}, *this, nothing);
        return settings ? outcome_of(*settings) : Outcome{settings.failure()};
    }
    if (!layout_2) {
        file_.calculated = ArchiveFile::Calculated::from_tracks;
        calculated_texts_from_tracks();
        return {};
    }
    file_.calculated = ArchiveFile::Calculated::stored;
    const std::int64_t behind = file_.rechdaten_at() + rechdaten_size;
    const Result<Decoded> texts = read_values(reader, behind, file_.usable, [&](std::string_view bytes) {
        return decode_calculated_texts(bytes, *this, length);
    });
    return texts ? outcome_of(*texts) : Outcome{texts.failure()};
}

// In layout 1 tracks 0 and 60 were the calculated ones.
void Archive::calculated_texts_from_tracks() {
    std::size_t nothing = 0;
    (void)decode_calculated_texts({}, *this, nothing);
    reset_calculated_texts(*this);
    const auto take = [this](std::size_t calculated, std::size_t track) {
        bspurnamen[calculated] = spurnamen[track];
        bspureinheiten[calculated] = spureinheiten[track];
        bspurfarben[calculated] = spurfarben[track];
        bspursichtbar[calculated] = spursichtbar[track];
        bspurrechts[calculated] = spurrechts[track];
    };
    take(0, 0);
    if (spuranz > 59) take(1, 60);
}

void Archive::upgrade() {
    upgrade_formulas(*this);
    if (!(rechdaten(1, 2, 31, 1, 0) < 1002.0F)) return;
    set_rechdaten(1, 2, 31, 1, 0, 1003.0F);
    reset_analytic_curve(*this);
}

Outcome Archive::create(std::string_view path, std::int16_t startjahr_, std::int16_t tracks,
                        const DateTime& today) {
    begin(path);
    const Outcome created = [&]() -> Outcome {
        if (const auto old = files_.open(path_, OpenMode::read); old) {
            const Result<std::int64_t> length = (*old)->length();
            if (!length) return length.failure();
            file_.length = *length;
        } else if (!old.failure().is(RunTimeError::file_not_found)) {
            return old.failure();
        }
        spuranz = tracks;
        static_cast<ArchiveSettings&>(*this) = new_archive_settings(tracks, startjahr_, today);
        upgrade_formulas(*this);
        shape_tables();
        return save();
    }();
    if (!created) close();
    return created;
}

// ---- cells ----

std::span<float> Archive::touch(YearTable& table, int y) {
    if (table.loaded(y)) return table.year(y);
    const std::span<float> values = table.load(y);
    ArchiveReader reader(files_, file_);
    const std::int64_t first = y * rows_of_a_year;
    Outcome read = readable();
    if (read) read = &table == &daten_ ? reader.daten(first, values) : reader.rechdaten(first, values);
    if (!read) {
        fill_rows(first, table.columns(), values);
        table.lose(y);
        note_failure(read.failure());
    }
    return values;
}

// A cell without its year.
float Archive::peek(ArchiveReader& reader, YearTable& table, std::int64_t row, int t) {
    if (table.loaded(static_cast<int>(row / rows_of_a_year))) return table.value(row, t);
    std::array<float, 256> values{};
    const std::span<float> some(values.data(), static_cast<std::size_t>(table.columns()));
    Outcome read = readable();
    if (read) read = &table == &daten_ ? reader.daten(row, some) : reader.rechdaten(row, some);
    if (!read) {
        fill_rows(row, table.columns(), some);
        note_failure(read.failure());
    }
    return values[static_cast<std::size_t>(t)];
}

// While a save is committed and not yet carried out, the file holds neither the old nor the new.
Outcome Archive::readable() { return journal_pending_ ? finish_journal() : Outcome{}; }

void Archive::note_failure(const Failure& what) {
    if (!failed_) failed_ = what;
}

namespace {

// These two are asked for at each opening, which isn't to read a year for them.
bool is_asked_at_opening(int y, int m, int d, int q, int t, int quarter) {
    return y == 1 && m == 2 && d == 31 && q == quarter && t == 0;
}

} // namespace

float Archive::daten(int y, int m, int d, int q, int t) {
    assert(t >= 0 && t <= spuranz);
    const std::int64_t row = row_of(y, m, d, q);
    if (!daten_.loaded(y)) {
        ArchiveReader reader(files_, file_);
        if (is_asked_at_opening(y, m, d, q, t, 2)) return peek(reader, daten_, row, t);
        (void)touch(daten_, y);
    }
    return daten_.value(row, t);
}

void Archive::set_daten(int y, int m, int d, int q, int t, float value) {
    assert(t >= 0 && t <= spuranz);
    (void)touch(daten_, y);
    // The calculated tracks were made from these when the file was opened, and don't follow them.
    const bool is_source = file_.calculated == ArchiveFile::Calculated::from_tracks && (t == 0 || t == 60);
    if (is_source) (void)touch(rechdaten_, y);
    daten_.set(row_of(y, m, d, q), t, value);
}

float Archive::rechdaten(int y, int m, int d, int q, int t) {
    assert(t >= 0 && t < calculated_tracks);
    const std::int64_t row = row_of(y, m, d, q);
    if (!rechdaten_.loaded(y)) {
        ArchiveReader reader(files_, file_);
        if (is_asked_at_opening(y, m, d, q, t, 1)) return peek(reader, rechdaten_, row, t);
        (void)touch(rechdaten_, y);
    }
    return rechdaten_.value(row, t);
}

void Archive::set_rechdaten(int y, int m, int d, int q, int t, float value) {
    assert(t >= 0 && t < calculated_tracks);
    (void)touch(rechdaten_, y);
    rechdaten_.set(row_of(y, m, d, q), t, value);
}

std::span<const float> Archive::row(int y, int m, int d, int q) {
    (void)touch(daten_, y);
    return daten_.row(row_of(y, m, d, q));
}

std::span<const float> Archive::rechrow(int y, int m, int d, int q) {
    (void)touch(rechdaten_, y);
    return rechdaten_.row(row_of(y, m, d, q));
}

std::span<const float> Archive::year(int y) { return touch(daten_, y); }

std::span<const float> Archive::rechyear(int y) { return touch(rechdaten_, y); }

Archive::NewestDay Archive::letztertag() {
    ArchiveReader reader(files_, file_);
    const auto day = [&](int y, int m, int d) {
        const float last = peek(reader, daten_, row_of(y, m, d, 96), 1);
        const Result<std::int16_t> first_year = startjahr.as_i16();
        return NewestDay{(first_year ? *first_year : 0) + y, m, d,
                         last != invalid_value && last != fill_value};
    };
    for (int y = years - 1; y >= 0; --y) {
        for (int m = months - 1; m > 0; --m) {
            for (int d = days - 1; d > 0; --d) {
                if (peek(reader, daten_, row_of(y, m, d, 1), 1) != fill_value) return day(y, m, d);
            }
        }
    }
    return day(0, 1, 1);
}

// What is drawn or received before the next one is there finds fill values.
void Archive::close() {
    file_ = {};
    file_.spuranz = spuranz != 0 ? spuranz : default_tracks;
    daten_.shape(file_.spuranz + 1);
    rechdaten_.shape(calculated_tracks);
    lock_.reset();
    shared_ = false;
    open_ = false;
}

} // namespace velorn
