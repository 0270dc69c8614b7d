// Any bytes as what stands behind an archive's table, as the journal beside it, and as the diary of a
// download: nothing crashes, what was read is written so that it reads the same again, and a garbled journal
// changes nothing.
#include "archive/archive_journal.h"
#include "archive/checksum.h"
#include "archive/download_diary.h"
#include "support/block_files.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdlib>

using namespace velorn;

namespace {

constexpr std::string_view path = "c:\\daten\\werk.dat";
constexpr std::int64_t behind_daten = archive_layout::daten_size(30);

void must(bool fine) {
    if (!fine) std::abort();
}

// With all cells zero, which takes no memory. `tail` stands at the end of the settings' place.
void lay_out(test::BlockFiles& files, std::string_view tail) {
    files.set_length(path, behind_daten + archive_layout::rechdaten_size + 4096);
    files.set_bytes(path, behind_daten, tail);
}

// Writing takes long: what can't be read makes a save write all calculated tracks anew.
void as_tail(std::string_view bytes, bool and_save) {
    test::BlockFiles files;
    lay_out(files, bytes);
    Archive archive(files);
    const bool whole = archive.open(path).ok();
    archive.upgrade();
    if (!and_save) return;
    must(archive.save().ok());
    Archive again(files);
    again.archivversion = 2;
    const bool still = again.open(path).ok();
    must(still || !whole || !archive_layout::row_of_size(files.length(path)));
    if (!still) return;
    must(encode_settings(archive) == encode_settings(again));
    must(encode_calculated_texts(archive) == encode_calculated_texts(again));
    must(again.rechdaten(1, 2, 31, 1, 0) >= 1002.0F);
}

// Whether or not the journal is given a checksum that is right.
void as_journal(std::string_view bytes, bool mended) {
    test::BlockFiles files;
    const std::string letters(3000, 'a');
    files.set_bytes(path, 0, letters);
    std::string journal(bytes);
    if (mended && journal.size() > 56) {
        journal.replace(0, 8, "VLNJOURN");
        journal.resize(journal.size() - 16);
        const std::uint64_t sum = checksum_of(journal);
        journal.append(reinterpret_cast<const char*>(&sum), sizeof sum);
        journal += "JOURNEND";
    }
    files.set_bytes(journal_path(path), 0, journal);
    must(complete_journal(files, path).ok());
    must(!files.exists(journal_path(path)));
    must(files.length(path) >= 3000);
    must(files.length(path) <= 3000 + static_cast<std::int64_t>(journal.size()));
    if (!mended) must(files.bytes(path, 0, 4000) == letters);
}

void as_diary(std::string_view bytes, bool behind_a_whole_one) {
    test::BlockFiles files;
    const std::string settings = encode_settings(new_archive_settings(30, 2009, {2026, 11, 21}));
    lay_out(files, settings);
    Archive archive(files);
    (void)archive.open(path);
    DownloadDiary diary(files);
    const std::string name = std::string(path) + ".tagebuch";
    if (behind_a_whole_one) {
        must(diary.begin(archive).ok());
        const float value = 1.0F;
        must(diary.add(1, 2, 3, 4, {&value, 1}).ok());
        files.set_bytes(name, files.length(name), bytes);
    } else {
        files.set_bytes(name, 0, bytes);
    }
    const int taken = diary.take_over(archive);
    must(taken >= (behind_a_whole_one ? 1 : 0));
    must(diary.begin(archive).ok());
    must(diary.take_over(archive) == taken);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    switch (data[0] % 32) {
    case 0: as_tail(bytes.substr(0, 60000), true); break;
    case 1: as_diary(bytes, true); break;
    case 2:
    case 3: as_journal(bytes, data[0] % 2 == 0); break;
    case 4: as_diary(bytes, false); break;
    default: as_tail(bytes.substr(0, 60000), false); break;
    }
    return 0;
}
