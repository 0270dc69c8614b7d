#include "archive/download_diary.h"

#include "archive/bytes_of.h"
#include "archive/checksum.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace velorn {

using namespace archive_layout;

namespace {

constexpr std::string_view magic = "VLNTAGEB";
constexpr std::uint32_t version = 1;
constexpr std::int64_t record_head = 4 + 2;
constexpr std::int64_t sum_size = 8;
constexpr std::int64_t piece = 1024 * 1024;

std::string diary_path(std::string_view path) { return std::string(path) + ".tagebuch"; }

std::string head_of(const Archive& archive) {
    const Result<std::int32_t> first_year = archive.startjahr.as_i32();
    std::string head(magic);
    head += bytes_of(version);
    head += bytes_of(std::int32_t{archive.spuranz});
    head += bytes_of(first_year ? *first_year : std::int32_t{0});
    return head + bytes_of(checksum_of(head));
}

// Also of where it stands: records of one length don't change places unnoticed.
std::uint64_t record_sum(std::string_view record, std::int64_t position) {
    return checksum_of(record, static_cast<std::uint64_t>(position));
}

struct Record {
    int y, m, d, q;
    std::vector<float> values;
};

bool in_range(const Record& record, int spuranz) {
    return record.y < years && record.m >= 1 && record.m < months && record.d >= 1 && record.d < days &&
           record.q >= 1 && record.q < quarters && static_cast<int>(record.values.size()) <= spuranz;
}

// Takes the records of a diary that belongs to this archive, up to the first that isn't whole, and gives
// where the next one would stand; 0 for a diary of anything else.
template <class Each>
Result<std::int64_t> read_records(BinaryFile& file, const Archive& archive, Each&& each) {
    const std::string head = head_of(archive);
    std::int64_t position = static_cast<std::int64_t>(head.size());
    const Result<std::string> first = file.read(1, position);
    if (!first) return first.failure();
    if (*first != head) return std::int64_t{0};
    Result<std::string> bytes = file.read(position + 1, piece);
    std::size_t at = 0;
    for (;;) {
        if (!bytes) return bytes.failure();
        const std::string_view rest = std::string_view(*bytes).substr(at);
        std::size_t count_at = 4;
        const auto count = take_number<std::uint16_t>(rest, count_at);
        const std::size_t size = record_head + std::size_t{count} * value_size + sum_size;
        if (rest.size() < record_head || rest.size() < size) {
            if (at == 0) return position;
            bytes = file.read(position + 1, piece);
            at = 0;
            continue;
        }
        const std::string_view record = rest.substr(0, size - sum_size);
        std::size_t sum_at = size - sum_size;
        if (take_number<std::uint64_t>(rest, sum_at) != record_sum(record, position)) return position;
        std::size_t value_at = 0;
        Record one{};
        one.y = take_number<std::uint8_t>(record, value_at);
        one.m = take_number<std::uint8_t>(record, value_at);
        one.d = take_number<std::uint8_t>(record, value_at);
        one.q = take_number<std::uint8_t>(record, value_at);
        value_at = record_head;
        for (unsigned i = 0; i < count; ++i) one.values.push_back(take_number<float>(record, value_at));
        if (!in_range(one, archive.spuranz)) return position;
        each(one);
        at += size;
        position += static_cast<std::int64_t>(size);
    }
}

} // namespace

Outcome DownloadDiary::begin(const Archive& archive, bool certain) {
    file_.reset();
    const std::string path = diary_path(archive.path());
    if (path != path_) path_.clear();
    if (!archive.is_open() || archive.shared()) return {};
    if (path == unread_) return failure(RunTimeError::device_io);
    Result<std::unique_ptr<BinaryFile>> file = files_.open(path, OpenMode::read_write);
    if (!file) return file.failure();
    const Result<std::int64_t> end = read_records(**file, archive, [](const Record&) {});
    if (!end) return end.failure();
    end_ = *end;
    if (end_ == 0) {
        const Result<std::int64_t> length = (*file)->length();
        if (!length) return length.failure();
        if (*length > 0 && !certain) return failure(RunTimeError::path_file_access);
        // Emptied first, so that nothing of a foreign one is left behind.
        file = files_.open(path, OpenMode::create);
        if (!file) return file.failure();
        path_ = path;
        const std::string head = head_of(archive);
        if (const Outcome written = (*file)->write(1, head); !written) return written;
        end_ = static_cast<std::int64_t>(head.size());
    }
    path_ = path;
    file_ = std::move(file).value();
    return {};
}

Outcome DownloadDiary::add(int y, int m, int d, int q, std::span<const float> values) {
    if (!file_) return {};
    std::string record;
    for (const int number : {y, m, d, q}) record += static_cast<char>(number);
    record += bytes_of(static_cast<std::uint16_t>(values.size()));
    for (const float value : values) record += bytes_of(value);
    record += bytes_of(record_sum(record, end_));
    // What a failure leaves is torn, and the next record goes over it.
    if (const Outcome written = file_->write(end_ + 1, record); !written) return written;
    end_ += static_cast<std::int64_t>(record.size());
    return {};
}

Outcome DownloadDiary::drop() {
    file_.reset();
    if (path_.empty() || !files_.exists(path_)) return {};
    return files_.remove(path_);
}

void DownloadDiary::drop_beside(std::string_view path) { (void)files_.remove(diary_path(path)); }

void DownloadDiary::leave() {
    file_.reset();
    path_.clear();
}

int DownloadDiary::take_over(Archive& archive) {
    leave();
    unread_.clear();
    if (!archive.is_open() || archive.shared()) return 0;
    const std::string path = diary_path(archive.path());
    const Result<std::unique_ptr<BinaryFile>> file = files_.open(path, OpenMode::read);
    if (!file) {
        if (!file.failure().is(RunTimeError::file_not_found)) unread_ = path;
        return 0;
    }
    int taken = 0;
    const Result<std::int64_t> end = read_records(**file, archive, [&](const Record& record) {
        for (std::size_t i = 0; i < record.values.size(); ++i)
            archive.set_daten(record.y, record.m, record.d, record.q, static_cast<int>(i) + 1,
                              record.values[i]);
        ++taken;
    });
    if (!end)
        unread_ = path; // the next save must not take with it what nobody has seen
    else if (*end > 0)
        path_ = path;
    return taken;
}

} // namespace velorn
