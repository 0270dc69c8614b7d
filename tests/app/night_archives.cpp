// The archives of a night, byte for byte: what they must hold is laid over what they held before.
#include "app/night_judge.h"
#include "runtime/variant.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>

namespace velorn::test {

namespace {

struct Cell {
    int y, m, d, q;
};

std::int64_t place_of(const Cell& c, int columns, int t) {
    return 4 * ((((std::int64_t{c.y} * 13 + c.m) * 32 + c.d) * 97 + c.q) * columns + t);
}

std::string bytes_of(const std::vector<float>& values) {
    std::string bytes(values.size() * 4, '\0');
    std::memcpy(bytes.data(), values.data(), bytes.size());
    return bytes;
}

constexpr std::int64_t rows = std::int64_t{10} * 13 * 32 * 97;
constexpr std::int64_t calculated_size = rows * 5 * 4;

// Tagged values that follow each other.
struct TaggedValues {
    std::vector<Variant> all;
    std::size_t size = 0; // bytes

    TaggedValues(std::string_view bytes, std::size_t count) {
        while (all.size() < count) {
            Variant value;
            if (decode(bytes, size, value) != Decoded::complete) break;
            all.push_back(std::move(value));
        }
    }
    std::string bytes() const {
        std::string text;
        for (const Variant& value : all) encode(value, text);
        return text;
    }
};

// An archive as it must be.
class Expected {
  public:
    Expected(const NightSite& site, const BlockFiles::Content& before)
        : tracks_(site.archive_tracks), startjahr_(site.startjahr) {
        files_.set_content(path, before);
        file_ = files_.open(path, OpenMode::read_write).value();
    }

    void store(const HeardSet& set) { put(place_of(cell_of(set), tracks_ + 1, 1), bytes_of(set.values)); }
    // The archive's texts after the tracks that the controller has told, or as they were; and the stamp that
    // each opening leaves in the calculated table.
    void finish(const std::optional<HeardTracks>& told) {
        constexpr std::int64_t longest_texts = 256 * 1024;
        const auto settings = static_cast<std::size_t>(5 * (tracks_ + 1) + 17 + 44 + 7 + 6);
        const std::int64_t at = rows * (tracks_ + 1) * 4;
        TaggedValues values(files_.bytes(path, at, longest_texts), settings);
        const std::int64_t behind = at + static_cast<std::int64_t>(values.size);
        // What lies behind the texts is of a former, longer file and stays where it is.
        const TaggedValues texts_of_calculated(files_.bytes(path, behind + calculated_size, longest_texts),
                                               5 * 6);
        std::string calculated =
            files_.bytes(path, behind, calculated_size + static_cast<std::int64_t>(texts_of_calculated.size));
        const auto stamp_at = static_cast<std::size_t>(place_of({1, 2, 31, 1}, 5, 0));
        float stamp = 0;
        std::memcpy(&stamp, calculated.data() + stamp_at, 4);
        const bool without_stamp = stamp < 1002.0F;
        if (without_stamp) {
            stamp = 1003.0F;
            std::memcpy(calculated.data() + stamp_at, &stamp, 4);
        }
        if (told) {
            const auto of_a_kind = static_cast<std::size_t>(tracks_ + 1);
            values.all[5 * of_a_kind + 8] = static_cast<std::int16_t>(told->count);
            for (std::size_t t = 0; t < told->names.size(); ++t) {
                values.all[t + 1] = told->names[t];
                values.all[of_a_kind + t + 1] = told->units[t];
            }
        }
        const std::string texts = values.bytes();
        const std::size_t grown = texts.size();
        put(at, texts);
        if (grown != values.size || without_stamp) put(at + static_cast<std::int64_t>(grown), calculated);
    }

    bool holds(const BlockFiles::Content& after) const { return files_.content(path) == after; }

