#include "plant/download_frames.h"

#include "plant/wording.h"

#include <array>
#include <cstddef>

namespace velorn::plant {

namespace {

constexpr std::size_t head_length = 8; // day, month, year, quarter number

std::string head(const Quarter& when) {
    const DateTime date = date_of(when);
    return filled("%02d%02d%02d%02d", date.day, date.month, date.year % 100, when.number);
}

int number_in(std::string_view digits) {
    int number = 0;
    for (const char digit : digits) number = number * 10 + (digit - '0');
    return number;
}

// The day of two fields of two digits and one of four, each twice.
std::optional<long> day_from(std::string_view digits) {
    std::array<int, 3> fields{};
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::size_t length = i < 2 ? 2 : 4;
        const std::string_view once = digits.substr(0, length);
        if (once != digits.substr(length, length)) return std::nullopt;
        fields[i] = number_in(once);
        digits.remove_prefix(2 * length);
    }
    const auto [day, month, year] = fields;
    if (year < 1900 || month < 1 || month > 12 || day < 1) return std::nullopt;
    const long first = days_from_civil(year, month, 1);
    const long next_first =
        month < 12 ? days_from_civil(year, month + 1, 1) : days_from_civil(year + 1, 1, 1);
    if (day > next_first - first) return std::nullopt;
    return first + day - 1;
}

} // namespace

std::string initialisation_frame(const Recording& site) {
    const std::string count = filled(site.tracks < 100 ? "%02d" : "%03d", site.tracks);
    std::string frame = count + count;
    for (int track = 1; track <= site.tracks; ++track) {
        const std::string unit = track_unit(track);
        frame += unit + unit;
    }
    for (int track = 1; track <= site.tracks; ++track) {
        const std::string name = track_name(track);
        frame += name + name;
    }
    return frame + std::string(frame_complete);
}

std::string packet(const Recording& site, const Quarter& first, int count, const Quarter& last) {
    std::string frame;
    for (int i = 0; i < count; ++i) {
        const Quarter when = quarter_after(first, i);
        if (when <= last) {
            frame += head(when) + values(site, when);
            continue;
        }
        frame += std::string(head_length, '0');
        for (int track = 1; track <= site.tracks; ++track) frame += "     ***";
    }
    return frame + std::string(frame_complete);
}

std::optional<TimeRange> time_range_from(std::string_view digits) {
    constexpr std::size_t length_of_date = 16;
    if (digits.size() != 2 * length_of_date) return std::nullopt;
    const auto start = day_from(digits.substr(0, length_of_date));
    const auto stop = day_from(digits.substr(length_of_date));
    if (!start || !stop) return std::nullopt;
    return TimeRange{{*start, 1}, {*stop, quarters_of_day}};
}

std::string with_garbled_copy(std::string frame, const Recording& site, std::uint64_t where) {
    const std::size_t width = site.tracks < 100 ? 2 : 3;
    // The count's copies have one chance in four, so that they are met at all.
    const bool in_count = where % 4 == 0;
    const std::size_t fields = frame.size() - 2 * width - frame_complete.size();
    const std::size_t at = in_count ? where / 4 % (2 * width) : 2 * width + where / 4 % fields;
    char& byte = frame[at];
    if (in_count) {
        byte = static_cast<char>('0' + (byte - '0' + 1) % 10);
    } else {
        byte = byte == '#' ? '+' : '#';
    }
    return frame;
}

std::string with_wrong_length(std::string frame, std::uint64_t where) {
    const std::size_t body = frame.size() - frame_complete.size();
    const std::size_t bytes = 1 + where / 2 % 12;
    if (where % 2 == 0) {
        frame.insert(where / 32 % (body + 1), bytes, ' ');
    } else {
        frame.erase(where / 32 % (body - bytes), bytes);
    }
    return frame;
}

std::string with_wrong_date(std::string frame, const Recording& site, std::uint64_t where) {
    struct Wrong {
        std::size_t at; // within the head
        std::string_view digits;
    };
    static constexpr std::array<Wrong, 6> wrongs = {
        {{0, "00"}, {0, "32"}, {2, "00"}, {2, "13"}, {6, "00"}, {6, "97"}}};
    const Wrong& wrong = wrongs[where % wrongs.size()];
    const std::size_t length = head_length + static_cast<std::size_t>(site.tracks) * value_length;
    const std::size_t sets = (frame.size() - frame_complete.size()) / length;
    frame.replace(where / 8 % sets * length + wrong.at, wrong.digits.size(), wrong.digits);
    return frame;
}

} // namespace velorn::plant
