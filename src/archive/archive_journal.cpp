#include "archive/archive_journal.h"

#include "archive/bytes_of.h"

#include <algorithm>
#include <optional>

namespace velorn {

namespace {

constexpr std::string_view magic = "VLNJOURN";
constexpr std::string_view end_mark = "JOURNEND";
constexpr std::uint32_t version = 1;
constexpr std::int64_t head_size = 8 + 4 + 4 + 3 * 8;
constexpr std::int64_t foot_size = 8 + 8;
constexpr std::int64_t range_size = 2 * 8;
constexpr std::int64_t piece = 1024 * 1024;

constexpr std::uint64_t largest_file = std::uint64_t{1} << 40U;

// Eight samples are as good as all bytes in telling one archive from another, and cost nothing.
constexpr std::int64_t samples = 8;
constexpr std::int64_t sample_size = 1024;

struct Head {
    std::uint64_t before = 0;
    std::uint64_t after = 0;
    std::uint64_t fingerprint = 0;
    std::vector<ByteRange> ranges;
};

std::string making_path(std::string_view path) { return journal_path(path) + ".neu"; }

Result<std::uint64_t> fingerprint_of(BinaryFile& file, std::int64_t length,
                                     const std::vector<ByteRange>& ranges) {
    Checksum sum;
    for (std::int64_t i = 0; i < samples; ++i) {
        const std::int64_t begin = length / samples * i;
        Result<std::string> sample = file.read(begin + 1, std::min(sample_size, length - begin));
        if (!sample) return sample.failure();
        for (auto range = std::ranges::upper_bound(ranges, begin, {}, &ByteRange::end);
             range != ranges.end() && range->offset < begin + sample_size; ++range) {
            const auto size = static_cast<std::int64_t>(sample->size());
            const std::int64_t from = std::clamp<std::int64_t>(range->offset - begin, 0, size);
            const std::int64_t to = std::clamp<std::int64_t>(range->end() - begin, 0, size);
            std::fill(sample->begin() + from, sample->begin() + to, '\0');
        }
        sum.add(*sample);
    }
    return sum.value();
}

// Nothing: the journal isn't complete.
std::optional<Head> head_of(std::string_view bytes, std::uint64_t journal_length) {
    Head head;
    std::size_t at = magic.size() + 8;
    head.before = take_number<std::uint64_t>(bytes, at);
    head.after = take_number<std::uint64_t>(bytes, at);
    head.fingerprint = take_number<std::uint64_t>(bytes, at);
    // What a file grows by stands in its journal.
    if (head.before > largest_file || head.after < head.before || head.after - head.before > journal_length)
        return std::nullopt;
    std::uint64_t end = 0;
    while (at < bytes.size()) {
        const auto offset = take_number<std::uint64_t>(bytes, at);
        const auto length = take_number<std::uint64_t>(bytes, at);
        if (offset < end || offset > head.after || length == 0 || length > head.after - offset)
            return std::nullopt;
        end = offset + length;
        head.ranges.push_back({static_cast<std::int64_t>(offset), static_cast<std::int64_t>(length)});
    }
    return head;
}

// The head of a complete journal, checked to its end; nothing if it isn't one.
Result<std::optional<Head>> read_head(BinaryFile& journal) {
    const std::optional<Head> not_one;
    const Result<std::int64_t> length = journal.length();
    if (!length) return length.failure();
    if (*length < head_size + foot_size) return not_one;
    const Result<std::string> first = journal.read(1, head_size);
    if (!first) return first.failure();
    if (static_cast<std::int64_t>(first->size()) < head_size || !first->starts_with(magic)) return not_one;
    std::size_t at = magic.size();
    if (take_number<std::uint32_t>(*first, at) != version) return not_one;
    const std::int64_t heads = head_size + range_size * take_number<std::uint32_t>(*first, at);
    if (heads + foot_size > *length) return not_one;
    const Result<std::string> all_heads = journal.read(1, heads);
    if (!all_heads) return all_heads.failure();
    if (static_cast<std::int64_t>(all_heads->size()) < heads) return not_one;
    std::optional<Head> head = head_of(*all_heads, static_cast<std::uint64_t>(*length));
    if (!head) return not_one;
    std::int64_t size = heads + foot_size;
    for (const ByteRange& range : head->ranges) {
        if (range.length > *length - size) return not_one;
        size += range.length;
    }
    if (size != *length) return not_one;
    Checksum sum;
    for (std::int64_t done = 0; done < size - foot_size;) {
        const Result<std::string> bytes = journal.read(done + 1, std::min(piece, size - foot_size - done));
        if (!bytes) return bytes.failure();
        if (bytes->empty()) return not_one;
        sum.add(*bytes);
        done += static_cast<std::int64_t>(bytes->size());
    }
    const Result<std::string> foot = journal.read(size - foot_size + 1, foot_size);
    if (!foot) return foot.failure();
    return *foot == bytes_of(sum.value()) + std::string(end_mark) ? head : not_one;
}

// Puts those bytes of the ranges into the file that lie in [from, to).
Outcome copy_ranges(BinaryFile& journal, const std::vector<ByteRange>& ranges, BinaryFile& target,
                    std::int64_t from, std::int64_t to) {
    std::int64_t at = head_size + range_size * static_cast<std::int64_t>(ranges.size());
    std::string bytes; // of the journal, from `begin` on
    std::int64_t begin = at;
    for (const ByteRange& range : ranges) {
        const std::int64_t first = std::max(range.offset, from);
        const std::int64_t last = std::min(range.end(), to);
        for (std::int64_t offset = first; offset < last;) {
            const std::int64_t wanted = at + (offset - range.offset);
            std::int64_t there = begin + static_cast<std::int64_t>(bytes.size()) - wanted;
            if (wanted < begin || there <= 0 || (there < last - offset && there < piece / 2)) {
                Result<std::string> read = journal.read(wanted + 1, piece);
                if (!read) return read.failure();
                if (read->empty()) return failure(RunTimeError::past_end_of_file);
                bytes = std::move(read).value();
                begin = wanted;
                there = static_cast<std::int64_t>(bytes.size());
            }
            const std::int64_t count = std::min(there, last - offset);
            const std::string_view part = std::string_view(bytes).substr(
                static_cast<std::size_t>(wanted - begin), static_cast<std::size_t>(count));
            if (const Outcome written = target.write(offset + 1, part); !written) return written;
            offset += count;
        }
        at += range.length;
    }
    return {};
}

JournalRun carry_out(Files& files, std::string_view path, BinaryFile& journal, const Head& head) {
    const Result<std::unique_ptr<BinaryFile>> target = files.open(path, OpenMode::read_write);
    if (!target) return {target.failure()};
    const auto before = static_cast<std::int64_t>(head.before);
    const auto after = static_cast<std::int64_t>(head.after);
    // What makes the file longer comes first: a full disk shows here, while nothing else is touched.
    if (const Outcome grown = copy_ranges(journal, head.ranges, **target, before, after); !grown)
        return {grown};
    if (after > before) {
        if (const Outcome synced = (*target)->sync(); !synced) return {synced};
    }
    if (const Outcome copied = copy_ranges(journal, head.ranges, **target, 0, before); !copied)
        return {copied, false};
    return {(*target)->sync(), false};
}

Result<bool> fits(BinaryFile& target, const Head& head) {
    const Result<std::int64_t> length = target.length();
    if (!length) return length.failure();
    const auto bytes = static_cast<std::uint64_t>(*length);
    if (bytes < head.before || bytes > head.after) return false;
    const Result<std::uint64_t> fingerprint =
        fingerprint_of(target, static_cast<std::int64_t>(head.before), head.ranges);
    if (!fingerprint) return fingerprint.failure();
    return *fingerprint == head.fingerprint;
}

bool is_missing(const Failure& failure) {
    return failure.is(RunTimeError::file_not_found) || failure.is(RunTimeError::path_not_found);
}

} // namespace

std::string journal_path(std::string_view path) { return std::string(path) + ".journal"; }

Outcome JournalWriter::begin(const std::vector<ByteRange>& ranges, BinaryFile& target) {
    const Result<std::int64_t> before = target.length();
    if (!before) return before.failure();
    const Result<std::uint64_t> fingerprint = fingerprint_of(target, *before, ranges);
    if (!fingerprint) return fingerprint.failure();
    Result<std::unique_ptr<BinaryFile>> file = files_.open(making_path(path_), OpenMode::create);
    if (!file) return file.failure();
    file_ = std::move(file).value();
    std::string head(magic);
    head += bytes_of(version);
    head += bytes_of(static_cast<std::uint32_t>(ranges.size()));
    head += bytes_of(static_cast<std::uint64_t>(*before));
    head += bytes_of(static_cast<std::uint64_t>(std::max(*before, ranges.back().end())));
    head += bytes_of(*fingerprint);
    for (const ByteRange& range : ranges) {
        head += bytes_of(static_cast<std::uint64_t>(range.offset));
        head += bytes_of(static_cast<std::uint64_t>(range.length));
    }
    return add(head);
}

Outcome JournalWriter::add(std::string_view bytes) {
    sum_.add(bytes);
    buffer_ += bytes;
    return static_cast<std::int64_t>(buffer_.size()) < piece ? Outcome{} : flush();
}

Outcome JournalWriter::flush() {
    const Outcome written = file_->write(end_ + 1, buffer_);
    if (!written) return give_up(written.failure());
    end_ += static_cast<std::int64_t>(buffer_.size());
    buffer_.clear();
    return {};
}

Outcome JournalWriter::commit() {
    buffer_ += bytes_of(sum_.value());
    buffer_ += end_mark;
    if (const Outcome written = flush(); !written) return written;
    if (const Outcome synced = file_->sync(); !synced) return give_up(synced.failure());
    file_.reset();
    if (const Outcome named = files_.replace(making_path(path_), journal_path(path_)); !named) {
        // The step may have been taken all the same.
        (void)files_.remove(journal_path(path_));
        return give_up(named.failure());
    }
    return {};
}

Outcome JournalWriter::give_up(const Failure& why) {
    file_.reset();
    (void)files_.remove(making_path(path_)); // what went wrong first is what counts
    return why;
}

JournalRun run_journal(Files& files, std::string_view path) {
    const std::string name = journal_path(path);
    JournalRun run;
    {
        const Result<std::unique_ptr<BinaryFile>> journal = files.open(name, OpenMode::read);
        if (!journal) return {journal.failure()};
        const Result<std::optional<Head>> head = read_head(**journal);
        if (!head) return {head.failure()};
        if (!*head) return {failure(RunTimeError::device_io)};
        run = carry_out(files, path, **journal, **head);
    }
    if (run.outcome) run.outcome = files.remove(name);
    return run;
}

Outcome complete_journal(Files& files, std::string_view path) {
    const std::string name = journal_path(path);
    if (files.exists(making_path(path))) (void)files.remove(making_path(path));
    bool wanted = false;
    {
        const Result<std::unique_ptr<BinaryFile>> journal = files.open(name, OpenMode::read);
        if (!journal) return is_missing(journal.failure()) ? Outcome{} : Outcome{journal.failure()};
        const Result<std::optional<Head>> head = read_head(**journal);
        if (!head) return head.failure();
        if (*head) {
            const Result<std::unique_ptr<BinaryFile>> target = files.open(path, OpenMode::read);
            if (!target && !is_missing(target.failure())) return target.failure();
            if (target) {
                const Result<bool> fitting = fits(**target, **head);
                if (!fitting) return fitting.failure();
                wanted = *fitting;
            }
        }
    }
    if (wanted) {
        if (const Outcome done = run_journal(files, path).outcome; !done && files.exists(name)) return done;
        return {};
    }
    (void)files.remove(name); // where it stays, it fits no better the next time
    return {};
}

} // namespace velorn