    // The first place that differs.
    std::string difference(const BlockFiles::Content& after) const {
        BlockFiles other;
        other.set_content(path, after);
        const BlockFiles::Content own = files_.content(path);
        if (own.length != after.length)
            return std::to_string(after.length) + " bytes instead of " + std::to_string(own.length);
        for (std::int64_t at = 0; at < own.length; at += 4) {
            if (at % BlockFiles::block_size == 0 &&
                own.blocks[static_cast<std::size_t>(at / BlockFiles::block_size)] ==
                    after.blocks[static_cast<std::size_t>(at / BlockFiles::block_size)]) {
                at += BlockFiles::block_size - 4;
                continue;
            }
            const std::string there = other.bytes(path, at, 4), wanted = files_.bytes(path, at, 4);
            if (there == wanted) continue;
            if (at >= rows * (tracks_ + 1) * 4)
                return "the texts or calculated tracks, byte " + std::to_string(at);
            float value = 0, right = 0;
            std::memcpy(&value, there.data(), 4);
            std::memcpy(&right, wanted.data(), 4);
            const std::int64_t number = at / 4, row = number / (tracks_ + 1);
            return "year " + std::to_string(startjahr_ + row / (13 * 32 * 97)) + " month " +
                   std::to_string(row / (32 * 97) % 13) + " day " + std::to_string(row / 97 % 32) + " q" +
                   std::to_string(row % 97) + " track " + std::to_string(number % (tracks_ + 1)) + " holds " +
                   std::to_string(value) + " instead of " + std::to_string(right);
        }
        return "nothing";
    }

  private:
    static constexpr const char* path = "expected";

    Cell cell_of(const HeardSet& set) const {
        return {set.year - startjahr_, set.month, set.day, set.quarter};
    }

    void put(std::int64_t offset, std::string_view bytes) { (void)file_->write(offset + 1, bytes); }

    int tracks_;
    int startjahr_;
    BlockFiles files_;
    std::unique_ptr<BinaryFile> file_;
};

// What is known of a site's turns in all watches. A turn that the kill ended may have left the texts of the
// tracks, or not; and of a frame that wasn't answered any more the first data sets, or none.
struct Turns {
    std::vector<HeardSet> before_kill, unanswered, after_kill;
    std::vector<std::optional<HeardTracks>> texts; // any of these
};

Turns turns_of(const Night& night, const std::vector<HeardNight>& heard, std::size_t site) {
    Turns turns;
    turns.texts.emplace_back();
    for (std::size_t w = 0; w < heard.size(); ++w) {
        const HeardSite& one = heard[w].sites[site];
        const bool killed = night.watches[w].end == Watch::End::killed;
        auto& sets = killed ? turns.before_kill : turns.after_kill;
        sets.insert(sets.end(), one.sets.begin(), one.sets.end());
        if (killed) turns.unanswered = one.unanswered;
        if (!one.tracks) continue;
        if (!killed) turns.texts.clear();
        turns.texts.emplace_back(one.tracks);
    }
    return turns;
}

} // namespace

void judge_archive(const NightPlan& plan, const Night& night, const std::vector<HeardNight>& heard,
                   std::size_t site, std::vector<std::string>& complaints) {
    const NightSite& planned = plan.sites[site];
    const std::string path = archive_path(site);
    const std::string who = "site " + std::to_string(site + 1);
    const BlockFiles::Content after = night.files.content(path);
    for (const char* beside : {".journal", ".neu", ".tagebuch", ".sperre"}) {
        const std::vector<std::string> names = night.files.names();
        if (std::ranges::find(names, path + beside) != names.end())
            complaints.push_back(who + ": " + path + beside + " was left behind");
    }
    if (!planned.takes_part) {
        if (!(after == night.before[site]))
            complaints.push_back(who + ": it takes no part, and its archive was touched");
        return;
    }
    const Turns turns = turns_of(night, heard, site);
    std::string difference;
    for (std::size_t kept = 0; kept <= turns.unanswered.size(); ++kept) {
        for (const auto& texts : turns.texts) {
            Expected expected(planned, night.before[site]);
            for (const HeardSet& set : turns.before_kill) expected.store(set);
            for (std::size_t i = 0; i < kept; ++i) expected.store(turns.unanswered[i]);
            for (const HeardSet& set : turns.after_kill) expected.store(set);
            expected.finish(texts);
            if (expected.holds(after)) return;
            if (difference.empty()) difference = expected.difference(after);
        }
    }
    complaints.push_back(who + ": its archive: " + difference);
}

} // namespace velorn::test
