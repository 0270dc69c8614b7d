#include "plant/demo_archives.h"

#include "plant/demo_book.h"
#include "plant/new_file.h"
#include "plant/quarter_values.h"
#include "runtime/text.h"
#include "runtime/variant.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace velorn::plant {

namespace {

static_assert(std::endian::native == std::endian::little, "the cubes are written as they lie in memory");

constexpr int years = 10, months = 13, days = 32, quarters = 97, calculated = 5;
constexpr float never_stored = -997.0F;

std::size_t row_of(int month, int day, int quarter) {
    return (static_cast<std::size_t>(month) * days + static_cast<std::size_t>(day)) * quarters +
           static_cast<std::size_t>(quarter);
}

// A year of a cube in which nothing was stored; the zeros of month, day and quarter are 0.
std::vector<float> empty_year(std::size_t columns) {
    std::vector<float> cells(std::size_t{months} * days * quarters * columns, 0.0F);
    for (int month = 1; month < months; ++month) {
        for (int day = 1; day < days; ++day) {
            const std::size_t first = row_of(month, day, 1) * columns;
            std::fill_n(cells.begin() + static_cast<std::ptrdiff_t>(first), (quarters - 1) * columns,
                        never_stored);
        }
    }
    return cells;
}

std::string_view bytes_of(const std::vector<float>& cells) {
    return {reinterpret_cast<const char*>(cells.data()), cells.size() * sizeof(float)};
}

void put_day(const Recording& recording, long day, std::vector<float>& year) {
    const DateTime date = date_of({day, 1});
    for (int quarter = 1; quarter <= quarters_of_day; ++quarter) {
        const std::string all = values(recording, {day, quarter});
        float* const row = &year[row_of(date.month, date.day, quarter) * (archive_tracks + 1)];
        for (int track = 1; track <= std::min(recording.tracks, archive_tracks); ++track) {
            const std::size_t at = static_cast<std::size_t>(track - 1) * value_length;
            row[track] = stored(std::string_view(all).substr(at, value_length));
        }
    }
}

std::int16_t i16(int value) { return static_cast<std::int16_t>(value); }

std::string in_windows_letters(std::string text) {
    umlauts_from_cp437(text);
    return text;
}

class Settings {
  public:
    void put(const Variant& value) { encode(value, bytes); }
    void put(const Variant& value, int count) {
        for (int i = 0; i < count; ++i) put(value);
    }

    std::string bytes;
};

constexpr std::array<std::int32_t, 6> colours = {0, 0xC00000, 0x0000D0, 0x008000, 0x9000A0, 0x0070D0};
constexpr int visible_tracks = 2;

// One entry a track, the unused zero first.
template <class Value>
void put_tracks(Settings& settings, const Variant& zero, Value&& value) {
    settings.put(zero);
    for (int track = 1; track <= archive_tracks; ++track) settings.put(value(track));
}

// The formulas hold their usual beginning: the first track less the second.
void put_formula(Settings& settings) {
    settings.put(Variant());
    settings.put(i16(1));
    settings.put(i16(2));
    settings.put(i16(0), 8);
    settings.put(Variant());
    settings.put(i16(1));
    settings.put(i16(2), 9);
}

std::string settings_of(const Recording& recording, int first_year, const DateTime& newest) {
    Settings s;
    const auto known = [&](int track) { return track <= recording.tracks; };
    put_tracks(s, "<1>-<2>", [&](int track) -> Variant {
        return known(track) ? in_windows_letters(track_name(track)) : std::string(16, '-');
    });
    put_tracks(s, "", [&](int track) -> Variant {
        return known(track) ? in_windows_letters(track_unit(track)) : std::string();
    });
    put_tracks(s, std::int32_t{0}, [&](int track) -> Variant {
        return known(track) ? colours[static_cast<std::size_t>(track - 1) % colours.size()] : 0;
    });
    put_tracks(s, false, [&](int track) -> Variant { return track <= visible_tracks; });
    put_tracks(s, false, [](int) -> Variant { return false; });
    for (const int axis : {30, 100, -10, 10, 3}) s.put(i16(axis));
    s.put(false);
    for (const int value : {1, first_year, std::min(recording.tracks, archive_tracks), newest.day,
                            newest.month, newest.year, 105, 2, 1, 2})
        s.put(i16(value));
    s.put(1.0);
    put_formula(s);
    put_formula(s);
    s.put("---", 2);
    s.put(1.0);
    s.put(i16(8760));
    s.put(std::int32_t{100'000});
    s.put(i16(5));
    s.put(0.2);
    s.put(Variant(), 6);
    return s.bytes;
}

std::string calculated_texts() {
    Settings s;
    for (const Variant& value : {Variant("----------------"), Variant(""), Variant(std::int32_t{0}),
                                 Variant(false), Variant(false)}) {
        s.put(value, calculated);
        s.put(Variant());
    }
    return s.bytes;
}

} // namespace

Outcome write_archive(const Site& site, const DateTime& today, BinaryFile& file) {
    const Recording recording{site.seed, site.tracks};
    const long last = days_from_civil(today.year, today.month, today.day) - days_behind;
    const long first = last - recorded_days + 1;
    const int first_year = date_of({first, 1}).year;
    std::int64_t at = 1;
    const auto write = [&](std::string_view bytes) {
        const Outcome written = file.write(at, bytes);
        at += static_cast<std::int64_t>(bytes.size());
        return written;
    };
    const std::vector<float> nothing = empty_year(archive_tracks + 1);
    std::vector<float> year;
    for (int y = 0; y < years; ++y) {
        year = nothing;
        const long begin = std::max(first, days_from_civil(first_year + y, 1, 1));
        const long end = std::min(last, days_from_civil(first_year + y, 12, 31));
        for (long day = begin; day <= end; ++day) put_day(recording, day, year);
        if (Outcome written = write(bytes_of(year)); !written) return written;
    }
    if (Outcome written = write(settings_of(recording, first_year, date_of({last, 1}))); !written)
        return written;
    const std::vector<float> nothing_calculated = empty_year(calculated);
    for (int y = 0; y < years; ++y) {
        if (Outcome written = write(bytes_of(nothing_calculated)); !written) return written;
    }
    return write(calculated_texts());
}

Result<std::vector<std::string>> write_archives(const Directory& directory, const std::string& folder,
                                                const DateTime& today) {
    std::vector<std::string> written;
    for (const Site& site : directory.sites()) {
        if (!takes_part(site)) continue;
        const std::filesystem::path path = path_of(folder) / archive_name(site);
        const Result<bool> fresh =
            write_if_missing(path, [&](BinaryFile& file) { return write_archive(site, today, file); });
        if (!fresh) return fresh.failure();
        if (*fresh) written.push_back(path.string());
    }
    return written;
}

} // namespace velorn::plant
